#include "DownloadOperation.h"

#include <files/LocalTarget.h>
#include <protocol/dav/ContentRange.h>
#include <protocol/dav/EntityTag.h>
#include <protocol/http/HttpDate.h>

#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("Download");
constexpr int maxFruitlessAttempts = 4;
constexpr int maxRestarts = 3;
constexpr qint64 usualGrowth = 4 * 1024 * 1024; // bytes; by which a document may have become larger since the list

bool IsHtml(const QString& contentType)
{
    return contentType.startsWith("text/html", Qt::CaseInsensitive) ||
           contentType.startsWith("application/xhtml", Qt::CaseInsensitive);
}

/// The Content-Length; -1 when there is no valid one.
qint64 LengthOf(const HttpHead& head)
{
    bool isNumber = false;
    const qint64 length = head.Field("content-length").toLongLong(&isNumber);
    return isNumber && length >= 0 ? length : -1;
}

} // namespace

DownloadOperation::DownloadOperation(qint64 id, const Request::Download& request,
                                     const std::shared_ptr<WebDavSession>& session, const Tools& tools, Finish finish)
    : Operation(session, std::move(finish)),
      id(id),
      request(request),
      tools(tools)
{
}

DownloadOperation::~DownloadOperation()
{
    session->lookup.Forget(id);
}

void DownloadOperation::Start()
{
    session->lookup.Find(id, request.document, what, [this](const DavDocument* found, Reply&& failure) {
        if (!found) {
            End(std::move(failure));
            return;
        }
        document = *found;
        if (const auto problem = Files::ValidateTarget(request.localPath)) {
            End(TargetReply(what, document.Name(), *problem));
            return;
        }
        const QString folder = QFileInfo(request.localPath).path();
        sink = std::make_shared<DownloadSink>(
            folder, tools.pool, [this](const HttpHead& head, qint64& from) { return CheckResponse(head, from); },
            [this](qint64 position) { ReportProgress(position); });
        if (!sink->Open()) {
            Fail(QStringLiteral("Nothing can be written to %1: %2").arg(folder, sink->ErrorText()),
                 "Check that the folder is there and that you may write to it.");
            return;
        }
        ReportProgress(0);
        Get();
    });
}

void DownloadOperation::Get()
{
    positionBefore = sink->Position();
    constexpr qint64 largest = std::numeric_limits<qint64>::max() - usualGrowth;
    sink->SetLimit(std::min(document.size.value_or(largest), largest) + usualGrowth);
    HttpRequest get = GetDocument(session->collection.UrlOf(document.name));
    if (positionBefore > 0 && EntityTag{etag}.IsStrong()) {
        get = FromPosition(get, positionBefore, etag);
    }
    get.sink = sink;
    requests.Send(OnLane(HttpRequest::Lane::Transfer, get), [this](HttpResponse&& response) { OnResponse(response); });
}

QString DownloadOperation::CheckResponse(const HttpHead& head, qint64& from)
{
    const QByteArray encoding = head.Field("content-encoding").toLower();
    if (!encoding.isEmpty() && encoding != "identity") {
        return QStringLiteral("The server sends the document compressed (%1), although this was not requested")
            .arg(QString::fromLatin1(encoding));
    }
    if (head.status == 206) {
        return CheckRange(head, from);
    }
    if (head.status != 200) {
        return QStringLiteral("The server answers with %1 instead of the document").arg(head.status);
    }
    const QString contentType = QString::fromLatin1(head.Field("content-type"));
    if (IsHtml(contentType) && !IsHtml(document.ToCloudFile().mimeType)) {
        return QStringLiteral("The server sends a web page instead of the document");
    }
    from = 0;
    etag = head.Field("etag");
    modifiedAt = ParseHttpDate(head.Field("last-modified"));
    size = LengthOf(head);
    // A body of which nobody knows the end would be written until the disk is full.
    return size < 0 && !document.size ? QStringLiteral("The server does not report the size of the document")
                                      : QString();
}

QString DownloadOperation::CheckRange(const HttpHead& head, qint64& from) const
{
    const ContentRange range(head.Field("content-range"));
    const QByteArray newEtag = head.Field("etag");
    if (positionBefore == 0 || range.first != positionBefore || (size >= 0 && range.size >= 0 && range.size != size) ||
        (!newEtag.isEmpty() && newEtag != etag)) {
        return QStringLiteral("The server sends another part of the document than the requested one");
    }
    from = positionBefore;
    return {};
}

void DownloadOperation::OnResponse(const HttpResponse& response)
{
    if (response.HasSucceeded()) {
        if (size >= 0 && size == document.size.value_or(size)) {
            Check(size);
        } else {
            CheckSize();
        }
        return;
    }
    if (Resume(response)) {
        return;
    }
    if (response.fault == HttpResponse::Fault::SinkRefused && sink->IsOverLimit()) {
        LookWhetherItHasGrown();
        return;
    }
    if (response.fault == HttpResponse::Fault::SinkRefused) {
        Fail(sink->IsResponseRefused() ? sink->ErrorText()
                                       : QStringLiteral("%1 cannot be written: %2")
                                             .arg(QFileInfo(request.localPath).path(), sink->ErrorText()),
             sink->IsResponseRefused()
                 ? QStringLiteral("Check that the address is that of the server itself, and try again.")
                 : QStringLiteral("Free some space on the drive and try again."));
        return;
    }
    if (IsMissing(response.Status())) {
        session->documents.remove(document.id);
    }
    End(session->FailureReplyTo(what, document.Name(), response));
}

bool DownloadOperation::Resume(const HttpResponse& response)
{
    const bool isBroken =
        response.fault == HttpResponse::Fault::Broken || response.fault == HttpResponse::Fault::Silent;
    const bool isWrongPart = response.Status() == 416 || (sink->IsResponseRefused() && response.head.status == 206);
    if (!isBroken && !isWrongPart) {
        return false;
    }
    const bool hasProgressed = sink->Position() > positionBefore;
    if (response.fault == HttpResponse::Fault::Silent && !hasProgressed) {
        return false; // it has taken long enough
    }
    fruitlessAttempts = hasProgressed ? 0 : fruitlessAttempts + 1;
    const bool startsAgain = isWrongPart || !EntityTag{etag}.IsStrong();
    restarts += startsAgain ? 1 : 0;
    if (fruitlessAttempts > maxFruitlessAttempts || restarts > maxRestarts || (startsAgain && !sink->Open())) {
        return false;
    }
    Get();
    return true;
}

void DownloadOperation::CheckSize()
{
    // The response ended where the connection did, or its length is not that in the list: only the server can say
    // whether that was the end of the document.
    AskForSize([this](qint64 sizeNow) { Check(sizeNow); });
}

void DownloadOperation::LookWhetherItHasGrown()
{
    AskForSize([this](qint64 sizeNow) {
        const bool hasGrown = sizeNow > document.size.value_or(sizeNow);
        document.size = sizeNow;
        if (!hasGrown || ++restarts > maxRestarts) {
            Fail(QStringLiteral("The server sends more than the %1 bytes of the document").arg(sizeNow),
                 "Try again. If this happens again, tell whoever runs the server.");
        } else if (!sink->Open()) {
            FailToWrite(sink->ErrorText());
        } else {
            Get();
        }
    });
}

void DownloadOperation::AskForSize(std::function<void(qint64)> onSize)
{
    const HttpRequest look = OnLane(HttpRequest::Lane::Transfer, PropFind(session->collection.UrlOf(document.name)));
    requests.Send(look, [this, onSize = std::move(onSize)](HttpResponse&& response) {
        const auto entry = EntryOfDepth0(response, session->PathOf(document.name));
        if (response.fault != HttpResponse::Fault::None) {
            End(session->FailureReplyTo(what, document.Name(), response));
        } else if (!entry || !entry->size) {
            Fail("The server does not report the size of the document", "Try again.");
        } else {
            onSize(*entry->size);
        }
    });
}

void DownloadOperation::Check(qint64 expectedSize)
{
    if (sink->Position() != expectedSize) {
        Fail(QStringLiteral("%1 of %2 bytes arrived").arg(sink->Position()).arg(expectedSize), "Try again.");
        return;
    }
    sink->Finish([this] { OnWritten(); });
}

void DownloadOperation::OnWritten()
{
    if (!sink->ErrorText().isEmpty()) {
        FailToWrite(sink->ErrorText());
        return;
    }
    // There are servers that give another document the old tag.
    const bool hasSameSize = document.size.value_or(sink->Position()) == sink->Position();
    const bool isSameVersion = hasSameSize && (etag.isEmpty() || EntityTag{etag}.SameIgnoringWeakness({document.etag}));
    if (isSameVersion && !document.md5.isEmpty() && sink->Md5().toLatin1() != document.md5) {
        Fail("The document that arrived does not have the hash that the server gives for it",
             "Refresh the list and try again. If this happens again, the document is damaged on the server.");
        return;
    }
    tools.settling();
    tools.disk.AddFile(sink->File(), [this, guard = lifetime.Watch()](const QString& error) {
        if (!guard) {
            return;
        }
        if (error.isEmpty()) {
            PutInPlace();
        } else {
            FailToWrite(error);
        }
    });
}

void DownloadOperation::PutInPlace()
{
    std::optional<Files::TargetProblem> problem;
    const bool isWanted = request.token->Commit([&] {
        problem = Files::PutInPlace(*sink->File(), request.localPath, request.replaceable);
        return QString();
    });
    if (!isWanted) {
        End({});
    } else if (problem) {
        End(TargetReply(what, document.Name(), *problem));
    } else {
        RememberVersion();
        const auto end = [this, guard = lifetime.Watch()](const QString&) {
            if (guard) {
                tools.progress(100);
                const auto version = sink->File()->CommittedVersion();
                End({Success, {}, {}, false, false, DeliveredFileOf(request.localPath, sink->Md5(), version)});
            }
        };
        tools.disk.AddFolder(QFileInfo(request.localPath).path(), end);
    }
}

void DownloadOperation::FailToWrite(const QString& reason)
{
    Fail(QStringLiteral("%1 cannot be written: %2").arg(QFileInfo(request.localPath).path(), reason),
         "Free some space on the drive and try again.");
}

void DownloadOperation::RememberVersion()
{
    DavDocument delivered = document;
    delivered.size = sink->Position();
    if (!etag.isEmpty() || modifiedAt.isValid()) { // otherwise the listed ones have to do
        delivered.etag = etag;
        delivered.modifiedAt = modifiedAt;
    }
    session->versions.Remember(document.id, request.localPath, {delivered.Version(), sink->Md5()});
}

void DownloadOperation::ReportProgress(qint64 position)
{
    const qint64 whole = qMax<qint64>(size >= 0 ? size : document.size.value_or(0), 1);
    const int percent = static_cast<int>(qMin<qint64>(position * 100 / whole, 99)); // not yet checked
    if (percent > reportedPercent) {
        reportedPercent = percent;
        tools.progress(percent);
    }
}

void DownloadOperation::Fail(const QString& reason, const QString& advice)
{
    End(FailureReply(what, document.Name(), session->secrets.Redact(reason), advice));
}

} // namespace Norlis::Social
