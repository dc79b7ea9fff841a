#include "CloudSession.h"

#include "ListMerge.h"
#include "ProtocolAdapter.h"
#include "Records.h"
#include "SessionContext.h"
#include "SessionDownloads.h"
#include "SessionLists.h"
#include "SessionPreviews.h"
#include "SessionRemovals.h"
#include "SessionUploads.h"

#include <base/Lifetime.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QTimer>

#include <glog/logging.h>

#include <stdexcept>

namespace Norlis::Host {

using PDF::Cloud::ICloudProtocol;

namespace {

constexpr qint64 sliceMilliseconds = 6; // with the last step less than half a frame, so the loop stays free for input

QString ReadyFolder(const QString& folder)
{
    if (folder.isEmpty() || !QDir().mkpath(folder)) {
        throw std::runtime_error("The folder \"" + folder.toStdString() +
                                 "\" cannot be created. Check that you have permission to write to its parent folder.");
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

} // namespace

class CloudSession::Private {
public:
    Private(CloudSession& session, const QString& dataFolder, const std::shared_ptr<ICloudProtocol>& protocol);
    ~Private();

    /// Cancels what is running, saves the list and ends the service. Throws std::runtime_error when the list cannot be
    /// saved.
    void Close();

    void WorkForASlice();

    const std::shared_ptr<LocalFileSystem> fileSystem = std::make_shared<LocalFileSystem>();
    const std::shared_ptr<Md5HashCalculator> hashes;
    const PictureFolder pictures;
    DocumentIndex documents;
    SessionCloud cloud;
    ChangeJournal journal;
    const SessionContext context;
    QTimer slices; ///< runs while there is work that is done piece by piece
    SessionUploads uploads{context};
    SessionDownloads downloads;
    SessionRemovals removals{context};
    ListMerge merge;
    SessionLists lists;
    SessionPreviews previews;
    Lifetime lifetime;
};

CloudSession::Private::Private(CloudSession& session, const QString& dataFolder,
                               const std::shared_ptr<ICloudProtocol>& protocol)
    : hashes(std::make_shared<Md5HashCalculator>(dataFolder + "/hashes.sqlite")),
      pictures(dataFolder + "/pictures"),
      documents(dataFolder + "/documents.sqlite", pictures, fileSystem, hashes),
      cloud(session, protocol, hashes, fileSystem, pictures),
      context{session, cloud, documents, pictures, journal, *hashes, *fileSystem},
      downloads(context, dataFolder + "/downloads"),
      merge(context, [this] { slices.start(); }),
      lists(context, merge),
      previews(context, [this] { slices.start(); })
{
    slices.setInterval(0);
    connect(&slices, &QTimer::timeout, &slices, [this] { WorkForASlice(); });
}

CloudSession::Private::~Private()
{
    // Before the parts go: a transfer may be writing to a folder that they take away.
    try {
        Close();
    } catch (const std::exception& error) {
        LOG(ERROR) << error.what();
    }
}

void CloudSession::Private::Close()
{
    const auto protocol = cloud.Close(); // released last, and in any case
    documents.Close();
}

void CloudSession::Private::WorkForASlice()
{
    const auto guard = lifetime.Watch();
    QElapsedTimer slice;
    slice.start();
    while (guard && !slice.hasExpired(sliceMilliseconds)) {
        if (merge.IsReady()) {
            merge.Step();
        } else if (!merge.IsActive() && previews.HasWork()) { // a preview may be that of a document still to be added
            previews.Step();
        } else {
            slices.stop();
            return;
        }
    }
}

CloudSession::CloudSession(const QString& dataFolder, const Social::OAuth2::AuthInfo& authInfo)
{
    qRegisterMetaType<CloudProblem>();
    ReadyFolder(dataFolder);
    auto completed = authInfo;
    completed.cacheFolder = dataFolder + "/previews";
    completed.dataFolder = dataFolder;
    completed.replaceExistingFiles = true; // in the session's own folder for downloads
    completed.onTransferred = [session = QPointer(this)](const Social::OAuth2::TransferredFile& file) {
        if (session && session->d) {
            session->d->uploads.NoteSent(file);
            session->d->downloads.NoteArrived(file);
        }
    };
    const auto protocol = std::make_shared<ProtocolAdapter>(completed, "Norlis");
    d = std::make_unique<Private>(*this, dataFolder, protocol);
}

CloudSession::CloudSession(const QString& dataFolder, const std::shared_ptr<ICloudProtocol>& protocol)
{
    qRegisterMetaType<CloudProblem>();
    d = std::make_unique<Private>(*this, ReadyFolder(dataFolder), protocol);
}

CloudSession::~CloudSession()
{
    blockSignals(true);
    d.reset();
}

PDF::AbstractFileManager& CloudSession::Documents()
{
    return d->documents.List();
}

QHash<QString, quint64> CloudSession::LargeSizes() const
{
    return d->documents.LargeSizes();
}

const CloudFacts* CloudSession::Facts(const QString& id)
{
    const auto* document = d->documents.Find(id);
    return document ? &document->facts : nullptr;
}

PDF::Cloud::AbstractCloudManager& CloudSession::Cloud()
{
    return d->cloud.Manager();
}

ICloudProtocol& CloudSession::Protocol()
{
    return d->cloud.Protocol();
}

bool CloudSession::IsSignedIn()
{
    return d->cloud.IsSignedIn();
}

QString CloudSession::DocumentAt(const QString& path)
{
    return d->documents.DocumentAt(ToText(d->fileSystem->NormalizePath(ToPath(path))));
}

bool CloudSession::IsCopy(const QString& path)
{
    return d->documents.IsCopy(ToText(d->fileSystem->NormalizePath(ToPath(path))));
}

void CloudSession::ReadLocalCopy(const QString& path)
{
    const QString normalizedPath = ToText(d->fileSystem->NormalizePath(ToPath(path)));
    const auto show = [this, path, normalizedPath, guard = d->lifetime.Watch()] {
        const QString id = d->documents.DocumentAt(normalizedPath);
        d->documents.ShowCopy(id, normalizedPath);
        if (guard) {
            emit LocalCopyRead(path, id);
        }
    };
    d->hashes->Prepare({normalizedPath}, &d->documents, show, Md5HashCalculator::Reading::Always);
}

void CloudSession::Upload(const QStringList& paths)
{
    d->uploads.Start(paths);
}

void CloudSession::UploadChanges(const QString& id)
{
    d->uploads.StartChanges(id, false);
}

void CloudSession::ReplaceInCloud(const QString& id)
{
    d->uploads.StartChanges(id, true);
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
    d->removals.Start(id);
}

void CloudSession::ShowPreviews(const QStringList& ids)
{
    d->previews.Show(ids);
}

void CloudSession::FetchPreviews(const QString& id)
{
    d->previews.Fetch(id);
}

void CloudSession::RefreshEvery(std::chrono::milliseconds interval)
{
    d->lists.RefreshEvery(interval);
}

void CloudSession::Refresh()
{
    d->lists.Refresh();
}

void CloudSession::SaveAndClose()
{
    const QSignalBlocker quiet(this);
    const auto closing = std::move(d);
    closing->Close();
}

} // namespace Norlis::Host
