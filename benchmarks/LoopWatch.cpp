// To be preloaded into a program of ours: writes the longest time, in milliseconds, for which its event loop was busy
// with one thing, so that input would have waited, into the file that LOOP_WATCH names.
//
// Counted from the first turn of the loop on. What happens there because of the library's indivisible calls counts too;
// ManagerBenchmark and StorageBenchmark measure these on their own.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace {

void WatchLoop()
{
    const auto timer = new QTimer(QCoreApplication::instance());
    const auto since = std::make_shared<QElapsedTimer>();
    const auto longest = std::make_shared<qint64>(0);
    QObject::connect(timer, &QTimer::timeout, timer, [since, longest] {
        if (since->isValid()) {
            *longest = std::max(*longest, since->nsecsElapsed());
        }
        since->start();
    });
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, timer, [since, longest] {
        QFile file(qEnvironmentVariable("LOOP_WATCH"));
        if (file.open(QIODevice::WriteOnly)) {
            const qint64 last = since->isValid() ? since->nsecsElapsed() : 0;
            file.write(QByteArray::number(static_cast<double>(std::max(*longest, last)) / 1e6, 'f', 1));
        }
    });
    timer->setTimerType(Qt::PreciseTimer);
    timer->start(1);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(WatchLoop)
