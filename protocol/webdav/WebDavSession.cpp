#include "WebDavSession.h"

#include "Listing.h"
#include "ServerErrors.h"

namespace Norlis::Social {

Directory::Directory(WebDavSession& session) : session(session) {}

Directory::~Directory() = default;

void Directory::Find(qint64 request, const QString& id, const QString& what, Found found)
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

void Directory::Forget(qint64 request)
{
    searches.erase(request);
}

void Directory::Stop()
{
    searches.clear();
    listing.reset();
}

void Directory::FetchList()
{
    listing = std::make_unique<Listing>(session, [this](Listing::Result&& result) {
        listing.reset();
        if (!result.failure) {
            session.documents = std::move(result.documents);
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

void Directory::Answer(const Search& search)
{
    const auto known = session.documents.constFind(search.id);
    if (known == session.documents.constEnd()) {
        search.found(nullptr, Failed(search.what, {}, "The document is no longer in the cloud", "Refresh the list."));
    } else {
        const DavDocument document = *known;
        search.found(&document, {});
    }
}

WebDavSession::WebDavSession(const Collection& collection, const HttpClient::Settings& settings, const Secrets& secrets,
                             const QString& user, std::function<void()> onIdle)
    : collection(collection),
      secrets(secrets),
      user(user),
      http(settings, this->secrets, std::move(onIdle)),
      directory(*this),
      housekeeper(*this)
{
}

Reply WebDavSession::Failure(const QString& what, const QString& document, const HttpResponse& response) const
{
    const OAuth2::Failure failure = ExplainFailure(response, secrets);
    Reply reply = Failed(what, document, failure.reason, failure.advice);
    reply.isSignedOut = response.Status() == 401;
    return reply;
}

bool WebDavSession::IsIdle() const
{
    return directory.IsIdle() && housekeeper.IsIdle();
}

} // namespace Norlis::Social
