#pragma once

#include "CommandCatalogue.h"

#include <QCommandLineOption>
#include <QList>

namespace Norlis::Terminal {

/// Options that all commands have.
QList<QCommandLineOption> CommonOptions();

/// Options that not all commands have.
QList<QCommandLineOption> SpecialOptions();

/// Those of them that a command has.
QList<QCommandLineOption> SpecialOptionsOf(const CommandEntry& command);

/// All that a command has.
QList<QCommandLineOption> OptionsOf(const CommandEntry& command);

/// Of the program, without a command.
QCommandLineOption VersionOption();

/// Without hyphens.
QString NameOf(const QCommandLineOption& option);

/// Words that --on-conflict takes, in the order of OnConflict.
QStringList ConflictChoices();

} // namespace Norlis::Terminal
