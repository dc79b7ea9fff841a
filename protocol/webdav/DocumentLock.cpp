#include "DocumentLock.h"

#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>

#include <QTimer>

namespace Norlis::Social {

namespace {

constexpr int pause = 500;      // milliseconds between two attempts
constexpr int maxAttempts = 10; // together five seconds

} // namespace

DocumentLock::DocumentLock(WebDavSession& session, const DavDocument& document, HttpRequest::Lane lane)
    : session(session),
      url(session.collection.UrlOf(document.name)),
      wasEmpty(document.size.value_or(0) == 0),
      lane(lane),
      files(session, lane),
      requests(session.http)
{
}

DocumentLock::~DocumentLock()
{
    if (isRemoved && IsHeld()) {
        session.housekeeper.ReleaseLockOfRemoved(url, token);
    } else if (IsHeld()) {
        session.housekeeper.ReleaseLock(url, token);
    }
}

void DocumentLock::Acquire(Done whenDone)
{
    done = std::move(whenDone);
    if (IsHeld()) {
        session.housekeeper.ReleaseLock(url, std::exchange(token, {}));
    }
    if (attempts >= maxAttempts) {
        QTimer::singleShot(0, this, [this] { End(Outcome::Taken); });
    } else if (session.hasLocks.value_or(true) && !session.isNextcloudLike && !isGivenUp) {
        Try();
    } else {
        QTimer::singleShot(0, this, [this] { End(Outcome::Unsupported); });
    }
}

void DocumentLock::GiveUp(std::function<void()> whenDone)
{
    isGivenUp = true;
    if (!IsHeld()) {
        QTimer::singleShot(0, this, whenDone);
        return;
    }
    const HttpRequest unlock = Unlock(url, std::exchange(token, {}));
    requests.Send(unlock, [done = std::move(whenDone)](HttpResponse&&) { done(); });
}

void DocumentLock::Try()
{
    ++attempts;
    askedAt = std::chrono::system_clock::now();
    requests.Send(Lock(url), [this](HttpResponse&& response) { OnResponse(std::move(response)); });
}

void DocumentLock::OnResponse(HttpResponse&& response)
{
    const int status = response.Status();
    token = LockTokenOf(response);
    duration = LockDurationOf(response);
    failure = std::move(response);
    if (!token.isEmpty()) {
        session.hasLocks = true;
    }
    if (status == 201) {
        LookWhatWasLocked();
    } else if (!token.isEmpty()) {
        End(Outcome::Locked);
    } else if (status == 423 && attempts < maxAttempts) {
        QTimer::singleShot(pause, this, [this] { Try(); });
    } else if (status == 423) {
        End(Outcome::Taken);
    } else if (IsMissing(status)) {
        End(Outcome::Missing);
    } else if (session.hasLocks.value_or(false) || status == 0 || status == 401 || status == 429 || status >= 502) {
        End(Outcome::Failed);
    } else {
        session.hasLocks = false;
        End(Outcome::Unsupported);
    }
}

void DocumentLock::LookWhatWasLocked()
{
    // What a lock makes is empty. There are servers that say "created" of the lock, and it is a document that they have
    // locked.
    files.LookAt(url, [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (entry && entry->size == 0 && !wasEmpty) {
            RemoveWhatWasMade();
        } else if (entry) {
            End(IsHeld() ? Outcome::Locked : Outcome::Unsupported);
        } else if (IsMissing(response.Status())) {
            End(Outcome::Missing);
        } else {
            failure = response;
            End(Outcome::Failed);
        }
    });
}

void DocumentLock::RemoveWhatWasMade()
{
    HttpRequest remove = Allow(OnLane(lane, Delete(url)));
    remove.isRepeatable = false; // the second time it may meet somebody's new document
    requests.Send(remove, [this](HttpResponse&&) {
        token.clear(); // has gone with it
        End(Outcome::Missing);
    });
}

void DocumentLock::End(Outcome outcome)
{
    CallOnce(done, outcome); // it may destroy this object
}

void DocumentLock::NoteRemoval()
{
    isRemoved = true;
}

bool DocumentLock::HasRunOut() const
{
    const auto age = std::chrono::system_clock::now() - askedAt;
    return IsHeld() && (age < age.zero() || 2 * age > duration); // negative when somebody has set the clock
}

HttpRequest DocumentLock::Allow(const HttpRequest& request) const
{
    return token.isEmpty() ? request : WithLock(request, url, token);
}

} // namespace Norlis::Social
