#pragma once

#include "FolderJobs.h"
#include "FolderStore.h"
#include <protocol/preview/PreviewQueue.h>
#include <protocol/service/CloudService.h>

#include <QTimer>

#include <deque>
#include <memory>

namespace Norlis::Social {

/// A folder as a cloud. Whoever may read the folder is signed in by any token.
class FolderService : public CloudService, private PreviewSource {
public:
    FolderService(const OAuth2::AuthInfo& authInfo, const Listener& listener);
    ~FolderService() override;

    void Start(qint64 id, const Request::Any& request) override;
    void Cancel(qint64 id) override;

private:
    struct Work {
        qint64 id;
        std::unique_ptr<FolderJob> job;
    };
    using Jobs = std::deque<Work>;

    Reply NoSuchDocument(const QString& what);
    Reply Handle(const Request::SignIn& request);
    Reply Handle(const Request::SignOut& request);
    Reply Handle(const Request::UserName& request);
    Reply Handle(const Request::UserPage& request);
    Reply Handle(const Request::UserPictureAddress& request);
    Reply Handle(const Request::UserPicture& request);
    Reply Handle(const Request::Info& request);
    Reply Handle(const Request::Remove& request);
    Reply Handle(const Request::Quota& request);
    Reply Handle(const Request::Capabilities& request);

    void Begin(qint64 id, const Request::List& request);
    void Begin(qint64 id, const Request::Download& request);
    void Begin(qint64 id, const Request::Upload& request);
    void Begin(qint64 id, const Request::Preview& request);

    template <typename AnyOther>
    void Begin(qint64 id, const AnyOther& request)
    {
        listener.reply(id, Handle(request));
    }

    std::unique_ptr<Fetch> FetchForPreview(const PreviewSubject& subject, const QSize& box, Done done) override;

    void StartCopy(qint64 id, CopyJob::Task task);

    /// Gives a whole upload its name: that of the document to replace, or else the first free one.
    Reply Publish(const Request::Upload& request, const QString& name, Files::AtomicFile& copy,
                  const Files::FileReader& source);
    void AddJob(Jobs& jobs, qint64 id, std::unique_ptr<FolderJob> job);

    /// One step of a list and one of a transfer, so that neither waits for the other to end.
    void Step();

    /// Takes the job out, and replies, when this step has ended it.
    void StepFirstOf(Jobs& jobs);

    /// Why another document of a size, in bytes, has no room; empty when it has.
    QString WhyNoRoom(qint64 size, const QString& replacedDocument);
    qint64 UsedBytes(const QString& exceptDocument = {});

    const OAuth2::AuthInfo authInfo;
    const Listener listener;
    FolderStore store;
    PreviewQueue previews;
    Jobs lists;     ///< answered in the order of asking
    Jobs transfers; ///< the first one has the next step
    QTimer stepTimer;
};

} // namespace Norlis::Social
