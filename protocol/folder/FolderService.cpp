#include "FolderService.h"

#include <files/DocumentNames.h>
#include <files/LocalTarget.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace Norlis::Social {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;
const auto applicationId = QStringLiteral("pdf");

} // namespace

FolderService::FolderService(const OAuth2::AuthInfo& authInfo, const Listener& listener)
    : authInfo(authInfo),
      listener(listener),
      store(authInfo.serviceUrl.toLocalFile()),
      previews(authInfo.cacheFolder, listener.reply)
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
    for (Jobs* jobs : {&lists, &transfers}) {
        jobs->erase(std::remove_if(jobs->begin(), jobs->end(), [&](const Work& work) { return work.id == id; }),
                    jobs->end());
    }
}

Reply FolderService::NoSuchDocument(const QString& what)
{
    const QString reason = store.WhyUnusable();
    return reason.isEmpty()
               ? Failed(what, {}, "The document is not in the cloud any more", "Refresh the list.")
               : Failed(what, {}, reason, "Make the folder available again, for instance by connecting its drive.");
}

Reply FolderService::Handle(const Request::SignIn&)
{
    const QString reason = store.Open();
    if (!reason.isEmpty()) {
        return Failed("Sign-in", {}, reason, "Create the folder, or make its drive available, and sign in again.");
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
                    : NoSuchDocument("Fetching a document's entry");
}

Reply FolderService::Handle(const Request::Remove& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        return NoSuchDocument("Removal");
    }
    QFile file(document->path);
    if (!file.remove()) {
        return Failed("Removal", document->name, file.errorString(), "Check that you may write to the folder.");
    }
    Files::AtomicFile::SyncFolderOf(document->path);
    return {};
}

Reply FolderService::Handle(const Request::Quota&)
{
    const QString reason = store.WhyUnusable();
    if (!reason.isEmpty()) {
        return Failed("Fetching the storage in use", {}, reason, "Make the folder available again.");
    }
    const qint64 used = UsedBytes();
    const qint64 total = authInfo.storageLimit > 0 ? authInfo.storageLimit : used + store.FreeBytes();
    const Ability::Quota::QuotaValue value{(used + bytesPerMiB - 1) / bytesPerMiB, total / bytesPerMiB};
    return {Success, QuotaByApplication{{applicationId, value}}, {}};
}

Reply FolderService::Handle(const Request::Examination&)
{
    const QString reason = store.WhyUnusable();
    return {Success, ServiceTraits{{"service", "folder"}, {"usable", reason.isEmpty() ? "yes" : "no"}}, {}};
}

void FolderService::Begin(qint64 id, const Request::List&)
{
    AddJob(lists, id, std::make_unique<ListJob>(store));
}

void FolderService::Begin(qint64 id, const Request::Preview& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        listener.reply(id, NoSuchDocument("Fetching a preview"));
        return;
    }
    if (request.box.isEmpty()) {
        listener.reply(id, Failed("Fetching a preview", document->name, "A picture without a size was asked for"));
        return;
    }
    previews.Add(id, {document->id, document->name, document->path, document->version.ToString()}, request.box);
}

void FolderService::Begin(qint64 id, const Request::Download& request)
{
    const auto what = QStringLiteral("Download");
    const auto document = store.Find(request.document);
    if (!document) {
        listener.reply(id, NoSuchDocument(what));
        return;
    }
    if (const auto problem = Files::ValidateTarget(request.localPath)) {
        listener.reply(id, Failed(what, document->name, problem->reason, problem->advice));
        return;
    }
    CopyJob::Task task;
    task.what = what;
    task.document = document->name;
    task.source = document->path;
    task.temporaryFolder = QFileInfo(request.localPath).path();
    task.expectedMd5 = store.KnownHash(*document);
    task.publish = [this, request, document = *document, what](Files::AtomicFile& copy,
                                                               const Files::FileReader& source) {
        bool isWritten = false;
        const bool isWanted = request.token->Commit([&] {
            isWritten = copy.CommitReplacing(request.localPath);
            return QString();
        });
        if (!isWanted) {
            return Reply(); // nobody waits for it
        }
        if (!isWritten) {
            return Failed(what, document.name,
                          QStringLiteral("%1 cannot be written: %2").arg(request.localPath, copy.ErrorText()));
        }
        Files::AtomicFile::SyncFolderOf(request.localPath);
        store.RememberHash(document.id, source.Version(), source.Md5());
        return Reply();
    };
    StartCopy(id, std::move(task));
}

void FolderService::Begin(qint64 id, const Request::Upload& request)
{
    const auto what = QStringLiteral("Upload");
    QString name = QFileInfo(request.localPath).fileName();
    QString reason = store.WhyUnusable();
    if (!reason.isEmpty()) {
        listener.reply(id, Failed(what, name, reason, "Make the folder available again."));
        return;
    }
    if (!request.document.isEmpty()) {
        const auto replaced = store.Find(request.document);
        if (!replaced) {
            listener.reply(id, Failed(what, name, "The document to replace is not in the cloud any more",
                                      "Upload the file as a new document."));
            return;
        }
        name = replaced->name;
    }
    if (const auto badName = Files::ValidateName(name)) {
        listener.reply(id,
                       Failed(what, name, QStringLiteral("The name %1").arg(*badName), "Give the file another name."));
        return;
    }
    reason = WhyNoRoom(QFileInfo(request.localPath).size(), request.document);
    if (!reason.isEmpty()) {
        listener.reply(id, Failed(what, name, reason, "Make room in the cloud and try again."));
        return;
    }
    QDir().mkpath(store.TemporaryFolder()); // a failure shows when the file is opened in there
    CopyJob::Task task;
    task.what = what;
    task.document = name;
    task.source = request.localPath;
    task.temporaryFolder = store.TemporaryFolder();
    task.expectedMd5 = request.md5Hash.toLower();
    task.publish = [this, request, name](Files::AtomicFile& copy, const Files::FileReader& source) {
        return Publish(request, name, copy, source);
    };
    StartCopy(id, std::move(task));
}

void FolderService::StartCopy(qint64 id, CopyJob::Task task)
{
    task.progress = [this, id](int percent) { listener.progress(id, percent); };
    AddJob(transfers, id, std::make_unique<CopyJob>(std::move(task)));
}

Reply FolderService::Publish(const Request::Upload& request, const QString& wantedName, Files::AtomicFile& copy,
                             const Files::FileReader& source)
{
    constexpr int mostNumbers = 10'000;
    const auto what = QStringLiteral("Upload");

    // Looked at again: minutes may have passed, and another upload may have taken the room.
    QString reason = store.WhyUnusable();
    if (reason.isEmpty()) {
        reason = WhyNoRoom(source.Version().size, request.document);
    }
    if (!reason.isEmpty()) {
        return Failed(what, wantedName, reason, "Make room in the cloud and try again.");
    }

    const bool isNew = request.document.isEmpty();
    QString name = wantedName;
    auto outcome = Files::AtomicFile::Outcome::Failed;
    const bool isWanted = request.token->Commit([&]() -> QString {
        if (!isNew) {
            outcome = copy.CommitReplacing(store.PathOf(name)) ? Files::AtomicFile::Outcome::Done
                                                               : Files::AtomicFile::Outcome::Failed;
            return {};
        }
        outcome = copy.CommitNew(store.PathOf(name));
        for (int number = 2; outcome == Files::AtomicFile::Outcome::NameTaken && number < mostNumbers; ++number) {
            name = Files::NumberedName(wantedName, number);
            outcome = copy.CommitNew(store.PathOf(name));
        }
        return outcome == Files::AtomicFile::Outcome::Done ? Files::IdOfName(name) : QString();
    });
    if (!isWanted) {
        return {}; // nobody waits for it
    }
    if (outcome != Files::AtomicFile::Outcome::Done) {
        return Failed(what, wantedName, copy.ErrorText(), "Check that you may write to the folder.");
    }

    Files::AtomicFile::SyncFolderOf(store.PathOf(name));
    const FolderDocument document{Files::IdOfName(name), name, store.PathOf(name),
                                  Files::FileIdentity::OfPath(store.PathOf(name))};
    store.RememberOwnHash(document.id, copy.CommittedVersion(), source.Md5()); // not of what took its place meanwhile
    const CloudFile entry = EntryOf(document, source.Md5());
    NorlisCloudSharingResult result;
    result.id = document.id;
    result.fileName = document.name;
    result.downloadUrl = QUrl::fromLocalFile(document.path);
    result.createdAt = QDateTime::fromString(entry.createdAt, Qt::ISODate);
    result.modifiedAt = QDateTime::fromString(entry.modifiedAt, Qt::ISODate);
    result.lifetime = std::numeric_limits<int>::max();
    return {Success, result, {}};
}

void FolderService::AddJob(Jobs& jobs, qint64 id, std::unique_ptr<FolderJob> job)
{
    jobs.push_back({id, std::move(job)});
    stepTimer.start();
}

void FolderService::Step()
{
    constexpr std::size_t mostAtOnce = 4; // the others wait; more would only make the disk jump
    if (!lists.empty()) {
        StepFirstOf(lists);
    }
    if (!transfers.empty()) {
        StepFirstOf(transfers);
    }
    if (!transfers.empty()) {
        const auto count = static_cast<std::ptrdiff_t>(std::min(transfers.size(), mostAtOnce));
        std::rotate(transfers.begin(), transfers.begin() + 1, transfers.begin() + count);
    }
    if (lists.empty() && transfers.empty()) {
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

QString FolderService::WhyNoRoom(qint64 size, const QString& replacedDocument)
{
    if (authInfo.storageLimit <= 0 || UsedBytes(replacedDocument) + size <= authInfo.storageLimit) {
        return {};
    }
    return QStringLiteral("The storage limit of %1 MiB does not leave room for it")
        .arg(authInfo.storageLimit / bytesPerMiB);
}

qint64 FolderService::UsedBytes(const QString& exceptDocument)
{
    qint64 used = 0;
    for (const auto& document : store.Documents().value_or(std::vector<FolderDocument>())) {
        used += document.id == exceptDocument ? 0 : document.version.size;
    }
    return used;
}

} // namespace Norlis::Social
