#include "Sweeper.h"

#include <protocol/dav/DavRequests.h>

namespace Norlis::Social {

namespace {

constexpr int whileWriting = 150; // milliseconds, after which a server has noticed that a connection is gone

} // namespace

Sweeper::Sweeper(WebDavServer& server) : requests(server.http) {}

void Sweeper::Remove(const QByteArray& url, bool mayBeWritten, std::function<void()> done)
{
    ++running;
    const auto end = [this, done = std::move(done)] {
        --running;
        if (done) {
            done();
        }
    };
    if (!mayBeWritten) {
        Send(url, end);
        return;
    }
    Send(url, [this, url, end] { QTimer::singleShot(whileWriting, &context, [this, url, end] { Send(url, end); }); });
}

void Sweeper::Send(const QByteArray& url, std::function<void()> done)
{
    requests.Send(Delete(url), [done = std::move(done)](HttpResponse&&) { done(); });
}

} // namespace Norlis::Social
