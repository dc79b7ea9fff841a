#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace Norlis::Terminal {

/// What to do when two versions of a document, or two documents of one name, stand against each other.
enum class OnConflict { Ask, Both, Mine, Theirs, Fail };

/// What the user asked for.
struct Arguments {
    QString command;
    QStringList operands;
    QUrl service;            ///< empty: the one that was last signed in to
    QString dataFolder;      ///< absolute
    QString targetFolder;    ///< absolute
    QString tokenFile;       ///< empty: no file
    QString certificateFile; ///< absolute; empty: no file
    int interval = 30;       ///< seconds
    bool json = false;
    bool offline = false;
    bool namesOnly = false;
    bool asNew = false;
    bool force = false;
    std::optional<OnConflict> onConflict; ///< nothing: what is usual
    bool allowPlainHttp = false;
};

/// A parsed command line: exactly one of its members says what to do.
struct CommandLine {
    Arguments arguments;
    QString answer; ///< help or version text to be shown; empty if a command is to be run
    QString error;  ///< the usage error; empty when there is none
};

/// \param words the command line, starting with the program's name
CommandLine ParseCommandLine(const QStringList& words);

} // namespace Norlis::Terminal
