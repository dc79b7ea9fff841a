#pragma once

#include "CommandCatalogue.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>

namespace Norlis::Terminal {

/// What the program is for: a sentence.
QString PurposeText();

/// What holds for all commands: operands, output, exit status.
QString ConventionsText();

/// The help text of the program.
QString OverviewText(const QList<QCommandLineOption>& options);

/// The help text of a command.
/// \param options those that the command has
QString CommandText(const CommandEntry& command, const QList<QCommandLineOption>& options);

} // namespace Norlis::Terminal
