#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace Norlis::Terminal {

/// What the command line says about one command.
struct CommandEntry {
    QString name;
    QString operands; ///< as the usage line shows them; empty when the command takes none
    QString summary;
    QString details;     ///< what the summary leaves open
    QStringList options; ///< names of those that not every command has
    QStringList examples;
};

/// All commands, in the order in which a newcomer needs them.
const std::vector<CommandEntry>& CommandCatalogue();

/// Null when there is no such command.
const CommandEntry* FindCommand(const QString& name);

} // namespace Norlis::Terminal
