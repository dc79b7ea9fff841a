#pragma once

#include "CloudSituation.h"
#include "DocumentsLayout.h"
#include "Narrowing.h"

#include <apps/window/commands/DocumentActions.h>
#include <apps/window/commands/DocumentCommands.h>
#include <apps/window/list/DocumentsFilter.h>
#include <apps/window/list/DocumentsOrder.h>
#include <apps/window/pictures/LargePictures.h>
#include <apps/window/transfers/TransferNotice.h>
#include <apps/window/transfers/Transfers.h>
#include <apps/window/widgets/Paced.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QSettings>
#include <QWidget>

class QMenuBar;
class QStackedWidget;

namespace Norlis::Window {

class DetailsPane;
class DocumentsTools;
class DocumentsView;
class DropHint;
class EmptyPage;
class FilterChips;
class MessageBar;
class SearchField;
class QuickLook;

/// Shows the documents of one session, and what can be done with them.
class DocumentsPage : public QWidget {
    Q_OBJECT

public:
    /// \param settings where sizes and choices are saved
    DocumentsPage(Host::CloudSession& session, QSettings& settings, QWidget* parent = nullptr);
    ~DocumentsPage() override;

    /// Signs in. The stored list is shown in the meantime.
    void SignIn(const QString& token);

    /// To be called when the session has been signed in elsewhere.
    void OnSignedIn();

    /// The menus live as long as the page.
    void AddMenusTo(QMenuBar& bar);

    /// See MainWindow.
    void OfferUpload(const QStringList& files);

    /// Gives the documents the keyboard focus.
    void FocusDocuments();

    bool HasRunningTransfers() const;

    /// Paths of files that were to become new documents, and have not.
    QStringList UnsentFiles() const;

    /// How many documents have changes that are not in the cloud.
    int CountOfChanges() const;

    /// Tells that removals are being sent, after which the window closes, or no longer does.
    void SetClosing(bool isClosing);

    /// Ids of documents whose removal has not ended.
    QStringList PendingRemovals() const;

    /// Names of those of the documents that are in the cloud still.
    QStringList NamesOf(const QStringList& ids) const;

    /// Shows a problem below the documents.
    void ShowProblem(const QString& title, const QString& detail);

signals:
    void SignInRequested();
    void SignOutRequested();

    /// The user wants to see the window.
    void FrontRequested();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Arrange();
    void ConnectSession();
    void ConnectDocuments();
    void ConnectSearch();
    void ConnectActions();
    void ConnectLook();
    void Restore();

    /// Shows the new documents.
    void RevealAdded();

    /// Once the cloud is there again, and nothing is under way that would keep it from being asked.
    void RefreshOldList();
    void ShowMenu(const QPoint& place, bool isOnDocument);

    void UpdateActions();
    void UpdateEmptyPage();
    void UpdateStatus();

    Host::CloudSession& session;
    QSettings& settings;
    Host::CloudDocumentsModel model;
    DocumentsFilter filter;
    LargePictures pictures;
    Transfers transfers;
    DocumentActions actions;

    SearchField* const search;
    FilterChips* const chips;
    MessageBar* const message;
    QStackedWidget* const stack;
    DocumentsView* const view;
    EmptyPage* const empty;
    DropHint* const dropHint;
    StatusLine* const status;
    DocumentsOrder order;
    Narrowing narrowing;
    DocumentsLayout arrangement;
    DocumentsTools* const tools;
    CloudSituation situation;
    DocumentCommands commands;
    DetailsPane* const details;
    TransferNotice notice;
    QuickLook* quickLook = nullptr; ///< set by ConnectLook, when there is a model

    Paced updateSoon{[this] {
        UpdateActions();
        UpdateStatus();
    }};
    QStringList takenBack;     ///< ids of documents whose removal was, until the view has them
    QStringList added;         ///< ids of new documents, until all transfers have ended
    int heightOfTransfers = 0; ///< as the user wants it
    bool isFirstList = true;   ///< until it has come
};

} // namespace Norlis::Window
