#pragma once

#include "WebDavServer.h"
#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>
#include <protocol/http/HttpRequestGroup.h>
#include <protocol/service/CloudService.h>

namespace Norlis::Social {

/// One request of the user, as a chain of exchanges with the server. Destroying it gives up what is under way.
class Operation {
public:
    using Finish = std::function<void(Reply)>;

    /// \param finish called once, as the last thing; it destroys the operation
    Operation(const std::shared_ptr<WebDavServer>& server, Finish finish)
        : server(server),
          requests(server->http),
          finish(std::move(finish))
    {
    }
    virtual ~Operation() = default;

    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    virtual void Start() = 0;

    /// The user wants it no longer. False when there is something to put right first: then it finishes later, and
    /// nobody reads the reply.
    virtual bool GiveUp()
    {
        return true;
    }

protected:
    void End(Reply reply)
    {
        const auto whenFinished = std::move(finish);
        whenFinished(std::move(reply));
    }

    const std::shared_ptr<WebDavServer> server;
    HttpRequestGroup requests;

private:
    Finish finish;
};

} // namespace Norlis::Social
