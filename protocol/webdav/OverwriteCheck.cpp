#include "OverwriteCheck.h"

#include <files/AtomicFile.h>

namespace Norlis::Social {

HttpRequest MoveFile(const Collection& collection, const QByteArray& from, const QByteArray& to, bool mayOverwrite)
{
    HttpRequest request;
    request.method = "MOVE";
    request.url = collection.UrlOf(from);
    // Some servers refuse a Destination that is a mere path, and some take a missing Overwrite for F.
    request.fields = {{"Destination", collection.UrlOf(to)}, {"Overwrite", mayOverwrite ? "T" : "F"}};
    request.lane = HttpRequest::Lane::Transfer;
    request.isRepeatable = false;
    return request;
}

OverwriteCheck::OverwriteCheck(WebDavServer& server, const QByteArray& uploaded, Done done)
    : server(server),
      uploaded(uploaded),
      small(Files::AtomicFile::NewTemporaryName().toUtf8()),
      done(std::move(done)),
      requests(server.http)
{
    HttpRequest put;
    put.method = "PUT";
    put.url = server.collection.UrlOf(small);
    put.fields = {{"Content-Type", "application/octet-stream"}};
    put.body = "-";
    put.lane = HttpRequest::Lane::Transfer;
    requests.Send(put, [this](HttpResponse&& response) {
        if (response.HasSucceeded()) {
            TryToOverwrite();
        } else {
            End(this->uploaded, small);
        }
    });
}

void OverwriteCheck::TryToOverwrite()
{
    requests.Send(MoveFile(server.collection, uploaded, small, false), [this](HttpResponse&& response) {
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
    HttpRequest remove;
    remove.method = "DELETE";
    remove.url = server.collection.UrlOf(leftover);
    remove.lane = HttpRequest::Lane::Transfer;
    requests.Send(remove, [this, name](HttpResponse&&) {
        const auto whenDone = done; // it destroys this object
        whenDone(name);
    });
}

} // namespace Norlis::Social
