#include "CloudSession.h"

#include "Later.h"
#include "ListMerge.h"
#include "LocalCopyWatch.h"
#include "ProtocolAdapter.h"
#include "Records.h"
#include "SessionConnection.h"
#include "SessionContext.h"
#include "SessionDownloads.h"
#include "SessionDrawings.h"
#include "SessionLists.h"
#include "SessionPreviews.h"
#include "SessionRemovals.h"
#include "SessionUploads.h"

#include <base/Lifetime.h>
#include <files/PrivateFolder.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QTimer>
#include <QUrl>

#include <glog/logging.h>

#include <stdexcept>

namespace Norlis::Host {

using PDF::Cloud::ICloudProtocol;

namespace {

constexpr auto longestSettling = std::chrono::seconds(3); // somebody waits for the program to end
constexpr int daysToView = 30;
constexpr qint64 sliceMilliseconds = 6; // with the last step less than half a frame, so the loop stays free for input

std::runtime_error Problem(const QString& text)
{
    return std::runtime_error(text.toStdString());
}

QString ReadyFolder(const QString& folder)
{
    if (!Files::MakePrivateFolder(folder)) {
        throw Problem(
            QStringLiteral("The folder \"%1\" cannot be created. Check that you have permission to write to its "
                           "parent folder.")
                .arg(folder));
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

/// Keeps what is known of one service from being taken for that of another one.
void ClaimFolder(const QString& folder, const Social::OAuth2::AuthInfo& authInfo)
{
    const QUrl service = authInfo.serviceUrl.adjusted(QUrl::RemovePassword | QUrl::StripTrailingSlash);
    const QByteArray mark = service.toEncoded() + '\n' + authInfo.userName.toUtf8() + '\n';
    QFile file(folder + "/service");
    if (file.open(QFile::ReadOnly) && file.size() > 0) {
        if (file.readAll() != mark) {
            throw Problem(QStringLiteral("The folder \"%1\" has the documents of another service. Give each service a "
                                         "folder of its own.")
                              .arg(folder));
        }
        return;
    }
    QSaveFile written(file.fileName()); // a part of it would be that of another service at the next start
    if (!written.open(QFile::WriteOnly) || written.write(mark) != mark.size() || !written.commit()) {
        throw Problem(QStringLiteral("Nothing can be written to %1: %2").arg(folder, written.errorString()));
    }
}

/// The files in the folders of a folder that nobody has read or written for some time.
QStringList LongUntouched(const QString& folder)
{
    const auto limit = QDateTime::currentDateTime().addDays(-daysToView);
    QStringList paths;
    const QString place = QFileInfo(folder).canonicalFilePath(); // empty when it does not exist
    QDirIterator files(place, QDir::Files, QDirIterator::Subdirectories);
    while (!place.isEmpty() && files.hasNext()) {
        const QFileInfo file(files.next());
        if (file.lastModified() < limit && file.lastRead() < limit) {
            paths.append(file.filePath());
        }
    }
    return paths;
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

    /// Has the list look at a local copy that was saved, and tells of its changes.
    void OnSaved(const QString& path);

    ListState State();

    /// Deletes what was fetched to be looked at only, unless somebody has done so lately.
    void SweepViewed();

    /// Deletes a local copy without changes.
    void DeleteIfUnchanged(const QString& path);

    CloudSession& session;
    const QString viewingFolder;
    const QStringList longUntouched; ///< in that folder, before anything of this is read

    const std::shared_ptr<LocalFileSystem> fileSystem = std::make_shared<LocalFileSystem>();
    const std::shared_ptr<Md5HashCalculator> hashes;
    const PictureFolder pictures;
    DocumentIndex documents;
    SessionCloud cloud;
    ChangeJournal journal;
    const SessionContext context;
    QTimer slices; ///< runs while there is work that is done piece by piece
    SessionUploads uploads;
    SessionDownloads downloads;
    SessionRemovals removals;
    ListMerge merge;
    SessionLists lists;
    SessionPreviews previews;
    SessionDrawings drawings;
    SessionConnection connection;
    LocalCopyWatch watch;
    Lifetime lifetime;
};

CloudSession::Private::Private(CloudSession& session, const QString& dataFolder,
                               const std::shared_ptr<ICloudProtocol>& protocol)
    : session(session),
      viewingFolder(dataFolder + "/viewing"),
      longUntouched(LongUntouched(viewingFolder)),
      hashes(std::make_shared<Md5HashCalculator>(dataFolder + "/hashes.sqlite")),
      pictures(dataFolder + "/pictures"),
      documents(dataFolder + "/documents.sqlite", pictures, fileSystem, hashes),
      cloud(session, protocol, hashes, fileSystem, pictures),
      context{session, cloud, documents, pictures, journal, *hashes, *fileSystem},
      uploads(context, State(), dataFolder + "/links"),
      downloads(context, dataFolder + "/downloads"),
      removals(context, State()),
      merge(context, [this] { slices.start(); }),
      lists(context, merge),
      previews(context, [this] { slices.start(); }),
      drawings(context),
      connection(context,
                 [this](bool wasAway) {
                     uploads.Resume(wasAway);
                     downloads.Resume(wasAway);
                     removals.Resume(wasAway);
                 }),
      watch([this](const QString& path) { OnSaved(path); })
{
    slices.setInterval(0);
    connect(&slices, &QTimer::timeout, &slices, [this] { WorkForASlice(); });
    Later(&documents, [this] { SweepViewed(); });
    documents.Left().Tell([this](const QString& path) { emit this->session.CopyLeftBehind(path); });
    connect(&session, &CloudSession::ListRefreshed, &documents, [this] { documents.Left().LookAtEarlier(); });
}

ListState CloudSession::Private::State()
{
    return {[this] { return lists.IsCurrent(); }, [this] { return lists.IsMerged(); },
            [this](std::function<void(bool)> then) { lists.WhenCurrent(std::move(then)); }};
}

void CloudSession::Private::SweepViewed()
{
    const auto deleteThem = [this] {
        const auto guard = lifetime.Watch();
        const auto paths = longUntouched; // which a slot may delete, with the session
        for (const auto& path : paths) {
            if (guard) {
                DeleteIfUnchanged(path);
            }
        }
    };
    hashes->Prepare(longUntouched, &documents, deleteThem, Md5HashCalculator::Reading::Always);
}

void CloudSession::Private::DeleteIfUnchanged(const QString& path)
{
    const auto id = documents.DocumentAt(path);
    const auto cloudHash = documents.SyncHashAt(id, path);
    if (!cloudHash || cloudHash->empty() || hashes->CalculateHash(ToPath(path)) != *cloudHash ||
        documents.IsTransferring(id) || !QFile::remove(path)) {
        return;
    }
    QDir().rmdir(QFileInfo(path).path());
    if (documents.LocalPath(id) == path) {
        documents.ForgetCopy(id);
    }
}

void CloudSession::Private::OnSaved(const QString& path)
{
    const auto tell = [this, path] {
        const auto id = documents.DocumentAt(path);
        const auto guard = lifetime.Watch();
        documents.ShowCopy(id, path);
        const auto* document = guard ? documents.Find(id) : nullptr;
        if (document && document->localPath == path && document->localHash != document->syncHash) {
            emit session.LocalCopyChanged(path, id);
        }
    };
    hashes->Prepare({path}, &documents, tell, Md5HashCalculator::Reading::Always);
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

QString CloudProblem::Text() const
{
    const auto withoutPeriod = [](const QString& text) { return text.endsWith('.') ? text.chopped(1) : text; };
    QString text = withoutPeriod(message);
    if (!cause.reason.isEmpty()) {
        text += ": " + withoutPeriod(cause.reason);
    }
    text += '.';
    if (!cause.advice.isEmpty()) {
        text += ' ' + withoutPeriod(cause.advice) + '.';
    }
    return text;
}

CloudSession::CloudSession(const QString& dataFolder, const Social::OAuth2::AuthInfo& authInfo)
{
    qRegisterMetaType<CloudProblem>();
    qRegisterMetaType<DrawnPage>();
    ClaimFolder(ReadyFolder(dataFolder), authInfo);
    auto completed = authInfo;
    completed.cacheFolder = dataFolder + "/previews";
    completed.dataFolder = dataFolder;
    completed.replaceableFiles = Social::OAuth2::ReplaceableFiles::Nothing; // downloads arrive in folders of their own
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
    qRegisterMetaType<DrawnPage>();
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

QHash<QString, quint64> CloudSession::CloudSizes() const
{
    return d->documents.CloudSizes();
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

void CloudSession::StaySignedIn(const QString& token)
{
    d->connection.Start(token);
}

void CloudSession::TryNow()
{
    d->connection.TryNow();
}

void CloudSession::StopWaiting()
{
    Later(this, [this] { d->cloud.StopWaiting(); });
}

void CloudSession::SignOut()
{
    const auto guard = d->lifetime.Watch();
    d->connection.Stop();
    if (guard) {
        d->cloud.Manager().Logout();
    }
}

CloudSession::Connection CloudSession::ConnectionState() const
{
    return d->connection.State();
}

QDateTime CloudSession::NextAttempt() const
{
    return d->connection.NextAttempt();
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

void CloudSession::ForgetCopyLeft(const QString& path)
{
    d->documents.Left().Forget(path);
}

void CloudSession::WatchLocalCopy(const QString& path)
{
    d->watch.Add(ToText(d->fileSystem->NormalizePath(ToPath(path))));
}

QString CloudSession::ViewingFolder(const QString& id) const
{
    return d->viewingFolder + '/' + QString::fromLatin1(QUrl::toPercentEncoding(id));
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

void CloudSession::ReplaceWith(const QString& id, const QString& path)
{
    d->uploads.StartReplacement(id, path);
}

void CloudSession::KeepBoth(const QString& id)
{
    d->uploads.StartKeepingBoth(id);
}

void CloudSession::UseCloudVersion(const QString& id)
{
    d->downloads.StartInPlace(id);
}

QString CloudSession::DocumentNamed(const QString& name) const
{
    return d->documents.DocumentNamed(name);
}

void CloudSession::Download(const QString& id, const QString& folder)
{
    d->downloads.Start(id, folder);
}

QString CloudSession::ObstacleTo(const QString& id, const QString& folder) const
{
    return d->downloads.ObstacleTo(id, folder);
}

void CloudSession::DownloadBeside(const QString& id, const QString& folder)
{
    d->downloads.StartBeside(id, folder);
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

void CloudSession::RemoveLater(const QStringList& ids, std::chrono::milliseconds delay)
{
    d->removals.StartLater(ids, delay);
}

void CloudSession::UndoRemoval(const QStringList& ids)
{
    d->removals.Undo(ids);
}

bool CloudSession::IsRemovalPending(const QString& id) const
{
    return d->removals.IsPending(id);
}

bool CloudSession::HasPendingRemovals() const
{
    return d->removals.IsAnyPending();
}

void CloudSession::PrepareToClose()
{
    d->removals.Settle(longestSettling);
}

void CloudSession::ShowPreviews(const QStringList& ids)
{
    d->previews.Show(ids);
}

void CloudSession::FetchPreviews(const QString& id)
{
    d->previews.Fetch(id);
}

qint64 CloudSession::DrawPreview(const QString& id, const QSize& box)
{
    return d->drawings.DrawDocument(id, box);
}

qint64 CloudSession::DrawLocalPreview(const QString& path, const QSize& box, int page)
{
    return d->drawings.DrawFile(path, box, page);
}

void CloudSession::CancelDrawing(qint64 drawing)
{
    d->drawings.Cancel(drawing);
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
