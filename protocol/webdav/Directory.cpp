#include "Directory.h"

namespace Norlis::Social {

Directory::Directory(WebDavServer& server) : server(server) {}

void Directory::Find(qint64 request, const QString& id, const QString& what, Found found)
{
    const auto known = server.documents.constFind(id);
    if (known != server.documents.constEnd()) {
        const DavDocument document = *known; // what follows may change the table
        found(&document, {});
        return;
    }
    finders[request] = {id, what, std::move(found)};
    if (!listing) {
        listing = std::make_unique<Listing>(server, [this](Listing::Result&& result) { Answer(std::move(result)); });
    }
}

void Directory::Forget(qint64 request)
{
    finders.erase(request);
}

void Directory::Answer(Listing::Result&& result)
{
    listing.reset();
    if (!result.failure) {
        server.documents = std::move(result.documents);
    }
    auto answered = std::exchange(finders, {});
    while (!answered.empty()) {
        const Finder finder = std::move(answered.begin()->second);
        answered.erase(answered.begin());
        if (result.failure) {
            Reply failure = *result.failure;
            failure.failure.what = finder.what;
            finder.found(nullptr, std::move(failure)); // it may end the sign-in, and this with it
            continue;
        }
        const auto known = server.documents.constFind(finder.id);
        if (known == server.documents.constEnd()) {
            finder.found(nullptr,
                         Failed(finder.what, {}, "The document is not in the cloud any more", "Refresh the list."));
        } else {
            const DavDocument document = *known;
            finder.found(&document, {});
        }
    }
}

} // namespace Norlis::Social
