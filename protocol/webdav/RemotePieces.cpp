#include "RemotePieces.h"

#include <base/Lifetime.h>
#include <protocol/dav/ContentRange.h>
#include <protocol/dav/EntityTag.h>
#include <protocol/http/HttpDate.h>

#include <algorithm>
#include <utility>

namespace Norlis::Social {

namespace {

// Page one of a scan of 150 MB takes five rounds and 1 MiB; a damaged document, which is searched, hundreds.
constexpr int maxRounds = 24;
constexpr qint64 maxFetched = 8 * 1024 * 1024; // bytes

constexpr int weakPeriod = 1'100; // milliseconds for which Apache says that a document may still change without a trace
const auto what = QStringLiteral("Fetching a preview");
const auto otherVersion = QStringLiteral("The document has changed meanwhile");

/// Whether it was less than two seconds old, by the server's clock. RFC 9110, 8.8.1.
bool WasJustWritten(const HttpHead& head)
{
    const QDateTime now = ParseHttpDate(head.Field("date"));
    const QDateTime written = ParseHttpDate(head.Field("last-modified"));
    return now.isValid() && written.isValid() && written.secsTo(now) < 2;
}

} // namespace

/// Collects a part, and refuses everything else.
class RemotePieces::PartSink : public HttpSink {
public:
    PartSink(qint64 first, qint64 length) : first(first), length(length) {}

    bool Begin(const HttpHead& head, std::function<void()>) override
    {
        bytes.clear();
        return head.status == 206 && ContentRange(head.Field("content-range")).first == first;
    }

    Taken Add(const char* data, qint64 count) override
    {
        if (bytes.size() + count > length) {
            return Taken::Refused;
        }
        bytes.append(data, static_cast<int>(count));
        return Taken::Yes;
    }

    /// Empty unless all of it has come.
    QByteArray Bytes() const
    {
        return bytes.size() == length ? bytes : QByteArray();
    }

private:
    const qint64 first;
    const qint64 length;
    QByteArray bytes;
};

RemotePieces::RemotePieces(const std::shared_ptr<WebDavSession>& session, const DavDocument& document)
    : session(session),
      document(document),
      size(document.size.value_or(0)),
      requests(session->http)
{
    strongTag.setSingleShot(true);
    strongTag.setInterval(weakPeriod);
    QObject::connect(&strongTag, &QTimer::timeout, &strongTag, [this] {
        if (done) {
            Read(offset, length, std::exchange(done, nullptr));
        }
    });
}

void RemotePieces::ReadEnd(Done whenDone)
{
    const qint64 last = (size - 1) / pieceSize;
    const qint64 first = std::max<qint64>(last - 1, 0); // the last one may have a few bytes only
    Read(first * pieceSize, size - first * pieceSize, std::move(whenDone));
}

bool RemotePieces::IsWithoutRanges() const
{
    return isWithoutRanges;
}

const Reply& RemotePieces::Failure() const
{
    return failure;
}

qint64 RemotePieces::Size() const
{
    return size;
}

bool RemotePieces::HasFailed() const
{
    return failure.result != Success;
}

void RemotePieces::Read(qint64 wantedOffset, qint64 wantedLength, Done whenDone)
{
    offset = wantedOffset;
    length = wantedLength;
    done = std::move(whenDone);
    const qint64 number = offset / pieceSize;
    const auto known = pieces.constFind(number);
    if (known != pieces.constEnd()) {
        CallOnce(done, known->mid(static_cast<int>(offset % pieceSize)), QString());
    } else if (HasFailed()) {
        Refuse(failure.failure.reason);
    } else if (!isFetching) {
        qint64 end = number + 1;
        while (end * pieceSize < std::min(offset + length, size) && !pieces.contains(end)) {
            ++end;
        }
        Fetch(number, end);
    }
}

void RemotePieces::Fetch(qint64 first, qint64 end)
{
    const qint64 position = first * pieceSize;
    const qint64 count = std::min(end * pieceSize, size) - position;
    if (rounds == maxRounds || fetched + count > maxFetched) {
        Refuse(QStringLiteral("Too much of the document would have to be downloaded for a preview"));
        return;
    }
    ++rounds;
    fetched += count;
    isFetching = true;
    const auto part = std::make_shared<PartSink>(position, count);
    HttpRequest get = ForPart(GetDocument(session->collection.UrlOf(document.name)), position, count);
    get.sink = part;
    requests.Send(OnLane(HttpRequest::Lane::Preview, get), [this, first, part](HttpResponse&& response) {
        isFetching = false;
        OnFetched(first, *part, response);
    });
}

void RemotePieces::OnFetched(qint64 first, const PartSink& part, const HttpResponse& response)
{
    const bool isRefused = response.fault == HttpResponse::Fault::SinkRefused;
    if (isRefused && response.head.status == 200 && etag.isEmpty()) {
        isWithoutRanges = true;
        Refuse({});
        return;
    }
    if (!response.HasSucceeded() && !isRefused) {
        Fail(session->FailureReplyTo(what, document.Name(), response));
        return;
    }
    const QByteArray partEtag = response.head.Field("etag");
    const bool isFirst = etag.isEmpty();
    if (isFirst && !EntityTag{partEtag}.IsStrong() && WasJustWritten(response.head) && rounds == 1) {
        strongTag.start();
        return;
    }
    if (isFirst && !EntityTag{partEtag}.IsStrong()) {
        isWithoutRanges = true; // what would prove that the next part is one of the same document?
        Refuse({});
        return;
    }
    const bool isListed = document.etag.isEmpty() || EntityTag{document.etag}.SameIgnoringWeakness({partEtag});
    const QByteArray bytes = part.Bytes();
    const bool isOfVersion = isFirst ? isListed : partEtag == etag;
    if (!isOfVersion || bytes.isEmpty() || ContentRange(response.head.Field("content-range")).size != size ||
        !response.head.Field("content-encoding").isEmpty()) {
        Fail(FailureReply(what, document.Name(), otherVersion)); // which the next list will show
        return;
    }
    etag = partEtag;
    for (qint64 position = 0; position < bytes.size(); position += pieceSize) {
        pieces.insert(first + position / pieceSize, bytes.mid(static_cast<int>(position), static_cast<int>(pieceSize)));
    }
    if (done) {
        Read(offset, length, std::exchange(done, nullptr)); // perhaps of something else by now
    }
}

void RemotePieces::Fail(Reply reply)
{
    failure = std::move(reply);
    Refuse(failure.failure.reason);
}

void RemotePieces::Refuse(const QString& reason)
{
    CallOnce(done, QByteArray(), QString(reason)); // it may destroy this object
}

} // namespace Norlis::Social
