#include "DocumentsPage.h"

#include "DetailsPane.h"
#include "DocumentsTools.h"
#include "DropHint.h"
#include "QuickLook.h"

#include <apps/window/list/DocumentsView.h>
#include <apps/window/list/FilterChips.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/transfers/TransfersPanel.h>
#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/EmptyPage.h>
#include <apps/window/widgets/MessageBar.h>
#include <apps/window/widgets/SearchField.h>
#include <apps/window/widgets/StayInView.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace Norlis::Window {

using Host::CloudSession;

namespace {

namespace Key {
const auto details = QStringLiteral("view/details");
const auto sides = QStringLiteral("view/sides");
const auto transfers = QStringLiteral("view/transfersHeight");
} // namespace Key

constexpr int usualTransfers = 3; // that are in view

} // namespace

DocumentsPage::DocumentsPage(CloudSession& session, QSettings& settings, QWidget* parent)
    : QWidget(parent),
      session(session),
      settings(settings),
      model(session.Documents(), session.CloudSizes()),
      pictures(session),
      transfers(session),
      actions(*this),
      search(new SearchField),
      chips(new FilterChips(model, filter)),
      message(new MessageBar),
      stack(new QStackedWidget),
      view(new DocumentsView),
      empty(new EmptyPage),
      dropHint(new DropHint(*this, *stack)),
      status(new StatusLine),
      order(filter, view->Header(), *actions.sortBy, settings),
      narrowing(filter, *view, *search, *chips),
      arrangement(*view, actions, settings),
      tools(new DocumentsTools(actions, *search, *chips, order.Box())),
      situation(session, *message, *status),
      commands({session, Preferences(settings), model, *view, transfers, *message}, *this),
      details(new DetailsPane(session, *view, actions)),
      notice(transfers, Preferences(settings), *this)
{
    setObjectName("documentsPage");
    filter.SetViewingFolder(session.ViewingFolder({}));
    filter.setSourceModel(&model);
    view->setModel(&filter);
    view->Header().Follow(filter);
    view->SetLargePictures(pictures);
    Arrange();
    ConnectSession();
    ConnectDocuments();
    ConnectSearch();
    ConnectActions();
    ConnectLook();
    Restore();
    UpdateActions();
    UpdateEmptyPage();
    UpdateStatus();
}

DocumentsPage::~DocumentsPage()
{
    view->setModel(nullptr); // the model is destroyed before the view
}

void DocumentsPage::SignIn(const QString& token)
{
    situation.SignIn(token);
}

void DocumentsPage::OnSignedIn()
{
    situation.OnSignedIn();
}

void DocumentsPage::FocusDocuments()
{
    stack->currentWidget()->setFocus(); // the view is given the focus later if the page is empty now
}

void DocumentsPage::OfferUpload(const QStringList& files)
{
    commands.Uploads().Offer(files);
}

void DocumentsPage::AddMenusTo(QMenuBar& bar)
{
    actions.AddMenusTo(bar);
}

void DocumentsPage::Arrange()
{
    const auto panel = new TransfersPanel(transfers);
    connect(panel, &TransfersPanel::KeyboardLeft, this, &DocumentsPage::FocusDocuments);
    stack->setMinimumHeight(4 * fontMetrics().lineSpacing()); // the window does not grow by itself
    stack->addWidget(view);
    ShowTitles(*stack, view->Header());
    stack->addWidget(empty);
    const auto upper = new QWidget;
    const auto upperLayout = new QVBoxLayout(upper);
    upperLayout->setContentsMargins(0, 0, 0, 0);
    upperLayout->setSpacing(0);
    const auto sides = new QSplitter(Qt::Horizontal);
    sides->setObjectName("sides");
    sides->setChildrenCollapsible(false);
    sides->addWidget(stack);
    sides->addWidget(details);
    sides->setStretchFactor(0, 1);
    sides->setSizes({fontMetrics().averageCharWidth() * 100, fontMetrics().averageCharWidth() * 36});
    upperLayout->addWidget(sides, 1);
    upperLayout->addWidget(message); // below, where it moves no document under the pointer
    new StayInView(*view);
    const auto splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName("split");
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(upper);
    splitter->addWidget(panel);
    splitter->setStretchFactor(0, 1);
    heightOfTransfers = settings.value(Key::transfers, panel->HeightFor(usualTransfers)).toInt();
    connect(panel, &TransfersPanel::NeedsChanged, splitter, [this, splitter, panel] {
        const QList<int> sizes = splitter->sizes();
        const int wanted = qMin(heightOfTransfers, panel->maximumHeight());
        splitter->setSizes({sizes.first() + sizes.last() - wanted, wanted}); // which it does not do by itself
    });
    connect(splitter, &QSplitter::splitterMoved, this, [this, splitter] {
        const QList<int> sizes = splitter->sizes();
        heightOfTransfers = sizes.last();
        settings.setValue(Key::transfers, heightOfTransfers);
    });

    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tools);
    layout->addWidget(splitter, 1);
    layout->addWidget(status);
}

void DocumentsPage::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    tools->Fit(size());
}

void DocumentsPage::ConnectSession()
{
    connect(&session, &CloudSession::ListRefreshed, this, [this] {
        const bool isFirst = std::exchange(isFirstList, false);
        if (isFirst && !view->selectionModel()->hasSelection()) { // the current one may be any
            view->selectionModel()->setCurrentIndex(filter.index(0, 0), QItemSelectionModel::NoUpdate);
            view->scrollToTop();
        }
        UpdateEmptyPage();
    });
    connect(&session, &CloudSession::RemovalPendingChanged, &model, &Host::CloudDocumentsModel::SetHidden);
    connect(&session, &CloudSession::PreviewStored, this,
            [this](const QString& id, const QString&, const QString& path) {
                view->ForgetPreview(path);
                view->SetUnreadable(id, false);
            });
    connect(&session, &CloudSession::PreviewMissing, view,
            [this](const QString& id) { view->SetUnreadable(id, true); });
    connect(&situation, &CloudSituation::Changed, this, [this] {
        UpdateStatus();
        UpdateActions();
    });
    connect(&situation, &CloudSituation::CameBack, this, &DocumentsPage::RefreshOldList);
    connect(&situation, &CloudSituation::SignInRequested, this, &DocumentsPage::SignInRequested);
    connect(status, &StatusLine::KeyboardLeft, this, &DocumentsPage::FocusDocuments);
}

void DocumentsPage::ConnectDocuments()
{
    // The filter reports removed rows before the model has dropped them.
    for (const QAbstractItemModel* const each :
         {static_cast<QAbstractItemModel*>(&filter), static_cast<QAbstractItemModel*>(&model)}) {
        for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
            connect(each, signal, this, [this] {
                UpdateEmptyPage();
                updateSoon();
            });
        }
    }
    connect(&filter, &QAbstractItemModel::dataChanged, this, [this] { updateSoon(); });
    connect(&transfers, &Transfers::CountsChanged, this, [this] { updateSoon(); });
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { updateSoon(); });
    connect(view, &DocumentsView::SelectionChanged, this, [this] {
        UpdateActions();
        UpdateStatus();
    });
    connect(view, &DocumentsView::ShownChanged, &session, &CloudSession::ShowPreviews);
    connect(view, &DocumentsView::ShownChanged, &pictures, &LargePictures::Show);
    connect(view, &DocumentsView::activated, &commands, [this] { commands.Open(); });
    connect(message, &MessageBar::KeyboardLeft, this, &DocumentsPage::FocusDocuments);
    connect(&notice, &TransferNotice::Activated, this, &DocumentsPage::FrontRequested);
    connect(dropHint, &DropHint::Dropped, &commands.Uploads(), &UploadCommands::Upload);
    connect(&transfers, &Transfers::CountsChanged, this, [this] {
        if (transfers.CountOfActive() == 0) {
            RevealAdded();
            RefreshOldList();
        }
    });
    connect(&transfers, &Transfers::DocumentAdded, this, [this](const QString& id) { added.append(id); });
}

void DocumentsPage::RefreshOldList()
{
    if (transfers.CountOfActive() == 0) {
        situation.RefreshOldList();
    }
}

void DocumentsPage::RevealAdded()
{
    const QStringList ids = std::exchange(added, {});
    if (view->Reveal(ids)) {
        return;
    }
    message->Show(Topic::hidden, tr("What was uploaded does not match what is searched for."), {},
                  {{tr("Show All"),
                    [this, ids] {
                        narrowing.ShowAll();
                        view->Reveal(ids);
                    }}},
                  MessageBar::Kind::Notice);
}

bool DocumentsPage::event(QEvent* event)
{
    // The user comes from other programs, in which files may have been changed.
    if (event->type() == QEvent::WindowActivate && situation.IsSignedIn() && !situation.IsOffline()) {
        session.Refresh();
    }
    return QWidget::event(event);
}

void DocumentsPage::ConnectSearch()
{
    connect(&narrowing, &Narrowing::Changed, this, [this] {
        message->Close(Topic::hidden);
        UpdateEmptyPage();
        UpdateStatus();
        UpdateActions();
        status->ReadNumbersAloud();
    });
    connect(empty, &EmptyPage::ActionChosen, this, [this] {
        if (model.VisibleCount() == 0) {
            commands.Uploads().Choose();
        } else {
            narrowing.ShowAll();
        }
    });
    connect(&order, &DocumentsOrder::Changed, view, &DocumentsView::scrollToTop);
}

void DocumentsPage::ConnectActions()
{
    const auto connectTo = [this](const QAction* action, const auto& triggered) {
        connect(action, &QAction::triggered, this, triggered);
    };
    connectTo(actions.upload, [this] { commands.Uploads().Choose(); });
    connectTo(actions.download, [this] { commands.Download(); });
    connectTo(actions.downloadTo, [this] { commands.ChooseDownloadFolder(); });
    connectTo(actions.open, [this] { commands.Open(); });
    connectTo(actions.showInFolder, [this] { commands.ShowInFolder(); });
    connectTo(actions.uploadChanges, [this] { commands.UploadChanges(); });
    connectTo(actions.resolve, [this] { commands.ResolveConflicts(); });
    connectTo(actions.useCloud, [this] { commands.UseCloud(); });
    connectTo(actions.copy, [this] { commands.Copy(); });
    connectTo(actions.paste, [this] { commands.Uploads().Paste(); });
    connectTo(actions.remove, [this] { commands.Remove(); });
    connectTo(actions.undoRemoval, [this] { commands.Removals().Undo(); });
    connect(&commands.Removals(), &RemovalUndo::PossibleChanged, this, &DocumentsPage::UpdateActions);
    connect(&commands.Removals(), &RemovalUndo::Removed, view, &DocumentsView::GoOnAfterRemoval);
    connect(&commands.Removals(), &RemovalUndo::TakenBack, this, [this](const QStringList& ids) { takenBack = ids; });
    connect(&model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex&, const QModelIndex&, const QVector<int>& roles) {
                if (!takenBack.isEmpty() && roles.contains(Host::CloudDocumentsModel::HiddenRole)) {
                    view->Select(std::exchange(takenBack, {})); // the filter, which hears of it first, has them again
                }
            });
    connectTo(actions.refresh, [this] {
        if (situation.IsOffline()) {
            session.TryNow();
            return;
        }
        session.Refresh();
        session.Cloud().UserQuota();
    });
    connectTo(actions.find, [this] {
        search->setFocus(Qt::ShortcutFocusReason);
        search->selectAll();
    });
    connectTo(actions.signOut, [this] { emit SignOutRequested(); });
    connect(view, &DocumentsView::MenuRequested, this, &DocumentsPage::ShowMenu);
}

void DocumentsPage::ConnectLook()
{
    quickLook = new QuickLook(session, *view, *this);
    arrangement.Follow(*quickLook);
    view->addAction(actions.quickLook);
    connect(actions.quickLook, &QAction::triggered, quickLook, &QuickLook::Open);
    connect(quickLook, &QuickLook::OpenRequested, &commands, [this](const QString& id) { commands.Open({id}); });
    connect(quickLook, &QuickLook::FetchRequested, &commands, &DocumentCommands::Fetch);
    connect(actions.details, &QAction::toggled, this, [this](bool isWanted) {
        const bool hadKeyboard = details->isAncestorOf(QApplication::focusWidget());
        details->setVisible(isWanted);
        settings.setValue(Key::details, isWanted);
        if (hadKeyboard) {
            FocusDocuments();
        }
    });
    const auto sides = findChild<QSplitter*>("sides");
    connect(sides, &QSplitter::splitterMoved, this,
            [this, sides] { settings.setValue(Key::sides, sides->saveState()); });
}

void DocumentsPage::Restore()
{
    actions.details->setChecked(settings.value(Key::details).toBool());
    details->setVisible(actions.details->isChecked());
    findChild<QSplitter*>("sides")->restoreState(settings.value(Key::sides).toByteArray());
    connect(&arrangement, &DocumentsLayout::ModeChanged, this,
            [this](DisplayMode mode) { order.Box().setVisible(mode == DisplayMode::Thumbnails); });
    arrangement.Restore();
    order.Restore();
}

QStringList DocumentsPage::UnsentFiles() const
{
    return transfers.UnsentFiles();
}

int DocumentsPage::CountOfChanges() const
{
    return commands.CountOfChanges();
}

bool DocumentsPage::HasRunningTransfers() const
{
    return transfers.CountOfActive() > 0;
}

void DocumentsPage::SetClosing(bool isClosing)
{
    if (isClosing) {
        message->Show(Topic::closing, tr("The removal is being sent to the cloud."), tr("Then the window closes."), {},
                      MessageBar::Kind::Notice);
    } else {
        message->Close(Topic::closing);
    }
}

QStringList DocumentsPage::PendingRemovals() const
{
    QStringList ids;
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.index(row).data(Host::CloudDocumentsModel::HiddenRole).toBool()) {
            ids.append(model.index(row).data(Host::CloudDocumentsModel::IdRole).toString());
        }
    }
    return ids;
}

QStringList DocumentsPage::NamesOf(const QStringList& ids) const
{
    QStringList names;
    for (const QString& id : ids) {
        if (session.Facts(id)) {
            names.append(NameOf(session, id));
        }
    }
    return names;
}

void DocumentsPage::ShowProblem(const QString& title, const QString& detail)
{
    message->Show(Topic::save, title, detail);
}

void DocumentsPage::ShowMenu(const QPoint& place, bool isOnDocument)
{
    const auto menu = new QMenu(this);
    menu->setObjectName("contextMenu");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (isOnDocument) {
        actions.AddDocumentEntriesTo(*menu);
    } else {
        actions.AddGeneralEntriesTo(*menu);
    }
    menu->popup(place);
}

void DocumentsPage::UpdateActions()
{
    const bool isAnySelected = view->selectionModel()->hasSelection();
    const bool isTransferring =
        transfers.CountOfActive() > transfers.CountOf(Transfers::Status::Waiting); // which keep nothing busy
    actions.Update({situation.IsSignedIn(), situation.IsOffline(), isTransferring, isAnySelected, commands.IsAnyHere(),
                    !commands.ChangedHere().isEmpty(), !commands.InConflict().isEmpty(),
                    commands.Removals().IsPossible(), view->currentIndex().isValid()});
    details->Update();
}

void DocumentsPage::UpdateEmptyPage()
{
    const bool isEmpty = filter.rowCount() == 0;
    if (isEmpty && model.VisibleCount() > 0) {
        empty->Show(Glyph::Search, tr("No matching documents"), narrowing.Explanation(), tr("Show All Documents"));
    } else if (isEmpty && !situation.HasList()) {
        empty->Show(Glyph::Cloud, tr("Loading documents…"), {});
    } else if (isEmpty) {
        empty->Show(Glyph::Cloud, tr("No documents yet"), tr("Drop PDF files here, or choose files to upload."),
                    tr("Upload…"));
    }
    stack->setCurrentWidget(isEmpty ? static_cast<QWidget*>(empty) : view);
}

void DocumentsPage::UpdateStatus()
{
    StatusLine::Situation shown;
    shown.shown = filter.rowCount();
    shown.all = model.VisibleCount();
    const auto selected = view->selectionModel()->selectedIndexes();
    shown.selected = selected.size();
    for (const auto& index : selected) {
        shown.selectedSize += index.data(Host::CloudDocumentsModel::SizeRole).toLongLong();
    }
    shown.removals = model.rowCount() - model.VisibleCount();
    situation.Describe(shown);
    status->Show(shown);
}

} // namespace Norlis::Window
