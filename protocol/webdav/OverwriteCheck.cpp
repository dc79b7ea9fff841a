#include "OverwriteCheck.h"

#include <base/Lifetime.h>
#include <files/AtomicFile.h>
#include <protocol/dav/DavRequests.h>

namespace Norlis::Social {

OverwriteCheck::OverwriteCheck(WebDavSession& session, const QByteArray& uploaded, Done done)
    : session(session),
      uploaded(uploaded),
      small(Files::AtomicFile::NewTemporaryName().toUtf8()),
      done(std::move(done)),
      requests(session.http)
{
    HttpRequest put = Put(session.collection.UrlOf(small));
    put.body = "-";
    requests.Send(OnLane(HttpRequest::Lane::Transfer, put), [this](HttpResponse&& response) {
        if (response.HasSucceeded()) {
            TryToOverwrite();
        } else {
            End(this->uploaded, small);
        }
    });
}

void OverwriteCheck::TryToOverwrite()
{
    const HttpRequest move = Move(session.collection.UrlOf(uploaded), session.collection.UrlOf(small), false);
    requests.Send(OnLane(HttpRequest::Lane::Transfer, move), [this](HttpResponse&& response) {
        if (response.HasSucceeded()) {
            session.refusesToOverwrite = false;
            End(small, uploaded); // the uploaded file has that name now
        } else {
            session.refusesToOverwrite = response.Status() == 412;
            End(uploaded, small);
        }
    });
}

void OverwriteCheck::End(const QByteArray& name, const QByteArray& leftover)
{
    const HttpRequest remove = Delete(session.collection.UrlOf(leftover));
    requests.Send(OnLane(HttpRequest::Lane::Transfer, remove), [this, name](HttpResponse&&) {
        CallOnce(done, name); // it destroys this object
    });
}

} // namespace Norlis::Social
