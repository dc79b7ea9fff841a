#pragma once

#include <QHash>
#include <QString>

namespace Norlis {

/// Which documents were uploaded and removed, in the order in which that and the requests of files lists happened: a
/// list that was requested before an upload or a removal ended may not know of it yet. Whoever gets that list does not
/// take the version that it tells of such a document for the newer one, so it shows that version to nobody.
class ChangeJournal {
public:
    /// Larger for what happened later.
    using Time = quint64;

    void NoteUpload(const QString& id)
    {
        uploadedAt[id] = ++now;
    }

    void NoteRemoval(const QString& id)
    {
        removedAt[id] = ++now;
    }

    /// The time at which a list is requested.
    Time NoteRequest()
    {
        return ++now;
    }

    Time Now() const
    {
        return now;
    }

    bool WasUploadedAfter(Time time, const QString& id) const
    {
        return uploadedAt.value(id) > time;
    }

    bool WasRemovedAfter(Time time, const QString& id) const
    {
        return removedAt.value(id) > time;
    }

    /// To be called when a list is no longer awaited.
    void Clear()
    {
        uploadedAt.clear();
        removedAt.clear();
    }

private:
    Time now = 0;
    QHash<QString, Time> uploadedAt;
    QHash<QString, Time> removedAt;
};

} // namespace Norlis
