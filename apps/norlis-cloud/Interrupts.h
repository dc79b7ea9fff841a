#pragma once

#include <QObject>

namespace Norlis::Terminal {

/// Ctrl-C and the other polite requests to stop, brought into the event loop. The first one is reported; a second one
/// ends the program at once. One object at a time.
class Interrupts : public QObject {
    Q_OBJECT

public:
    Interrupts();
    ~Interrupts() override;

    /// Becomes readable when the program was asked to stop, for those that wait without an event loop.
    int Descriptor() const;

signals:
    void Interrupted();

private:
    int descriptors[2] = {-1, -1};
};

} // namespace Norlis::Terminal
