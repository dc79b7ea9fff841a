#include "Arguments.h"

#include "Help.h"
#include "Options.h"

#include <host/account/ServiceAddress.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

#include <stdexcept>

namespace Norlis::Terminal {

namespace {

constexpr int maxInterval = 24 * 60 * 60; // seconds

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

OnConflict ConflictChoice(const QString& text)
{
    const int index = ConflictChoices().indexOf(text);
    if (index < 0) {
        throw std::invalid_argument("--on-conflict must be one of " + ConflictChoices().join(", ").toStdString());
    }
    return static_cast<OnConflict>(index);
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
    arguments.namesOnly = parser.isSet("names");
    if (arguments.namesOnly && arguments.json) {
        throw std::invalid_argument("--names and --json cannot be combined");
    }
    arguments.asNew = parser.isSet("new");
    arguments.force = parser.isSet("force");
    if (parser.isSet("on-conflict")) {
        arguments.onConflict = ConflictChoice(parser.value("on-conflict"));
    }
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
