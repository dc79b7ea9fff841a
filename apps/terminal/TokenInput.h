#pragma once

#include <QString>

#include <optional>

namespace Norlis::Terminal {

/// The token in a file, without the line end behind it. Throws std::runtime_error when there is none.
QString TokenFromFile(const QString& path);

/// Asks for the token without showing what is typed or, where standard input is no terminal, takes it from there.
/// Nothing when the descriptor becomes readable, which is when the program was asked to stop. Throws std::runtime_error
/// when there is no token.
std::optional<QString> TokenFromStandardInput(const QString& question, int interruptDescriptor);

} // namespace Norlis::Terminal
