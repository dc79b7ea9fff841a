#pragma once

#include "FileRequests.h"
#include "WebDavSession.h"
#include <base/Lifetime.h>
#include <protocol/http/HttpRequestGroup.h>

#include <QObject>

#include <chrono>
#include <functional>

namespace Norlis::Social {

/// Keeps others from changing a document while it is replaced or removed: an exclusive write lock (RFC 4918, 6), which
/// runs out by itself after a minute. Only with it is a look at the document still true when the next request arrives:
/// servers do not compare the entity tags of a MOVE in one step with carrying it out.
class DocumentLock : public QObject {
public:
    enum class Outcome {
        Locked,
        Unsupported, ///< the server has no locks
        Taken,       ///< by somebody else, for longer than was waited; or it has run out again and again
        Missing,     ///< there is no such document any more
        Failed,      ///< Failure() says why
    };
    using Done = std::function<void(Outcome)>;

    /// \param document that has just been seen: some servers make one of a name that is free
    DocumentLock(WebDavSession& session, const DavDocument& document, HttpRequest::Lane lane);

    /// Gives back the lock, in the background.
    ~DocumentLock() override;

    /// Done is called once, from the event loop, within some seconds. Again for a lock that has run out.
    void Acquire(Done done);

    /// Gives back the lock now: there are servers that take no token that they have given. Done is called from the
    /// event loop; nothing is locked from then on, and Acquire says that there are no locks.
    void GiveUp(std::function<void()> done);

    /// The document was removed under it.
    void NoteRemoval();

    /// It may soon run out, or has done so: what was looked at under it may no longer be true. So it is when this
    /// program, or the computer, has stood still for a while.
    bool HasRunOut() const;

    /// The request, carried out though the document is locked. Unchanged without a lock.
    HttpRequest Allow(const HttpRequest& request) const;

    bool IsHeld() const
    {
        return !token.isEmpty();
    }

    const HttpResponse& Failure() const
    {
        return failure;
    }

private:
    void Try();
    void OnResponse(HttpResponse&& response);
    void LookWhatWasLocked();
    void RemoveWhatWasMade();
    void End(Outcome outcome);

    WebDavSession& session;
    const QByteArray url;
    const bool wasEmpty; ///< the document, so that it looks like one that a lock has made
    const HttpRequest::Lane lane;
    QByteArray token;                              ///< with its angle brackets; empty without a lock
    std::chrono::system_clock::time_point askedAt; ///< by a clock that goes on while the computer sleeps
    std::chrono::seconds duration{0};              ///< that the server has granted
    HttpResponse failure;
    Done done;
    int attempts = 0;
    bool isGivenUp = false;
    bool isRemoved = false;
    FileRequests files;
    HttpRequestGroup requests;
};

} // namespace Norlis::Social
