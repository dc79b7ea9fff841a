#pragma once

#include "DavDocument.h"
#include "PropFind.h"
#include "WebDavServer.h"
#include <protocol/http/HttpRequestGroup.h>

namespace Norlis::Social {

/// Fetches the documents of the collection, once.
class Listing {
public:
    struct Result {
        DavDocuments documents;
        QList<CloudFile> files;       ///< in the server's order
        QList<QByteArray> leftovers;  ///< names of files that uploads left behind a day ago or earlier
        std::optional<Reply> failure; ///< then nothing follows from the rest
    };

    Listing(WebDavServer& server, std::function<void(Result)> done);

private:
    void Send();
    void Add(std::vector<DavEntry>&& entries);
    void TakeKnownHash(DavDocument& document);
    bool MayHaveStoredHashes() const;
    void OnResponse(HttpResponse&& response);

    WebDavServer& server;
    const std::function<void(Result)> done;
    HttpRequestGroup requests;
    std::shared_ptr<PropFindSink> sink;
    Result result;
    int attempts = 1;
    bool asksForHashes;          ///< looking for those that we have stored costs some servers more than all the rest
    bool hasNewVersions = false; ///< whose hashes are not known from before
};

} // namespace Norlis::Social
