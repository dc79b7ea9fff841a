#pragma once

#include "DavDocument.h"
#include "Housekeeper.h"
#include <protocol/dav/Collection.h>
#include <protocol/http/HttpClient.h>

#include <QSet>

#include <map>

namespace Norlis::Social {

class Listing;
struct WebDavSession;

/// Finds documents by their ids: among the known ones, otherwise by a new list. Searches that begin meanwhile share
/// that list.
class Directory {
public:
    /// The document, or the failure that says why it was not found.
    using Found = std::function<void(const DavDocument* document, Reply&& failure)>;

    explicit Directory(WebDavSession& session);
    ~Directory();

    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    /// found is called once: at once for a known document, otherwise from the event loop, unless Forget comes before.
    /// \param what for error texts
    void Find(qint64 request, const QString& id, const QString& what, Found found);
    void Forget(qint64 request);

    /// Forgets all searches.
    void Stop();

    bool IsIdle() const
    {
        return searches.empty() && !listing;
    }

private:
    struct Search {
        QString id;
        QString what;
        Found found;
    };

    void FetchList();
    void Answer(const Search& search);

    WebDavSession& session;
    std::map<qint64, Search> searches; ///< waiting for the list, by request
    std::unique_ptr<Listing> listing;
};

/// What the requests of one sign-in share: the way to the server, and what is known about it. Operations keep it alive
/// when somebody signs out or in again.
struct WebDavSession {
    /// \param user   empty when only the token is known
    /// \param onIdle see HttpClient
    WebDavSession(const Collection& collection, const HttpClient::Settings& settings, const Secrets& secrets,
                  const QString& user, std::function<void()> onIdle);

    /// The reply to a request whose exchange with the server failed.
    Reply Failure(const QString& what, const QString& document, const HttpResponse& response) const;

    /// Whether neither a search nor housekeeping is under way.
    bool IsIdle() const;

    Collection collection;
    const Secrets secrets;
    const QString user;

    /// Nextcloud, ownCloud and their kin: they have file ids, checksums, previews and more, and replace documents
    /// safely by themselves.
    bool isNextcloudLike = false;
    std::optional<bool> storesProperties;   ///< nothing while it is not known
    std::optional<bool> refusesToOverwrite; ///< by a MOVE that must not; nothing while it is not known

    DavDocuments documents; ///< as of the last list and what was done since

    /// Names that new documents are being given. Some servers let two of them have the same one at the same moment.
    QSet<QByteArray> reservedNames;

    HttpClient http;
    Directory directory;
    Housekeeper housekeeper;
};

} // namespace Norlis::Social
