#include "ServiceConnection.h"

#include <QElapsedTimer>
#include <QMetaObject>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include <sys/syscall.h>
#include <unistd.h>

namespace Norlis::Social {

namespace {

constexpr int maxSlice = 4; // milliseconds; a frame of a smooth window has 16

std::shared_ptr<TransferToken> TokenOf(const Request::Any& request)
{
    if (const auto upload = std::get_if<Request::Upload>(&request)) {
        return upload->token;
    }
    if (const auto download = std::get_if<Request::Download>(&request)) {
        return download->token;
    }
    return nullptr;
}

/// QThread says that a thread has ended a little too early: what libraries keep for each thread is destroyed after
/// that, and must not meet the end of the program, which destroys it too (OpenSSL).
void AwaitEndOf(pid_t thread)
{
    constexpr int most = 1'000;
    for (int look = 0; look < most && syscall(SYS_tgkill, getpid(), thread, 0) == 0; ++look) {
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
}

} // namespace

ServiceConnection::ServiceConnection(const CloudServiceFactory& makeService)
{
    worker = new QObject;
    worker->moveToThread(&thread);
    thread.setObjectName("norlis-cloud");
    thread.start();
    const CloudService::Listener listener = {
        [this](qint64 id, Reply reply) {
            Post({id, -1, std::move(reply)});
        },
        [this](qint64 id, int percent) {
            Post({id, percent, {}});
        },
    };
    QMetaObject::invokeMethod(worker, [this, makeService, listener] {
        threadId = static_cast<pid_t>(syscall(SYS_gettid));
        service = makeService(listener);
    });
}

ServiceConnection::~ServiceConnection()
{
    while (!pending.empty()) {
        Cancel(pending.begin()->first);
    }
    HandOver();
    QMetaObject::invokeMethod(worker, [this] {
        service->Shutdown([this] {
            service.reset();
            worker->deleteLater(); // when the thread's event loop ends
            thread.quit();
        });
    });
    thread.wait();
    AwaitEndOf(threadId);
}

qint64 ServiceConnection::Send(const Request::Any& request, ReplyHandler onReply, ProgressHandler onProgress)
{
    const qint64 id = ++lastId;
    pending.emplace(id, Pending{std::move(onReply), std::move(onProgress), TokenOf(request)});
    unsent.emplace(id, request);
    ScheduleHandover();
    return id;
}

qint64 ServiceConnection::Answer(Reply reply, ReplyHandler onReply)
{
    const qint64 id = ++lastId;
    pending.emplace(id, Pending{std::move(onReply), {}, nullptr});
    Post({id, -1, std::move(reply)});
    return id;
}

void ServiceConnection::Cancel(qint64 id)
{
    const auto found = pending.find(id);
    if (found == pending.end()) {
        return;
    }
    const auto cancelled = std::move(found->second); // destroyed last: its callbacks may hold anything
    pending.erase(found);
    if (unsent.erase(id) != 0) {
        return;
    }
    canceled.push_back(id);
    const QString newDocument = cancelled.token ? cancelled.token->Cancel() : QString();
    if (!newDocument.isEmpty()) {
        unsent.emplace(++lastId, Request::Remove{newDocument}); // nobody waits for the reply
    }
    ScheduleHandover();
}

void ServiceConnection::ScheduleHandover()
{
    if (!isHandoverScheduled) {
        isHandoverScheduled = true;
        QMetaObject::invokeMethod(
            this, [this] { HandOver(); }, Qt::QueuedConnection);
    }
}

void ServiceConnection::HandOver()
{
    isHandoverScheduled = false;
    QMetaObject::invokeMethod(worker, [this, requests = std::exchange(unsent, {}), ids = std::exchange(canceled, {})] {
        for (const qint64 id : ids) {
            service->Cancel(id);
        }
        for (const auto& [id, request] : requests) {
            service->Start(id, request);
        }
    });
}

void ServiceConnection::Post(Message message)
{
    const std::lock_guard lock(mutex);
    arrived.push_back(std::move(message));
    ScheduleDelivery();
}

void ServiceConnection::ScheduleDelivery()
{
    if (!isDeliveryScheduled) {
        isDeliveryScheduled = true;
        QMetaObject::invokeMethod(
            this, [this] { Deliver(); }, Qt::QueuedConnection);
    }
}

void ServiceConnection::Deliver()
{
    QElapsedTimer slice;
    slice.start();
    const auto guard = lifetime.Watch();
    {
        const std::lock_guard lock(mutex);
        isDeliveryScheduled = false;
        if (delivering.empty()) {
            delivering = std::exchange(arrived, {});
            std::reverse(delivering.begin(), delivering.end());
        }
    }
    while (!delivering.empty()) {
        Message message = std::move(delivering.back());
        delivering.pop_back();
        {
            // Before the callback, which may run an event loop of its own, such as that of a dialog.
            const std::lock_guard lock(mutex);
            if (!delivering.empty() || !arrived.empty()) {
                ScheduleDelivery();
            }
        }
        DeliverOne(std::move(message));
        if (!guard || slice.elapsed() >= maxSlice) {
            return; // the callback has destroyed the connection, or the rest waits for its turn
        }
    }
}

void ServiceConnection::DeliverOne(Message message)
{
    const auto found = pending.find(message.id);
    if (found == pending.end()) {
        return; // cancelled meanwhile
    }
    if (message.percent >= 0) {
        const auto onProgress = found->second.onProgress; // the callback may cancel the request
        if (onProgress) {
            onProgress(message.id, message.percent);
        }
        return;
    }
    const auto answered = std::move(found->second);
    pending.erase(found);
    answered.onReply(message.id, std::move(message.reply));
}

} // namespace Norlis::Social
