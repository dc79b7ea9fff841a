#pragma once

#include "WebDavServer.h"
#include <protocol/http/HttpRequestGroup.h>

namespace Norlis::Social {

/// Finds out, with an uploaded file and one of a single byte, whether the server keeps its word not to overwrite. One
/// that does not would let a new document take another one's place.
class OverwriteCheck {
public:
    /// \param name that the uploaded file has after the check
    using Done = std::function<void(const QByteArray& name)>;

    OverwriteCheck(WebDavServer& server, const QByteArray& uploaded, Done done);

private:
    void TryToOverwrite();
    void End(const QByteArray& name, const QByteArray& leftover);

    WebDavServer& server;
    const QByteArray uploaded;
    const QByteArray small;
    const Done done;
    HttpRequestGroup requests;
};

} // namespace Norlis::Social
