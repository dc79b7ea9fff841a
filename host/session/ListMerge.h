#pragma once

#include "SessionContext.h"

#include <QList>
#include <QSet>

#include <functional>

namespace Norlis::Host {

/// Brings the file list in line with what the cloud reports, in pieces that are small enough for the event loop.
///
/// Only documents that have changed, here or in the cloud, cost more than a comparison. A fresh record knows nothing of
/// the local copy and is completed from the held one, or from what is kept of a document that was missing for a time.
/// Documents that were uploaded after the list was requested are left as they are, and those that were removed since do
/// not come back.
///
/// Whoever owns it calls Step from the event loop for as long as IsReady.
class ListMerge : public QObject {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Files = QList<Record>;

    /// \param onReady called when there is something to do from now on
    ListMerge(const SessionContext& context, std::function<void()> onReady);

    /// Replaces the rest of a merge that is running; the one at the end reports what all of them did.
    /// \param mayLackDocuments what the list lacks stays
    void Start(const Files& files, ChangeJournal::Time requestedAt, bool mayLackDocuments);

    /// Whether there is something left to do.
    bool IsActive() const;

    /// Whether Step may be called: the local copies must be hashed first.
    bool IsReady() const;

    /// Does one piece of work. Emits, so the session may be gone afterwards.
    void Step();

private:
    enum class Phase { Idle, Hashing, Sorting, Merging, Removing, Reporting };

    enum class Change { None, Added, Changed, Removed };

    // Merge, Update, Remove and Report emit as the last thing that they do.

    void Merge(const Record& fresh);
    void Update(const QString& id, const Record& fresh, bool isSameVersion, const std::string& copyHash);
    void Remove(const QString& id);
    void Report();

    void Note(const QString& id, Change change);

    /// Gives a fresh record what only the held one knows.
    void Complete(PDF::FileInfo& fresh, PDF::FileInfo& held, bool isSameVersion) const;

    const SessionContext context;
    const std::function<void()> onReady;
    Phase phase = Phase::Idle;
    quint64 generation = 0;
    int listCount = 0; ///< lists that the next report covers
    int heldCount = 0; ///< documents before the merge
    int goneCount = 0; ///< how many of them the list lacks
    ChangeJournal::Time requestedAt = 0;
    bool isComplete = true; ///< the list

    Files files;
    int next = 0; ///< into files while they are sorted out
    QSet<QString> listed;
    Files unique;
    QStringList heldIds; ///< while those of them that are not listed are removed

    QHash<QString, Change> changes; ///< since the last report
    QStringList order;              ///< their ids
    Lifetime lifetime;
};

} // namespace Norlis::Host
