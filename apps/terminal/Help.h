#pragma once

#include "CommandCatalogue.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>

namespace Norlis::Terminal {

/// The text about the whole program.
QString OverviewText(const QList<QCommandLineOption>& options);

/// \param options those that the command has
QString CommandText(const CommandEntry& command, const QList<QCommandLineOption>& options);

} // namespace Norlis::Terminal
