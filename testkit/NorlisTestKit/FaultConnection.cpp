#include "FaultConnection.h"

#include <sys/socket.h>

namespace Norlis::TestKit {

namespace {

constexpr qint64 readBuffer = 256 * 1024;
constexpr qint64 writeBuffer = 256 * 1024;

} // namespace

FaultConnection::FaultConnection(QTcpSocket* socket, int number, RequestHandler* handler, QObject* parent)
    : QObject(parent),
      socket(socket),
      number(number),
      handler(handler)
{
    socket->setParent(this);
    socket->setReadBufferSize(readBuffer); // so that a client whose bytes are left unread notices
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, [this] { Read(); });
    connect(socket, &QTcpSocket::bytesWritten, this, [this] { FillUp(); });
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    connect(&pauses, &QTimer::timeout, this, [this] { SendNextPiece(); });
}

const ServerRequest& FaultConnection::Request() const
{
    return reader.Request();
}

ServerResponse FaultConnection::Do(const ServerRequest& request)
{
    return handler->Do(entry, request);
}

void FaultConnection::Read()
{
    while (ReadOne()) {
    }
}

/// Reads what there is, up to the end of a request. Whether more may be read at once.
bool FaultConnection::ReadOne()
{
    if (state != State::Reading && state != State::Draining) {
        return false;
    }
    received += socket->readAll();
    const int before = received.size();
    const auto place = reader.Read(&received);
    if (place == RequestReader::State::Broken) {
        Close();
        return false;
    }
    if (place == RequestReader::State::Head) {
        return false;
    }
    if (!hasHead) {
        OnHead();
    }
    handler->OnBody(entry, Request(), place == RequestReader::State::Complete);
    if (state == State::Draining && place == RequestReader::State::Complete) {
        Finish();
    } else if (state == State::Reading) {
        AnswerWhenDue();
    }
    return !received.isEmpty() && received.size() < before;
}

void FaultConnection::OnHead()
{
    hasHead = true;
    entry = handler->OnHead(Request(), number);
    misbehaviour = handler->Claim(Request());
    const bool isAnsweredEarly = misbehaviour && misbehaviour->afterBodyBytes == 0;
    if (!isAnsweredEarly && Request().headers.Value("Expect").toLower() == "100-continue") {
        Send("HTTP/1.1 100 Continue\r\n\r\n");
    }
}

void FaultConnection::AnswerWhenDue()
{
    const bool isComplete = reader.CurrentState() == RequestReader::State::Complete;
    if (misbehaviour && (isComplete || Request().body.size() >= misbehaviour->afterBodyBytes)) {
        state = State::Waiting;
        misbehaviour->act(*this);
    } else if (isComplete) {
        state = State::Waiting;
        Send(Do(Request()).Bytes());
        Finish();
    }
}

void FaultConnection::Send(const QByteArray& bytes)
{
    socket->write(bytes);
}

void FaultConnection::SendSlowly(const QByteArray& bytes, int newPieceSize, int pause)
{
    slowly = bytes;
    pieceSize = newPieceSize;
    pauses.start(pause);
}

void FaultConnection::SendNextPiece()
{
    Send(slowly.left(pieceSize));
    slowly.remove(0, pieceSize);
    if (slowly.isEmpty()) {
        pauses.stop();
        Finish();
        Read();
    }
}

void FaultConnection::SendWithoutEnd(std::function<QByteArray(int)> next)
{
    endless = std::move(next);
    FillUp();
}

void FaultConnection::FillUp()
{
    while (endless && socket->bytesToWrite() < writeBuffer) {
        Send(endless(piecesSent++));
    }
}

void FaultConnection::Finish()
{
    if (reader.CurrentState() != RequestReader::State::Complete) {
        state = State::Draining;
        return;
    }
    if (Request().WantsToClose()) {
        Close();
        return;
    }
    reader = {};
    hasHead = false;
    misbehaviour.reset();
    state = State::Reading;
}

void FaultConnection::Close()
{
    state = State::Closed;
    socket->disconnectFromHost();
}

void FaultConnection::Reset()
{
    state = State::Closed;
    const linger atOnce = {1, 0};
    setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
    socket->abort();
}

} // namespace Norlis::TestKit
