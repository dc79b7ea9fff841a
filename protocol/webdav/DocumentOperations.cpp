#include "DocumentOperations.h"

#include <contracts/NorlisCloudProtocol.h>
#include <protocol/dav/EntityTag.h>

#include <QTimer>

namespace Norlis::Social {

namespace {

constexpr int maxAttempts = 3; // of a removal that breaks off
constexpr int pause = 400;     // milliseconds between them
constexpr qint64 bytesPerMiB = 1024 * 1024;
constexpr qint64 unlimited = -3; // as Nextcloud writes it

Ability::Quota::QuotaValue QuotaOf(const DavEntry& entry)
{
    const qint64 used = entry.quotaUsed.value_or(-1);
    const qint64 available = entry.quotaAvailable.value_or(-1);
    Ability::Quota::QuotaValue quota{NorlisCloudProtocol::unknownQuota, NorlisCloudProtocol::unknownQuota};
    if (used >= 0) {
        quota.used = used / bytesPerMiB + (used % bytesPerMiB != 0 ? 1 : 0);
    }
    if (available == unlimited) {
        quota.total = NorlisCloudProtocol::unlimitedQuota;
    } else if (used >= 0 && available >= 0) {
        quota.total = static_cast<qint64>((static_cast<quint64>(used) + static_cast<quint64>(available)) / bytesPerMiB);
    }
    return quota;
}

} // namespace

void ListOperation::Start()
{
    listing = std::make_unique<Listing>(*session, [this, begin = session->journal.Now()](Listing::Result&& result) {
        if (result.failure) {
            End(*std::move(result.failure));
            return;
        }
        for (const DavDocument& known : qAsConst(session->documents)) {
            if (session->journal.WasUploadedAfter(begin, known.id)) {
                result.documents.insert(known.id, known);
            }
        }
        session->documents = std::move(result.documents);
        for (const QByteArray& name : qAsConst(result.leftovers)) {
            session->housekeeper.DeleteFile(name, false);
        }
        End({Success, std::move(result.files), {}, false, result.mayLackDocuments});
    });
}

DocumentOperation::DocumentOperation(qint64 id, const QString& document, const QString& what,
                                     const std::shared_ptr<WebDavSession>& session, Finish finish)
    : Operation(session, std::move(finish)),
      what(what),
      id(id),
      document(document)
{
}

DocumentOperation::~DocumentOperation()
{
    session->lookup.Forget(id);
}

void DocumentOperation::Start()
{
    session->lookup.Find(id, document, what, [this](const DavDocument* found, Reply&& failure) {
        if (found) {
            OnFound(*found);
        } else {
            End(std::move(failure));
        }
    });
}

void DocumentOperation::Fail(const DavDocument& failed, const HttpResponse& response)
{
    if (IsMissing(response.Status())) {
        session->documents.remove(failed.id);
    }
    End(session->FailureReplyTo(what, failed.Name(), response));
}

InfoOperation::InfoOperation(qint64 id, const QString& document, const std::shared_ptr<WebDavSession>& session,
                             Finish finish)
    : DocumentOperation(id, document, "Fetching a document's entry", session, std::move(finish))
{
}

void InfoOperation::OnFound(const DavDocument& known)
{
    requests.Send(PropFind(session->collection.UrlOf(known.name)), [this, known](HttpResponse&& response) {
        const auto entry = EntryOfDepth0(response, session->PathOf(known.name));
        if (!entry || entry->isCollection) {
            Fail(known, response);
            return;
        }
        DavDocument now = FileOf(*entry, known.name);
        now.id = known.id;
        if (now.md5.isEmpty() && IsSameVersion(known, now)) {
            now.md5 = known.md5;
        }
        session->documents.insert(now.id, now);
        session->versions.Refresh();
        End({Success, session->EntryOf(now), {}, false});
    });
}

RemoveOperation::RemoveOperation(qint64 id, const QString& document, const std::shared_ptr<WebDavSession>& session,
                                 Finish finish)
    : DocumentOperation(id, document, "Removal", session, std::move(finish)),
      files(*session, HttpRequest::Lane::Control)
{
}

void RemoveOperation::OnFound(const DavDocument& known)
{
    isUnderWay = true;
    if (!known.wasShown) {
        End(ConflictReply(what, known));
        return;
    }
    const auto onLooked = [this, known](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (IsMissing(response.Status())) { // deleted by somebody else
            Succeed(known);
        } else if (entry) {
            LockAndLook(known);
        } else {
            Fail(known, response);
        }
    };
    session->looks.Look(known.name, GroupedLooks::Expected::There, GroupedLooks::Wait::No, lifetime.Watch(), onLooked);
}

void RemoveOperation::LockAndLook(const DavDocument& known)
{
    announcement.emplace(session->looks);
    if (!lock) {
        lock = std::make_unique<DocumentLock>(*session, known, HttpRequest::Lane::Control);
    }
    lock->Acquire([this, known](DocumentLock::Outcome outcome) {
        switch (outcome) {
        case DocumentLock::Outcome::Locked:
        case DocumentLock::Outcome::Unsupported:
        case DocumentLock::Outcome::Missing: // which there are servers that say of the method
            LookAtVersion(known);
            break;
        case DocumentLock::Outcome::Taken:
            End(FailureReply(what, known.Name(), "Somebody else is changing the document at this moment: it is locked",
                             "Try again in a minute."));
            break;
        case DocumentLock::Outcome::Failed:
            Fail(known, lock->Failure());
            break;
        }
    });
}

void RemoveOperation::LookAtVersion(const DavDocument& known)
{
    files.Look(known.name, [this, known](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (IsMissing(response.Status())) {
            Succeed(known);
        } else if (!entry) {
            Fail(known, response);
        } else if (entry->isCollection || !FileOf(*entry, known.name).IsVersion(known.Version())) {
            End(ConflictReply(what, known));
        } else if (lock->HasRunOut()) {
            LockAndLook(known);
        } else {
            SendDelete(known, *entry);
        }
    });
}

void RemoveOperation::SendDelete(const DavDocument& known, const DavEntry& entry)
{
    HttpRequest request = lock->Allow(Delete(session->collection.UrlOf(known.name)));
    if (!lock->IsHeld() && EntityTag{entry.etag}.IsStrong()) {
        request = IfMatch(request, entry.etag);
    }
    request.isRepeatable = false; // the second time it may meet somebody's new document
    ++attempts;
    requests.Send(request, [this, known](HttpResponse&& response) {
        const ChangeResult result = JudgeChange(response);
        if (result.response.Status() == 412 && lock->IsHeld()) { // some servers take no lock that they have given
            lock->GiveUp([this, known] { LookAtVersion(known); });
        } else if (result.outcome == ChangeResult::Outcome::Refused) {
            Fail(known, result.response);
        } else {
            if (result.IsDone()) {
                lock->NoteRemoval();
            }
            LookWhetherGone(known, result);
        }
    });
}

void RemoveOperation::LookWhetherGone(const DavDocument& known, const ChangeResult& result)
{
    const auto onLooked = [this, known, result](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (IsMissing(response.Status())) {
            Succeed(known);
        } else if (!result.IsDone() && entry && MayTryAgain(result.response)) {
            QTimer::singleShot(pause, lock.get(), [this, known] { LockAndLook(known); });
        } else if (!result.IsDone() && entry) { // whatever it was called: it is there
            End(session->FailureReplyTo(what, known.Name(), result.response));
        } else if (!result.IsDone()) {
            Fail(known, result.response);
        } else if (!entry) {
            Fail(known, response);
        } else if (entry->size != known.size) {
            Succeed(known); // what stands there now is somebody's new document, or the trace of somebody's lock
        } else {
            End(FailureReply(what, known.Name(), "There is still a document of that name in the cloud",
                             "Somebody may have put it there at the same moment. Refresh the list and look at it."));
        }
    };
    announcement.reset();
    if (result.IsDone()) {
        session->looks.Look(known.name, GroupedLooks::Expected::Gone, GroupedLooks::Wait::ForAnnounced,
                            lifetime.Watch(), onLooked);
    } else {
        files.Look(known.name, onLooked);
    }
}

bool RemoveOperation::MayTryAgain(const HttpResponse& response) const
{
    const int status = response.Status();
    const bool isPassing = response.fault == HttpResponse::Fault::Broken ||
                           response.fault == HttpResponse::Fault::Unreachable || status == 423 || status == 502 ||
                           status == 503 || status == 504;
    return isPassing && attempts < maxAttempts;
}

void RemoveOperation::Succeed(const DavDocument& removed)
{
    session->versions.Forget(removed.id);
    session->documents.remove(removed.id);
    End({});
}

bool RemoveOperation::GiveUp()
{
    return !isUnderWay;
}

void QuotaOperation::Start()
{
    requests.Send(PropFind(session->collection.Url()), [this](HttpResponse&& response) {
        const auto entry = EntryOfDepth0(response, session->collection.Path());
        if (entry) {
            End({Success, QuotaByApplication{{QStringLiteral("pdf"), QuotaOf(*entry)}}, {}, false});
        } else {
            End(session->FailureReplyTo("Fetching the storage usage", {}, response));
        }
    });
}

} // namespace Norlis::Social
