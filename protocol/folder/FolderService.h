#pragma once

#include "FolderJobs.h"
#include "FolderStore.h"
#include "FolderTransfers.h"
#include "FolderWatch.h"
#include <protocol/preview/PreviewQueue.h>
#include <protocol/service/CloudService.h>
#include <protocol/service/QuotaRequests.h>
#include <protocol/service/ServiceKind.h>
#include <protocol/service/VersionMemory.h>

#include <QTimer>

#include <deque>
#include <memory>
#include <vector>

namespace Norlis::Social {

/// A folder as a cloud. Any token signs in, as long as the folder can be read.
class FolderService : public CloudService, private PreviewSource {
public:
    static ServiceKind Kind();

    FolderService(const OAuth2::AuthInfo& authInfo, const Listener& listener);
    ~FolderService() override;

    void Start(qint64 id, const Request::Any& request) override;
    void Cancel(qint64 id) override;

private:
    struct QueuedJob {
        qint64 id;
        std::unique_ptr<FolderJob> job;
    };
    using Jobs = std::deque<QueuedJob>;

    Reply Handle(const Request::SignIn& request);
    Reply Handle(const Request::SignOut& request);
    Reply Handle(const Request::UserName& request);
    Reply Handle(const Request::UserPage& request);
    Reply Handle(const Request::UserPictureAddress& request);
    Reply Handle(const Request::UserPicture& request);
    Reply Handle(const Request::Info& request);
    Reply Handle(const Request::CopyMoved& request);
    Reply Handle(const Request::AcceptVersion& request);
    Reply Handle(const Request::Capabilities& request);

    void Begin(qint64 id, const Request::List& request);
    void Begin(qint64 id, const Request::Change& request);
    void Begin(qint64 id, const Request::Download& request);
    void Begin(qint64 id, const Request::Upload& request);
    void Begin(qint64 id, const Request::Preview& request);
    void Begin(qint64 id, const Request::LocalPreview& request);
    void Begin(qint64 id, const Request::Remove& request);
    void Begin(qint64 id, const Request::Quota& request);

    template <typename AnyOther>
    void Begin(qint64 id, const AnyOther& request)
    {
        listener.reply(id, Handle(request));
    }

    std::unique_ptr<Fetch> FetchForPreview(const PreviewSubject& subject, const QSize& box, Done done) override;

    Reply Quota();
    void StartTransfer(qint64 id, FolderTransfers::Plan plan);
    void AddJob(Jobs& jobs, qint64 id, std::unique_ptr<FolderJob> job);

    /// Takes one step of a list, one of a transfer and one of a removal, so that none waits for the other to end.
    void Step();

    /// Replies, and removes the job, when this step has ended it.
    void StepFirstOf(Jobs& jobs);

    /// Whether every job that would be stepped waits for another program.
    bool IsWaiting() const;

    const OAuth2::AuthInfo authInfo;
    const Listener listener;
    FolderStore store;
    VersionMemory versions;
    SeenVersions seen;
    FolderTransfers transfers;
    PreviewQueue previews;
    QuotaRequests quotas;
    Jobs lists;  ///< answered in the order of the requests
    Jobs copies; ///< of transfers; the first takes the next step
    Jobs removals;
    Hashing hashing; ///< of what lists did not take the time for
    QTimer stepTimer;
    FolderWatch watch;
    std::vector<qint64> changeRequests; ///< answered by the next change
};

} // namespace Norlis::Social
