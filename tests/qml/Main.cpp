#include <base/PreparedProcess.h>
#include <tests/support/RunTests.h>

#include <QGuiApplication>

#include <csignal>

#include <sys/prctl.h>

// See the one of the other test programs. The connection that Qt makes to the message bus lives as long as the process
// too, and so do the textures of pictures whose window is destroyed before its next frame.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libdbus\nleak:libQt*Quick\n";
}

namespace {

/// Ends with the tests, however they end.
class DisplayServer : public Norlis::PreparedProcess {
public:
    DisplayServer() : PreparedProcess([] { prctl(PR_SET_PDEATHSIG, SIGTERM); }) {}
};

/// A display of the tests' own, which nobody sees: the offscreen platform shows nothing of Qt Quick.
class HiddenDisplay {
public:
    HiddenDisplay()
    {
        server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // It chooses a free number and tells it on its standard output when it takes connections.
        server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp", "-noreset"});
        QByteArray number;
        while (!number.endsWith('\n')) {
            if (!server.waitForReadyRead()) {
                qFatal("There is no display: %s. This command installs Xvfb: tools/install-packages test",
                       qPrintable(server.errorString()));
            }
            number += server.readAllStandardOutput();
        }
        qputenv("DISPLAY", ':' + number.trimmed());
    }

    ~HiddenDisplay()
    {
        server.terminate();
        server.waitForFinished();
    }

    HiddenDisplay(const HiddenDisplay&) = delete;
    HiddenDisplay& operator=(const HiddenDisplay&) = delete;

private:
    DisplayServer server;
};

} // namespace

int main(int argc, char** argv)
{
    const HiddenDisplay display;
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    return Norlis::Test::RunTests<QGuiApplication>(argc, argv, "xcb");
}
