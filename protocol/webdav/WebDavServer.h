#pragma once

#include "DavDocument.h"
#include "ServerErrors.h"
#include <protocol/dav/Collection.h>
#include <protocol/http/HttpClient.h>

#include <QSet>
#include <QThreadPool>

namespace Norlis::Social {

/// What the requests of one sign-in share: the way to the server, and what has been learnt about it.
struct WebDavServer {
    WebDavServer(const Collection& collection, const HttpClient::Settings& settings, const Secrets& secrets,
                 const QString& user)
        : collection(collection),
          secrets(secrets),
          user(user),
          http(settings, this->secrets)
    {
    }

    /// The reply to a request whose exchange with the server failed.
    Reply Failure(const QString& what, const QString& document, const HttpResponse& response)
    {
        const auto why = ExplainFailure(response, secrets);
        Reply reply = Failed(what, document, why.reason, why.advice);
        reply.isSignedOut = response.Status() == 401;
        return reply;
    }

    Collection collection;
    const Secrets secrets;
    const QString user; ///< empty when only the token is known

    /// It has file ids, checksums, previews and more of its own (Nextcloud, ownCloud and their kin), and replaces
    /// documents safely by itself.
    bool isFamily = false;
    std::optional<bool> keepsProperties;    ///< nothing while it is not known
    std::optional<bool> refusesToOverwrite; ///< a MOVE that must not
    DavDocuments documents;                 ///< as of the last listing and what was done since

    /// Names that new documents are being given. Some servers let two of them have the same one at the same moment.
    QSet<QByteArray> namesInTheMaking;

    HttpClient http; ///< the last member, so that it goes first
};

} // namespace Norlis::Social
