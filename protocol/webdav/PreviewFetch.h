#pragma once

#include "WebDavServer.h"
#include <protocol/http/HttpRequestGroup.h>
#include <protocol/preview/PreviewQueue.h>
#include <protocol/transfer/DownloadSink.h>

namespace Norlis::Social {

/// Fetches what a preview is made of: the server's own picture where it has one, else the document.
class PreviewFetch {
public:
    using Done = std::function<void(PreviewQueue::Fetched)>;

    /// \param folder for the document while it is rendered
    PreviewFetch(const std::shared_ptr<WebDavServer>& server, const DavDocument& document, const QSize& box,
                 const QString& folder, QThreadPool& pool, Done done);

private:
    void FetchPicture(const QSize& box);
    void FetchDocument();
    void CheckPosition(qint64 position);
    void OnDocument(const HttpResponse& response);
    QString WhyNotTaken(const HttpHead& head) const;
    void End(PreviewQueue::Fetched&& fetched);

    const std::shared_ptr<WebDavServer> server;
    const DavDocument document;
    const Done done;
    std::shared_ptr<DownloadSink> sink;
    bool isTooLarge = false;
    HttpRequestGroup requests;
    QObject context;
};

} // namespace Norlis::Social
