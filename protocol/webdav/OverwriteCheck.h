#pragma once

#include "WebDavSession.h"
#include <protocol/http/HttpRequestGroup.h>

namespace Norlis::Social {

/// Finds out, with an uploaded file and one of a single byte, whether the server obeys "Overwrite: F". One that does
/// not would let a new document take another one's place.
class OverwriteCheck {
public:
    /// \param name that the uploaded file has after the check
    using Done = std::function<void(const QByteArray& name)>;

    OverwriteCheck(WebDavSession& session, const QByteArray& uploaded, Done done);

private:
    void TryToOverwrite();
    void End(const QByteArray& name, const QByteArray& leftover);

    WebDavSession& session;
    const QByteArray uploaded;
    const QByteArray small;
    Done done;
    HttpRequestGroup requests;
};

} // namespace Norlis::Social
