#include "MisbehaviourTools.h"

namespace Norlis::TestKit {

namespace {

/// RFC 1952, around the raw deflate stream inside of what Qt makes.
QByteArray Gzip(const QByteArray& data)
{
    quint32 crc = 0xffffffff;
    for (const char byte : data) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320 : 0);
        }
    }
    const auto littleEndian = [](quint32 number) {
        QByteArray bytes;
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.append(static_cast<char>(number >> shift));
        }
        return bytes;
    };
    const QByteArray compressed = qCompress(data); // length, two bytes of zlib's, the stream, and a checksum
    return QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\xff", 10) + compressed.mid(6, compressed.size() - 10) +
           littleEndian(~crc) + littleEndian(static_cast<quint32>(data.size()));
}

} // namespace

ServerResponse XmlResponse(int status, const QByteArray& xml)
{
    return {status,
            {{"Content-Type", "application/xml; charset=utf-8"}},
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + xml};
}

Misbehaviour AnswersWith(const ServerResponse& answer)
{
    return {[answer](Wire& wire) {
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
}

QByteArray SabreError(const QByteArray& exception, const QByteArray& message)
{
    return "<d:error xmlns:d=\"DAV:\" xmlns:s=\"http://sabredav.org/ns\"><s:exception>" + EscapedForXml(exception) +
           "</s:exception><s:message>" + EscapedForXml(message) + "</s:message></d:error>";
}

QByteArray Chunk(const QByteArray& data)
{
    return QByteArray::number(data.size(), 16) + "\r\n" + data + "\r\n";
}

void SendInChunks(ServerResponse* answer)
{
    answer->headers.Set("Transfer-Encoding", "chunked");
}

Misbehaviour AnswersWith(int status, const ServerHeaders& headers, const QByteArray& body)
{
    return AnswersWith(ServerResponse{status, headers, body});
}

Misbehaviour AnswersEarly(int status, qint64 afterBodyBytes, Rest rest)
{
    return {[status, rest](Wire& wire) {
                wire.Send(ServerResponse{status, {}, "Early"}.Bytes());
                if (rest == Rest::IsRead) {
                    wire.Finish();
                } else {
                    wire.Close();
                }
            },
            afterBodyBytes};
}

Misbehaviour Refuses(int status, const QByteArray& exception, const QByteArray& message)
{
    return AnswersWith(XmlResponse(status, SabreError(exception, message)));
}

Misbehaviour IsInMaintenance(int retryAfterSeconds)
{
    ServerResponse answer =
        XmlResponse(503, SabreError("Sabre\\DAV\\Exception\\ServiceUnavailable", "System in maintenance mode."));
    answer.headers.Set("Retry-After", QByteArray::number(retryAfterSeconds));
    return AnswersWith(answer);
}

Misbehaviour HasTooManyRequests(int retryAfterSeconds)
{
    return AnswersWith(429, {{"Retry-After", QByteArray::number(retryAfterSeconds)}});
}

Misbehaviour IsOutOfSpace()
{
    return AnswersWith(XmlResponse(507, "<d:error xmlns:d=\"DAV:\"><d:quota-not-exceeded/></d:error>"));
}

Misbehaviour ShowsAPage(int status)
{
    return AnswersWith(status, {{"Content-Type", "text/html; charset=utf-8"}},
                       "<!DOCTYPE html>\n<html><head><title>Page</title></head><body><h1>A page</h1></body></html>\n");
}

Misbehaviour RedirectsTo(const QByteArray& address, int status)
{
    return AnswersWith(status, {{"Location", address}, {"Content-Type", "text/html"}}, "<html>It has moved</html>");
}

Misbehaviour RedirectsToItself(int status)
{
    return {[status](Wire& wire) {
        wire.Send(ServerResponse{status, {{"Location", wire.Request().target}}, {}}.Bytes());
        wire.Finish();
    }};
}

Misbehaviour AnswersAfter(int interimStatus, int times)
{
    return {[=](Wire& wire) {
        for (int count = 0; count < times; ++count) {
            wire.Send(ServerResponse{interimStatus, {}, {}}.Head());
        }
        wire.Send(wire.Do(wire.Request()).Bytes());
        wire.Finish();
    }};
}

Misbehaviour StopsAfter(int interimStatus)
{
    return {[interimStatus](Wire& wire) {
        wire.Send(ServerResponse{interimStatus, {}, {}}.Head());
        wire.Close();
    }};
}

Misbehaviour SendsRawBytes(const QByteArray& bytes)
{
    return {[bytes](Wire& wire) {
        wire.Send(bytes);
        wire.Close();
    }};
}

Misbehaviour Hangs()
{
    return {[](Wire&) {}};
}

Misbehaviour HangsInTheAnswer(int bytesOfBody)
{
    return Sends([bytesOfBody](Wire& wire, ServerResponse* answer) {
        wire.Send(answer->Head() + answer->body.left(bytesOfBody));
    });
}

Misbehaviour HangsInTheRequest(qint64 bytesOfBody)
{
    return {[](Wire&) {}, bytesOfBody};
}

Misbehaviour ClosesWithoutAnswer()
{
    return {[](Wire& wire) { wire.Close(); }};
}

Misbehaviour ClosesInTheRequest(qint64 bytesOfBody)
{
    return {[](Wire& wire) { wire.Close(); }, bytesOfBody};
}

Misbehaviour ResetsTheConnection()
{
    return {[](Wire& wire) { wire.Reset(); }};
}

Misbehaviour Drips(int pieceSize, int pauseMilliseconds)
{
    return Sends(
        [=](Wire& wire, ServerResponse* answer) { wire.SendSlowly(answer->Bytes(), pieceSize, pauseMilliseconds); });
}

Misbehaviour CutsAfterBytes(int bytesOfBody)
{
    return Sends([bytesOfBody](Wire& wire, ServerResponse* answer) {
        wire.Send(answer->Head() + answer->body.left(bytesOfBody));
        wire.Close();
    });
}

Misbehaviour CutsWithoutLength(int bytesOfBody)
{
    return Sends([bytesOfBody](Wire& wire, ServerResponse* answer) {
        SendInChunks(answer);
        QByteArray head = answer->Head();
        wire.Send(head.replace("Transfer-Encoding: chunked", "Connection: close") + answer->body.left(bytesOfBody));
        wire.Close();
    });
}

Misbehaviour CutsInChunks(int bytesOfBody)
{
    return Sends([bytesOfBody](Wire& wire, ServerResponse* answer) {
        SendInChunks(answer);
        wire.Send(answer->Head() + Chunk(answer->body.left(bytesOfBody)));
        wire.Close();
    });
}

Misbehaviour SendsInChunks(int chunkSize)
{
    return Changes([chunkSize](ServerResponse* answer) {
        SendInChunks(answer);
        QByteArray chunks;
        for (int begin = 0; begin < answer->body.size(); begin += chunkSize) {
            chunks += Chunk(answer->body.mid(begin, chunkSize));
        }
        answer->body = chunks + "0\r\n\r\n";
    });
}

Misbehaviour SendsUntilClose()
{
    return CutsWithoutLength(std::numeric_limits<int>::max());
}

Misbehaviour ClaimsLength(qint64 contentLength)
{
    return Sends([contentLength](Wire& wire, ServerResponse* answer) {
        answer->headers.Set("Content-Length", QByteArray::number(contentLength));
        wire.Send(answer->Bytes());
        wire.Close();
    });
}

Misbehaviour SendsGzip()
{
    return Changes([](ServerResponse* answer) {
        answer->body = Gzip(answer->body);
        answer->headers.Set("Content-Encoding", "gzip");
    });
}

Misbehaviour Adds(const QByteArray& header, const QByteArray& value, int times)
{
    return Changes([=](ServerResponse* answer) {
        for (int count = 0; count < times; ++count) {
            answer->headers.emplace_back(header, value);
        }
    });
}

Misbehaviour SetsACookie()
{
    return Adds("Set-Cookie", "session=0123456789abcdef; Path=/; HttpOnly");
}

Misbehaviour ClaimsRange(const QByteArray& contentRange)
{
    return Changes([contentRange](ServerResponse* answer) { answer->headers.Set("Content-Range", contentRange); });
}

Misbehaviour StartsElsewhere(int offset)
{
    return {[offset](Wire& wire) {
        ServerRequest other = wire.Request();
        other.headers.Set("Range", "bytes=" + QByteArray::number(offset) + '-');
        wire.Send(wire.Do(other).Bytes());
        wire.Finish();
    }};
}

Misbehaviour IgnoresTheRange()
{
    return {[](Wire& wire) {
        ServerRequest other = wire.Request();
        other.headers.Set("Range", {});
        wire.Send(wire.Do(other).Bytes());
        wire.Finish();
    }};
}

Misbehaviour RunsFirst(std::function<void()> action)
{
    return {[action = std::move(action)](Wire& wire) {
        action();
        wire.Send(wire.Do(wire.Request()).Bytes());
        wire.Finish();
    }};
}

Misbehaviour KeepsOnly(int bytesOfBody)
{
    return {[bytesOfBody](Wire& wire) {
        ServerRequest less = wire.Request();
        less.body.truncate(bytesOfBody);
        wire.Send(wire.Do(less).Bytes());
        wire.Finish();
    }};
}

Misbehaviour DoesItAndCloses()
{
    return Sends([](Wire& wire, ServerResponse*) { wire.Close(); });
}

Misbehaviour DoesItAndAnswers(int status)
{
    return Changes([status](ServerResponse* answer) { *answer = {status, {}, {}}; });
}

Misbehaviour OnlyClaimsToDoIt(int status)
{
    return AnswersWith(status);
}

} // namespace Norlis::TestKit
