#pragma once

#include <QObject>

namespace Norlis::Apps {

/// Brings Ctrl-C and the other requests to stop into the event loop. The first one is reported; a second one ends the
/// program at once. One object at a time.
class Interrupts : public QObject {
    Q_OBJECT

public:
    /// Of a program that was ended by a second request; the value that shells use.
    static constexpr int exitStatus = 130;

    /// Handles SIGINT, SIGTERM and SIGHUP, except those that the parent process ignores.
    Interrupts();

    /// Restores the default: the signals end the program again.
    ~Interrupts() override;

    /// Becomes readable when the program was asked to stop, for code that waits without an event loop.
    int Descriptor() const;

signals:
    /// Emitted once, from the event loop.
    void Interrupted();

private:
    int descriptors[2] = {-1, -1};
};

} // namespace Norlis::Apps
