#include "FolderService.h"

#include <QFileInfo>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;
const auto applicationId = QStringLiteral("pdf");

/// A document, which is rendered where it is.
class DocumentFile : public PreviewSource::File {
public:
    explicit DocumentFile(const QString& path) : path(path) {}

    QString Path() const override
    {
        return path;
    }

private:
    const QString path;
};

} // namespace

FolderService::FolderService(const OAuth2::AuthInfo& authInfo, const Listener& listener)
    : authInfo(authInfo),
      listener(listener),
      store(authInfo.serviceUrl.toLocalFile()),
      transfers(store, authInfo.storageLimit),
      previews(authInfo.cacheFolder, *this, listener.reply)
{
    stepTimer.setInterval(0);
    QObject::connect(&stepTimer, &QTimer::timeout, &stepTimer, [this] { Step(); });
}

FolderService::~FolderService() = default;

void FolderService::Start(qint64 id, const Request::Any& request)
{
    std::visit([&](const auto& known) { Begin(id, known); }, request);
}

void FolderService::Cancel(qint64 id)
{
    previews.Cancel(id);
    for (Jobs* jobs : {&lists, &copies}) {
        jobs->erase(std::remove_if(jobs->begin(), jobs->end(), [&](const QueuedJob& job) { return job.id == id; }),
                    jobs->end());
    }
}

Reply FolderService::Handle(const Request::SignIn&)
{
    if (const auto reason = store.Open()) {
        return FailureReply("Sign-in", {}, *reason,
                            "Create the folder, or make its drive available, and sign in again.");
    }
    store.RemoveLeftovers();
    return {};
}

Reply FolderService::Handle(const Request::SignOut&)
{
    return {};
}

Reply FolderService::Handle(const Request::UserName&)
{
    return {Success, qEnvironmentVariable("USER", QFileInfo(authInfo.serviceUrl.toLocalFile()).owner()), {}};
}

Reply FolderService::Handle(const Request::UserPage&)
{
    return {Success, authInfo.serviceUrl, {}};
}

Reply FolderService::Handle(const Request::UserPictureAddress&)
{
    return {Success, QString(), {}};
}

Reply FolderService::Handle(const Request::UserPicture&)
{
    return {Success, QImage(), {}};
}

Reply FolderService::Handle(const Request::Info& request)
{
    const auto document = store.Find(request.document);
    return document ? Reply{Success, EntryOf(*document, store.KnownHash(*document)), {}}
                    : NoSuchDocument("Fetching a document's entry", store);
}

Reply FolderService::Handle(const Request::Remove& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        return NoSuchDocument("Removal", store);
    }
    QFile file(document->path);
    if (!file.remove()) {
        return FailureReply("Removal", document->name, file.errorString(), "Check that you may write to the folder.");
    }
    Files::AtomicFile::SyncFolderOf(document->path);
    return {};
}

Reply FolderService::Handle(const Request::Quota&)
{
    if (const auto reason = store.Validate()) {
        return FailureReply("Fetching the storage usage", {}, *reason, "Make the folder available again.");
    }
    const qint64 used = store.UsedBytes();
    const qint64 total = authInfo.storageLimit > 0 ? authInfo.storageLimit : used + store.FreeBytes();
    const Ability::Quota::QuotaValue value{(used + bytesPerMiB - 1) / bytesPerMiB, total / bytesPerMiB};
    return {Success, QuotaByApplication{{applicationId, value}}, {}};
}

Reply FolderService::Handle(const Request::Capabilities&)
{
    return {Success, ServiceCapabilities{{"service", "folder"}, {"usable", store.Validate() ? "no" : "yes"}}, {}};
}

void FolderService::Begin(qint64 id, const Request::List&)
{
    AddJob(lists, id, std::make_unique<ListJob>(store));
}

void FolderService::Begin(qint64 id, const Request::Preview& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        listener.reply(id, NoSuchDocument("Fetching a preview", store));
        return;
    }
    if (request.box.isEmpty()) {
        listener.reply(id, FailureReply("Fetching a preview", document->name, "The requested size is empty"));
        return;
    }
    previews.Add(id, {document->id, document->name, document->version.ToString()}, request.box);
}

std::unique_ptr<PreviewSource::Fetch> FolderService::FetchForPreview(const PreviewSubject& subject, const QSize&,
                                                                     Done done)
{
    const Result result{std::make_shared<DocumentFile>(store.PathOf(subject.name)), {}, {}};
    return std::make_unique<CompletedFetch>(result, std::move(done));
}

void FolderService::Begin(qint64 id, const Request::Download& request)
{
    StartTransfer(id, transfers.Download(request));
}

void FolderService::Begin(qint64 id, const Request::Upload& request)
{
    StartTransfer(id, transfers.Upload(request));
}

void FolderService::StartTransfer(qint64 id, FolderTransfers::Plan plan)
{
    if (const auto refusal = std::get_if<Reply>(&plan)) {
        listener.reply(id, std::move(*refusal));
        return;
    }
    auto task = std::get<CopyJob::Task>(std::move(plan));
    task.progress = [this, id](int percent) { listener.progress(id, percent); };
    AddJob(copies, id, std::make_unique<CopyJob>(std::move(task)));
}

void FolderService::AddJob(Jobs& jobs, qint64 id, std::unique_ptr<FolderJob> job)
{
    jobs.push_back({id, std::move(job)});
    stepTimer.start();
}

void FolderService::Step()
{
    constexpr std::size_t maxAtOnce = 4; // more would only make the disk seek
    if (!lists.empty()) {
        StepFirstOf(lists);
    }
    if (!copies.empty()) {
        StepFirstOf(copies);
    }
    if (!copies.empty()) {
        const auto count = static_cast<std::ptrdiff_t>(std::min(copies.size(), maxAtOnce));
        std::rotate(copies.begin(), copies.begin() + 1, copies.begin() + count);
    }
    if (lists.empty() && copies.empty()) {
        stepTimer.stop();
    }
}

void FolderService::StepFirstOf(Jobs& jobs)
{
    if (auto reply = jobs.front().job->Step()) {
        const qint64 id = jobs.front().id;
        jobs.pop_front();
        listener.reply(id, std::move(*reply));
    }
}

} // namespace Norlis::Social
