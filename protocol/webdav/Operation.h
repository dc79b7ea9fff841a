#pragma once

#include "WebDavSession.h"
#include <base/Lifetime.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/dav/DavResponses.h>
#include <protocol/http/HttpRequestGroup.h>
#include <protocol/service/CloudService.h>

namespace Norlis::Social {

/// One request of the user, as a chain of exchanges with the server. Destroying it cancels what is under way.
class Operation {
public:
    using Finish = std::function<void(Reply)>;

    /// \param finish called once, as the last thing; it destroys the operation
    Operation(const std::shared_ptr<WebDavSession>& session, Finish finish)
        : session(session),
          requests(session->http),
          finish(std::move(finish))
    {
    }
    virtual ~Operation() = default;

    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    virtual void Start() = 0;

    /// The user has cancelled it. True when it may be destroyed at once. False when there is something to put right
    /// first: then it finishes later, and nobody reads the reply.
    virtual bool GiveUp()
    {
        return true;
    }

protected:
    /// False once it has ended.
    bool IsUnderWay() const
    {
        return finish != nullptr;
    }

    void End(Reply reply)
    {
        CallOnce(finish, std::move(reply));
    }

    const std::shared_ptr<WebDavSession> session;
    HttpRequestGroup requests;

private:
    Finish finish;
};

} // namespace Norlis::Social
