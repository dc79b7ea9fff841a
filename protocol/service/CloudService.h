#pragma once

#include "Reply.h"
#include "Request.h"
#include <base/Lifetime.h>

#include <functional>
#include <memory>

namespace Norlis::Social {

/// One kind of cloud. Created, used and destroyed on a worker thread, which runs an event loop; nothing may block it
/// for longer than a few milliseconds.
class CloudService {
public:
    /// Where a service sends what it has to say; both may be called from inside Start.
    struct Listener {
        std::function<void(qint64 id, Reply)> reply;
        std::function<void(qint64 id, int percent)> progress;
    };

    virtual ~CloudService() = default;

    /// Begins a request, which ends in exactly one reply unless it is cancelled.
    virtual void Start(qint64 id, const Request::Any& request) = 0;

    /// Gives up a request and leaves nothing of it behind. No reply follows. Unknown ids are ignored.
    virtual void Cancel(qint64 id) = 0;

    /// Gives up all requests, without replies, then calls done, at once or from the event loop within a tenth of a
    /// second. It may destroy the service.
    virtual void Shutdown(std::function<void()> done)
    {
        CallOnce(done);
    }
};

using CloudServiceFactory = std::function<std::unique_ptr<CloudService>(const CloudService::Listener&)>;

} // namespace Norlis::Social
