#pragma once

#include "SessionContext.h"

#include <QString>

#include <optional>
#include <string>

namespace Norlis::Host {

/// Where downloads put documents, and what stands there already.
class DownloadTargets {
public:
    explicit DownloadTargets(const SessionContext& context) : context(context) {}

    /// Whether the name stays inside the folder that it is put into.
    static bool IsFileName(const QString& name);

    /// Whether anything has the path, a dangling symbolic link included.
    static bool IsTaken(const QString& path);

    /// The place of a document in a folder: under its name, or where its copy there is if something else has the name.
    QString In(const QString& folder, const QString& id, const QString& name) const;

    /// The same, and with the first free number in the name if something else has that place.
    QString BesideIn(const QString& folder, const QString& id, const QString& name) const;

    /// What the file was when it was last the same as the document; nothing when it is no copy of it, which a symbolic
    /// link never is.
    std::optional<std::string> SyncHashOf(const QString& id, const QString& path) const;

    /// As the list has paths.
    QString Normalized(const QString& path) const;

private:
    const SessionContext context;
};

} // namespace Norlis::Host
