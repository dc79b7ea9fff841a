#pragma once

#include "RemotePieces.h"
#include "WebDavSession.h"
#include <protocol/http/HttpRequestGroup.h>
#include <protocol/preview/PreviewSource.h>
#include <protocol/streams/DownloadSink.h>

namespace Norlis::Social {

/// Fetches what a preview is made of: the server's own preview, which is one of page one, if it has one, otherwise the
/// document, of which a large one is only begun to be read.
class PreviewFetch : public PreviewSource::Fetch {
public:
    /// \param folder for the document while it is rendered
    PreviewFetch(const std::shared_ptr<WebDavSession>& session, const DavDocument& document, int page, const QSize& box,
                 const QString& folder, QThreadPool& pool, PreviewSource::Done done);

private:
    void FetchServerPreview(const QSize& box);
    void FetchDocument();
    void BeginPieces();
    void FetchWhole();
    void CheckPosition(qint64 position);
    void OnDocument(const HttpResponse& response);
    void EndSoon(const QString& reason);

    /// As the last thing: it may destroy this object.
    void End(PreviewSource::Result&& result);

    const std::shared_ptr<WebDavSession> session;
    const DavDocument document;
    PreviewSource::Done done;
    std::shared_ptr<RemotePieces> pieces;
    std::shared_ptr<DownloadSink> sink;
    bool isTooLarge = false;
    HttpRequestGroup requests;
};

} // namespace Norlis::Social
