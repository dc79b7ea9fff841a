#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

namespace Norlis::Terminal {

/// What the user asks for.
struct Arguments {
    QString command;
    QStringList operands;
    QUrl service;            ///< empty: the one that was signed in to last
    QString dataFolder;      ///< absolute
    QString targetFolder;    ///< absolute
    QString tokenFile;       ///< empty: no file
    QString certificateFile; ///< absolute; empty: no file
    int interval = 30;       ///< seconds
    bool json = false;
    bool offline = false;
    bool asNew = false;
    bool allowPlainHttp = false;
};

/// A command line that was read: exactly one of its members says what to do.
struct CommandLine {
    Arguments arguments;
    QString answer; ///< help or version to be shown instead; empty when there is something to do
    QString error;  ///< what cannot be understood; empty when all can
};

/// \param words the command line, beginning with the program's name
CommandLine ParseCommandLine(const QStringList& words);

} // namespace Norlis::Terminal
