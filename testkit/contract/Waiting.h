#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace Norlis::TestKit {

/// Runs the event loop until a condition holds. False when it does not within the limit, in milliseconds, which is
/// long: it only ends a test that fails.
template <typename Condition>
bool WaitUntil(Condition condition, int limit = 60'000)
{
    const QDeadlineTimer deadline(limit);
    QTimer tick; // for conditions that come true without an event
    tick.start(2);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// As WaitUntil, but without the event loop: nothing that is delivered through it arrives meanwhile.
template <typename Condition>
bool BlockUntil(Condition condition, int limit = 60'000)
{
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::yieldCurrentThread();
    }
    return true;
}

} // namespace Norlis::TestKit
