#include "Completion.h"

#include <apps/terminal/CommandCatalogue.h>
#include <apps/terminal/Options.h>

#include <QRegularExpression>

#include <optional>

namespace Norlis::Describe {

namespace {

using Terminal::CommandCatalogue;
using Terminal::CommandEntry;
using Terminal::NameOf;

/// What can be completed.
enum class Kind { Nothing, File, Folder, Choice, Document };

Kind KindOf(const QCommandLineOption& option)
{
    const QString value = option.valueName();
    return value == "FILE"                    ? Kind::File
           : value == "DIR" || value == "URL" ? Kind::Folder // of URLs, those are what can be completed
           : value == "CHOICE"                ? Kind::Choice
                                              : Kind::Nothing;
}

Kind KindOfOperands(const CommandEntry& command)
{
    return command.operands.startsWith("FILE")       ? Kind::File
           : command.operands.startsWith("DOCUMENT") ? Kind::Document
                                                     : Kind::Nothing;
}

QList<QCommandLineOption> AllOptions()
{
    return Terminal::CommonOptions() + Terminal::SpecialOptions();
}

/// Those options with a value of that kind, as "--first|--second"; of any kind without one.
QString Alternatives(std::optional<Kind> kind = {})
{
    QStringList names;
    const auto options = AllOptions();
    for (const auto& option : options) {
        if (!option.valueName().isEmpty() && (!kind || KindOf(option) == *kind)) {
            names.append("--" + NameOf(option));
        }
    }
    return names.join('|');
}

QString Words(const QList<QCommandLineOption>& options)
{
    QStringList names;
    for (const auto& option : options) {
        names.append("--" + NameOf(option));
    }
    return names.join(' ');
}

/// For a string in single quotes, of bash and zsh.
QString Quoted(QString text)
{
    return '\'' + text.replace('\'', "'\\''") + '\'';
}

/// The first sentence, without the full stop: the shells show a line.
QString Brief(const QString& text)
{
    static const QRegularExpression end("[.:] |\\.$| \\(");
    return text.section(end, 0, 0);
}

/// For a list of alternatives in a case of a shell, by what their operands are.
QString CommandsWithOperands(Kind kind)
{
    QStringList names;
    for (const auto& command : CommandCatalogue()) {
        if (KindOfOperands(command) == kind) {
            names.append(command.name);
        }
    }
    return names.join('|');
}

const char* const bashTemplate = R"sh(# Completion of norlis-cloud for bash.

# Names of documents, from the list that was fetched last.
_norlis_cloud_documents()
{
    local typed=$1 name
    shift
    typed=${typed//\\/}
    typed=${typed#[\"\']}
    while IFS= read -r name; do
        [[ $name == "$typed"* ]] && COMPREPLY+=("$name")
    done < <(norlis-cloud list --offline --names "$@" 2>/dev/null)
}

_norlis_cloud()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' word index options
    local -a place=()
    COMPREPLY=()
    # --option=value comes as three words.
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((index = 1; index < COMP_CWORD; index++)); do
        word=${COMP_WORDS[index]}
        case $word in
        --data | --service)
            [[ ${COMP_WORDS[index + 1]} == = ]] && ((index++))
            ((index++ < COMP_CWORD)) && place+=("$word" "${COMP_WORDS[index]/#\~/$HOME}")
            ;;
        @VALUED@)
            [[ ${COMP_WORDS[index + 1]} == = ]] && ((index++))
            ((index++))
            ;;
        -*) ;;
        *) [[ $command ]] || command=$word ;;
        esac
    done
    case $previous in
    @FILE@)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    @FOLDER@)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
        ;;
    @CHOICE@)
        mapfile -t COMPREPLY < <(compgen -W '@CHOICES@' -- "$current")
        return
        ;;
    @NOTHING@)
        return
        ;;
    esac
    case $command in
@OPTIONS@    *) options='@OVERVIEW@' ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    case $command in
    '') mapfile -t COMPREPLY < <(compgen -W '@COMMANDS@' -- "$current") ;;
    @FILES@)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        ;;
    @DOCUMENTS@)
        compopt -o filenames # which has the blanks in names escaped
        _norlis_cloud_documents "$current" "${place[@]}"
        ;;
    esac
}

complete -F _norlis_cloud norlis-cloud
)sh";

const char* const zshTemplate = R"sh(#compdef norlis-cloud
# Completion of norlis-cloud for zsh.

# Names of documents, from the list that was fetched last.
_norlis_cloud_documents()
{
    local -a place names
    local option
    for option in --data --service; do
        (( ${+opt_args[$option]} )) && place+=($option ${(Q)opt_args[$option]})
    done
    names=(${(f)"$(norlis-cloud list --offline --names $place 2>/dev/null)"})
    compadd -a names
}

_norlis_cloud()
{
    local curcontext=$curcontext state line
    local -a commands
    local -A opt_args
    commands=(
@COMMANDS@    )
    _arguments -C '1:command:->command' '*::operand:->operand' && return
    case $state in
    command)
        if [[ $PREFIX == -* ]]; then
            _arguments @OVERVIEW@
        else
            _describe command commands
        fi
        ;;
    operand)
        case $line[1] in
@CASES@        esac
        ;;
    esac
}

_norlis_cloud "$@"
)sh";

QString ZshAction(Kind kind)
{
    switch (kind) {
    case Kind::File:
        return "_files";
    case Kind::Folder:
        return "_files -/";
    case Kind::Choice:
        return '(' + Terminal::ConflictChoices().join(' ') + ')';
    case Kind::Document:
        return "_norlis_cloud_documents";
    case Kind::Nothing:
        break;
    }
    return {};
}

/// For _arguments.
QString ZshSpecification(const QCommandLineOption& option)
{
    const QString text = "--" + NameOf(option) + '[' + Brief(option.description()) + ']';
    return Quoted(option.valueName().isEmpty() ? text
                                               : text + ':' + option.valueName() + ':' + ZshAction(KindOf(option)));
}

QString ZshSpecifications(const QList<QCommandLineOption>& options)
{
    QStringList all;
    for (const auto& option : options) {
        all.append(ZshSpecification(option));
    }
    return all.join(' ');
}

QString FishOption(const QCommandLineOption& option, const QString& condition)
{
    QString line = "complete -c norlis-cloud" + condition + " -l " + NameOf(option);
    if (!option.valueName().isEmpty()) {
        line += " -r";
        switch (KindOf(option)) {
        case Kind::File:
            line += " -F";
            break;
        case Kind::Folder:
            line += " -a '(__fish_complete_directories)'";
            break;
        case Kind::Choice:
            line += " -a '" + Terminal::ConflictChoices().join(' ') + '\'';
            break;
        default:
            break;
        }
    }
    return line + " -d '" + Brief(option.description()).replace('\'', "\\'") + "'\n";
}

} // namespace

QString BashCompletion()
{
    QString options;
    QStringList commands;
    for (const auto& command : CommandCatalogue()) {
        commands.append(command.name);
        options += "    " + command.name + ") options='" + Words(Terminal::OptionsOf(command)) + "' ;;\n";
    }
    return QString(bashTemplate)
        .replace("@VALUED@", Alternatives())
        .replace("@FILE@", Alternatives(Kind::File))
        .replace("@FOLDER@", Alternatives(Kind::Folder))
        .replace("@CHOICE@", Alternatives(Kind::Choice))
        .replace("@NOTHING@", Alternatives(Kind::Nothing))
        .replace("@CHOICES@", Terminal::ConflictChoices().join(' '))
        .replace("@OPTIONS@", options)
        .replace("@OVERVIEW@", Words({{"help", {}}, Terminal::VersionOption()}))
        .replace("@COMMANDS@", commands.join(' '))
        .replace("@FILES@", CommandsWithOperands(Kind::File))
        .replace("@DOCUMENTS@", CommandsWithOperands(Kind::Document));
}

QString ZshCompletion()
{
    QString commands;
    QString cases;
    for (const auto& command : CommandCatalogue()) {
        commands += "        " + Quoted(command.name + ':' + command.summary) + '\n';
        const Kind operands = KindOfOperands(command);
        cases += "        " + command.name + ") _arguments " + ZshSpecifications(Terminal::OptionsOf(command)) +
                 (operands == Kind::Nothing ? QString() : " '*:operand:" + ZshAction(operands) + '\'') + " ;;\n";
    }
    return QString(zshTemplate)
        .replace("@COMMANDS@", commands)
        .replace("@OVERVIEW@", ZshSpecifications({{"help", "Show this help."}, Terminal::VersionOption()}))
        .replace("@CASES@", cases);
}

QString FishCompletion()
{
    QString text = "# Completion of norlis-cloud for fish.\ncomplete -c norlis-cloud -f\n"
                   "complete -c norlis-cloud -n __fish_use_subcommand -l version -d 'Show the version'\n"
                   "complete -c norlis-cloud -n __fish_use_subcommand -l help -d 'Show this help'\n";
    for (const auto& command : CommandCatalogue()) {
        text +=
            "complete -c norlis-cloud -n __fish_use_subcommand -a " + command.name + " -d '" + command.summary + "'\n";
        const QString condition = " -n '__fish_seen_subcommand_from " + command.name + '\'';
        const auto options = Terminal::OptionsOf(command);
        for (const auto& option : options) {
            text += FishOption(option, condition);
        }
        switch (KindOfOperands(command)) {
        case Kind::File:
            text += "complete -c norlis-cloud" + condition + " -F\n";
            break;
        case Kind::Document:
            text +=
                "complete -c norlis-cloud" + condition + " -a '(norlis-cloud list --offline --names 2>/dev/null)'\n";
            break;
        default:
            break;
        }
    }
    return text;
}

} // namespace Norlis::Describe
