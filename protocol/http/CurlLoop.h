#pragma once

#include <base/Lifetime.h>

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

#include <curl/curl.h>

namespace Norlis::Social {

/// Runs libcurl's transfers from Qt's event loop. Lives on one thread.
class CurlLoop : public QObject {
public:
    using Done = std::function<void(CURLcode)>;

    CurlLoop();
    ~CurlLoop() override;

    /// Starts a transfer. done is called from the event loop when it has ended and been removed, unless Remove comes
    /// before. Like Remove and Resume, not to be called from inside libcurl's callbacks.
    void Add(CURL* handle, Done done);
    void Remove(CURL* handle);

    /// Continues a transfer whose callback asked for a pause.
    void Resume(CURL* handle);

private:
    struct Watched {
        std::unique_ptr<QSocketNotifier> readable;
        std::unique_ptr<QSocketNotifier> writable;
    };

    static int OnSocket(CURL* handle, curl_socket_t socket, int action, void* self, void* unused);
    static int OnTimer(CURLM* multi, long milliseconds, void* self);

    void Watch(curl_socket_t socket, int action);
    std::unique_ptr<QSocketNotifier> Notifier(curl_socket_t socket, QSocketNotifier::Type type, int flag);
    void Act(curl_socket_t socket, int flags);
    void CollectEnded();

    /// What is to be called for the next transfer that has ended, and with what.
    std::optional<std::pair<Done, CURLcode>> TakeEnded();

    CURLM* const multi;
    std::unordered_map<curl_socket_t, Watched> watched;
    std::unordered_map<CURL*, Done> running;
    std::unordered_map<CURL*, CURLcode> refused; ///< of those, when they were resumed
    QTimer timer;
    Lifetime lifetime; ///< what is called for a transfer that has ended may destroy this object
};

} // namespace Norlis::Social
