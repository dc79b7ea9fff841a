#include "DocumentChange.h"

#include <files/FilePlacing.h>

#include <QFile>
#include <QFileInfo>

namespace Norlis::Social {

using Files::FileIdentity;

DocumentChange::DocumentChange(Task task)
    : task(std::move(task)),
      path(this->task.folder + '/' + this->task.name),
      turn(this->task.folder, this->task.ownFolder)
{
}

std::optional<DocumentChange::Outcome> DocumentChange::Replace(Files::AtomicFile& fresh)
{
    return Step(&fresh);
}

std::optional<DocumentChange::Outcome> DocumentChange::Remove()
{
    return Step(nullptr);
}

bool DocumentChange::IsWaiting() const
{
    return turn.IsWaiting();
}

std::optional<DocumentChange::Outcome> DocumentChange::Step(Files::AtomicFile* fresh)
{
    switch (phase) {
    case Phase::BeforeTurn:
        switch (turn.Take()) {
        case FolderTurn::Outcome::Taken:
            return Look(fresh);
        case FolderTurn::Outcome::Waiting:
            return std::nullopt;
        case FolderTurn::Outcome::TimedOut:
            return Outcome::Busy;
        case FolderTurn::Outcome::Failed:
            return Fail(turn.ErrorText());
        }
        return std::nullopt;
    case Phase::Reading:
        return Read();
    case Phase::Ready:
        return Change(fresh);
    case Phase::ReadingAside:
        return ReadWhatCameOut();
    }
    return std::nullopt;
}

std::optional<DocumentChange::Outcome> DocumentChange::Look(const Files::AtomicFile* fresh)
{
    before = FileIdentity::OfPath(path);
    isBeforeSettled = before.TimeUntilSettled().count() <= 0;
    if (!before.IsFile()) {
        return Outcome::Gone;
    }
    const auto match = task.expected.Compare(before);
    phase = Phase::Ready;
    if (match == SeenVersion::Match::Same) {
        return std::nullopt;
    }
    // What is there may also be just what is to be put there, by an attempt whose answer was lost.
    const bool mayBeFresh = fresh && fresh->Version().size == before.size;
    if (match == SeenVersion::Match::Other && !mayBeFresh) {
        return Outcome::Changed;
    }
    reader = std::make_unique<Files::FileReader>();
    phase = Phase::Reading;
    return reader->Open(path) ? std::nullopt : std::optional(Fail(reader->ErrorText()));
}

std::optional<DocumentChange::Outcome> DocumentChange::Read()
{
    if (!reader->Next().isEmpty()) {
        return std::nullopt;
    }
    const auto read = std::move(reader);
    if (read->Failed()) {
        return Fail(read->ErrorText());
    }
    if (!read->IsUnchanged() || !read->Version().HasContentOf(before)) {
        return Outcome::Changed;
    }
    if (!task.freshMd5.isEmpty() && read->Md5() == task.freshMd5) {
        version = read->Version();
        return Outcome::Done;
    }
    phase = Phase::Ready;
    return read->Md5() == task.expected.md5Hash ? std::nullopt : std::optional(Outcome::Changed);
}

std::optional<DocumentChange::Outcome> DocumentChange::Change(Files::AtomicFile* fresh)
{
    auto outcome = Outcome::Failed;
    if (!task.commit([&] { outcome = PutInPlace(fresh); })) {
        return Outcome::Unwanted;
    }
    if (outcome != Outcome::Done) {
        turn.End();
        return outcome;
    }
    if (fresh) {
        version = fresh->CommittedVersion();
    }
    const QFileInfo cameOut(aside); // nothing came out of a mere renaming
    isAside = cameOut.exists() || cameOut.isSymLink();
    return isAside ? LookAtWhatCameOut() : Finish();
}

DocumentChange::Outcome DocumentChange::PutInPlace(Files::AtomicFile* fresh)
{
    aside = fresh ? fresh->Path() : task.ownFolder->PathOf(Files::AtomicFile::NewTemporaryName());
    const bool isFreshSettled = fresh && fresh->Version().TimeUntilSettled().count() <= 0;
    const FolderTurn::Change change{task.name, QFileInfo(aside).fileName(), fresh ? fresh->Version() : FileIdentity(),
                                    isBeforeSettled ? before : FileIdentity(),
                                    isFreshSettled ? QString() : task.freshMd5};
    if (!turn.Begin(change) && fresh) { // on a full disk a removal is what helps
        return Fail(turn.ErrorText());
    }
    auto failure = fresh ? fresh->CommitExchanging(path) : Files::Move(path, aside);
    if (fresh && Files::IsUnknownCall(failure)) {
        if (FileIdentity::OfPath(path) != before) {
            return Outcome::Changed;
        }
        return fresh->CommitReplacing(path) ? Outcome::Done : Fail(fresh->ErrorText());
    }
    if (failure == std::errc::no_such_file_or_directory && !FileIdentity::OfPath(path).IsFile()) {
        return Outcome::Gone;
    }
    return failure ? Fail(QString::fromStdString(failure.message())) : Outcome::Done;
}

std::optional<DocumentChange::Outcome> DocumentChange::LookAtWhatCameOut()
{
    const auto cameOut = FileIdentity::OfPath(aside);
    if (Files::IsOpenForWriting(aside)) {
        return Undo(); // an edit would come into a file without a name
    }
    const bool isSame = cameOut.HasContentOf(before);
    if (isSame && (isBeforeSettled || task.expected.md5Hash.isEmpty())) {
        return Finish();
    }
    if (task.expected.md5Hash.isEmpty() || cameOut.size != task.expected.identity.size) {
        return Undo();
    }
    phase = Phase::ReadingAside;
    reader = std::make_unique<Files::FileReader>();
    return reader->Open(aside) ? std::nullopt : std::optional(Undo());
}

std::optional<DocumentChange::Outcome> DocumentChange::ReadWhatCameOut()
{
    if (!reader->Next().isEmpty()) {
        return std::nullopt;
    }
    const auto read = std::move(reader);
    const bool isExpected = !read->Failed() && read->IsUnchanged() && read->Md5() == task.expected.md5Hash;
    return isExpected ? Finish() : Undo();
}

DocumentChange::Outcome DocumentChange::Undo()
{
    turn.Recover();
    return Outcome::Changed;
}

DocumentChange::Outcome DocumentChange::Finish()
{
    Files::AtomicFile::SyncFolderOf(path);
    const bool isInPlace = IsInPlace();
    if (isInPlace) {
        QFile::remove(aside);
    }
    turn.End();
    return isInPlace ? Outcome::Done : Fail(QStringLiteral("The folder does not show the change"));
}

bool DocumentChange::IsInPlace() const
{
    const auto now = FileIdentity::OfPath(path);
    if (now == version || isAside) {
        return !now.IsFile() || !now.HasContentOf(before); // else somebody has changed it since, and again
    }
    return now.size == version.size;
}

DocumentChange::Outcome DocumentChange::Fail(const QString& reason)
{
    error = reason;
    return Outcome::Failed;
}

const FileIdentity& DocumentChange::Version() const
{
    return version;
}

QString DocumentChange::ErrorText() const
{
    return error;
}

} // namespace Norlis::Social
