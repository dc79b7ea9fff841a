#include "ManualPage.h"

#include <apps/terminal/CommandCatalogue.h>
#include <apps/terminal/Help.h>
#include <apps/terminal/Options.h>
#include <apps/window/ProgramOptions.h>

namespace Norlis::Describe {

namespace {

/// As text, of which nothing is taken for a request or turned into another character.
QString Escaped(QString text)
{
    text.replace('\\', "\\e").replace('-', "\\-").replace('\'', "\\(aq").replace('~', "\\(ti");
    return text.startsWith('.') ? "\\&" + text : text;
}

QString Bold(const QString& text)
{
    return "\\fB" + Escaped(text) + "\\fR";
}

QString Italic(const QString& text)
{
    return "\\fI" + Escaped(text) + "\\fR";
}

QString Beginning(const QString& program, const Release& release, const QString& purpose)
{
    return QStringLiteral(".TH %1 1 %2 \"%3 %4\" \"User Commands\"\n.SH NAME\n%5 \\- %6\n")
        .arg(program.toUpper(), release.date.toString(Qt::ISODate), program, release.version, Escaped(program),
             Escaped(purpose));
}

QString OptionsText(const QList<QCommandLineOption>& options)
{
    QString text;
    for (const auto& option : options) {
        text += ".TP\n" + Bold("--" + option.names().constFirst());
        if (!option.valueName().isEmpty()) {
            text += ' ' + Italic(option.valueName());
        }
        text += '\n' + Escaped(option.description());
        if (!option.defaultValues().isEmpty()) {
            text += " Default: " + Escaped(option.defaultValues().constFirst()) + '.';
        }
        text += '\n';
    }
    return text;
}

QString ExamplesText(const QStringList& examples)
{
    QString text = ".PP\n.EX\n";
    for (const QString& example : examples) {
        text += Escaped(example) + '\n';
    }
    return text + ".EE\n";
}

QString CommandText(const Terminal::CommandEntry& command)
{
    QString text = ".SS " + Escaped(command.name) + ' ' + Escaped(command.operands) + '\n';
    text += Escaped(command.summary) + ".\n";
    if (!command.details.isEmpty()) {
        text += ".PP\n" + Escaped(command.details) + '\n';
    }
    return text + OptionsText(Terminal::SpecialOptionsOf(command)) + ExamplesText(command.examples);
}

QString EnvironmentText()
{
    return ".SH ENVIRONMENT\n.TP\n" + Bold("http_proxy") + ", " + Bold("https_proxy") + ", " + Bold("no_proxy") +
           "\nProxies that lead to a server, and the servers that none leads to, as for " + Bold("curl") +
           "(1).\n.TP\n" + Bold("XDG_DATA_HOME") +
           "\nWhere the folder for credentials, lists and previews is, in the place of " + Escaped("~/.local/share") +
           ".\n";
}

} // namespace

QString TerminalManual(const Release& release)
{
    QString text = Beginning("norlis-cloud", release, "keep PDF documents in the cloud");
    text += ".SH SYNOPSIS\n" + Bold("norlis-cloud") + ' ' + Italic("COMMAND") + " [" + Italic("OPTION") + "]... [" +
            Italic("OPERAND") + "]...\n";
    text += ".SH DESCRIPTION\n" + Escaped(Terminal::PurposeText()) + "\n.PP\n" + Escaped(Terminal::ConventionsText()) +
            "\n.SH COMMANDS\n";
    for (const auto& command : Terminal::CommandCatalogue()) {
        text += CommandText(command);
    }
    text += ".SH OPTIONS\nEvery command has these:\n";
    text += OptionsText(Terminal::CommonOptions());
    text += ".PP\nWithout a command:\n" + OptionsText({Terminal::VersionOption()});
    return text + EnvironmentText() + ".SH SEE ALSO\n" + Bold("norlis-documents") + "(1)\n";
}

QString WindowManual(const Release& release)
{
    QString text = Beginning("norlis-documents", release, "PDF documents in the cloud, in a window");
    text += ".SH SYNOPSIS\n" + Bold("norlis-documents") + " [" + Italic("OPTION") + "]... [" + Italic("FILE") +
            "]...\n.SH DESCRIPTION\n" + Escaped(Window::ProgramPurpose()) +
            "\nIt asks whether to upload each given file. One window shows a data folder: a second start hands its "
            "files over to the first.\n.SH OPTIONS\n";
    text += OptionsText(Window::ProgramOptions());
    text += OptionsText({{"help", "Show help."}, {"version", "Show the version."}});
    return text + EnvironmentText() + ".SH SEE ALSO\n" + Bold("norlis-cloud") + "(1)\n";
}

} // namespace Norlis::Describe
