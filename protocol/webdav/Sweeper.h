#pragma once

#include "WebDavServer.h"
#include <protocol/http/HttpRequestGroup.h>

#include <QTimer>

namespace Norlis::Social {

/// Deletes the temporary files that uploads leave behind.
class Sweeper {
public:
    explicit Sweeper(WebDavServer& server);

    /// Deletes a file of ours, then calls done, whatever became of it. When the server may be writing it at this
    /// moment, it is deleted once more a little later.
    void Remove(const QByteArray& url, bool mayBeWritten, std::function<void()> done = {});

    bool IsIdle() const
    {
        return running == 0;
    }

private:
    void Send(const QByteArray& url, std::function<void()> done);

    HttpRequestGroup requests;
    int running = 0;
    QObject context;
};

} // namespace Norlis::Social
