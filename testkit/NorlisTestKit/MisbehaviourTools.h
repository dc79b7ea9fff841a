#pragma once

#include <NorlisTestKit/Misbehaviour.h>

// What the catalogue of misbehaviours is built from.
namespace Norlis::TestKit {

/// The ordinary answer, changed.
template <typename Change>
Misbehaviour Changes(Change change)
{
    return {[change](Wire& wire) {
        ServerResponse answer = wire.Do(wire.Request());
        change(&answer);
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
}

/// The ordinary answer, sent in another way; the sender ends the exchange.
template <typename Sender>
Misbehaviour Sends(Sender sender)
{
    return {[sender](Wire& wire) {
        ServerResponse answer = wire.Do(wire.Request());
        sender(wire, &answer);
    }};
}

ServerResponse XmlResponse(int status, const QByteArray& xml);
Misbehaviour AnswersWith(const ServerResponse& answer);

/// Error body as SabreDAV writes it.
QByteArray SabreError(const QByteArray& exception, const QByteArray& message);

/// One chunk of a chunked body (RFC 9112, 7.1).
QByteArray Chunk(const QByteArray& data);
void SendInChunks(ServerResponse* answer);

} // namespace Norlis::TestKit
