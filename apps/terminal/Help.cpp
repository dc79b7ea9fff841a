#include "Help.h"

#include "Text.h"

namespace Norlis::Terminal {

namespace {

constexpr int textColumns = 80;

/// Breaks a text into lines.
QString Wrapped(const QString& text, int indent = 0)
{
    QString wrapped;
    QString line;
    const QStringList words = text.split(' ');
    for (const QString& word : words) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > textColumns - indent) {
            wrapped += line + '\n' + QString(indent, ' ');
            line.clear();
        }
        line += line.isEmpty() ? word : ' ' + word;
    }
    return wrapped + line;
}

QString OptionsText(const QList<QCommandLineOption>& options)
{
    QString text = "\nOptions:\n";
    for (const auto& option : options) {
        const QString value = option.valueName().isEmpty() ? QString() : ' ' + option.valueName();
        constexpr int leftColumns = 22;
        text += PadRight("  --" + option.names().constFirst() + value, leftColumns) +
                Wrapped(option.description(), leftColumns) + '\n';
    }
    return text;
}

QString ExamplesText(const QStringList& examples)
{
    return (examples.size() == 1 ? "\nExample:\n  " : "\nExamples:\n  ") + examples.join("\n  ") + '\n';
}

} // namespace

QString PurposeText()
{
    return "Keeps PDF documents in the cloud: in a folder, for instance on a network drive, or on a WebDAV server.";
}

QString ConventionsText()
{
    return "DOCUMENT is an id or a name from the list. Results go to standard output and errors to standard error, one "
           "per line, even with --json. The exit status is 0 on success, 1 if something failed, 2 after a usage error, "
           "and 130 after Ctrl-C.";
}

QString OverviewText(const QList<QCommandLineOption>& options)
{
    QString text = Wrapped(PurposeText()) + "\n\nUsage: norlis-cloud COMMAND [OPTION]...\n\nCommands:\n";
    for (const auto& command : CommandCatalogue()) {
        text += "  " + PadRight(command.name + ' ' + command.operands, 22) + command.summary + '\n';
    }
    text += OptionsText(options);
    text += '\n' + Wrapped(ConventionsText()) + '\n';
    text += ExamplesText({"norlis-cloud login --service ~/Cloud", "norlis-cloud upload report.pdf"});
    return text + "\nMore about a command: norlis-cloud COMMAND --help\n";
}

QString CommandText(const CommandEntry& command, const QList<QCommandLineOption>& options)
{
    const QString operands = command.operands.isEmpty() ? QString() : ' ' + command.operands;
    QString text = command.summary + ".\n\nUsage: norlis-cloud " + command.name + " [OPTION]..." + operands + '\n';
    if (!command.details.isEmpty()) {
        text += '\n' + Wrapped(command.details) + '\n';
    }
    return text + OptionsText(options) + ExamplesText(command.examples);
}

} // namespace Norlis::Terminal
