#include "Options.h"

#include <QStandardPaths>

namespace Norlis::Terminal {

QList<QCommandLineOption> CommonOptions()
{
    return {
        {"service",
         "Cloud service: a folder, as a path or a file: URL, or a WebDAV server, as https://user@host/path/ (default: "
         "the one that you last signed in to).",
         "URL"},
        {"data",
         "Folder for credentials, lists and previews (default: " +
             QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + ").",
         "DIR"},
        {"json", "Print results as JSON, one document or object per line."},
        {"help", "Show this help."},
    };
}

QList<QCommandLineOption> SpecialOptions()
{
    return {
        {"user", "User name on the server, if the address contains none.", "NAME"},
        {"token-file", "File that contains the password or token.", "FILE"},
        {"ca-file", "PEM file with the certificate authorities to trust instead of the system's.", "FILE"},
        {"allow-plain-http",
         "Allow an unencrypted http: connection to another machine. Anyone on the network path can then read and "
         "change the password and the documents."},
        {"offline", "Do not contact the cloud."},
        {"names", "Print names only, one per line."},
        {"new", "Create a new document even if the file is the local copy of one."},
        {"on-conflict",
         "What to do when both sides were changed, or a name is taken: ask, both, mine, theirs or fail (default: ask "
         "on a terminal).",
         "CHOICE"},
        {"force", "Remove documents even if they have changed since the list was last shown."},
        {"to", "Folder to save the documents in (default: the current one).", "DIR"},
        {"interval", "Polling interval in seconds (default: 30).", "SECONDS"},
    };
}

QCommandLineOption VersionOption()
{
    return QCommandLineOption("version", "Show the version.");
}

QString NameOf(const QCommandLineOption& option)
{
    return option.names().constFirst();
}

QList<QCommandLineOption> SpecialOptionsOf(const CommandEntry& command)
{
    QList<QCommandLineOption> options;
    const auto special = SpecialOptions();
    for (const auto& option : special) {
        if (command.options.contains(NameOf(option))) {
            options << option;
        }
    }
    return options;
}

QList<QCommandLineOption> OptionsOf(const CommandEntry& command)
{
    return SpecialOptionsOf(command) + CommonOptions();
}

QStringList ConflictChoices()
{
    return {"ask", "both", "mine", "theirs", "fail"};
}

} // namespace Norlis::Terminal
