#pragma once

#include <QString>

#include <optional>

namespace Norlis::Files {

/// Says why a text cannot be the name of a document, as the end of a sentence that begins with the name; nothing when
/// it can.
///
/// A name is one segment of a path on every system: no separators, no control characters, no names of devices, at most
/// 255 bytes in UTF-8. Those that files have while they are written are no documents' (see AtomicFile). Names are
/// compared and kept byte for byte; nothing is normalised.
std::optional<QString> ValidateName(const QString& name);

/// The name with a number before its suffix, as in "report (2).pdf", shortened where it would become too long.
QString NumberedName(const QString& name, int number);

/// The id of a document that is known by its name alone: stable, opaque, safe as a part of a file name on every system.
QString IdOfName(const QString& name);

} // namespace Norlis::Files
