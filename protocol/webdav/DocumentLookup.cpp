#include "DocumentLookup.h"

#include "Listing.h"
#include "WebDavSession.h"

namespace Norlis::Social {

DocumentLookup::DocumentLookup(WebDavSession& session) : session(session) {}

DocumentLookup::~DocumentLookup() = default;

void DocumentLookup::Find(qint64 request, const QString& id, const QString& what, Found found)
{
    const auto known = session.documents.constFind(id);
    if (known != session.documents.constEnd()) {
        const DavDocument document = *known; // the callback may change the table
        found(&document, {});
        return;
    }
    searches[request] = {id, what, std::move(found)};
    if (!listing) {
        FetchList();
    }
}

void DocumentLookup::Forget(qint64 request)
{
    searches.erase(request);
}

void DocumentLookup::Stop()
{
    searches.clear();
    listing.reset();
}

void DocumentLookup::FetchList()
{
    listing = std::make_unique<Listing>(session, [this](Listing::Result&& result) {
        listing.reset();
        if (!result.failure) {
            Adopt(std::move(result.documents));
        }
        auto answered = std::exchange(searches, {});
        while (!answered.empty()) {
            const Search search = std::move(answered.begin()->second);
            answered.erase(answered.begin());
            if (result.failure) {
                Reply failure = *result.failure;
                failure.failure.what = search.what;
                search.found(nullptr, std::move(failure)); // it may end the sign-in, and this with it
            } else {
                Answer(search);
            }
        }
    });
}

void DocumentLookup::Adopt(DavDocuments&& found)
{
    // Nobody is shown this list: of a document that is known, the version to replace or remove is the one that was.
    for (DavDocument& each : found) {
        each.wasShown = false;
    }
    for (const DavDocument& known : qAsConst(session.documents)) {
        const auto now = found.find(known.id);
        if (now != found.end() && now->name == known.name) {
            *now = known;
        }
    }
    session.documents = std::move(found);
}

void DocumentLookup::Answer(const Search& search)
{
    const auto known = session.documents.constFind(search.id);
    if (known == session.documents.constEnd()) {
        search.found(nullptr,
                     FailureReply(search.what, {}, "The document is no longer in the cloud", "Refresh the list."));
    } else {
        const DavDocument document = *known;
        search.found(&document, {});
    }
}

} // namespace Norlis::Social
