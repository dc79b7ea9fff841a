#pragma once

#include "FileRequests.h"
#include "WebDavSession.h"

namespace Norlis::Social {

/// Finds out, with an uploaded file and a small one, whether the server obeys "Overwrite: F". One that does not would
/// let a new document take another one's place.
class OverwriteCheck {
public:
    /// \param name that the uploaded file has after the check
    using Done = std::function<void(const QByteArray& name)>;

    OverwriteCheck(WebDavSession& session, const DavDocument& uploaded, Done done);
    ~OverwriteCheck();

    OverwriteCheck(const OverwriteCheck&) = delete;
    OverwriteCheck& operator=(const OverwriteCheck&) = delete;

private:
    void TryToOverwrite();
    void LookWhatHappened();

    /// \param leftover to be deleted; empty when it is not certain which file it is
    void End(const QByteArray& name, const QByteArray& leftover);

    WebDavSession& session;
    const DavDocument uploaded;
    const QByteArray small;
    Done done;
    FileRequests files;
    HttpRequestGroup requests;
};

} // namespace Norlis::Social
