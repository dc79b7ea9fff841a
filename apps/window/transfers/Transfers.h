#pragma once

#include <apps/common/TransferMeter.h>
#include <host/session/CloudSession.h>

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QSet>

#include <array>
#include <deque>

namespace Norlis::Window {

/// Running and past uploads and downloads, the latest first. Those that have failed or were cancelled stay until they
/// are begun again or dismissed.
class Transfers : public QAbstractListModel {
    Q_OBJECT

public:
    /// The last three are downloads.
    enum class Kind {
        Upload,
        UploadChanges,
        ReplaceInCloud,
        ReplaceWith,
        KeepBoth,
        Download,
        DownloadBeside,
        UseCloudVersion,
    };

    /// In the order in which a view lists them. What is Queued has not begun to be sent or fetched, since others have
    /// to end before; what is Waiting waits for the cloud.
    enum class Status { Running, Failed, Queued, Waiting, Canceled, Finished };

    /// What the user can do about a transfer. Decide is for what would lose a version that the user has not seen, or
    /// finds something else in the place.
    enum class Action { None, Cancel, TryAgain, StartAgain, Decide };

    enum Role {
        KindRole = Qt::UserRole,
        StatusRole,
        PercentRole,  ///< int, 0 to 100
        ProgressRole, ///< QString: percentage, bytes, speed and time left of a running transfer
        DetailRole,   ///< QString: why it failed and what to do, or where the file is
        ActionRole,
    };

    explicit Transfers(Host::CloudSession& session, QObject* parent = nullptr);

    void Upload(const QStringList& paths);
    void UploadChanges(const QString& id);

    /// Also where the cloud has a version that the local copy was not made from.
    void ReplaceInCloud(const QString& id);

    // See CloudSession.

    void ReplaceWith(const QString& id, const QString& path);
    void KeepBoth(const QString& id);
    void UseCloudVersion(const QString& id);

    void Download(const QString& id, const QString& folder);

    /// \param opensWhenDone whether OpenRequested follows when the document has arrived
    void DownloadBeside(const QString& id, const QString& folder, bool opensWhenDone = false);

    /// Does nothing to one that has ended.
    void Cancel(int row);

    /// Begins one again that has failed or was cancelled, or asks for a decision.
    void TryAgain(int row);

    /// Drops the transfers that have ended.
    void Clear();

    /// Paths of files that were to become new documents, and have not.
    QStringList UnsentFiles() const;

    /// Whether a transfer of the document has not ended.
    bool IsActive(const QString& id) const;

    int CountOf(Status status) const;

    /// Of those that have not ended.
    int CountOfActive() const;

    /// What has succeeded since the list was cleared, as in "3 documents uploaded, 1 document downloaded"; empty if
    /// nothing has.
    QString SuccessText() const;

    /// How far all transfers are that were begun since nothing ran, as in "3 of 20 · 112 of 500 MB · 8.1 MB/s · 48 s
    /// left".
    QString ProgressOfAll() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

signals:
    /// The number of transfers with some status has changed.
    void CountsChanged();

    /// A file has become a new document.
    void DocumentAdded(const QString& id);

    /// A document that was downloaded to be opened has arrived.
    void OpenRequested(const QString& path);

    /// The user wants a transfer to go on that would now lose a version which nobody has looked at.
    /// \param id of the document
    /// \param file which was to replace it; empty if that is its local copy, or for a download
    /// \param folder into which it was to be downloaded; empty for an upload
    void DecisionNeeded(const QString& id, const QString& file, const QString& folder);

private:
    struct Transfer {
        Kind kind;
        QString subject; ///< the local path of an upload, the id of a download; identifies it in the session's signals
        QString id;      ///< of the document; empty if it is a new one
        QString name;
        QString folder; ///< of a download
        bool opensWhenDone;
        Status status = Status::Queued;
        Social::OAuth2::FailureKind failure = Social::OAuth2::FailureKind::Other; ///< if it has failed
        QString versions = {}; ///< the document's, when the user chose what to do
        int percent = 0;
        QString detail = {};
        QString details = {}; ///< for experts
        qint64 size = 0;      ///< bytes
        Apps::TransferMeter meter = {};

        qint64 Transferred() const;
    };

    /// What was begun since nothing ran.
    struct Batch {
        int count = 0;
        int done = 0;
        qint64 size = 0;
        qint64 transferred = 0;
        Apps::TransferMeter meter = {};
    };

    void AddRow(const Transfer& transfer);

    /// Unless the same is under way.
    void Enter(const Transfer& transfer);
    void StartChanges(Kind kind, const QString& id);
    void Start(const Transfer& transfer);

    void SetStatus(Transfer& transfer, Status status);

    /// The row of the transfer that runs or waits; -1 if there is none.
    int Find(bool isDownload, const QString& subject) const;
    static bool IsDownload(const Transfer& transfer);
    static bool HasEnded(const Transfer& transfer);
    void SetPercent(int row, int percent);
    void SetWaiting(int row);
    void Finish(int row, const QString& detail);
    void Remove(int row);
    void EndWithout(int row, Status status);
    void OnFailed(const Host::CloudProblem& problem);
    void Changed(int row);

    /// Of the local copy; empty if there is none.
    QString PathOf(const QString& id) const;

    /// Hashes of the document here and in the cloud, as the list has them.
    QString VersionsOf(const QString& id) const;
    static Action ActionFor(const Transfer& transfer);

    qint64 SizeOf(const Transfer& transfer) const;
    QString ProgressOf(const Transfer& transfer) const;

    /// Takes a transfer that has not succeeded out of the batch.
    void LeaveBatch(const Transfer& transfer);

    Host::CloudSession& session;
    QElapsedTimer clock;
    Batch batch;
    int uploaded = 0;   ///< with success, since the list was cleared
    int downloaded = 0; ///< as above
    std::deque<Transfer> transfers;
    std::array<int, 6> counts = {};    ///< by status
    QSet<QPair<bool, QString>> active; ///< those that have not ended: whether it is a download, and the subject
};

} // namespace Norlis::Window
