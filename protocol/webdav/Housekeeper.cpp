#include "Housekeeper.h"

#include "WebDavSession.h"
#include <base/Utf8.h>
#include <files/AtomicFile.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>
#include <protocol/dav/EntityTag.h>

#include <QTimer>

namespace Norlis::Social {

namespace {

constexpr int disconnectDelay = 150;      // milliseconds, after which a server has noticed that a connection is gone
const auto nowhere = QStringLiteral("/"); // in place of a local path

/// Beside the documents in the memory of versions, whose ids have no blank.
const auto leftoverPrefix = QStringLiteral("leftover ");

} // namespace

Housekeeper::Housekeeper(WebDavSession& session) : session(session), requests(session.http) {}

Housekeeper::~Housekeeper()
{
    const auto left = undeleted - leftovers;
    for (const QByteArray& name : left) {
        LeaveForNextTime(name);
    }
}

void Housekeeper::DeleteFile(const QByteArray& name, bool mayBeWritten, std::function<void()> done)
{
    ++tasks;
    undeleted.insert(name);
    const HttpRequest request = Delete(session.collection.UrlOf(name));
    const auto end = [this, done = std::move(done)] {
        --tasks;
        if (done) {
            done();
        }
    };
    requests.Send(request, [this, name, request, mayBeWritten, end](HttpResponse&& response) {
        if (!mayBeWritten) {
            OnDeleted(name, response);
            end();
            return;
        }
        QTimer::singleShot(disconnectDelay, this, [this, name, request, end] {
            requests.Send(request, [this, name, end](HttpResponse&& second) {
                OnDeleted(name, second);
                end();
            });
        });
    });
}

void Housekeeper::OnDeleted(const QByteArray& name, const HttpResponse& response)
{
    const bool isGone = response.HasSucceeded() || IsMissing(response.Status());
    if (isGone) {
        undeleted.remove(name);
        if (leftovers.remove(name)) {
            session.versions.Forget(leftoverPrefix + FromUtf8(name));
        }
    }
}

void Housekeeper::LeaveForNextTime(const QByteArray& name)
{
    session.versions.Remember(leftoverPrefix + FromUtf8(name), nowhere, {});
}

void Housekeeper::DeleteLeftovers()
{
    const QStringList left = session.versions.DocumentsBeginningWith(leftoverPrefix);
    for (const QString& noted : left) {
        const QString name = noted.mid(leftoverPrefix.size());
        if (Files::AtomicFile::IsTemporaryName(name)) { // nothing else is ours
            leftovers.insert(name.toUtf8());
            DeleteFile(name.toUtf8(), false);
        }
    }
}

void Housekeeper::ReleaseLock(const QByteArray& url, const QByteArray& token)
{
    ++tasks;
    requests.Send(Unlock(url, token), [this](HttpResponse&&) { --tasks; });
}

void Housekeeper::ReleaseLockOfRemoved(const QByteArray& url, const QByteArray& token)
{
    if (session.removesLocks) {
        return;
    }
    ++tasks;
    requests.Send(Unlock(url, token), [this](HttpResponse&& response) {
        const int status = response.Status();
        session.removesLocks = IsMissing(status) || status == 400 || status == 409 || status == 412;
        --tasks;
    });
}

void Housekeeper::StoreHash(const DavDocument& document)
{
    if (session.isNextcloudLike || document.etag.isEmpty() || document.md5.isEmpty() ||
        !session.storesProperties.value_or(true)) {
        return;
    }
    ++tasks;
    const HttpRequest store = StoreMd5(session.collection.UrlOf(document.name), document.md5, document.etag);
    requests.Send(OnLane(HttpRequest::Lane::Background, store), [this, document](HttpResponse&& response) {
        if (response.fault != HttpResponse::Fault::None || IsMissing(response.Status())) {
            --tasks; // that says nothing about properties
        } else if (!session.storesProperties && IsPropertyStored(response)) {
            LookForHash(document);
        } else {
            session.storesProperties = IsPropertyStored(response);
            --tasks;
        }
    });
}

void Housekeeper::LookForHash(const DavDocument& document)
{
    const HttpRequest look = PropFind(session.collection.UrlOf(document.name));
    requests.Send(OnLane(HttpRequest::Lane::Background, look), [this, document](HttpResponse&& response) {
        --tasks;
        const auto entry = EntryOfDepth0(response, session.PathOf(document.name));
        if (entry && EntityTag{entry->etag}.SameIgnoringWeakness({document.etag})) { // nobody has replaced it since
            session.storesProperties = entry->storedMd5 == document.md5;
        }
    });
}

} // namespace Norlis::Social
