#include "PreviewFetch.h"

#include "AccountOperation.h"

namespace Norlis::Social {

namespace {

constexpr qint64 largestDocument = 64 * 1024 * 1024; // bytes that a picture is worth
const auto tooLarge = QStringLiteral("The document is too large to be fetched for a picture");
const auto somethingElse = QStringLiteral("The server sends something else in place of the document");

bool MayBePdf(const DavDocument& document)
{
    const QString type = document.ToCloudFile().mimeType;
    return type == "application/pdf" || type == "application/octet-stream" ||
           document.Name().endsWith(".pdf", Qt::CaseInsensitive);
}

} // namespace

PreviewFetch::PreviewFetch(const std::shared_ptr<WebDavServer>& server, const DavDocument& document, const QSize& box,
                           const QString& folder, QThreadPool& pool, Done done)
    : server(server),
      document(document),
      done(std::move(done)),
      sink(std::make_shared<DownloadSink>(
          folder, pool, [this](const HttpHead& head, qint64&) { return WhyNotTaken(head); },
          [this](qint64 position) { CheckPosition(position); })),
      requests(server->http)
{
    if (document.hasPreview && !document.fileId.isEmpty()) {
        FetchPicture(box);
    } else {
        FetchDocument();
    }
}

void PreviewFetch::FetchPicture(const QSize& box)
{
    // The ratio is kept, "no picture" is an answer, and the version makes caches on the way give out the right one.
    HttpRequest request;
    request.method = "GET";
    request.url = server->collection.InstanceUrl() +
                  "index.php/core/preview?fileId=" + EncodeSegment(document.fileId.toUtf8()) +
                  "&x=" + QByteArray::number(box.width()) + "&y=" + QByteArray::number(box.height()) +
                  "&a=1&forceIcon=0&mode=cover&mimeFallback=0&v=" + EncodeSegment(document.etag);
    request.lane = HttpRequest::Lane::Preview;
    requests.Send(request, [this](HttpResponse&& response) {
        const QImage picture = response.HasSucceeded() ? PictureOf(response.body) : QImage();
        if (picture.isNull()) {
            FetchDocument();
        } else {
            End({{}, picture, {}, {}});
        }
    });
}

void PreviewFetch::FetchDocument()
{
    QString reason;
    if (!MayBePdf(document)) {
        reason = QStringLiteral("There are pictures of PDF documents only");
    } else if (document.size.value_or(0) > largestDocument) {
        reason = tooLarge;
    } else if (!sink->Open()) {
        reason = QStringLiteral("Nothing can be written to the folder for pictures: %1").arg(sink->ErrorText());
    }
    HttpRequest request;
    if (reason.isEmpty()) {
        request.method = "GET";
        request.url = server->collection.UrlOf(document.name);
        request.fields = {{"Accept-Encoding", "identity"}};
        request.sink = sink;
        request.lane = HttpRequest::Lane::Preview;
        requests.Send(request, [this](HttpResponse&& response) { OnDocument(response); });
        return;
    }
    QTimer::singleShot(0, &context, [this, reason] { End({{}, {}, reason, {}}); }); // never from inside the constructor
}

QString PreviewFetch::WhyNotTaken(const HttpHead& head) const
{
    if (head.status != 200 || !head.Field("content-encoding").isEmpty()) {
        return somethingElse;
    }
    return head.Field("content-length").toLongLong() > largestDocument ? tooLarge : QString();
}

void PreviewFetch::CheckPosition(qint64 position)
{
    if (position > largestDocument && !isTooLarge) {
        isTooLarge = true; // and the request cannot be taken back in the middle of its answer
        QTimer::singleShot(0, &context, [this] { End({{}, {}, tooLarge, {}}); });
    }
}

void PreviewFetch::OnDocument(const HttpResponse& response)
{
    if (!response.HasSucceeded()) {
        const bool isOurs = response.fault == HttpResponse::Fault::SinkRefused;
        const Reply failure = server->Failure({}, {}, response);
        End({{}, {}, isOurs ? sink->ErrorText() : failure.failure.reason, {}, failure.isSignedOut});
        return;
    }
    if (sink->Position() != document.size.value_or(sink->Position())) {
        End({{}, {}, somethingElse, {}}); // or another version, of which the next list will tell
        return;
    }
    sink->Flush([this] {
        const QString path = sink->ErrorText().isEmpty() ? sink->File().Path() : QString();
        End({path, {}, sink->ErrorText(), sink});
    });
}

void PreviewFetch::End(PreviewQueue::Fetched&& fetched)
{
    const auto whenDone = done; // it destroys this object
    whenDone(std::move(fetched));
}

} // namespace Norlis::Social
