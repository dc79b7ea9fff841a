#pragma once

#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QQmlParserStatus>
#include <QUrl>
#include <QVariantMap>

#include <memory>

namespace Norlis::Qml {

/// A cloud and its documents as one element of an interface in QML: a CloudSession and a CloudDocumentsModel. What has
/// a lower-case name is for QML; docs/qml.md describes it for its users.
///
/// The session is opened when the element is complete and whenever its service or data folder changes. Without one,
/// because there is no service or because it cannot be opened, every request ends in `failed`, as it does when the
/// cloud refuses it. No exception leaves the element.
///
/// Lives on the thread of the QML engine. Every signal may destroy the element.
class CloudDocuments : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)

    /// What ServiceAddress takes: a folder by its path or address, a WebDAV server by its address. Empty is no cloud.
    Q_PROPERTY(QString service READ Service WRITE SetService NOTIFY serviceChanged)

    /// Path or file: address of the folder below which each service has a folder of its own for its records and
    /// pictures. Empty is the application's folder for data.
    Q_PROPERTY(QString dataFolder READ DataFolder WRITE SetDataFolder NOTIFY dataFolderChanged)

    /// Milliseconds between two refreshes, of a service that does not tell of changes; 0 for none.
    Q_PROPERTY(int refreshInterval READ RefreshInterval WRITE SetRefreshInterval NOTIFY refreshIntervalChanged)

    Q_PROPERTY(bool signedIn READ IsSignedIn NOTIFY signedInChanged)

    /// A Connection.
    Q_PROPERTY(int connection READ ConnectionState NOTIFY connectionChanged)

    /// When the service is asked again; invalid unless that is to happen.
    Q_PROPERTY(QDateTime nextAttempt READ NextAttempt NOTIFY connectionChanged)

    /// A CloudDocumentsModel, the element's own; null without a session.
    Q_PROPERTY(QAbstractItemModel* documents READ Documents NOTIFY documentsChanged)

public:
    /// The values of the model's role "state".
    enum State {
        OnlyInCloud = static_cast<int>(PDF::FileInfo::CloudStatus::OnlyInCloud),
        InSync = static_cast<int>(PDF::FileInfo::CloudStatus::InSync),
        ChangedLocally = static_cast<int>(PDF::FileInfo::CloudStatus::ChangedLocally),
        ChangedInCloud = static_cast<int>(PDF::FileInfo::CloudStatus::ChangedInCloud),
        NotUploaded = static_cast<int>(PDF::FileInfo::CloudStatus::NotUploaded),
        ChangedOnBothSides = static_cast<int>(PDF::FileInfo::CloudStatus::ChangedOnBothSides),
    };
    Q_ENUM(State)

    /// See CloudSession::StaySignedIn.
    enum Connection {
        SignedOut = static_cast<int>(Host::CloudSession::Connection::SignedOut),
        Connecting = static_cast<int>(Host::CloudSession::Connection::Connecting),
        Online = static_cast<int>(Host::CloudSession::Connection::Online),
        Offline = static_cast<int>(Host::CloudSession::Connection::Offline),
    };
    Q_ENUM(Connection)

    explicit CloudDocuments(QObject* parent = nullptr);
    ~CloudDocuments() override;

    QString Service() const;
    void SetService(const QString& text);
    QString DataFolder() const;
    void SetDataFolder(const QString& folder);
    int RefreshInterval() const;
    void SetRefreshInterval(int milliseconds);
    bool IsSignedIn() const;
    int ConnectionState() const;
    QDateTime NextAttempt() const;
    QAbstractItemModel* Documents() const;

    void classBegin() override;
    void componentComplete() override;

    // NOLINTBEGIN(readability-identifier-naming): the names that QML has for methods and signals

    // The requests of CloudSession, which tells how each of them ends.

    /// Signs in, stays signed in, and refreshes. A service that asks for no password, as a folder, takes an empty one.
    Q_INVOKABLE void signIn(const QString& password = {});
    Q_INVOKABLE void tryNow();
    Q_INVOKABLE void signOut();
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void upload(const QList<QUrl>& files);
    Q_INVOKABLE void uploadChanges(const QString& id);
    Q_INVOKABLE void replaceInCloud(const QString& id);
    Q_INVOKABLE void replaceWith(const QString& id, const QUrl& file);
    Q_INVOKABLE void keepBoth(const QString& id);
    Q_INVOKABLE void useCloudVersion(const QString& id);
    Q_INVOKABLE void download(const QString& id, const QUrl& folder);
    Q_INVOKABLE void downloadBeside(const QString& id, const QUrl& folder);
    Q_INVOKABLE void cancelUpload(const QString& path);
    Q_INVOKABLE void cancelDownload(const QString& id);
    Q_INVOKABLE void remove(const QString& id);
    Q_INVOKABLE void removeLater(const QStringList& ids, int milliseconds);
    Q_INVOKABLE void undoRemoval(const QStringList& ids);
    Q_INVOKABLE void showPreviews(const QStringList& ids);

    /// Ends in `localCopyRead`: of several copies of a document, this is the one that the requests by id are about now.
    Q_INVOKABLE void readLocalCopy(const QUrl& file);

    /// From now on each save of a file with changes ends in `localCopyChanged`.
    Q_INVOKABLE void watchLocalCopy(const QUrl& file);

    /// Sends removals that wait; ends in `readyToClose`.
    Q_INVOKABLE void prepareToClose();

    /// A folder for a document that is only to be looked at, which is created here; empty without a cloud.
    Q_INVOKABLE QUrl viewingFolder(const QString& id) const;

    /// Id of the document of that name; empty when there is none.
    Q_INVOKABLE QString documentNamed(const QString& name) const;

    /// Id of the document that a file is a copy of; empty when there is none.
    Q_INVOKABLE QString documentAt(const QUrl& file) const;

signals:
    void serviceChanged();
    void dataFolderChanged();
    void refreshIntervalChanged();
    void signedInChanged();
    void connectionChanged();
    void documentsChanged();

    /// Something was asked for while nobody is signed in, or the service takes the password no longer.
    void signInRequired();

    // Those of CloudSession and of its cloud manager.

    void refreshed(const QStringList& added, const QStringList& changed, const QStringList& removed);
    void manyDocumentsGone(int gone, int before);
    void localCopyRead(const QString& path, const QString& id);
    void localCopyChanged(const QString& path, const QString& id);
    void copyLeftBehind(const QString& path);
    void readyToClose();
    void uploadProgress(const QString& path, int percent);
    void uploaded(const QString& path, const QString& id);
    void uploadCanceled(const QString& path);
    void uploadWaiting(const QString& path);
    void downloadProgress(const QString& id, int percent);
    void downloaded(const QString& id, const QString& path);
    void downloadCanceled(const QString& id);
    void downloadWaiting(const QString& id);
    void removed(const QString& id);

    /// \param problem texts by these names: text, request ("open", "signIn", "list", "upload", "download", "remove",
    ///                "preview", "quota"), subject, message, reason, advice, details, kind ("other", "conflict",
    ///                "nameTaken", "unavailable", "notSignedIn"); see CloudProblem
    void failed(const QVariantMap& problem);

    // NOLINTEND(readability-identifier-naming)

private:
    using Request = Host::CloudProblem::Request;

    /// Opens the session that the properties ask for, in place of the one that is open. Emits as the last thing.
    void Open();
    void OpenSession();
    void ConnectSession();

    /// Emits, so the element may be gone afterwards.
    void NoteSignIn();

    /// Null without a session, and then the request ends in `failed`.
    Host::CloudSession* SessionFor(Request request, const QString& subject = {});

    /// Emits `failed` from the event loop.
    void FailLater(const QVariantMap& problem);

    bool isComplete = true;
    QString service;
    QString dataFolder;
    int refreshInterval = 60'000; ///< milliseconds
    bool isSignedIn = false;
    QString obstacle; ///< why there is no session
    std::unique_ptr<Host::CloudSession> session;
    Host::CloudDocumentsModel* model = nullptr; ///< a child of the element
};

} // namespace Norlis::Qml
