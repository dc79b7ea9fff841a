#include "HttpRequestGroup.h"

namespace Norlis::Social {

HttpRequestGroup::~HttpRequestGroup()
{
    CancelAll();
}

void HttpRequestGroup::Send(const HttpRequest& request, HttpClient::Done done)
{
    const auto id = std::make_shared<qint64>();
    *id = http.Send(request, [this, id, done = std::move(done)](HttpResponse&& response) {
        running.erase(*id);
        done(std::move(response));
    });
    running.insert(*id);
}

void HttpRequestGroup::CancelAll()
{
    for (const qint64 id : std::exchange(running, {})) {
        http.Cancel(id);
    }
}

} // namespace Norlis::Social
