#include "Arguments.h"

#include "Help.h"

#include <host/account/ServiceAddress.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

#include <stdexcept>

namespace Norlis::Terminal {

namespace {

constexpr int maxInterval = 24 * 60 * 60; // seconds

/// Options that all commands have.
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
        {"new", "Create a new document even if the file is the local copy of one."},
        {"force", "Remove documents even if they have changed since the list was last shown."},
        {"to", "Folder to save the documents in (default: the current one).", "DIR"},
        {"interval", "Polling interval in seconds (default: 30).", "SECONDS"},
    };
}

const QCommandLineOption& VersionOption()
{
    static const QCommandLineOption option("version", "Show the version.");
    return option;
}

QString NameOf(const QCommandLineOption& option)
{
    return option.names().constFirst();
}

QList<QCommandLineOption> OptionsOf(const CommandEntry& command)
{
    QList<QCommandLineOption> options;
    const auto special = SpecialOptions();
    for (const auto& option : special) {
        if (command.options.contains(NameOf(option))) {
            options << option;
        }
    }
    return options + CommonOptions();
}

int Interval(const QString& text)
{
    bool isNumber = false;
    const int seconds = text.toInt(&isNumber);
    if (!isNumber || seconds < 1 || seconds > maxInterval) {
        throw std::invalid_argument(
            QStringLiteral("--interval must be a whole number of seconds from 1 to %1").arg(maxInterval).toStdString());
    }
    return seconds;
}

void CheckOperands(const CommandEntry& command, const QStringList& operands)
{
    const QString name = command.name;
    if (command.operands.isEmpty() && !operands.isEmpty()) {
        throw std::invalid_argument(QStringLiteral("%1 takes no operands, but was given \"%2\"")
                                        .arg(name, operands.constFirst())
                                        .toStdString());
    }
    if (!command.operands.isEmpty() && operands.isEmpty()) {
        throw std::invalid_argument(QStringLiteral("%1 needs %2").arg(name, command.operands).toStdString());
    }
    if (operands.contains(QString())) {
        throw std::invalid_argument(QStringLiteral("%1 was given an empty name").arg(name).toStdString());
    }
}

/// Throws std::invalid_argument if an operand or the value of an option is invalid.
Arguments ReadArguments(const CommandEntry& command, const QCommandLineParser& parser, const QStringList& operands)
{
    CheckOperands(command, operands);
    const auto all = CommonOptions() + SpecialOptions();
    for (const auto& option : all) {
        if (!option.valueName().isEmpty() && parser.isSet(option) && parser.value(option).isEmpty()) {
            throw std::invalid_argument("--" + NameOf(option).toStdString() + " needs a value");
        }
    }
    Arguments arguments;
    arguments.command = command.name;
    arguments.operands = operands;
    if (parser.isSet("service")) {
        arguments.service = Host::ServiceAddress(parser.value("service"), parser.value("user"));
    }
    arguments.dataFolder = QDir().absoluteFilePath(
        parser.isSet("data") ? parser.value("data")
                             : QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    arguments.targetFolder = QDir::cleanPath(QDir().absoluteFilePath(parser.value("to")));
    arguments.tokenFile = parser.value("token-file");
    if (parser.isSet("ca-file")) {
        arguments.certificateFile = QDir().absoluteFilePath(parser.value("ca-file"));
    }
    arguments.allowPlainHttp = parser.isSet("allow-plain-http");
    if (parser.isSet("interval")) {
        arguments.interval = Interval(parser.value("interval"));
    }
    arguments.json = parser.isSet("json");
    arguments.offline = parser.isSet("offline");
    arguments.asNew = parser.isSet("new");
    arguments.force = parser.isSet("force");
    return arguments;
}

CommandLine UsageError(const QString& what, const QString& command = {})
{
    const QString help = command.isEmpty() ? "norlis-cloud --help" : "norlis-cloud " + command + " --help";
    return {{}, {}, what + ". Try: " + help};
}

} // namespace

CommandLine ParseCommandLine(const QStringList& words)
{
    QCommandLineParser parser;
    parser.addOptions(CommonOptions() + SpecialOptions());
    parser.addOption(VersionOption());
    const bool isParsed = parser.parse(words);

    QStringList operands = parser.positionalArguments();
    const QString name = operands.isEmpty() ? QString() : operands.takeFirst();
    const auto command = FindCommand(name);
    if (!isParsed) {
        QString reason = parser.errorText();
        while (reason.endsWith('.')) {
            reason.chop(1);
        }
        return UsageError(reason, command ? name : QString());
    }
    if (parser.isSet(VersionOption())) {
        return {{}, QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion() + '\n', {}};
    }
    if (name.isEmpty() && (parser.isSet("help") || parser.optionNames().isEmpty())) {
        return {{}, OverviewText(CommonOptions() << VersionOption()), {}};
    }
    if (!command) {
        return UsageError(name.isEmpty() ? "No command was given" : "There is no command \"" + name + '"');
    }
    if (parser.isSet("help")) {
        return {{}, CommandText(*command, OptionsOf(*command)), {}};
    }
    const auto special = SpecialOptions();
    for (const auto& option : special) {
        if (parser.isSet(option) && !command->options.contains(NameOf(option))) {
            return UsageError(name + " has no option --" + NameOf(option), name);
        }
    }
    if (name == "login" && !parser.isSet("service")) {
        return UsageError("login needs --service", name);
    }
    try {
        return {ReadArguments(*command, parser, operands), {}, {}};
    } catch (const std::invalid_argument& problem) {
        return UsageError(QString::fromUtf8(problem.what()), name);
    }
}

} // namespace Norlis::Terminal
