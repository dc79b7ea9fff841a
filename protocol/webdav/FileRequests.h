#pragma once

#include <base/Lifetime.h>
#include <protocol/dav/DavEntry.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>
#include <protocol/http/HttpRequestGroup.h>

#include <vector>

namespace Norlis::Social {

class DocumentLock;
struct WebDavSession;

/// Requests about single files of the collection, by name, that may take several exchanges. They are cancelled with
/// their owner.
class FileRequests {
public:
    /// An entry is there if there is a file, or a collection, of that name. Otherwise the response says whether it is
    /// missing or the server does not tell.
    using Looked = std::function<void(const HttpResponse& response, const std::optional<DavEntry>& entry)>;
    using Changed = std::function<void(const ChangeResult& result)>;

    explicit FileRequests(WebDavSession& session, HttpRequest::Lane lane = HttpRequest::Lane::Transfer);

    /// What stands under a name. After a change only this shows what has become of it, so a server that fails is asked
    /// again a few times.
    void Look(const QByteArray& name, Looked looked);

    /// The same at the address that has answered a change, which is another one after a redirect.
    void LookAt(const QByteArray& url, Looked looked);

    /// Renames a file, and finds out how this server wants to be told where to.
    /// \param locks held on the file, or on what it takes the place of
    void Move(const QByteArray& from, const QByteArray& to, bool mayOverwrite,
              const std::vector<const DocumentLock*>& locks, Changed changed);

    /// Whether a MOVE may have been refused because the server does not take the destination for its own: the address,
    /// behind a proxy, is not the one that it knows itself by. A 403 says so only where TLS may end at a proxy.
    bool MayBeTheDestination(const ChangeResult& result) const;

private:
    void LookAgain(const QByteArray& url, int attempts, Looked looked);

    /// With the first of these forms, then, as long as the destination is what the server refuses, with the others.
    void MoveInForms(std::vector<DestinationForm> forms, const QByteArray& from, const QByteArray& to,
                     bool mayOverwrite, const std::vector<const DocumentLock*>& locks, Changed changed);

    WebDavSession& session;
    const HttpRequest::Lane lane;
    HttpRequestGroup requests;
    Lifetime lifetime;
};

} // namespace Norlis::Social
