#pragma once

#include <base/PreparedProcess.h>

#include <csignal>

#include <sys/prctl.h>

namespace Norlis::Test {

/// A message bus of the tests' own, where there are no desktop services but those of the tests. Ends with the tests,
/// however they end.
class DesktopBus {
public:
    DesktopBus() : daemon([] { prctl(PR_SET_PDEATHSIG, SIGTERM); })
    {
        daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        daemon.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        QByteArray address;
        while (!address.endsWith('\n')) {
            if (!daemon.waitForReadyRead()) {
                qFatal("There is no message bus: %s. This command installs it: tools/install-packages test",
                       qPrintable(daemon.errorString()));
            }
            address += daemon.readAllStandardOutput();
        }
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.trimmed());
    }

    ~DesktopBus()
    {
        daemon.terminate();
        daemon.waitForFinished();
    }

    DesktopBus(const DesktopBus&) = delete;
    DesktopBus& operator=(const DesktopBus&) = delete;

private:
    PreparedProcess daemon;
};

} // namespace Norlis::Test
