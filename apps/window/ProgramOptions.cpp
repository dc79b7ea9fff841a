#include "ProgramOptions.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace Norlis::Window {

QString ProgramPurpose()
{
    return QCoreApplication::translate("main", "Shows and manages PDF documents in the cloud.");
}

QList<QCommandLineOption> ProgramOptions()
{
    return {
        {"data", QCoreApplication::translate("main", "Folder for settings, the list of documents and previews."),
         "folder", QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)},
        {"service",
         QCoreApplication::translate("main", "Folder or WebDAV server to sign in to (default: the last one)."), "url"},
    };
}

} // namespace Norlis::Window
