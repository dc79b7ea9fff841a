#pragma once

#include <QMetaMethod>
#include <QObject>

#include <functional>

namespace Norlis::Test {

/// A slot that fits every signal: connect it by the signal's meta-method and let it do what the test wants.
class SlotRunner : public QObject {
    Q_OBJECT

public:
    explicit SlotRunner(std::function<void()> action) : action(std::move(action)) {}

    /// Runs the action whenever the object emits the signal.
    bool ConnectTo(const QObject& sender, const QMetaMethod& signal)
    {
        return bool(connect(&sender, signal, this, metaObject()->method(metaObject()->indexOfSlot("Run()"))));
    }

    int runs = 0;

public slots:
    void Run()
    {
        ++runs;
        action();
    }

private:
    std::function<void()> action;
};

} // namespace Norlis::Test
