#include "CloudSession.h"

#include "ListMerge.h"
#include "PreviewIntake.h"
#include "SessionContext.h"
#include "SessionDownloads.h"
#include "SessionUploads.h"

#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>

#include <glog/logging.h>

#include <stdexcept>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using PDF::Cloud::ICloudProtocol;
using Settings = PDF::Settings::ICloudAccountSettings;

namespace {

constexpr qint64 sliceMilliseconds = 6; // with the last step less than half a frame, so the loop stays free for input

QString ReadyFolder(const QString& folder)
{
    if (folder.isEmpty() || !QDir().mkpath(folder)) {
        throw std::runtime_error("The folder \"" + folder.toStdString() +
                                 "\" cannot be created. Check that you may write to the folder that it is in.");
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

std::shared_ptr<ICloudProtocol> ProtocolFor(const QString& dataFolder, Social::OAuth2::AuthInfo authInfo,
                                            const QPointer<CloudSession>& session)
{
    authInfo.cacheFolder = dataFolder + "/previews";
    authInfo.onFailure = [session](const Social::OAuth2::Failure& failure) {
        if (session) {
            session->NoteFailure(failure);
        }
    };
    return std::make_shared<PDF::Cloud::NorlisCloudProtocolProxy>(authInfo, "Norlis");
}

} // namespace

class CloudSession::Private {
public:
    Private(CloudSession& session, const QString& dataFolder, const std::shared_ptr<ICloudProtocol>& protocol,
            const std::shared_ptr<Settings>& settings);
    ~Private();

    void Remove(const QString& id);
    void Refresh();

    SessionContext context;
    SessionUploads uploads;
    SessionDownloads downloads;
    ListMerge merge;
    PreviewIntake previews;

private:
    void ConnectRemovals();
    void ConnectLists();
    void ConnectTheRest();
    quint64 EndList();
    void WorkForASlice();

    QHash<const FileInfo*, std::shared_ptr<FileInfo>> removals; ///< those that were asked for
    QQueue<quint64> sentLists;                                  ///< when each was requested
};

CloudSession::Private::Private(CloudSession& session, const QString& dataFolder,
                               const std::shared_ptr<ICloudProtocol>& protocol,
                               const std::shared_ptr<Settings>& settings)
    : context(session, dataFolder, protocol, settings),
      uploads(context),
      downloads(context),
      merge(context),
      previews(context)
{
    ConnectRemovals();
    ConnectLists();
    ConnectTheRest();
    connect(&context.slices, &QTimer::timeout, &context, [this] { WorkForASlice(); });
}

CloudSession::Private::~Private()
{
    // Before the parts go: a transfer may be writing to a folder that they take away.
    try {
        context.Close();
    } catch (const std::exception& error) {
        LOG(ERROR) << error.what();
    }
}

void CloudSession::Private::Remove(const QString& id)
{
    context.Later([this, id] {
        const auto record = context.documents->GetFileInfo(id);
        if (!record) {
            context.Fail(CloudProblem::Request::Remove, id, "The document was not removed",
                         Cause("Remove", id, "it is not in the list of documents", "Refresh the list."));
            return;
        }
        const auto name = QString::fromStdString(record->GetRedactableCloudInfo()->GetFileName());
        if (context.RequireSignIn(CloudProblem::Request::Remove, id, name)) {
            removals[record.get()] = record;
            context.cloud->RemoveFile(record);
        }
    });
}

void CloudSession::Private::ConnectRemovals()
{
    // The manager removes what a failed upload may have left behind without being asked; nobody wants to hear of that.
    const auto& cloud = *context.cloud;
    connect(&cloud, &AbstractCloudManager::RemoveFileFinished, &context, [this](const std::shared_ptr<FileInfo>& file) {
        const auto record = removals.take(file.get());
        if (!record) {
            return;
        }
        const auto id = QString::fromStdString(record->GetId());
        context.removedAt[id] = ++context.clock;
        context.Forget(id);
        CloudSession& session = context.session;
        const QPointer<SessionContext> alive(&context);
        context.documents->Remove(record);
        if (alive) {
            emit session.DocumentRemoved(id);
        }
    });
    connect(&cloud, &AbstractCloudManager::RemovingFileError, &context,
            [this](const std::shared_ptr<const FileInfo>& file, const QString& message) {
                const auto cause = context.TakeCause();
                const auto record = removals.take(file.get());
                if (record) {
                    context.Fail(CloudProblem::Request::Remove, QString::fromStdString(record->GetId()), message,
                                 cause);
                }
            });
}

void CloudSession::Private::Refresh()
{
    context.Later([this] {
        if (context.RequireSignIn(CloudProblem::Request::List, {}, {})) {
            context.cloud->RetrieveFilesList();
        }
    });
}

void CloudSession::Private::ConnectLists()
{
    const auto& cloud = *context.cloud;
    connect(&cloud, &AbstractCloudManager::RetrievingFilesListStarted, &context, [this] {
        if (sentLists.isEmpty() && !merge.IsActive()) {
            context.uploadedAt.clear();
            context.removedAt.clear();
        }
        sentLists.enqueue(++context.clock);
    });
    connect(&cloud, &AbstractCloudManager::RetrievingFilesListFinished, &context,
            [this](const ListMerge::Files& files) { merge.Start(files, EndList()); });
    connect(&cloud, &AbstractCloudManager::RetrievingFilesListErrorRequested, &context, [this](const QString& message) {
        EndList();
        context.Fail(CloudProblem::Request::List, {}, message, context.TakeCause());
    });
    connect(&cloud, &AbstractCloudManager::RetrievingFilesListCanceled, &context, [this] {
        EndList();
        context.Fail(CloudProblem::Request::List, {}, "Files list request canceled", {});
    });
}

/// When the list was requested that has just ended; lists arrive in the order of their requests.
quint64 CloudSession::Private::EndList()
{
    return sentLists.isEmpty() ? context.clock : sentLists.dequeue();
}

void CloudSession::Private::ConnectTheRest()
{
    const auto& cloud = *context.cloud;
    connect(&cloud, &AbstractCloudManager::AuthorizationFailed, &context,
            [this] { context.Fail(CloudProblem::Request::SignIn, {}, "Auth failed", context.TakeCause()); });
    connect(&cloud, &AbstractCloudManager::RetrievingUserQuotaErrorRequested, &context, [this](const QString& message) {
        context.Fail(CloudProblem::Request::Quota, {}, message, context.TakeCause());
    });
}

void CloudSession::Private::WorkForASlice()
{
    const QPointer<SessionContext> alive(&context);
    QElapsedTimer slice;
    slice.start();
    while (alive && !slice.hasExpired(sliceMilliseconds)) {
        if (merge.IsReady()) {
            merge.Step();
        } else if (!merge.IsActive() && previews.HasWork()) { // a picture may be that of a document still to be added
            previews.Step();
        } else {
            context.slices.stop();
            return;
        }
    }
}

CloudSession::CloudSession(const QString& dataFolder, const Social::OAuth2::AuthInfo& authInfo,
                           const std::shared_ptr<Settings>& settings)
{
    qRegisterMetaType<CloudProblem>();
    ReadyFolder(dataFolder);
    d = std::make_unique<Private>(*this, dataFolder, ProtocolFor(dataFolder, authInfo, this), settings);
}

CloudSession::CloudSession(const QString& dataFolder, const std::shared_ptr<ICloudProtocol>& protocol,
                           const std::shared_ptr<Settings>& settings)
{
    qRegisterMetaType<CloudProblem>();
    d = std::make_unique<Private>(*this, ReadyFolder(dataFolder), protocol, settings);
}

CloudSession::~CloudSession()
{
    blockSignals(true);
    d.reset();
}

PDF::AbstractFileManager& CloudSession::Documents()
{
    return *d->context.documents;
}

AbstractCloudManager& CloudSession::Cloud()
{
    return *d->context.cloud;
}

ICloudProtocol& CloudSession::Protocol()
{
    return *d->context.protocol;
}

bool CloudSession::IsSignedIn()
{
    return d->context.protocol->loggedIn();
}

void CloudSession::Upload(const QStringList& paths)
{
    d->uploads.Start(paths);
}

void CloudSession::UploadChanges(const QString& id)
{
    d->uploads.StartChanges(id);
}

void CloudSession::Download(const QString& id, const QString& folder)
{
    d->downloads.Start(id, folder);
}

void CloudSession::CancelUpload(const QString& path)
{
    d->uploads.Cancel(path);
}

void CloudSession::CancelDownload(const QString& id)
{
    d->downloads.Cancel(id);
}

void CloudSession::Remove(const QString& id)
{
    d->Remove(id);
}

void CloudSession::FetchPreviews(const QString& id)
{
    d->previews.Fetch(id);
}

void CloudSession::Refresh()
{
    d->Refresh();
}

void CloudSession::SaveAndClose()
{
    const QSignalBlocker quiet(this);
    const auto closing = std::move(d);
    closing->context.Close();
}

void CloudSession::NoteFailure(const Social::OAuth2::Failure& failure)
{
    if (d) {
        d->context.NoteFailure(failure);
    }
}

} // namespace Norlis::Host
