#include "OverwriteCheck.h"

#include <files/AtomicFile.h>
#include <protocol/dav/DavRequests.h>

namespace Norlis::Social {

OverwriteCheck::OverwriteCheck(WebDavServer& server, const QByteArray& uploaded, Done done)
    : server(server),
      uploaded(uploaded),
      small(Files::AtomicFile::NewTemporaryName().toUtf8()),
      done(std::move(done)),
      requests(server.http)
{
    HttpRequest put = Put(server.collection.UrlOf(small));
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
    const HttpRequest move = Move(server.collection.UrlOf(uploaded), server.collection.UrlOf(small), false);
    requests.Send(OnLane(HttpRequest::Lane::Transfer, move), [this](HttpResponse&& response) {
        if (response.HasSucceeded()) {
            server.refusesToOverwrite = false;
            End(small, uploaded); // it has its place now
        } else {
            server.refusesToOverwrite = response.Status() == 412;
            End(uploaded, small);
        }
    });
}

void OverwriteCheck::End(const QByteArray& name, const QByteArray& leftover)
{
    const HttpRequest remove = Delete(server.collection.UrlOf(leftover));
    requests.Send(OnLane(HttpRequest::Lane::Transfer, remove), [this, name](HttpResponse&&) {
        const auto whenDone = done; // it destroys this object
        whenDone(name);
    });
}

} // namespace Norlis::Social
