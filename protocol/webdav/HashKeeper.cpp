#include "HashKeeper.h"

#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>

namespace Norlis::Social {

HashKeeper::HashKeeper(WebDavServer& server) : server(server), requests(server.http) {}

void HashKeeper::Keep(const DavDocument& document)
{
    if (server.isFamily || document.etag.isEmpty() || document.md5.isEmpty() ||
        !server.keepsProperties.value_or(true)) {
        return;
    }
    const HttpRequest store = StoreMd5(server.collection.UrlOf(document.name), document.md5, document.etag);
    ++running;
    requests.Send(OnLane(HttpRequest::Lane::Background, store), [this](HttpResponse&& response) {
        --running;
        if (response.fault == HttpResponse::Fault::None && !IsMissing(response.Status())) {
            server.keepsProperties = IsPropertyStored(response);
        }
    });
}

} // namespace Norlis::Social
