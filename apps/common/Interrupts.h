#pragma once

#include <QObject>

namespace Norlis::Apps {

/// Ctrl-C and the other polite requests to stop, brought into the event loop. The first one is reported; a second one
/// ends the program at once. One object at a time.
class Interrupts : public QObject {
    Q_OBJECT

public:
    /// Of a program that was ended by a second one, as shells have it.
    static constexpr int exitStatus = 130;

    /// Takes SIGINT, SIGTERM and SIGHUP, but for those that the program's starter wants ignored.
    Interrupts();

    /// Gives the signals back: they end the program again.
    ~Interrupts() override;

    /// Becomes readable when the program was asked to stop, for those that wait without an event loop.
    int Descriptor() const;

signals:
    /// From the event loop, once.
    void Interrupted();

private:
    int descriptors[2] = {-1, -1};
};

} // namespace Norlis::Apps
