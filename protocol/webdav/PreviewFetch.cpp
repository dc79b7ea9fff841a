#include "PreviewFetch.h"

#include <base/Lifetime.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/preview/DecodeImage.h>

namespace Norlis::Social {

namespace {

constexpr qint64 maxDocumentSize = 64 * 1024 * 1024; // bytes; a preview is not worth more
constexpr qint64 smallDocument = 512 * 1024;         // bytes; up to these, one request for all is quicker than several
const auto tooLarge = QStringLiteral("The document is too large to be downloaded for a preview");
const auto wrongContent = QStringLiteral("The server sent something other than the document");

bool MayBePdf(const DavDocument& document)
{
    const QString type = document.ToCloudFile().mimeType;
    return type == "application/pdf" || type == "application/octet-stream" ||
           document.Name().endsWith(".pdf", Qt::CaseInsensitive);
}

/// Why a response is not the document; empty when it may be.
QString CheckResponse(const HttpHead& head)
{
    if (head.status != 200 || !head.Field("content-encoding").isEmpty()) {
        return wrongContent;
    }
    return head.Field("content-length").toLongLong() > maxDocumentSize ? tooLarge : QString();
}

class FetchedFile : public PreviewSource::File {
public:
    explicit FetchedFile(const std::shared_ptr<DownloadSink>& sink) : sink(sink) {}

    QString Path() const override
    {
        return sink->File()->Path();
    }

private:
    const std::shared_ptr<DownloadSink> sink; ///< its temporary file goes with it
};

} // namespace

PreviewFetch::PreviewFetch(const std::shared_ptr<WebDavSession>& session, const DavDocument& document, int page,
                           const QSize& box, const QString& folder, QThreadPool& pool, PreviewSource::Done done)
    : session(session),
      document(document),
      done(std::move(done)),
      sink(std::make_shared<DownloadSink>(
          folder, pool, [](const HttpHead& head, qint64&) { return CheckResponse(head); },
          [this](qint64 position) { CheckPosition(position); })),
      requests(session->http)
{
    if (page == 1 && document.hasPreview && !document.fileId.isEmpty()) {
        FetchServerPreview(box);
    } else {
        FetchDocument();
    }
}

void PreviewFetch::FetchServerPreview(const QSize& box)
{
    QByteArray url = session->collection.InstanceUrl() + "index.php/core/preview";
    url += "?fileId=" + EncodeSegment(document.fileId.toUtf8());
    url += "&x=" + QByteArray::number(box.width());
    url += "&y=" + QByteArray::number(box.height());
    url += "&a=1";                               // keeps the proportions of the page
    url += "&forceIcon=0";                       // 404 instead of an icon when there is no preview
    url += "&mode=cover";                        // covers the box instead of fitting into it
    url += "&mimeFallback=0";                    // no redirect to an icon of the type
    url += "&v=" + EncodeSegment(document.etag); // caches on the way keep the versions apart
    requests.Send(OnLane(HttpRequest::Lane::Preview, Get(url)), [this](HttpResponse&& response) {
        const QImage preview = response.HasSucceeded() ? DecodeImage(response.body) : QImage();
        if (preview.isNull()) {
            FetchDocument();
        } else {
            End({{}, preview, {}});
        }
    });
}

void PreviewFetch::FetchDocument()
{
    if (!MayBePdf(document)) {
        EndSoon(QStringLiteral("Only PDF documents have previews")); // this may be called by the constructor
    } else if (document.size.value_or(0) > smallDocument) {
        BeginPieces();
    } else {
        FetchWhole();
    }
}

void PreviewFetch::BeginPieces()
{
    pieces = std::make_shared<RemotePieces>(session, document);
    pieces->ReadEnd([this](const QByteArray& bytes, const QString& reason) {
        if (!bytes.isEmpty()) {
            PreviewSource::Result result;
            result.pieces = pieces;
            End(std::move(result));
        } else if (pieces->IsWithoutRanges()) {
            FetchWhole();
        } else {
            End({{}, {}, reason, pieces->Failure().isSignedOut});
        }
    });
}

void PreviewFetch::FetchWhole()
{
    QString reason;
    if (document.size.value_or(0) > maxDocumentSize) {
        reason = tooLarge;
    } else if (!sink->Open()) {
        reason = QStringLiteral("The folder for previews cannot be written to: %1").arg(sink->ErrorText());
    }
    if (!reason.isEmpty()) {
        EndSoon(reason);
        return;
    }
    HttpRequest get = GetDocument(session->collection.UrlOf(document.name));
    get.sink = sink;
    requests.Send(OnLane(HttpRequest::Lane::Preview, get), [this](HttpResponse&& response) { OnDocument(response); });
}

void PreviewFetch::CheckPosition(qint64 position)
{
    if (position > maxDocumentSize && !isTooLarge) {
        isTooLarge = true;
        EndSoon(tooLarge); // a request cannot be cancelled in the middle of its response
    }
}

void PreviewFetch::OnDocument(const HttpResponse& response)
{
    if (!response.HasSucceeded()) {
        const bool isRefused = response.fault == HttpResponse::Fault::SinkRefused;
        const Reply failure = session->FailureReplyTo({}, {}, response);
        End({{}, {}, isRefused ? sink->ErrorText() : failure.failure.reason, failure.isSignedOut});
        return;
    }
    if (sink->Position() != document.size.value_or(sink->Position())) {
        End({{}, {}, wrongContent}); // or another version, which the next list will show
        return;
    }
    sink->Finish([this] {
        const bool isWritten = sink->ErrorText().isEmpty();
        End({isWritten ? std::make_shared<FetchedFile>(sink) : nullptr, {}, sink->ErrorText()});
    });
}

void PreviewFetch::EndSoon(const QString& reason)
{
    QTimer::singleShot(0, this, [this, reason] { End({{}, {}, reason}); });
}

void PreviewFetch::End(PreviewSource::Result&& result)
{
    CallOnce(done, std::move(result));
}

} // namespace Norlis::Social
