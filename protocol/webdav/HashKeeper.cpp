#include "HashKeeper.h"

#include "PropFind.h"

namespace Norlis::Social {

HashKeeper::HashKeeper(WebDavServer& server) : server(server), requests(server.http) {}

void HashKeeper::Keep(const DavDocument& document)
{
    if (server.isFamily || document.etag.isEmpty() || document.md5.isEmpty() ||
        !server.keepsProperties.value_or(true)) {
        return;
    }
    HttpRequest request = StoreHash(server.collection.UrlOf(document.name), document.md5, document.etag);
    request.lane = HttpRequest::Lane::Background;
    ++running;
    requests.Send(request, [this](HttpResponse&& response) {
        --running;
        if (response.fault == HttpResponse::Fault::None && !IsMissing(response.Status())) {
            server.keepsProperties = IsPropertyTaken(response);
        }
    });
}

} // namespace Norlis::Social
