#include "Housekeeper.h"

#include "WebDavSession.h"
#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>

#include <QTimer>

namespace Norlis::Social {

namespace {

constexpr int disconnectDelay = 150; // milliseconds, after which a server has noticed that a connection is gone

} // namespace

Housekeeper::Housekeeper(WebDavSession& session) : session(session), requests(session.http) {}

void Housekeeper::DeleteFile(const QByteArray& name, bool mayBeWritten, std::function<void()> done)
{
    ++tasks;
    const auto end = [this, done = std::move(done)] {
        --tasks;
        if (done) {
            done();
        }
    };
    if (!mayBeWritten) {
        SendDelete(name, end);
        return;
    }
    SendDelete(name, [this, name, end] {
        QTimer::singleShot(disconnectDelay, this, [this, name, end] { SendDelete(name, end); });
    });
}

void Housekeeper::SendDelete(const QByteArray& name, std::function<void()> done)
{
    requests.Send(Delete(session.collection.UrlOf(name)), [done = std::move(done)](HttpResponse&&) { done(); });
}

void Housekeeper::StoreHash(const DavDocument& document)
{
    if (session.isNextcloudLike || document.etag.isEmpty() || document.md5.isEmpty() ||
        !session.storesProperties.value_or(true)) {
        return;
    }
    ++tasks;
    const HttpRequest store = StoreMd5(session.collection.UrlOf(document.name), document.md5, document.etag);
    requests.Send(OnLane(HttpRequest::Lane::Background, store), [this](HttpResponse&& response) {
        --tasks;
        if (response.fault == HttpResponse::Fault::None && !IsMissing(response.Status())) {
            session.storesProperties = IsPropertyStored(response);
        }
    });
}

} // namespace Norlis::Social
