// describe FOLDER: writes manual pages and completions of the programs for the shells, from their tables of commands
// and options.

#include "Completion.h"
#include "ManualPage.h"

#include <contracts/Version.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <cstdio>

namespace {

bool Write(const QString& path, const QString& text)
{
    QFile file(path);
    const bool isWritten =
        file.open(QFile::WriteOnly) && file.write(text.toUtf8()) == text.toUtf8().size() && file.flush();
    if (!isWritten) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    }
    return isWritten;
}

} // namespace

int main(int argc, char** argv)
{
    using namespace Norlis::Describe;
    qputenv("HOME", "~"); // in what is said of the user's folders
    qunsetenv("XDG_DATA_HOME");
    const QCoreApplication application(argc, argv);
    const QString folder = QCoreApplication::arguments().value(1, ".") + '/';
    QCoreApplication::setApplicationName("norlis-documents");
    const Release release = {NORLIS_CLOUD_VERSION_STR, QDateTime::fromString(NORLIS_RELEASED, Qt::RFC2822Date).date()};
    const QString window = WindowManual(release);
    QCoreApplication::setApplicationName("norlis-cloud"); // as it is in the names of its folders
    const bool isWritten =
        Write(folder + "norlis-documents.1", window) && Write(folder + "norlis-cloud.1", TerminalManual(release)) &&
        Write(folder + "norlis-cloud.bash", BashCompletion()) && Write(folder + "norlis-cloud.zsh", ZshCompletion()) &&
        Write(folder + "norlis-cloud.fish", FishCompletion());
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
