#pragma once

#include <QObject>

#include <functional>

namespace Norlis::Host {

/// Calls an action from the event loop of the receiver's thread, in the order of these calls; not at all once the
/// receiver is gone.
inline void Later(QObject* receiver, std::function<void()> action)
{
    QMetaObject::invokeMethod(receiver, std::move(action), Qt::QueuedConnection);
}

} // namespace Norlis::Host
