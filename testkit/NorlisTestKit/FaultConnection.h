#pragma once

#include <NorlisTestKit/Misbehaviour.h>

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <optional>

namespace Norlis::TestKit {

/// What a connection asks its server.
class FaultDesk {
public:
    virtual ~FaultDesk() = default;

    /// The head of a request has come. Returns what the other functions know it by.
    virtual std::size_t Arrives(const ServerRequest& request, int connection) = 0;
    virtual void BodyArrives(std::size_t entry, const ServerRequest& request, bool isComplete) = 0;

    /// What is to be done instead of answering well.
    virtual std::optional<Misbehaviour> Claim(const ServerRequest& request) = 0;

    virtual ServerAnswer Do(std::size_t entry, const ServerRequest& request) = 0;
};

/// One connection of a FaultServer: reads requests, one after the other, and has them answered, well or not.
class FaultConnection : public QObject, private Wire {
public:
    FaultConnection(QTcpSocket* socket, int number, FaultDesk* desk, QObject* parent);

private:
    const ServerRequest& Request() const override;
    ServerAnswer Do(const ServerRequest& request) override;
    void Send(const QByteArray& bytes) override;
    void SendSlowly(const QByteArray& bytes, int pieceSize, int pause) override;
    void SendWithoutEnd(std::function<QByteArray(int)> next) override;
    void Finish() override;
    void Close() override;
    void Reset() override;

    void Read();
    bool ReadOne();
    void HeadIsThere();
    void AnswerIfItIsTime();
    void AnswerWell();
    void SendNextPiece();
    void FillUp();

    QTcpSocket* const socket; ///< a child
    const int number;
    FaultDesk* const desk;

    QByteArray received;
    RequestReader reader;
    std::size_t entry = 0;
    bool isHeadThere = false;
    std::optional<Misbehaviour> misbehaviour;

    /// Waiting is what a connection hangs in when a misbehaviour leaves it so.
    enum class State { Reading, Waiting, Draining, Closed } state = State::Reading;

    QTimer pauses;
    QByteArray slowly;
    int pieceSize = 0;
    std::function<QByteArray(int)> endless;
    int piecesSent = 0;
};

} // namespace Norlis::TestKit
