#include "ReadBack.h"

#include "WebDavSession.h"

#include <QCryptographicHash>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr qint64 maxWhole = 1024 * 1024; // bytes of a file that is fetched as a whole; no more is kept of a response
constexpr int maxAttempts = 3;
constexpr int tooEarly = 425; // RFC 8470: the server is still processing the file

const auto otherBytes = QStringLiteral("The server stored other bytes than were sent");

/// Collects the beginning of a part. Of a server that sends the whole file instead, only the beginning of the file is
/// of use, and the rest is not waited for.
class SampleSink : public HttpSink {
public:
    explicit SampleSink(const SentContent::Sample& sample) : position(sample.position), size(sample.bytes.size()) {}

    bool Begin(const HttpHead& head, std::function<void()>) override
    {
        collected.clear();
        isPart = head.status == 206;
        return isPart || position == 0;
    }

    Taken Add(const char* data, qint64 count) override
    {
        if (!isPart && collected.size() == size) {
            return Taken::Refused;
        }
        collected.append(data, static_cast<int>(std::min<qint64>(count, size - collected.size())));
        return Taken::Yes;
    }

    const QByteArray& Collected() const
    {
        return collected;
    }

private:
    const qint64 position;
    const int size;
    QByteArray collected;
    bool isPart = false;
};

} // namespace

ReadBack::ReadBack(WebDavSession& session, SentContent sent)
    : session(session),
      sent(std::move(sent)),
      files(session),
      requests(session.http)
{
}

void ReadBack::Compare(const QByteArray& fileName, Done whenDone)
{
    name = fileName;
    done = std::move(whenDone);
    result = {};
    attempts = 0;
    if (sent.size <= maxWhole) {
        FetchWhole();
    } else {
        LookAtSize();
    }
}

void ReadBack::FetchWhole()
{
    const HttpRequest get = GetDocument(session.collection.UrlOf(name));
    requests.Send(OnLane(HttpRequest::Lane::Transfer, get), [this](HttpResponse&& response) {
        if (response.Status() == tooEarly) {
            End();
        } else if (!response.HasSucceeded()) {
            result.failure = response;
            End();
        } else {
            result.etag = response.head.Field("etag");
            if (CompareSize(response.body.size()) &&
                QCryptographicHash::hash(response.body, QCryptographicHash::Md5).toHex() != sent.md5) {
                result.difference = otherBytes;
            }
            End();
        }
    });
}

void ReadBack::LookAtSize()
{
    files.Look(name, [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (!entry) {
            result.failure = response;
            End();
        } else if (!CompareSize(entry->size.value_or(0))) {
            End();
        } else {
            result.etag = entry->etag;
            FetchSample(0);
        }
    });
}

void ReadBack::FetchSample(std::size_t index)
{
    if (index == sent.samples.size()) {
        End();
        return;
    }
    const SentContent::Sample& sample = sent.samples[index];
    const auto sink = std::make_shared<SampleSink>(sample);
    HttpRequest get = ForPart(GetDocument(session.collection.UrlOf(name)), sample.position, SentContent::sampleSize);
    get.sink = sink;
    requests.Send(OnLane(HttpRequest::Lane::Transfer, get), [this, index, sink](HttpResponse&& response) {
        const SentContent::Sample& expected = sent.samples[index];
        const bool isUseless = response.fault == HttpResponse::Fault::SinkRefused && sink->Collected().isEmpty();
        if (response.fault == HttpResponse::Fault::Broken && ++attempts < maxAttempts) {
            FetchSample(index);
        } else if (response.Status() == tooEarly || isUseless) {
            End(); // there are no parts to be had
        } else if (!response.HasSucceeded() && response.fault != HttpResponse::Fault::SinkRefused) {
            result.failure = response;
            End();
        } else if (sink->Collected() != expected.bytes) {
            result.difference = otherBytes;
            End();
        } else {
            FetchSample(index + 1);
        }
    });
}

bool ReadBack::CompareSize(qint64 size)
{
    if (size != sent.size) {
        result.difference = QStringLiteral("The server kept %1 of %2 bytes").arg(size).arg(sent.size);
    }
    return size == sent.size;
}

void ReadBack::End()
{
    CallOnce(done, Result(result)); // it may destroy this object
}

} // namespace Norlis::Social
