#pragma once

#include "WebDavServer.h"
#include <protocol/http/HttpRequestGroup.h>

namespace Norlis::Social {

/// Stores the hashes of uploaded documents on the server, for the lists of later sign-ins and other machines. That goes
/// on behind the uploads, since some servers take longer for it than for the document.
class HashKeeper {
public:
    explicit HashKeeper(WebDavServer& server);

    /// Nothing happens where the server does not keep such properties, or the version has no name.
    void Keep(const DavDocument& document);

    bool IsIdle() const
    {
        return running == 0;
    }

private:
    WebDavServer& server;
    HttpRequestGroup requests;
    int running = 0;
};

} // namespace Norlis::Social
