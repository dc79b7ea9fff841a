#pragma once

#include "CommandCatalogue.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>

namespace Norlis::Terminal {

/// The help text of the program.
QString OverviewText(const QList<QCommandLineOption>& options);

/// The help text of a command.
/// \param options those that the command has
QString CommandText(const CommandEntry& command, const QList<QCommandLineOption>& options);

} // namespace Norlis::Terminal
