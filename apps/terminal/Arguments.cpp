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

constexpr int longestInterval = 24 * 60 * 60; // seconds

/// Options that every command has.
QList<QCommandLineOption> CommonOptions()
{
    return {
        {"service",
         "Cloud service: a folder, as a path or a file: address, or a WebDAV server, as https://user@host/path/. "
         "Without it the one that you signed in to last.",
         "URL"},
        {"data",
         "Where sign-in, lists and pictures are kept. Without it " +
             QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + ".",
         "DIR"},
        {"json", "Show results as JSON, one document or one object per line."},
        {"help", "Show this help."},
    };
}

QList<QCommandLineOption> SpecialOptions()
{
    return {
        {"user", "Who signs in to the server, if the address does not say it.", "NAME"},
        {"token-file", "File with the password or token that signs in.", "FILE"},
        {"ca-file", "PEM file with the certificate authorities to trust, in place of those of the system.", "FILE"},
        {"allow-plain-http",
         "Use an http: address of another machine, although everyone on the way can read and alter the password and "
         "the documents."},
        {"offline", "Do not ask the cloud."},
        {"new", "Make a new document, even if the file is known."},
        {"to", "Folder for the documents. Without it the current one.", "DIR"},
        {"interval", "Time between two looks. Without it 30.", "SECONDS"},
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
    if (!isNumber || seconds < 1 || seconds > longestInterval) {
        throw std::invalid_argument(
            QStringLiteral("--interval takes whole seconds from 1 to %1").arg(longestInterval).toStdString());
    }
    return seconds;
}

void CheckOperands(const CommandEntry& command, const QStringList& operands)
{
    const QString name = command.name;
    if (command.operands.isEmpty() && !operands.isEmpty()) {
        throw std::invalid_argument(
            QStringLiteral("%1 does not know what to do with \"%2\"").arg(name, operands.constFirst()).toStdString());
    }
    if (!command.operands.isEmpty() && operands.isEmpty()) {
        throw std::invalid_argument(QStringLiteral("%1 needs %2").arg(name, command.operands).toStdString());
    }
    if (operands.contains(QString())) {
        throw std::invalid_argument(QStringLiteral("%1 was given an empty name").arg(name).toStdString());
    }
}

/// Throws std::invalid_argument when an option has a value that makes no sense.
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
    return arguments;
}

CommandLine Misunderstood(const QString& what, const QString& command = {})
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
        return Misunderstood(reason, command ? name : QString());
    }
    if (parser.isSet(VersionOption())) {
        return {{}, QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion() + '\n', {}};
    }
    if (name.isEmpty() && (parser.isSet("help") || parser.optionNames().isEmpty())) {
        return {{}, OverviewText(CommonOptions() << VersionOption()), {}};
    }
    if (!command) {
        return Misunderstood(name.isEmpty() ? "There is no command" : "There is no command \"" + name + '"');
    }
    if (parser.isSet("help")) {
        return {{}, CommandText(*command, OptionsOf(*command)), {}};
    }
    const auto special = SpecialOptions();
    for (const auto& option : special) {
        if (parser.isSet(option) && !command->options.contains(NameOf(option))) {
            return Misunderstood(name + " has no option --" + NameOf(option), name);
        }
    }
    if (name == "login" && !parser.isSet("service")) {
        return Misunderstood("login needs --service", name);
    }
    try {
        return {ReadArguments(*command, parser, operands), {}, {}};
    } catch (const std::invalid_argument& problem) {
        return Misunderstood(QString::fromUtf8(problem.what()), name);
    }
}

} // namespace Norlis::Terminal
