#pragma once

#include <host/session/CloudSession.h>

#include <QAbstractListModel>

#include <deque>

namespace Norlis::Window {

/// Running and past uploads and downloads, the latest first. Failed ones stay until they are retried or dismissed.
class Transfers : public QAbstractListModel {
    Q_OBJECT

public:
    enum class Kind { Upload, UploadChanges, ReplaceInCloud, Download };
    enum class Status { Running, Finished, Failed };

    enum Role {
        KindRole = Qt::UserRole,
        StatusRole,
        PercentRole, ///< int, 0 to 100
        DetailRole,  ///< QString: why it failed and what to do, or where the file is
    };

    explicit Transfers(Host::CloudSession& session, QObject* parent = nullptr);

    void Upload(const QStringList& paths);
    void UploadChanges(const QString& id);

    /// Also where the cloud has a version that the local copy was not made from.
    void ReplaceInCloud(const QString& id);

    /// \param opensWhenDone whether OpenRequested follows when the document has arrived
    void Download(const QString& id, const QString& folder, bool opensWhenDone = false);

    /// Does nothing unless the transfer is running.
    void Cancel(int row);

    /// Does nothing unless the transfer has failed.
    void TryAgain(int row);

    /// Drops the transfers that are no longer running.
    void Clear();

    int CountOf(Status status) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

signals:
    /// The number of transfers with some status has changed.
    void CountsChanged();

    /// A document that was downloaded to be opened has arrived.
    void OpenRequested(const QString& path);

private:
    struct Transfer {
        Kind kind;
        QString subject; ///< the local path of an upload, the id of a download; identifies it in the session's signals
        QString id;      ///< of the document; empty if it is a new one
        QString name;
        QString folder; ///< of a download
        bool opensWhenDone;
        Status status = Status::Running;
        int percent = 0;
        QString detail = {};
    };

    void AddRow(const Transfer& transfer);
    void StartChanges(Kind kind, const QString& id);
    void Start(const Transfer& transfer);

    /// The row of the running transfer; -1 if there is none.
    int Find(bool isDownload, const QString& subject) const;
    void SetPercent(int row, int percent);
    void Finish(int row, const QString& detail);
    void Remove(int row);
    void OnFailed(const Host::CloudProblem& problem);
    void Changed(int row);
    QString NameOf(const QString& id) const;

    Host::CloudSession& session;
    std::deque<Transfer> transfers;
};

} // namespace Norlis::Window
