#pragma once

#include "SessionContext.h"

#include <QList>
#include <QSet>

namespace Norlis::Host {

/// Brings the file list in line with what the cloud reports, in pieces that are small enough for the event loop.
///
/// A fresh record knows nothing of the local copy and is completed from the held one. Documents that were uploaded
/// after the list was requested are left as they are, and those that were removed since do not come back.
class ListMerge {
public:
    using Files = QList<std::shared_ptr<PDF::FileInfo>>;

    explicit ListMerge(SessionContext& context);

    /// Replaces the rest of a merge that is running; the one at the end reports what all of them did.
    void Start(const Files& files, quint64 sentAt);

    /// Whether there is something left to do.
    bool IsActive() const;

    /// Whether Step may be called: the local copies must be hashed first.
    bool IsReady() const;

    /// Does one piece of work. Emits, so the session may be gone afterwards.
    void Step();

private:
    enum class Phase { Idle, Hashing, Sorting, Merging, Removing, Reporting };

    enum class Change { None, Added, Changed, Removed };

    // Merge, Remove and Report emit as the last thing that they do.

    void Merge(const std::shared_ptr<PDF::FileInfo>& fresh);
    void Remove(const QString& id);
    void Report();

    void Note(const QString& id, Change change);

    /// Gives a fresh record what only the held one knows.
    void Complete(PDF::FileInfo& fresh, PDF::FileInfo& held, bool hasSameContent) const;

    SessionContext& context;
    Phase phase = Phase::Idle;
    quint64 generation = 0;
    int listCount = 0; ///< lists that the next report covers
    quint64 sentAt = 0;

    Files files;
    int next = 0; ///< into files while they are sorted out
    QSet<QString> listed;
    Files unique;
    QStringList departed;

    QHash<QString, Change> changes; ///< since the last report
    QStringList order;              ///< their ids
};

} // namespace Norlis::Host
