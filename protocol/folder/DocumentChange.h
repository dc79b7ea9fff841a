#pragma once

#include "FolderTurn.h"
#include "SeenVersions.h"
#include <files/AtomicFile.h>
#include <files/FileReader.h>

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace Norlis::Social {

/// Puts a new version in the place of a document, or removes it, unless another version stands there than the one that
/// was seen. It looks before the change and again at what came out of it, since programs that know nothing of turns may
/// write at any moment; on a difference the change is undone.
///
/// To be taken in steps. Destroying it between two of them leaves the old version, the new one, or both under names of
/// documents.
class DocumentChange {
public:
    enum class Outcome {
        Done,
        Unwanted, ///< `commit` did not want it any more
        Gone,     ///< there is no such document
        Changed,  ///< another version than the one seen
        Busy,     ///< another program did not end its turn in time
        Failed,   ///< see ErrorText
    };

    struct Task {
        QString folder; ///< of the document
        std::shared_ptr<OwnFolder> ownFolder;
        QString name; ///< of the document
        SeenVersion expected;
        QString freshMd5; ///< of what takes its place

        /// Runs what it is given, unless nobody wants the change any more: false then.
        std::function<bool(const std::function<void()>&)> commit;
    };

    explicit DocumentChange(Task task);

    /// The next step of a replacement. To be called until there is an outcome.
    /// \param fresh the whole new version, in the own folder
    std::optional<Outcome> Replace(Files::AtomicFile& fresh);

    /// The next step of a removal.
    std::optional<Outcome> Remove();

    /// Nothing can be done before another program has ended its turn.
    bool IsWaiting() const;

    /// Of what was put in place, after Done.
    const Files::FileIdentity& Version() const;

    QString ErrorText() const;

private:
    enum class Phase { BeforeTurn, Reading, Ready, ReadingAside };

    std::optional<Outcome> Step(Files::AtomicFile* fresh);
    std::optional<Outcome> Look(const Files::AtomicFile* fresh);
    std::optional<Outcome> Read();
    std::optional<Outcome> Change(Files::AtomicFile* fresh);
    Outcome PutInPlace(Files::AtomicFile* fresh);
    std::optional<Outcome> LookAtWhatCameOut();
    std::optional<Outcome> ReadWhatCameOut();
    Outcome Undo();
    Outcome Finish();

    /// Whether the change can be seen: nothing else shows that the folder has done what it has confirmed.
    bool IsInPlace() const;
    Outcome Fail(const QString& reason);

    const Task task;
    const QString path;
    FolderTurn turn;
    Phase phase = Phase::BeforeTurn;
    Files::FileIdentity before;   ///< of the document, when it was last looked at
    bool isBeforeSettled = false; ///< a write since then shows
    QString aside;                ///< path of what came out
    bool isAside = false;         ///< it is there
    Files::FileIdentity version;  ///< of what was put in place
    std::unique_ptr<Files::FileReader> reader;
    QString error;
};

} // namespace Norlis::Social
