#include "Publication.h"

#include <base/Utf8.h>
#include <files/DocumentNames.h>
#include <protocol/dav/EntityTag.h>

#include <QTimer>

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("Upload");

constexpr int maxNumber = 10'000;
constexpr int maxAttempts = 4;
constexpr int pause = 100; // milliseconds, longer each time

bool HaveSameTag(const QByteArray& left, const QByteArray& right)
{
    return EntityTag{left}.IsValid() && EntityTag{right}.IsValid() && EntityTag{left}.SameIgnoringWeakness({right});
}

/// Servers lock a file while they handle another request for it. A lock that is told inside of an answer is of
/// something else, such as the collection, and somebody's.
bool IsBriefLock(const ChangeResult& result)
{
    return result.response.Status() == 423 && !result.isOfPart;
}

} // namespace

Publication::Publication(WebDavSession& session, const DavDocument& uploaded, const SentContent& sent,
                         std::function<void()> onRenamed, Done done)
    : session(session),
      uploaded(uploaded),
      sent(sent),
      onRenamed(std::move(onRenamed)),
      done(std::move(done)),
      files(session),
      readBack(session, sent)
{
}

Publication::~Publication()
{
    if (isReserved) {
        session.reservedNames.remove(name);
    }
}

void Publication::MakeNew(const QByteArray& newName)
{
    wantedName = newName;
    if (session.refusesToOverwrite) {
        Try(wantedName);
        return;
    }
    check = std::make_unique<OverwriteCheck>(session, uploaded, [this](const QByteArray& nameNow) {
        uploaded.name = nameNow;
        Try(wantedName);
    });
}

void Publication::Replace(const DavDocument& old)
{
    replaced = old;
    wantedName = old.name;
    name = old.name;
    lock = std::make_unique<DocumentLock>(session, old, HttpRequest::Lane::Transfer);
    LockReplaced();
}

void Publication::LockReplaced()
{
    uploadedLock.reset(); // with it, servers take an outdated lock of the document too
    lock->Acquire([this](DocumentLock::Outcome outcome) { OnLocked(outcome); });
}

void Publication::OnLocked(DocumentLock::Outcome outcome)
{
    switch (outcome) {
    case DocumentLock::Outcome::Locked:
    case DocumentLock::Outcome::Unsupported:
    case DocumentLock::Outcome::Missing: // which there are servers that say of the method
        LookAtReplaced();
        break;
    case DocumentLock::Outcome::Taken:
        Fail(Failure("Somebody else is changing the document at this moment: it is locked", "Try again in a minute."),
             uploaded.name);
        break;
    case DocumentLock::Outcome::Failed:
        Fail(session.FailureReplyTo(what, FromUtf8(wantedName), lock->Failure()), uploaded.name);
        break;
    }
}

void Publication::LookAtReplaced()
{
    files.Look(name, [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        const bool isThere = entry && !entry->isCollection;
        // Some servers delete the old document before they know that the new one can take its place.
        const bool hasLostTheOld = isRepeated && IsMissing(response.Status());
        if (hasLostTheOld || (isThere && FileOf(*entry, name).IsVersion(replaced->Version()))) {
            mayOverwrite = !hasLostTheOld; // where nothing is left, nobody has seen what comes next
            Move();
        } else if (entry) {
            OnTaken(*entry);
        } else if (IsMissing(response.Status())) {
            GiveWay();
        } else {
            Fail(session.FailureReplyTo(what, FromUtf8(wantedName), response), uploaded.name);
        }
    });
}

void Publication::LockUploaded()
{
    uploadedLock = std::make_unique<DocumentLock>(session, uploaded, HttpRequest::Lane::Transfer);
    uploadedLock->Acquire([this](DocumentLock::Outcome) { Move(); });
}

void Publication::GoOnWithoutLocks()
{
    uploadedLock->GiveUp([this] {
        uploadedLock.reset();
        lock->GiveUp([this] { LookAtReplaced(); });
    });
}

void Publication::Try(const QByteArray& newName)
{
    if (isReserved) {
        session.reservedNames.remove(name);
    }
    name = newName;
    isReserved = !session.reservedNames.contains(name);
    if (!isReserved) {
        TryNextName();
        return;
    }
    session.reservedNames.insert(name);
    if (session.refusesToOverwrite.value_or(false)) {
        Move();
        return;
    }
    files.Look(name, [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (entry) {
            OnTaken(*entry);
        } else if (IsMissing(response.Status())) {
            Move();
        } else {
            Fail(session.FailureReplyTo(what, FromUtf8(wantedName), response), uploaded.name);
        }
    });
}

void Publication::TryNextName()
{
    if (++number > maxNumber) {
        Fail(Failure("There are too many documents of that name", "Give the file another name."), uploaded.name);
        return;
    }
    attempts = 0;
    isRepeated = false;
    Try(Files::NumberedName(FromUtf8(wantedName), number).toUtf8());
}

void Publication::Move()
{
    if (lock && lock->HasRunOut()) {
        LockReplaced();
        return;
    }
    ++attempts;
    std::vector<const DocumentLock*> locks;
    for (const auto& each : {std::cref(uploadedLock), std::cref(lock)}) {
        if (each.get()) {
            locks.push_back(each.get().get());
        }
    }
    files.Move(uploaded.name, name, mayOverwrite, locks, [this](const ChangeResult& result) { OnMoved(result); });
}

void Publication::MoveAgain()
{
    isRepeated = true;
    if (replaced) { // somebody else may have come first meanwhile
        LookAtReplaced();
    } else {
        Try(name);
    }
}

void Publication::OnMoved(const ChangeResult& result)
{
    moved = result;
    const int status = result.response.Status();
    if (!replaced && (status == 412 || IsBriefLock(result))) { // a finished document of that name is locked at times
        LookWhetherNameIsTaken();
    } else if (status == 412 && lock && lock->IsHeld() && !uploadedLock) {
        LockUploaded(); // some servers take a lock only together with one of the file that is renamed
    } else if (status == 412 && lock && lock->IsHeld()) {
        GoOnWithoutLocks(); // and some take none that they have given
    } else if (result.outcome == ChangeResult::Outcome::Refused && !IsBriefLock(result)) {
        FailAsAnswered(true);
    } else {
        LookAtTarget();
    }
}

void Publication::LookWhetherNameIsTaken()
{
    files.Look(name, [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (entry) {
            OnTaken(*entry);
        } else if (IsMissing(response.Status()) && attempts < maxAttempts) { // it may have been deleted just now
            QTimer::singleShot(pause * attempts, this, [this] { Move(); });
        } else if (IsBriefLock(moved) || (!IsMissing(response.Status()) && response.Status() != 207)) {
            FailAsAnswered(true);
        } else { // some servers cut names off
            Fail(Failure("The server takes the name for that of another document", "Give the file another name."),
                 uploaded.name);
        }
    });
}

void Publication::OnTaken(const DavEntry& entry)
{
    const bool mayBeSent = isRepeated || session.IsUnconfirmed(name, sent.md5);
    if (!mayBeSent) {
        GiveWay();
        return;
    }
    readBack.Compare(name, [this, entry](const ReadBack::Result& result) {
        if (result.IsSame()) {
            Succeed(entry);
        } else {
            GiveWay();
        }
    });
}

void Publication::GiveWay()
{
    if (replaced) {
        Fail(ConflictReply(what, *replaced), uploaded.name);
    } else {
        TryNextName();
    }
}

void Publication::LookAtTarget()
{
    const auto onLooked = [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (entry && !entry->isCollection && entry->size.value_or(sent.size) == sent.size) {
            Compare(*entry);
        } else if (entry || IsMissing(response.Status())) {
            OnOtherTarget(entry.has_value());
        } else {
            FailUnconfirmed(response);
        }
    };
    if (moved.IsDone()) {
        CallOnce(onRenamed);
        session.looks.Look(name, GroupedLooks::Expected::There, GroupedLooks::Wait::ForAnnounced, lifetime.Watch(),
                           onLooked);
    } else {
        files.Look(name, onLooked);
    }
}

void Publication::Compare(const DavEntry& entry)
{
    if (IsUploadedVersion(entry)) {
        Succeed(entry);
        return;
    }
    readBack.Compare(name, [this, entry](const ReadBack::Result& result) {
        if (result.IsSame()) {
            Succeed(entry);
        } else if (!result.failure) {
            OnOtherTarget(true);
        } else {
            FailUnconfirmed(*result.failure);
        }
    });
}

void Publication::FailUnconfirmed(const HttpResponse& response)
{
    if (!replaced) {
        session.NoteUnconfirmed(name, sent.md5);
    }
    Reply failure = session.FailureReplyTo(what, FromUtf8(wantedName), response);
    failure.failure.advice = QStringLiteral("What was sent may be in the cloud already, as %1. Refresh the list before "
                                            "you send it again.")
                                 .arg(FromUtf8(name));
    Fail(std::move(failure));
}

void Publication::OnOtherTarget(bool isThere)
{
    files.Look(uploaded.name, [this, isThere](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        const bool isUploadedThere = entry || !IsMissing(response.Status());
        const bool hasLostTheOld = replaced && !isThere;
        const bool isPassing = moved.response.fault != HttpResponse::Fault::None || IsBriefLock(moved) ||
                               (hasLostTheOld && !moved.IsDone());
        if (isUploadedThere && isPassing && attempts < maxAttempts) {
            QTimer::singleShot(pause * attempts, this, [this] { MoveAgain(); });
        } else if (isUploadedThere && hasLostTheOld) {
            Reply failure = session.FailureReplyTo(what, FromUtf8(wantedName), moved.response);
            failure.failure.advice =
                QStringLiteral("The server has lost the old document. What was sent is there as %1.")
                    .arg(FromUtf8(uploaded.name));
            Fail(std::move(failure));
        } else if (!moved.IsDone()) {
            FailAsAnswered(isUploadedThere);
        } else if (isUploadedThere) {
            Fail(Failure("The server says that it has given the file its name, but has not",
                         "Try again. If this happens again, tell whoever runs the server."),
                 uploaded.name);
        } else {
            Fail(Failure(isThere ? "What has that name in the cloud now is not what was sent"
                                 : "What was sent is not under that name in the cloud",
                         "Somebody else may have changed it at the same moment. Refresh the list before you send it "
                         "again."));
        }
    });
}

bool Publication::IsUploadedVersion(const DavEntry& entry) const
{
    // A tag that the old document had as well, being made of a date and a length, proves nothing.
    const bool isOldTag = replaced && HaveSameTag(entry.etag, replaced->etag);
    return (HaveSameTag(entry.etag, uploaded.etag) && !isOldTag) || (!entry.md5.isEmpty() && entry.md5 == sent.md5);
}

void Publication::Succeed(const DavEntry& entry)
{
    if (!moved.IsDone()) {
        session.housekeeper.DeleteFile(uploaded.name, false); // in case it was the same document that was there before
    }
    DavDocument made = FileOf(entry, name);
    made.md5 = sent.md5;
    made.id = replaced ? replaced->id : made.id;
    session.ForgetUnconfirmed(name);
    CallOnce(done, Outcome{made, {}, {}}); // it destroys this object
}

void Publication::FailAsAnswered(bool isUploadedThere)
{
    Reply failure = session.FailureReplyTo(what, FromUtf8(wantedName), moved.response);
    if (files.MayBeTheDestination(moved)) {
        failure.failure.advice = QStringLiteral("If the server is behind a proxy, the proxy has to rewrite the "
                                                "Destination field of requests. Otherwise ask "
                                                "whoever runs the server for permission to rename files.");
    }
    Fail(std::move(failure), isUploadedThere ? uploaded.name : QByteArray());
}

void Publication::Fail(Reply failure, const QByteArray& leftover)
{
    CallOnce(done, Outcome{{}, std::move(failure), leftover}); // it destroys this object
}

Reply Publication::Failure(const QString& reason, const QString& advice) const
{
    return FailureReply(what, FromUtf8(wantedName), reason, advice);
}

} // namespace Norlis::Social
