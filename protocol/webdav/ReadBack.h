#pragma once

#include "FileRequests.h"
#include <protocol/streams/UploadSource.h>

#include <memory>

namespace Norlis::Social {

/// Fetches a file that was sent and compares it, where the server itself proves nothing about the bytes that it has: a
/// small one as a whole, of others some parts.
class ReadBack {
public:
    struct Result {
        QString difference;                  ///< what is wrong with the file; empty when nothing is
        std::optional<HttpResponse> failure; ///< the file could not be fetched
        QByteArray etag;                     ///< of the version that was compared; empty when not reported

        bool IsSame() const
        {
            return difference.isEmpty() && !failure;
        }
    };
    using Done = std::function<void(const Result&)>;

    ReadBack(WebDavSession& session, SentContent sent);

    /// One at a time. done is called once, from the event loop, unless this object is destroyed before.
    void Compare(const QByteArray& name, Done done);

private:
    void FetchWhole();
    void LookAtSize();
    void FetchSample(std::size_t index);
    bool CompareSize(qint64 size);
    void End();

    WebDavSession& session;
    const SentContent sent;
    FileRequests files;
    HttpRequestGroup requests;
    QByteArray name;
    int attempts = 0; ///< that broke off
    Result result;
    Done done;
};

} // namespace Norlis::Social
