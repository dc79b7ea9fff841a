#include "CurlLoop.h"

namespace Norlis::Social {

namespace {

// More than are used at once, so that the next request finds an open connection.
constexpr long maxKeptConnections = 16;

CURLM* NewMulti()
{
    static const CURLcode once = curl_global_init(CURL_GLOBAL_DEFAULT);
    Q_UNUSED(once)
    return curl_multi_init();
}

} // namespace

CurlLoop::CurlLoop() : multi(NewMulti())
{
    curl_multi_setopt(multi, CURLMOPT_SOCKETFUNCTION, &CurlLoop::OnSocket);
    curl_multi_setopt(multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi, CURLMOPT_TIMERFUNCTION, &CurlLoop::OnTimer);
    curl_multi_setopt(multi, CURLMOPT_TIMERDATA, this);
    curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, maxKeptConnections);
    curl_multi_setopt(multi, CURLMOPT_PIPELINING, CURLPIPE_NOTHING);
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, [this] { Act(CURL_SOCKET_TIMEOUT, 0); });
}

CurlLoop::~CurlLoop()
{
    for (const auto& [handle, done] : running) {
        curl_multi_remove_handle(multi, handle);
    }
    curl_multi_cleanup(multi);
}

void CurlLoop::Add(CURL* handle, Done done)
{
    running.emplace(handle, std::move(done));
    curl_multi_add_handle(multi, handle); // asks for a timer, which starts it
}

void CurlLoop::Remove(CURL* handle)
{
    refused.erase(handle);
    if (running.erase(handle) != 0) {
        curl_multi_remove_handle(multi, handle);
    }
}

void CurlLoop::Resume(CURL* handle)
{
    if (running.count(handle) == 0) {
        return;
    }
    const CURLcode code = curl_easy_pause(handle, CURLPAUSE_CONT);
    if (code != CURLE_OK) {
        // The data that was held back has been refused; libcurl reports it here only, and forgets the transfer.
        refused[handle] = code;
        QMetaObject::invokeMethod(
            this, [this] { CollectEnded(); }, Qt::QueuedConnection);
    }
}

int CurlLoop::OnSocket(CURL*, curl_socket_t socket, int action, void* self, void*)
{
    static_cast<CurlLoop*>(self)->Watch(socket, action);
    return 0;
}

int CurlLoop::OnTimer(CURLM*, long milliseconds, void* self)
{
    QTimer& timer = static_cast<CurlLoop*>(self)->timer;
    if (milliseconds < 0) {
        timer.stop();
    } else {
        timer.start(static_cast<int>(milliseconds));
    }
    return 0;
}

void CurlLoop::Watch(curl_socket_t socket, int action)
{
    auto& entry = watched[socket];
    const bool wantsRead = action == CURL_POLL_IN || action == CURL_POLL_INOUT;
    const bool wantsWrite = action == CURL_POLL_OUT || action == CURL_POLL_INOUT;
    if (action == CURL_POLL_REMOVE) {
        for (auto* notifier : {entry.readable.release(), entry.writable.release()}) {
            if (notifier) {
                notifier->setEnabled(false);
                notifier->deleteLater(); // it may be the one that has just been activated
            }
        }
        watched.erase(socket);
        return;
    }
    if (wantsRead && !entry.readable) {
        entry.readable = Notifier(socket, QSocketNotifier::Read, CURL_CSELECT_IN);
    }
    if (wantsWrite && !entry.writable) {
        entry.writable = Notifier(socket, QSocketNotifier::Write, CURL_CSELECT_OUT);
    }
    if (entry.readable) {
        entry.readable->setEnabled(wantsRead);
    }
    if (entry.writable) {
        entry.writable->setEnabled(wantsWrite);
    }
}

std::unique_ptr<QSocketNotifier> CurlLoop::Notifier(curl_socket_t socket, QSocketNotifier::Type type, int flag)
{
    auto notifier = std::make_unique<QSocketNotifier>(socket, type);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this, socket, flag] { Act(socket, flag); });
    return notifier;
}

void CurlLoop::Act(curl_socket_t socket, int flags)
{
    int stillRunning = 0;
    curl_multi_socket_action(multi, socket, flags, &stillRunning);
    CollectEnded();
}

void CurlLoop::CollectEnded()
{
    // One after the other: what is called may remove others that have also ended, or destroy this object.
    const auto guard = lifetime.Watch();
    while (guard) {
        const auto ended = TakeEnded();
        if (!ended) {
            return;
        }
        ended->first(ended->second);
    }
}

std::optional<std::pair<CurlLoop::Done, CURLcode>> CurlLoop::TakeEnded()
{
    const auto take = [this](CURL* handle, CURLcode code) {
        const Done done = std::move(running.at(handle));
        Remove(handle);
        return std::pair(done, code);
    };
    if (!refused.empty()) {
        return take(refused.begin()->first, refused.begin()->second);
    }
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi, &left)) {
        if (message->msg == CURLMSG_DONE && running.count(message->easy_handle) != 0) {
            return take(message->easy_handle, message->data.result);
        }
    }
    return std::nullopt;
}

} // namespace Norlis::Social
