#pragma once

#include <protocol/webdav/WebDavServer.h>

#include <set>

namespace Norlis::Social {

/// The exchanges that one piece of work has started. They are given up with it.
class WebDavRequests {
public:
    explicit WebDavRequests(HttpClient& http) : http(http) {}
    ~WebDavRequests();

    WebDavRequests(const WebDavRequests&) = delete;
    WebDavRequests& operator=(const WebDavRequests&) = delete;

    void Send(const HttpRequest& request, HttpClient::Done done);
    void CancelAll();

private:
    HttpClient& http;
    std::set<qint64> running;
};

} // namespace Norlis::Social
