#pragma once

#include <NorlisTestKit/Misbehaviour.h>

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <optional>

namespace Norlis::TestKit {

/// Deals with the requests of connections.
class RequestHandler {
public:
    virtual ~RequestHandler() = default;

    /// The head of a request has come. Returns what the other functions know it by.
    virtual std::size_t OnHead(const ServerRequest& request, int connection) = 0;
    virtual void OnBody(std::size_t entry, const ServerRequest& request, bool isComplete) = 0;

    /// What is to be done instead of the ordinary answer.
    virtual std::optional<Misbehaviour> Claim(const ServerRequest& request) = 0;

    virtual ServerResponse Do(std::size_t entry, const ServerRequest& request) = 0;
};

/// One connection of a FaultServer: reads requests, one after the other, and answers them, well or badly.
class FaultConnection : public QObject, private Wire {
public:
    FaultConnection(QTcpSocket* socket, int number, RequestHandler* handler, QObject* parent);

private:
    const ServerRequest& Request() const override;
    ServerResponse Do(const ServerRequest& request) override;
    void Send(const QByteArray& bytes) override;
    void SendSlowly(const QByteArray& bytes, int pieceSize, int pause) override;
    void SendWithoutEnd(std::function<QByteArray(int)> next) override;
    void Finish() override;
    void Close() override;
    void Reset() override;

    void Read();
    bool ReadOne();
    void OnHead();
    void AnswerWhenDue();
    void SendNextPiece();
    void FillUp();

    QTcpSocket* const socket; ///< a child
    const int number;
    RequestHandler* const handler;

    QByteArray received;
    RequestReader reader;
    std::size_t entry = 0;
    bool hasHead = false;
    std::optional<Misbehaviour> misbehaviour;

    /// A connection that a misbehaviour leaves open and silent stays in Waiting.
    enum class State { Reading, Waiting, Draining, Closed } state = State::Reading;

    QTimer pauses;
    QByteArray slowly;
    int pieceSize = 0;
    std::function<QByteArray(int)> endless;
    int piecesSent = 0;
};

} // namespace Norlis::TestKit
