#pragma once

#include "DocumentsFilter.h"
#include "Transfers.h"

#include <host/CloudDocumentsModel.h>
#include <host/CloudSession.h>

#include <QSettings>
#include <QTimer>
#include <QWidget>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenuBar;
class QStackedWidget;
class QToolBar;

namespace Norlis::Window {

class DocumentsView;
class EmptyPage;
class MessageBar;
class StorageBar;

/// The documents of one session, and what can be done with them.
class DocumentsPage : public QWidget {
    Q_OBJECT

public:
    /// \param settings where sizes and choices are remembered
    DocumentsPage(Host::CloudSession& session, QSettings& settings, QWidget* parent = nullptr);
    ~DocumentsPage() override;

    /// The list that the session remembers is there meanwhile.
    void SignIn(const QString& token);

    /// To be called when somebody else has signed in with the session.
    void OnSignedIn();

    /// The menus live as long as the page.
    void AddMenusTo(QMenuBar& bar);

    bool HasRunningTransfers() const;

    /// Tells of a problem above the documents.
    void Tell(const QString& title, const QString& detail);

    /// Sends PDF files. Those that are local copies of documents replace these, all others become new documents.
    void Upload(const QStringList& paths);

signals:
    void SignInWanted();
    void SignOutWanted();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Actions {
        QAction* upload;
        QAction* download;
        QAction* downloadTo;
        QAction* open;
        QAction* uploadChanges;
        QAction* remove;
        QAction* refresh;
        QAction* thumbnails;
        QAction* list;
        QAction* find;
        QAction* signOut;
    };

    void MakeActions();
    void Arrange();
    QWidget* Tools();
    QWidget* Status();
    void Connect();
    void Restore();

    void ChooseUploads();
    void ChooseDownloadFolder();
    void Download(const QString& folder);
    void Open();
    void OpenFile(const QString& path);
    void UploadChanges();

    /// Asks before it replaces what has changed in the cloud too.
    void ReplaceInCloud(const QStringList& ids);
    void ConfirmRemoval();
    void Ask(const QString& name, const QString& question, const QString& explanation, const QString& consent,
             const std::function<void()>& action);
    void SetMode(int mode);
    void SortBy(int choice);

    void OnFailed(const Host::CloudProblem& problem);
    void UpdateActions();
    void UpdateEmptyPage();
    void UpdateStatus();
    QString DownloadFolder() const;
    QString NameOf(const QString& id) const;

    Host::CloudSession& session;
    QSettings& settings;
    Host::CloudDocumentsModel model;
    DocumentsFilter filter;
    Transfers transfers;
    Actions actions = {};

    QToolBar* const tools;
    QLineEdit* const search;
    QComboBox* const order;
    MessageBar* const message;
    QStackedWidget* const stack;
    DocumentsView* const view;
    EmptyPage* const empty;
    QLabel* const status;
    StorageBar* const storage;

    QTimer actionsUpdate; ///< one for many changes of documents
    QString token;        ///< of a sign-in that is tried again
    bool isSignedIn = false;
    bool isRefreshing = false;
    QDateTime refreshedAt;
};

} // namespace Norlis::Window
