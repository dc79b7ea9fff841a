#pragma once

#include <QString>

#include <optional>

namespace Norlis::Terminal {

/// The token in a file, without the trailing newline. Throws std::runtime_error if there is none.
QString TokenFromFile(const QString& path);

/// Asks for the token without echoing it or, if standard input is not a terminal, reads it from there. Returns nothing
/// if the descriptor becomes readable, which means that the program was asked to stop. Throws std::runtime_error if
/// there is no token.
std::optional<QString> TokenFromStandardInput(const QString& question, int interruptDescriptor);

} // namespace Norlis::Terminal
