#pragma once

#include "OwnFolder.h"
#include <files/FileIdentity.h>

#include <QElapsedTimer>
#include <QString>

#include <memory>
#include <optional>
#include <system_error>

namespace Norlis::Social {

/// The right to change documents of a folder, which one program has at a time, and a journal of the change under way. A
/// program that is killed inside a change leaves it to the next one that takes a turn to finish or undo it.
///
/// Foreign programs know nothing of turns: see DocumentChange. Where the file system knows no locks, those looks have
/// to do for programs of this kind too.
class FolderTurn {
public:
    enum class Outcome {
        Taken,
        Waiting,  ///< somebody else has the turn
        TimedOut, ///< and has had it for five seconds
        Failed,   ///< see ErrorText
    };

    /// A change of a document: what stood under its name gets another one, and perhaps something new stands there.
    struct Change {
        QString document;          ///< name in the folder
        QString aside;             ///< name, in the own folder, of what stood there; before, of what is new
        Files::FileIdentity fresh; ///< what is new; no file when the document is removed
        Files::FileIdentity old;   ///< what may be deleted once it is aside; no file when that cannot be told
        QString freshMd5;          ///< where a write may leave no trace in that identity; else empty
    };

    /// \param folder    holds the documents
    /// \param ownFolder of the same folder
    FolderTurn(const QString& folder, const std::shared_ptr<OwnFolder>& ownFolder);

    /// Gives the turn back, after Recover.
    ~FolderTurn();

    FolderTurn(const FolderTurn&) = delete;
    FolderTurn& operator=(const FolderTurn&) = delete;

    /// Never blocks: to be called again while it is waiting. Finishes or undoes what was under way when another program
    /// was killed.
    Outcome Take();

    /// Nothing can be done before another program has ended its turn.
    bool IsWaiting() const;

    /// Writes down, durably, what is about to be done. False when that fails, see ErrorText: this object can still undo
    /// the change then, and no other.
    bool Begin(const Change& change);

    /// The change is complete, and what was aside is gone.
    void End();

    /// Finishes or undoes a change that was begun and did not end. What neither is new nor may be deleted gets its name
    /// back, or a similar one when somebody has taken that. False when it cannot get any, see ErrorText: the journal
    /// keeps the change then, and no other can begin.
    bool Recover();

    QString ErrorText() const;

    /// Whether a change was begun and did not end, or is under way.
    /// \param ownFolder its path
    static bool IsChangePending(const QString& ownFolder);

private:
    bool Write(const QByteArray& text);
    std::optional<Change> Read() const;
    std::error_code PutBack(const Change& change) const;
    bool IsOld() const;     ///< what the journal holds; without locks only that tells that it is not under way
    bool IsInPlace() const; ///< the journal still has its name
    void GiveBack();

    const QString folder;
    const std::shared_ptr<OwnFolder> ownFolder;
    std::optional<Change> underWay;
    QElapsedTimer waiting;
    int journal = -1; ///< descriptor, locked while the turn lasts
    QString error;
};

} // namespace Norlis::Social
