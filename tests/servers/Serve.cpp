// Starts a WebDAV server for use by hand and by benchmarks, and prints its address and password.

#include "WebDavServer.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cctype>
#include <csignal>
#include <exception>

namespace {

using namespace Norlis::Test;

constexpr const char* usage = R"(Usage: serve KIND [FOLDER]

Starts a WebDAV server on 127.0.0.1 and prints its address and the password of
its user. It runs until it is interrupted.

  KIND     apache, nginx, lighttpd, rclone or sabre; with what
           "tools/install-packages servers" installs and the target more-servers
           builds also tomcat, nephele, npmwebdav, apachedigest, go or chezdav
  FOLDER   What to serve; a new one, which is removed at the end, if none is
           named. Started by root, Apache acts as the user "nobody", who owns
           the folder from then on.

Example:
  serve apache /tmp/documents
)";

const ServerKind* Find(const QString& name)
{
    for (const ServerKind& kind : AllServerKinds()) {
        if (name.compare(QString::fromStdString(NameOf(kind)), Qt::CaseInsensitive) == 0) {
            return &kind;
        }
    }
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const ServerKind* kind = arguments.isEmpty() ? nullptr : Find(arguments[0]);
    if (kind == nullptr || arguments.size() > 2) {
        const bool isAsked = arguments == QStringList("--help");
        QTextStream(isAsked ? stdout : stderr) << usage;
        return isAsked ? 0 : 2;
    }

    // Waited for below instead of ending the program before it has ended the server.
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    sigaddset(&ends, SIGHUP);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    try {
        const WebDavServer server(*kind, arguments.value(1));
        QTextStream(stdout) << server.Address().toString(QUrl::FullyEncoded) << '\n' << server.Password() << '\n';
        int signal = 0;
        sigwait(&ends, &signal);
    } catch (const std::exception& error) {
        QTextStream(stderr) << "serve: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
