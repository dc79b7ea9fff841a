#pragma once

#include <host/session/CloudSession.h>

#include <QAbstractListModel>

#include <deque>

namespace Norlis::Window {

/// What is or was being sent and fetched, the latest first. Failed transfers stay until they are tried again or
/// dismissed.
class Transfers : public QAbstractListModel {
    Q_OBJECT

public:
    enum class Kind { Upload, UploadChanges, Download };
    enum class Status { Running, Finished, Failed };

    enum Role {
        KindRole = Qt::UserRole,
        StatusRole,
        PercentRole, ///< int, 0 to 100
        DetailRole,  ///< QString: why it failed and what to do, or where the file lies
    };

    explicit Transfers(Host::CloudSession& session, QObject* parent = nullptr);

    void Upload(const QStringList& paths);
    void UploadChanges(const QString& id);

    /// \param opens the document when it is there
    void Download(const QString& id, const QString& folder, bool opens = false);

    /// Nothing happens to what does not run.
    void Cancel(int row);

    /// Nothing happens to what has not failed.
    void TryAgain(int row);

    /// Forgets what does not run any more.
    void Clear();

    int CountOf(Status status) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

signals:
    /// How many are in which status.
    void CountsChanged();

    /// A document has arrived that was to be opened.
    void ToBeOpened(const QString& path);

private:
    struct Transfer {
        Kind kind;
        QString subject; ///< the local path of an upload, the id of a download; the session's signals name it
        QString id;      ///< of the document, unless it is a new one
        QString name;
        QString folder; ///< of a download
        bool opens;
        Status status = Status::Running;
        int percent = 0;
        QString detail = {};
    };

    void Start(const Transfer& transfer);
    void Launch(const Transfer& transfer);

    /// The running one; -1 when there is none.
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
