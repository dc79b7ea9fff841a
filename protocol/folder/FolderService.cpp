#include "FolderService.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace Norlis::Social {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;
constexpr std::size_t maxAtOnce = 4; // transfers; more would only make the disk seek
constexpr int lookInterval = 10;     // milliseconds
const auto applicationId = QStringLiteral("pdf");
const auto example = QStringLiteral("a folder, such as file:///home/me/Cloud");

} // namespace

ServiceKind FolderService::Kind()
{
    return {{"file"},
            example,
            [](const OAuth2::AuthInfo& authInfo) {
                return authInfo.serviceUrl.toLocalFile().isEmpty() ? std::optional("give the address of " + example)
                                                                   : std::nullopt;
            },
            [](const OAuth2::AuthInfo& authInfo, const std::string&, const Listener& listener)
                -> std::unique_ptr<CloudService> { return std::make_unique<FolderService>(authInfo, listener); }};
}

FolderService::FolderService(const OAuth2::AuthInfo& authInfo, const Listener& listener)
    : authInfo(authInfo),
      listener(listener),
      store(authInfo.serviceUrl.toLocalFile()),
      versions(MemoryFile("versions", authInfo)),
      seen(versions),
      transfers(store, seen, authInfo.storageLimit),
      previews(authInfo.cacheFolder, *this, listener.reply),
      quotas([this](const auto& found) { found(Quota()); }, [this] { return !copies.empty(); }, listener.reply),
      hashing(store),
      watch(store.Folder(), [this] {
          for (const qint64 id : std::exchange(changeRequests, {})) {
              this->listener.reply(id, {});
          }
      })
{
    QObject::connect(&stepTimer, &QTimer::timeout, &stepTimer, [this] { Step(); });
}

FolderService::~FolderService()
{
    store.SaveHashes();
}

void FolderService::Start(qint64 id, const Request::Any& request)
{
    std::visit([&](const auto& known) { Begin(id, known); }, request);
}

void FolderService::Cancel(qint64 id)
{
    previews.Cancel(id);
    quotas.Cancel(id);
    changeRequests.erase(std::remove(changeRequests.begin(), changeRequests.end(), id), changeRequests.end());
    for (Jobs* jobs : {&lists, &copies, &removals}) {
        jobs->erase(std::remove_if(jobs->begin(), jobs->end(), [&](const QueuedJob& job) { return job.id == id; }),
                    jobs->end());
    }
}

Reply FolderService::Handle(const Request::SignIn&)
{
    if (const auto reason = store.Open()) {
        return FailureReply("Sign-in", {}, *reason,
                            "Create the folder, or make its drive available, and sign in again.",
                            OAuth2::FailureKind::Unavailable);
    }
    if (const auto reason = store.CompareWithMemory(authInfo.dataFolder)) {
        store.Close();
        return FailureReply("Sign-in", {}, *reason,
                            QStringLiteral("Make its drive available and sign in again. If this is the right folder, "
                                           "delete %1 first.")
                                .arg(store.MemoryFile(authInfo.dataFolder)),
                            OAuth2::FailureKind::Unavailable);
    }
    store.RemoveLeftovers();
    return {};
}

Reply FolderService::Handle(const Request::SignOut&)
{
    seen.Forget();
    if (!authInfo.dataFolder.isEmpty()) {
        QFile::remove(store.MemoryFile(authInfo.dataFolder));
    }
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
    if (!document) {
        return NoSuchDocument("Fetching a document's entry", store);
    }
    const QString md5Hash = store.HashOf(*document).md5Hash;
    seen.Show(document->id, {document->version, md5Hash, document->isSettled});
    return {Success, EntryOf(*document, md5Hash), {}};
}

Reply FolderService::Handle(const Request::CopyMoved& request)
{
    versions.Move(request.document, request.from, request.to);
    return {};
}

Reply FolderService::Handle(const Request::AcceptVersion& request)
{
    seen.Accept(request.document, request.localPath, request.md5Hash);
    return {};
}

Reply FolderService::Quota()
{
    if (const auto reason = store.Validate()) {
        return UnavailableReply("Fetching the storage usage", {}, *reason);
    }
    const qint64 used = store.UsedBytes();
    const qint64 total = authInfo.storageLimit > 0 ? authInfo.storageLimit : used + store.FreeBytes();
    const Ability::Quota::QuotaValue value{(used + bytesPerMiB - 1) / bytesPerMiB, total / bytesPerMiB};
    return {Success, QuotaByApplication{{applicationId, value}}, {}};
}

Reply FolderService::Handle(const Request::Capabilities&)
{
    const bool isUsable = !store.Validate();
    return {Success,
            ServiceCapabilities{{"service", "folder"},
                                {"usable", isUsable ? "yes" : "no"},
                                {"exchanges files", isUsable && store.CanExchange() ? "yes" : "no"}},
            {}};
}

void FolderService::Begin(qint64 id, const Request::Quota&)
{
    quotas.Add(id);
}

void FolderService::Begin(qint64 id, const Request::List&)
{
    AddJob(lists, id, std::make_unique<ListJob>(store, seen, [this](std::vector<FolderDocument> unhashed) {
               hashing.Begin(std::move(unhashed));
           }));
}

void FolderService::Begin(qint64 id, const Request::Change&)
{
    // A watch that is on for another request must not forget what that one is to be told.
    if (changeRequests.empty() && (store.Validate() || !watch.Begin())) {
        listener.reply(id, {Error, {}, {}, false});
        return;
    }
    changeRequests.push_back(id);
}

void FolderService::Begin(qint64 id, const Request::Remove& request)
{
    auto plan = transfers.Remove(request);
    if (const auto refusal = std::get_if<Reply>(&plan)) {
        listener.reply(id, std::move(*refusal));
        return;
    }
    // At once unless it takes time: a list that is asked for next does not show the document any more.
    constexpr int mostSteps = 8; // which read 4 MiB at most
    auto job = std::get<std::unique_ptr<FolderJob>>(std::move(plan));
    for (int step = 0; step < mostSteps && !job->IsWaiting(); ++step) {
        if (auto reply = job->Step()) {
            listener.reply(id, std::move(*reply));
            return;
        }
    }
    AddJob(removals, id, std::move(job));
}

void FolderService::Begin(qint64 id, const Request::Preview& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        listener.reply(id, NoSuchDocument("Fetching a preview", store));
        return;
    }
    previews.Add(id, {document->id, document->name, document->version.ToString(), request.page}, request.box);
}

void FolderService::Begin(qint64 id, const Request::LocalPreview& request)
{
    previews.AddLocal(id, request.localPath, request.page, request.box);
}

std::unique_ptr<PreviewSource::Fetch> FolderService::FetchForPreview(const PreviewSubject& subject, const QSize&,
                                                                     Done done)
{
    const Result result{std::make_shared<FileInPlace>(store.PathOf(subject.name)), {}, {}};
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
    stepTimer.start(0);
}

void FolderService::Step()
{
    for (Jobs* jobs : {&lists, &removals, &copies}) {
        if (!jobs->empty()) {
            StepFirstOf(*jobs);
        }
    }
    if (!copies.empty()) {
        const auto count = static_cast<std::ptrdiff_t>(std::min(copies.size(), maxAtOnce));
        std::rotate(copies.begin(), copies.begin() + 1, copies.begin() + count);
    }
    const bool isHashing = hashing.Step();
    if (!lists.empty() || !copies.empty() || !removals.empty() || isHashing) {
        stepTimer.start(!isHashing && IsWaiting() ? lookInterval : 0);
        return;
    }
    stepTimer.stop();
}

bool FolderService::IsWaiting() const
{
    const auto areWaiting = [](const Jobs& jobs, std::size_t count) {
        return std::all_of(jobs.begin(), jobs.begin() + static_cast<std::ptrdiff_t>(std::min(jobs.size(), count)),
                           [](const QueuedJob& job) { return job.job->IsWaiting(); });
    };
    return areWaiting(lists, 1) && areWaiting(removals, 1) && areWaiting(copies, maxAtOnce);
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
