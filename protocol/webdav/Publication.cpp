#include "Publication.h"

#include <base/Utf8.h>
#include <files/DocumentNames.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>
#include <protocol/dav/EntityTag.h>

#include <QTimer>

namespace Norlis::Social {

namespace {

constexpr int maxNumber = 10'000;
constexpr int maxAttempts = 4;
constexpr int pause = 100; // milliseconds, longer each time

} // namespace

Publication::Publication(WebDavSession& session, const DavDocument& uploaded, Done done)
    : session(session),
      uploaded(uploaded),
      done(std::move(done)),
      requests(session.http)
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
    check = std::make_unique<OverwriteCheck>(session, uploaded.name, [this](const QByteArray& nameNow) {
        uploaded.name = nameNow;
        Try(wantedName);
    });
}

void Publication::Replace(const QByteArray& knownName)
{
    name = knownName;
    isNew = false;
    Move();
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
    LookAt(name, [this](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (entry) {
            TryNextName();
        } else if (IsMissing(response.Status())) {
            Move();
        } else {
            Fail(response, true);
        }
    });
}

void Publication::Move()
{
    ++attempts;
    const HttpRequest move =
        Social::Move(session.collection.UrlOf(uploaded.name), session.collection.UrlOf(name), !isNew);
    requests.Send(OnLane(HttpRequest::Lane::Transfer, move), [this](HttpResponse&& response) { OnMoved(response); });
}

void Publication::OnMoved(const HttpResponse& response)
{
    const bool isDoubtful = response.fault != HttpResponse::Fault::None || response.head.status == 207 ||
                            response.head.status == 404 || response.head.status == 423 || // a lock may be brief
                            response.head.status >= 500;
    if (isDoubtful) {
        LookWhetherMoved(response);
    } else if (response.HasSucceeded()) {
        Succeed();
    } else if (isNew && response.Status() == 412) {
        TryNextName();
    } else {
        Fail(response, true);
    }
}

void Publication::TryNextName()
{
    if (++number > maxNumber) {
        HttpResponse taken;
        taken.head.status = 412;
        Fail(taken, true);
        return;
    }
    attempts = 0;
    Try(Files::NumberedName(FromUtf8(wantedName), number).toUtf8());
}

void Publication::LookWhetherMoved(const HttpResponse& moveResponse)
{
    LookAt(uploaded.name,
           [this, moveResponse](const HttpResponse& propFindResponse, const std::optional<DavEntry>& entry) {
               LookAtTarget(moveResponse, entry || !IsMissing(propFindResponse.Status()));
           });
}

void Publication::LookAtTarget(const HttpResponse& moveResponse, bool isUploadedThere)
{
    LookAt(name, [this, moveResponse, isUploadedThere](const HttpResponse& propFindResponse,
                                                       const std::optional<DavEntry>& entry) {
        const bool isTargetGone = IsMissing(propFindResponse.Status());
        // Some servers delete the old document before they know that the new one can take its place.
        const bool isPassing = moveResponse.fault != HttpResponse::Fault::None || moveResponse.head.status == 423 ||
                               (!isNew && isTargetGone);
        if (!isUploadedThere && entry && IsUploaded(*entry)) {
            Succeed();
        } else if (isUploadedThere && isPassing && attempts < maxAttempts) {
            QTimer::singleShot(pause * attempts, this, [this] { Move(); });
        } else {
            Fail(moveResponse, isUploadedThere, !isNew && isTargetGone);
        }
    });
}

void Publication::LookAt(const QByteArray& looked, Looked onLooked)
{
    const HttpRequest look = PropFind(session.collection.UrlOf(looked));
    requests.Send(OnLane(HttpRequest::Lane::Transfer, look),
                  [this, looked, onLooked = std::move(onLooked)](HttpResponse&& response) {
                      DavPath path = session.collection.Path();
                      path.push_back(looked);
                      onLooked(response, EntryOfDepth0(response, path));
                  });
}

bool Publication::IsUploaded(const DavEntry& entry) const
{
    const bool hasTags = !entry.etag.isEmpty() && !uploaded.etag.isEmpty();
    return entry.size == uploaded.size && (!hasTags || EntityTag{entry.etag}.SameIgnoringWeakness({uploaded.etag}));
}

void Publication::Succeed()
{
    CallOnce(done, Outcome{name, {}, {}, false}); // it destroys this object
}

void Publication::Fail(const HttpResponse& moveResponse, bool isUploadedThere, bool isOnlyCopy)
{
    // It destroys this object.
    CallOnce(done, Outcome{{}, moveResponse, isUploadedThere ? uploaded.name : QByteArray(), isOnlyCopy});
}

} // namespace Norlis::Social
