#include "ServerMessages.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <map>

namespace Norlis::TestKit {

namespace {

QByteArray ReasonOf(int status)
{
    static const std::map<int, QByteArray> reasons = {{100, "Continue"},
                                                      {102, "Processing"},
                                                      {103, "Early Hints"},
                                                      {200, "OK"},
                                                      {201, "Created"},
                                                      {204, "No Content"},
                                                      {206, "Partial Content"},
                                                      {207, "Multi-Status"},
                                                      {304, "Not Modified"},
                                                      {400, "Bad Request"},
                                                      {401, "Unauthorized"},
                                                      {403, "Forbidden"},
                                                      {404, "Not Found"},
                                                      {405, "Method Not Allowed"},
                                                      {409, "Conflict"},
                                                      {412, "Precondition Failed"},
                                                      {413, "Content Too Large"},
                                                      {416, "Range Not Satisfiable"},
                                                      {423, "Locked"},
                                                      {425, "Too Early"},
                                                      {429, "Too Many Requests"},
                                                      {500, "Internal Server Error"},
                                                      {502, "Bad Gateway"},
                                                      {503, "Service Unavailable"},
                                                      {504, "Gateway Timeout"},
                                                      {507, "Insufficient Storage"}};
    const auto place = reasons.find(status);
    return place == reasons.end() ? "Status" : place->second;
}

} // namespace

QByteArray ServerHeaders::Value(const QByteArray& name) const
{
    const auto place =
        std::find_if(begin(), end(), [&](const auto& header) { return qstricmp(header.first, name) == 0; });
    return place == end() ? QByteArray() : place->second;
}

bool ServerHeaders::Has(const QByteArray& name) const
{
    return std::any_of(begin(), end(), [&](const auto& header) { return qstricmp(header.first, name) == 0; });
}

void ServerHeaders::Set(const QByteArray& name, const QByteArray& value)
{
    erase(std::remove_if(begin(), end(), [&](const auto& header) { return qstricmp(header.first, name) == 0; }), end());
    emplace_back(name, value);
}

QByteArray ServerRequest::Path() const
{
    return DecodedPath(target);
}

bool ServerRequest::WantsToClose() const
{
    return headers.Value("Connection").toLower().contains("close");
}

QByteArray ServerResponse::Head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + ReasonOf(status) + "\r\n";
    for (const auto& [name, value] : headers) {
        head += name + ": " + value + "\r\n";
    }
    if (status >= 200 && !headers.Has("Date")) {
        head += "Date: " +
                QLocale::c().toString(QDateTime::currentDateTimeUtc(), "ddd, dd MMM yyyy hh:mm:ss 'GMT'").toLatin1() +
                "\r\n";
    }
    const bool neverHasABody = status < 200 || status == 204 || status == 304;
    if (!neverHasABody && !headers.Has("Content-Length") && !headers.Has("Transfer-Encoding")) {
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    }
    return head + "\r\n";
}

QByteArray ServerResponse::Bytes() const
{
    return omitsBody ? Head() : Head() + body;
}

QByteArray DecodedPath(const QByteArray& addressOrPath)
{
    QByteArray path = addressOrPath;
    const int scheme = path.indexOf("://");
    if (scheme > 0) {
        const int slash = path.indexOf('/', scheme + 3);
        path = slash < 0 ? "/" : path.mid(slash);
    }
    const int query = path.indexOf('?');
    path = QByteArray::fromPercentEncoding(query < 0 ? path : path.left(query));
    while (path.size() > 1 && path.endsWith('/')) {
        path.chop(1);
    }
    return path;
}

QByteArray EncodedPath(const QByteArray& path)
{
    return path.toPercentEncoding("/");
}

QByteArray EscapedForXml(const QByteArray& text)
{
    return QString::fromUtf8(text).toHtmlEscaped().toUtf8();
}

RequestReader::State RequestReader::Read(QByteArray* buffer)
{
    if (state == State::Head) {
        ReadHead(buffer);
    } else if (state == State::Body) {
        ReadBody(buffer);
    }
    return state;
}

void RequestReader::ReadHead(QByteArray* buffer)
{
    const int end = buffer->indexOf("\r\n\r\n");
    if (end < 0) {
        return;
    }
    const QByteArray head = buffer->left(end);
    buffer->remove(0, end + 4);

    QByteArrayList lines = head.split('\n');
    const QByteArrayList start = lines.takeFirst().trimmed().split(' ');
    if (start.size() != 3) {
        state = State::Broken;
        return;
    }
    request.method = start[0];
    request.target = start[1];
    for (const QByteArray& line : qAsConst(lines)) {
        const int colon = line.indexOf(':');
        request.headers.emplace_back(line.left(colon), line.mid(colon + 1).trimmed());
    }
    isChunked = request.headers.Value("Transfer-Encoding").toLower() == "chunked";
    left = request.headers.Value("Content-Length").toLongLong();
    state = isChunked || left > 0 ? State::Body : State::Complete;
}

void RequestReader::ReadBody(QByteArray* buffer)
{
    do {
        if (isChunked && !ReadChunkHead(buffer)) {
            return;
        }
        const int size = static_cast<int>(std::min<qint64>(left, buffer->size()));
        request.body += buffer->left(size);
        buffer->remove(0, size);
        left -= size;
        if (left == 0) {
            chunk = Chunk::DataEnd;
        }
    } while (isChunked && !buffer->isEmpty());
    if (!isChunked && left == 0) {
        state = State::Complete;
    }
}

/// Reads what is between the data of chunks. Whether data follow.
bool RequestReader::ReadChunkHead(QByteArray* buffer)
{
    while (chunk != Chunk::Data) {
        const int end = buffer->indexOf("\r\n");
        if (end < 0) {
            return false;
        }
        const QByteArray line = buffer->left(end);
        buffer->remove(0, end + 2);
        if (chunk == Chunk::DataEnd) {
            chunk = Chunk::Size;
        } else if (chunk == Chunk::Size) {
            left = line.split(';')[0].trimmed().toLongLong(nullptr, 16);
            chunk = left > 0 ? Chunk::Data : Chunk::Trailer;
        } else if (line.isEmpty()) { // the trailer's end
            state = State::Complete;
            return false;
        }
    }
    return true;
}

} // namespace Norlis::TestKit
