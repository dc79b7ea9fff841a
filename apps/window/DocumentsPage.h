#pragma once

#include "DocumentActions.h"
#include "DocumentCommands.h"
#include "DocumentsFilter.h"
#include "Transfers.h"

#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QSettings>
#include <QTimer>
#include <QWidget>

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

    /// Has the keyboard act on the documents.
    void FocusDocuments();

    bool HasRunningTransfers() const;

    /// Tells of a problem above the documents.
    void Tell(const QString& title, const QString& detail);

signals:
    void SignInWanted();
    void SignOutWanted();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void Arrange();
    QWidget* Tools();
    QWidget* Status();
    void Connect();
    void ConnectActions();
    void Restore();

    void SetMode(int mode);
    void SortBy(int choice);

    void OnFailed(const Host::CloudProblem& problem);
    void UpdateActions();
    void UpdateEmptyPage();
    void UpdateStatus();

    Host::CloudSession& session;
    QSettings& settings;
    Host::CloudDocumentsModel model;
    DocumentsFilter filter;
    Transfers transfers;
    DocumentActions actions;

    QToolBar* const tools;
    QLineEdit* const search;
    QComboBox* const order;
    MessageBar* const message;
    QStackedWidget* const stack;
    DocumentsView* const view;
    EmptyPage* const empty;
    QLabel* const status;
    StorageBar* const storage;
    DocumentCommands commands;

    QTimer actionsUpdate; ///< one for many changes of documents
    QString token;        ///< of a sign-in that is tried again
    bool isSignedIn = false;
    bool isRefreshing = false;
    QDateTime refreshedAt;
};

} // namespace Norlis::Window
