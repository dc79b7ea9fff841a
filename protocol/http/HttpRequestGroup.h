#pragma once

#include "HttpClient.h"

#include <set>

namespace Norlis::Social {

/// The requests that one piece of work has sent. They are cancelled with it.
class HttpRequestGroup {
public:
    explicit HttpRequestGroup(HttpClient& http) : http(http) {}
    ~HttpRequestGroup();

    HttpRequestGroup(const HttpRequestGroup&) = delete;
    HttpRequestGroup& operator=(const HttpRequestGroup&) = delete;

    /// done is called once, from the event loop, unless the request is cancelled.
    void Send(const HttpRequest& request, HttpClient::Done done);
    void CancelAll();

private:
    HttpClient& http;
    std::set<qint64> running; ///< ids
};

} // namespace Norlis::Social
