#pragma once

#include <base/Lifetime.h>
#include <protocol/service/CloudService.h>

#include <QObject>
#include <QThread>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

namespace Norlis::Social {

/// Runs a service on a worker thread and carries requests there and replies back.
///
/// Everything that is sent in one turn of the event loop travels together, and replies are delivered in short slices,
/// so that thousands of them leave the event loop time for other things. A request that is cancelled before it has
/// travelled never reaches the service.
///
/// Lives on the thread that constructs it, which runs an event loop. Destruction cancels all requests, without replies,
/// and waits for the service to end.
class ServiceConnection : public QObject {
public:
    using ReplyHandler = std::function<void(qint64 id, Reply&&)>;
    using ProgressHandler = std::function<void(qint64 id, int percent)>;

    explicit ServiceConnection(const CloudServiceFactory& makeService);
    ~ServiceConnection() override;

    /// Returns the id of the request. onReply is called once, from the event loop, unless the request is cancelled.
    qint64 Send(const Request::Any& request, ReplyHandler onReply, ProgressHandler onProgress = {});

    /// The same for what needs no service: the reply is given.
    qint64 Answer(Reply reply, ReplyHandler onReply);

    /// Unknown ids are ignored. An upload that has made a document by now is undone.
    void Cancel(qint64 id);

private:
    struct Pending {
        ReplyHandler onReply;
        ProgressHandler onProgress;
        std::shared_ptr<TransferToken> token; ///< of a transfer
    };
    struct Message {
        qint64 id;
        int percent; ///< of a progress; -1 for a reply
        Reply reply;
    };

    void ScheduleHandover();
    void HandOver();

    /// On any thread.
    void Post(Message message);

    /// With the mutex held.
    void ScheduleDelivery();
    void Deliver();
    void DeliverOne(Message message);

    qint64 lastId = 0;
    std::unordered_map<qint64, Pending> pending;

    // Not yet handed over to the service.
    std::map<qint64, Request::Any> unsent; ///< in the order of the ids, which is the order of sending
    std::vector<qint64> canceled;
    bool isHandoverScheduled = false;

    std::mutex mutex;
    std::vector<Message> arrived;     ///< guarded
    bool isDeliveryScheduled = false; ///< guarded
    std::vector<Message> delivering;  ///< what has been taken from there, in reverse order

    QThread thread;
    pid_t threadId = 0;                    ///< as the kernel knows it; set by the thread itself
    QObject* worker = nullptr;             ///< lives on the thread; a context for what runs there
    std::unique_ptr<CloudService> service; ///< touched on the thread only

    Lifetime lifetime; ///< callbacks may destroy the connection
};

} // namespace Norlis::Social
