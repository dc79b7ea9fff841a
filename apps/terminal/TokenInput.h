#pragma once

#include <QString>

#include <optional>
#include <stdexcept>

namespace Norlis::Terminal {

/// Nothing was given where a token may be.
class NoToken : public std::runtime_error {
public:
    NoToken();
};

/// The token in a file, without the trailing newline. Throws std::runtime_error if there is none that
/// can be one, and NoToken if it is empty.
QString TokenFromFile(const QString& path);

/// Asks for the token without echoing it or, if standard input is not a terminal, reads it from there. Returns nothing
/// if the descriptor becomes readable, which means that the program was asked to stop. Throws as
/// TokenFromFile.
std::optional<QString> TokenFromStandardInput(const QString& question, int interruptDescriptor);

} // namespace Norlis::Terminal
