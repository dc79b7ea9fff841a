#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Norlis::Terminal {

class Command;
struct Environment;

/// A command: what the command line says about it, and how it is made.
struct CommandEntry {
    QString name;
    std::unique_ptr<Command> (*make)(const Environment& environment);
    QString operands; ///< as the usage line shows them; empty if the command takes none
    QString summary;
    QString details;     ///< shown below the summary; may be empty
    QStringList options; ///< names of those that not all commands have
    QStringList examples;
    bool makesPictures = false;
};

/// All commands, in the order in which a new user needs them.
const std::vector<CommandEntry>& CommandCatalogue();

/// Null if there is no such command.
const CommandEntry* FindCommand(const QString& name);

} // namespace Norlis::Terminal
