#pragma once

#include <NorlisTestKit/Misbehaviour.h>

// What the catalogue of misbehaviours is written with.
namespace Norlis::TestKit {

/// The ordinary answer, changed.
template <typename Change>
Misbehaviour Changes(Change change)
{
    return {[change](Wire& wire) {
        ServerAnswer answer = wire.Do(wire.Request());
        change(&answer);
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
}

/// The ordinary answer, sent in another way, in which the connection ends.
template <typename Sender>
Misbehaviour Sends(Sender sender)
{
    return {[sender](Wire& wire) {
        ServerAnswer answer = wire.Do(wire.Request());
        sender(wire, &answer);
    }};
}

ServerAnswer XmlAnswer(int status, const QByteArray& xml);
Misbehaviour AnswersWith(const ServerAnswer& answer);

/// Error body as SabreDAV writes it.
QByteArray SabreError(const QByteArray& exception, const QByteArray& message);

/// Of a body in chunks (RFC 9112, 7.1).
QByteArray Chunk(const QByteArray& data);
void SendInChunks(ServerAnswer* answer);

} // namespace Norlis::TestKit
