#pragma once

#include <host/Export.h>

#include <QDate>
#include <QString>

#include <functional>

namespace Norlis::Host {

/// A name for this computer's version of a document that stays beside another one in the cloud, as in
/// "plan (from HOST, 2026-11-22).pdf"; with a number at the end if that is taken. Short enough for every service.
/// \param host    name of this computer
/// \param isTaken whether there is a document of a name
NORLIS_HOST_EXPORT QString OtherNameOf(const QString& name, const QString& host, const QDate& date,
                                       const std::function<bool(const QString&)>& isTaken);

/// Gives a file such a name in its folder. Nothing is replaced by it, and nothing but a file is moved.
/// \param isTaken names that are not to be used, beside those of other files
/// \return the new path; empty when the file keeps its name
NORLIS_HOST_EXPORT QString MoveToOtherName(
    const QString& path, const QString& host, const QDate& date,
    const std::function<bool(const QString&)>& isTaken = [](const QString&) { return false; });

} // namespace Norlis::Host
