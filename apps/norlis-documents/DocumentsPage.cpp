#include "DocumentsPage.h"

#include "DocumentsView.h"
#include "EmptyPage.h"
#include "MessageBar.h"
#include "StorageBar.h"
#include "Texts.h"
#include "TransfersPanel.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QMimeDatabase>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QToolBar>
#include <QVBoxLayout>

#include <array>

namespace Norlis::Window {

using Host::CloudProblem;
using Host::CloudSession;
using Model = Host::CloudDocumentsModel;
using PDF::Cloud::AbstractCloudManager;
using State = PDF::FileInfo::CloudStatus;

namespace {

namespace Key {
const auto mode = QStringLiteral("view/mode");
const auto order = QStringLiteral("view/order");
const auto downloadFolder = QStringLiteral("downloadFolder");
const auto split = QStringLiteral("view/split");
} // namespace Key

// What the message bar can be about.
namespace Topic {
const auto files = QStringLiteral("files");
const auto list = QStringLiteral("list");
const auto removal = QStringLiteral("removal");
const auto save = QStringLiteral("save");
const auto signIn = QStringLiteral("signIn");
} // namespace Topic

struct OrderChoice {
    DocumentsFilter::Order order;
    Qt::SortOrder direction;
};

constexpr std::array<OrderChoice, 4> orderChoices = {{
    {DocumentsFilter::Order::Name, Qt::AscendingOrder},
    {DocumentsFilter::Order::Name, Qt::DescendingOrder},
    {DocumentsFilter::Order::Modified, Qt::DescendingOrder},
    {DocumentsFilter::Order::Size, Qt::DescendingOrder},
}};

bool IsPdf(const QString& path)
{
    return QFileInfo(path).isFile() && QMimeDatabase().mimeTypeForFile(path).inherits("application/pdf");
}

QStringList LocalPaths(const QMimeData& data)
{
    QStringList paths;
    const auto urls = data.urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) {
            paths.append(url.toLocalFile());
        }
    }
    return paths;
}

bool IsChangedHere(int state)
{
    return state == static_cast<int>(State::ChangedLocally) || state == static_cast<int>(State::ChangedOnBothSides);
}

} // namespace

DocumentsPage::DocumentsPage(CloudSession& session, QSettings& settings, QWidget* parent)
    : QWidget(parent),
      session(session),
      settings(settings),
      model(session.Documents()),
      transfers(session),
      tools(new QToolBar),
      search(new QLineEdit),
      order(new QComboBox),
      message(new MessageBar),
      stack(new QStackedWidget),
      view(new DocumentsView),
      empty(new EmptyPage),
      status(new QLabel),
      storage(new StorageBar)
{
    setObjectName("documentsPage");
    setAcceptDrops(true);
    filter.setSourceModel(&model);
    view->setModel(&filter);
    MakeActions();
    Arrange();
    Connect();
    Restore();
    UpdateActions();
    UpdateEmptyPage();
    UpdateStatus();
}

DocumentsPage::~DocumentsPage()
{
    view->setModel(nullptr); // which goes before the view does
}

void DocumentsPage::SignIn(const QString& newToken)
{
    token = newToken;
    session.Cloud().Authorization(token);
    UpdateStatus();
}

void DocumentsPage::OnSignedIn()
{
    isSignedIn = true;
    token.clear();
    message->Close(Topic::signIn);
    session.Refresh();
    session.Cloud().UserQuota();
    UpdateActions();
}

void DocumentsPage::MakeActions()
{
    const auto make = [this](const QString& text, Glyph glyph, const QKeySequence& keys, const QString& tip,
                             const auto& triggered) {
        const auto action = new QAction(GlyphIcon(glyph), text, this);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        const QString plainKeys = keys.toString(QKeySequence::NativeText);
        action->setToolTip(plainKeys.isEmpty() ? tip : tip + " (" + plainKeys + ')');
        action->setStatusTip({});
        connect(action, &QAction::triggered, this, triggered);
        addAction(action);
        return action;
    };
    actions.upload = make(tr("&Upload …"), Glyph::Upload, Qt::CTRL + Qt::Key_U, tr("Send PDF files to the cloud"),
                          [this] { ChooseUploads(); });
    actions.download = make(tr("&Download"), Glyph::Download, Qt::CTRL + Qt::Key_D,
                            tr("Fetch the selected documents into the folder for downloads"), [this] { Download({}); });
    actions.downloadTo =
        make(tr("Download &To …"), Glyph::Folder, Qt::CTRL + Qt::SHIFT + Qt::Key_D,
             tr("Fetch the selected documents into a folder that you choose"), [this] { ChooseDownloadFolder(); });
    actions.open = make(tr("&Open"), Glyph::Open, QKeySequence::Open,
                        tr("Open the selected documents, and fetch those that are not here"), [this] { Open(); });
    actions.uploadChanges =
        make(tr("Upload &Changes"), Glyph::UploadChanges, QKeySequence::Save,
             tr("Replace the documents in the cloud by what you have changed here"), [this] { UploadChanges(); });
    actions.remove = make(tr("&Remove …"), Glyph::Remove, QKeySequence::Delete,
                          tr("Remove the selected documents from the cloud"), [this] { ConfirmRemoval(); });
    actions.refresh =
        make(tr("&Refresh"), Glyph::Refresh, QKeySequence::Refresh, tr("Fetch the list of documents again"), [this] {
            session.Refresh();
            session.Cloud().UserQuota();
        });
    actions.thumbnails =
        make(tr("&Thumbnails"), Glyph::Thumbnails, Qt::CTRL + Qt::Key_1, tr("Show pictures"), [this] { SetMode(0); });
    actions.list =
        make(tr("&List"), Glyph::List, Qt::CTRL + Qt::Key_2, tr("Show one document per line"), [this] { SetMode(1); });
    actions.find = make(tr("&Find"), Glyph::Search, QKeySequence::Find, tr("Look for a document by its name"), [this] {
        search->setFocus(Qt::ShortcutFocusReason);
        search->selectAll();
    });
    actions.signOut = make(tr("Sign &Out"), Glyph::Cancel, {}, tr("Forget the password and show another cloud"),
                           [this] { emit SignOutWanted(); });

    const auto modes = new QActionGroup(this);
    for (QAction* const action : {actions.thumbnails, actions.list}) {
        action->setCheckable(true);
        modes->addAction(action);
    }
    view->addActions({actions.open, actions.download, actions.downloadTo, actions.uploadChanges, actions.remove});
}

void DocumentsPage::AddMenusTo(QMenuBar& bar)
{
    const auto add = [&](const QString& title, const QList<QAction*>& entries) {
        const auto menu = new QMenu(title, this);
        for (QAction* const entry : entries) {
            if (entry) {
                menu->addAction(entry);
            } else {
                menu->addSeparator();
            }
        }
        bar.insertMenu(bar.actions().value(bar.actions().size() - 1), menu); // the last one is the program's own
    };
    add(tr("&Documents"), {actions.upload, nullptr, actions.open, actions.download, actions.downloadTo,
                           actions.uploadChanges, nullptr, actions.remove, nullptr, actions.signOut});
    add(tr("&View"), {actions.thumbnails, actions.list, nullptr, actions.find, actions.refresh});
}

void DocumentsPage::Arrange()
{
    const auto panel = new TransfersPanel(transfers);
    stack->addWidget(view);
    stack->addWidget(empty);
    const auto upper = new QWidget;
    const auto upperLayout = new QVBoxLayout(upper);
    upperLayout->setContentsMargins(0, 0, 0, 0);
    upperLayout->setSpacing(0);
    upperLayout->addWidget(message);
    upperLayout->addWidget(stack, 1);
    const auto splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName("split");
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(upper);
    splitter->addWidget(panel);
    splitter->setStretchFactor(0, 1);
    const int line = fontMetrics().lineSpacing();
    splitter->setSizes({line * 40, line * 9});

    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(Tools());
    layout->addWidget(splitter, 1);
    layout->addWidget(Status());
}

QWidget* DocumentsPage::Tools()
{
    tools->setAccessibleName(tr("Tools"));
    tools->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    for (QAction* const action :
         {actions.upload, actions.download, actions.open, actions.uploadChanges, actions.remove, actions.refresh}) {
        tools->addAction(action);
        tools->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    }
    tools->addSeparator();
    for (QAction* const action : {actions.thumbnails, actions.list}) {
        tools->addAction(action);
        tools->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    }
    search->setObjectName("search");
    search->setPlaceholderText(tr("Search"));
    search->setAccessibleName(tr("Search by name"));
    const auto clear = search->addAction(GlyphIcon(Glyph::Cancel), QLineEdit::TrailingPosition);
    clear->setToolTip(tr("Clear the Search"));
    clear->setVisible(false);
    connect(clear, &QAction::triggered, search, &QLineEdit::clear);
    connect(search, &QLineEdit::textChanged, clear,
            [clear](const QString& text) { clear->setVisible(!text.isEmpty()); });
    search->addAction(GlyphIcon(Glyph::Search), QLineEdit::LeadingPosition);
    order->setObjectName("order");
    order->setAccessibleName(tr("Order of the documents"));
    order->setToolTip(order->accessibleName());
    order->addItems({tr("Name, A to Z"), tr("Name, Z to A"), tr("Newest first"), tr("Largest first")});
    const auto both = new QWidget;
    const auto row = new QHBoxLayout;
    const int gap = fontMetrics().height() / 3;
    row->setContentsMargins(2 * gap, 0, 2 * gap, gap);
    row->addWidget(search, 1);
    row->addWidget(order);
    const auto layout = new QVBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tools);
    layout->addLayout(row);
    return both;
}

QWidget* DocumentsPage::Status()
{
    const auto row = new QFrame;
    status->setObjectName("status");
    status->setTextFormat(Qt::PlainText);
    const auto layout = new QHBoxLayout(row);
    const int gap = fontMetrics().height() / 3;
    layout->setContentsMargins(2 * gap, gap, 2 * gap, gap);
    layout->addWidget(status, 1);
    layout->addWidget(storage);
    return row;
}

void DocumentsPage::Connect()
{
    const auto& cloud = session.Cloud();
    connect(&cloud, &AbstractCloudManager::AuthorizationCompleted, this, &DocumentsPage::OnSignedIn);
    connect(&cloud, &AbstractCloudManager::RetrievingFilesListStarted, this, [this] {
        isRefreshing = true;
        UpdateStatus();
    });
    connect(&cloud, &AbstractCloudManager::RetrievingUserQuotaFinished, storage, &StorageBar::Show);
    connect(&session, &CloudSession::ListRefreshed, this, [this] {
        isRefreshing = false;
        refreshedAt = QDateTime::currentDateTime();
        message->Close(Topic::list);
        UpdateEmptyPage();
        UpdateStatus();
    });
    connect(&session, &CloudSession::PreviewStored, this,
            [this](const QString&, const QString&, const QString& path) { view->ForgetPicture(path); });
    connect(&session, &CloudSession::Failed, this, &DocumentsPage::OnFailed);

    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(&filter, signal, this, [this] {
            UpdateEmptyPage();
            UpdateStatus();
        });
    }
    actionsUpdate.setSingleShot(true);
    connect(&actionsUpdate, &QTimer::timeout, this, &DocumentsPage::UpdateActions);
    connect(&filter, &QAbstractItemModel::dataChanged, &actionsUpdate, qOverload<>(&QTimer::start));
    connect(view, &DocumentsView::SelectionChanged, this, &DocumentsPage::UpdateActions);
    connect(view, &DocumentsView::activated, this, &DocumentsPage::Open);
    connect(&transfers, &Transfers::ToBeOpened, this, &DocumentsPage::OpenFile);
    connect(&transfers, &Transfers::CountsChanged, this, &DocumentsPage::UpdateActions);
    connect(search, &QLineEdit::textChanged, this, [this](const QString& text) {
        filter.Search(text);
        UpdateEmptyPage();
        UpdateStatus();
    });
    connect(search, &QLineEdit::returnPressed, this, [this] { view->setFocus(); });
    const auto escape = new QShortcut(Qt::Key_Escape, search, nullptr, nullptr, Qt::WidgetShortcut);
    connect(escape, &QShortcut::activated, this, [this] {
        search->clear();
        view->setFocus();
    });
    connect(order, qOverload<int>(&QComboBox::currentIndexChanged), this, &DocumentsPage::SortBy);
    connect(empty, &EmptyPage::ActionChosen, this, [this] {
        if (search->text().isEmpty()) {
            ChooseUploads();
        } else {
            search->clear();
        }
    });
    const auto splitter = findChild<QSplitter*>("split");
    connect(splitter, &QSplitter::splitterMoved, this,
            [this, splitter] { settings.setValue(Key::split, splitter->saveState()); });
}

void DocumentsPage::Restore()
{
    SetMode(settings.value(Key::mode).toInt());
    order->setCurrentIndex(qBound(0, settings.value(Key::order).toInt(), order->count() - 1));
    findChild<QSplitter*>("split")->restoreState(settings.value(Key::split).toByteArray());
}

bool DocumentsPage::HasRunningTransfers() const
{
    return transfers.CountOf(Transfers::Status::Running) > 0;
}

void DocumentsPage::Tell(const QString& title, const QString& detail)
{
    message->Show(Topic::save, title, detail);
}

void DocumentsPage::dragEnterEvent(QDragEnterEvent* event)
{
    if (!LocalPaths(*event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void DocumentsPage::dropEvent(QDropEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Upload(LocalPaths(*event->mimeData()));
}

void DocumentsPage::ChooseUploads()
{
    const auto dialog = new QFileDialog(this, tr("Upload PDF Documents"), {}, tr("PDF documents (*.pdf *.PDF)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, &DocumentsPage::Upload);
    dialog->open();
}

void DocumentsPage::Upload(const QStringList& paths)
{
    QHash<QString, QString> idByPath;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QString path = model.index(row).data(Model::PathRole).toString();
        if (!path.isEmpty()) {
            idByPath.insert(path, model.index(row).data(Model::IdRole).toString());
        }
    }
    QStringList refused;
    QStringList fresh;
    QStringList changed;
    for (const QString& path : paths) {
        const QString known = idByPath.value(QFileInfo(path).canonicalFilePath());
        if (!IsPdf(path)) {
            refused.append(QFileInfo(path).fileName());
        } else if (known.isEmpty()) {
            fresh.append(QFileInfo(path).absoluteFilePath());
        } else {
            changed.append(known);
        }
    }
    ReplaceInCloud(changed);
    transfers.Upload(fresh);
    if (refused.isEmpty()) {
        message->Close(Topic::files);
    } else {
        message->Show(Topic::files,
                      refused.size() == 1
                          ? tr("“%1” is not a PDF document and was not uploaded.").arg(refused.first())
                          : tr("%n of the files are not PDF documents and were not uploaded.", nullptr, refused.size()),
                      {});
    }
}

QString DocumentsPage::DownloadFolder() const
{
    return settings.value(Key::downloadFolder, QStandardPaths::writableLocation(QStandardPaths::DownloadLocation))
        .toString();
}

void DocumentsPage::ChooseDownloadFolder()
{
    const auto dialog = new QFileDialog(this, tr("Download To"), DownloadFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
        settings.setValue(Key::downloadFolder, folder);
        Download(folder);
    });
    dialog->open();
}

/// \param folder empty: where the local copy is, or else the folder for downloads
void DocumentsPage::Download(const QString& folder)
{
    const auto indexes = view->selectionModel()->selectedIndexes();
    for (const auto& index : indexes) {
        const QString path = index.data(Model::PathRole).toString();
        const QString usual = path.isEmpty() ? DownloadFolder() : QFileInfo(path).absolutePath();
        const QString target = folder.isEmpty() ? usual : folder;
        QDir().mkpath(target);
        transfers.Download(index.data(Model::IdRole).toString(), target);
    }
}

void DocumentsPage::Open()
{
    const QStringList ids = view->SelectedIds();
    for (const QString& id : ids) {
        const QString path = model.index(model.RowOf(id)).data(Model::PathRole).toString();
        if (QFileInfo::exists(path)) {
            OpenFile(path);
        } else {
            QDir().mkpath(DownloadFolder());
            transfers.Download(id, DownloadFolder(), true);
        }
    }
}

void DocumentsPage::OpenFile(const QString& path)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        message->Show(
            Topic::files, tr("“%1” cannot be opened.").arg(QFileInfo(path).fileName()),
            tr("There is no program for PDF documents. The document is at %1.").arg(QDir::toNativeSeparators(path)));
    }
}

void DocumentsPage::UploadChanges()
{
    QStringList ids;
    for (const auto& index : view->selectionModel()->selectedIndexes()) {
        if (IsChangedHere(index.data(Model::StateRole).toInt())) {
            ids.append(index.data(Model::IdRole).toString());
        }
    }
    ReplaceInCloud(ids);
}

void DocumentsPage::ReplaceInCloud(const QStringList& ids)
{
    QStringList conflicts;
    for (const QString& id : ids) {
        const int state = model.index(model.RowOf(id)).data(Model::StateRole).toInt();
        if (state == static_cast<int>(State::ChangedOnBothSides) || state == static_cast<int>(State::ChangedInCloud)) {
            conflicts.append(id);
        } else {
            transfers.UploadChanges(id);
        }
    }
    if (conflicts.isEmpty()) {
        return;
    }
    const QString question =
        conflicts.size() == 1
            ? tr("“%1” has changed in the cloud too. Replace it?").arg(NameOf(conflicts.first()))
            : tr("%n documents have changed in the cloud too. Replace them?", nullptr, conflicts.size());
    Ask("confirmReplacement", question,
        tr("What was changed in the cloud is lost then. Download it into another folder first "
           "to keep both."),
        tr("Replace"), [this, conflicts] {
            for (const QString& id : conflicts) {
                transfers.UploadChanges(id);
            }
        });
}

void DocumentsPage::ConfirmRemoval()
{
    const QStringList ids = view->SelectedIds();
    if (ids.isEmpty()) {
        return;
    }
    const QString question = ids.size() == 1 ? tr("Remove “%1” from the cloud?").arg(NameOf(ids.first()))
                                             : tr("Remove %n documents from the cloud?", nullptr, ids.size());
    Ask("confirmRemoval", question, tr("This cannot be undone. Copies on this computer stay where they are."),
        tr("Remove"), [this, ids] {
            message->Close(Topic::removal);
            for (const QString& id : ids) {
                session.Remove(id);
            }
        });
}

void DocumentsPage::Ask(const QString& name, const QString& question, const QString& explanation,
                        const QString& consent, const std::function<void()>& action)
{
    const auto box = new QMessageBox(QMessageBox::Question, consent, question, QMessageBox::Cancel, this);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText); // names come from elsewhere
    box->setInformativeText(explanation);
    const QAbstractButton* const yes = box->addButton(consent, QMessageBox::DestructiveRole);
    box->setDefaultButton(QMessageBox::Cancel);
    connect(box, &QMessageBox::buttonClicked, this, [yes, action](const QAbstractButton* button) {
        if (button == yes) {
            action();
        }
    });
    box->open();
}

void DocumentsPage::SetMode(int mode)
{
    const auto chosen = mode == 1 ? Layout::List : Layout::Thumbnails;
    view->SetMode(chosen);
    (chosen == Layout::List ? actions.list : actions.thumbnails)->setChecked(true);
    settings.setValue(Key::mode, mode);
}

void DocumentsPage::SortBy(int choice)
{
    filter.SortBy(orderChoices.at(choice).order, orderChoices.at(choice).direction);
    settings.setValue(Key::order, choice);
}

void DocumentsPage::OnFailed(const CloudProblem& problem)
{
    const MessageBar::Remedy signInAgain = {tr("Sign In …"), [this] { emit SignInWanted(); }};
    if (problem.request == CloudProblem::Request::List) {
        isRefreshing = false;
        UpdateStatus();
    }
    const bool asksCloud =
        problem.request != CloudProblem::Request::SignIn && problem.request != CloudProblem::Request::Save;
    if (asksCloud && !session.IsSignedIn()) {
        if (isSignedIn) { // else it was told of the request before
            isSignedIn = false;
            UpdateActions();
            message->Show(Topic::signIn, tr("You are not signed in any more."), ProblemDetail(problem), {signInAgain});
        }
        return;
    }
    const QString title = ProblemTitle(problem, NameOf(problem.subject));
    const QString detail = ProblemDetail(problem);
    switch (problem.request) {
    case CloudProblem::Request::SignIn:
        message->Show(Topic::signIn, title, detail, {{tr("Try Again"), [this] { SignIn(token); }}, signInAgain});
        UpdateStatus();
        break;
    case CloudProblem::Request::List:
        message->Show(Topic::list, title, detail, {{tr("Try Again"), [this] { session.Refresh(); }}});
        break;
    case CloudProblem::Request::Remove:
        message->Show(Topic::removal, title, detail,
                      {{tr("Try Again"), [this, id = problem.subject] { session.Remove(id); }}});
        break;
    case CloudProblem::Request::Save:
        message->Show(Topic::save, title, detail);
        break;
    case CloudProblem::Request::Quota:
        storage->Show(Social::NorlisCloudProtocol::unknownQuota, Social::NorlisCloudProtocol::unknownQuota);
        break;
    case CloudProblem::Request::Upload:
    case CloudProblem::Request::Download:
        break; // told among the transfers
    case CloudProblem::Request::Preview:
        break; // the document is shown without a picture
    }
}

void DocumentsPage::UpdateActions()
{
    const auto selected = view->selectionModel()->selectedIndexes();
    const bool canAct = isSignedIn && !selected.isEmpty();
    const bool isAnyChanged = std::any_of(selected.begin(), selected.end(), [](const QModelIndex& index) {
        return IsChangedHere(index.data(Model::StateRole).toInt());
    });
    actions.upload->setEnabled(isSignedIn);
    actions.download->setEnabled(canAct);
    actions.downloadTo->setEnabled(canAct);
    actions.open->setEnabled(!selected.isEmpty());
    actions.uploadChanges->setEnabled(isSignedIn && isAnyChanged);
    actions.remove->setEnabled(canAct);
    actions.refresh->setEnabled(isSignedIn && !HasRunningTransfers()); // the library refreshes between transfers only
}

void DocumentsPage::UpdateEmptyPage()
{
    const bool isEmpty = filter.rowCount() == 0;
    if (isEmpty && model.rowCount() > 0) {
        empty->Show(Glyph::Search, tr("No document is called that"), tr("Looked for “%1”.").arg(search->text()),
                    tr("Clear the Search"));
    } else if (isEmpty && refreshedAt.isNull()) {
        empty->Show(Glyph::Cloud, tr("Looking for documents …"), {});
    } else if (isEmpty) {
        empty->Show(Glyph::Cloud, tr("No documents yet"), tr("Drop PDF files here, or choose them."), tr("Upload …"));
    }
    stack->setCurrentWidget(isEmpty ? static_cast<QWidget*>(empty) : view);
}

void DocumentsPage::UpdateStatus()
{
    const int shown = filter.rowCount();
    const QString count = shown == model.rowCount() ? tr("%n document(s)", nullptr, shown)
                                                    : tr("%1 of %n document(s)", nullptr, model.rowCount()).arg(shown);
    const QString when = isRefreshing           ? tr("refreshing …")
                         : !token.isEmpty()     ? tr("signing in …")
                         : refreshedAt.isNull() ? QString()
                                                : tr("as of %1").arg(TimeText(refreshedAt.time()));
    status->setText(when.isEmpty() ? count : count + " · " + when);
}

QString DocumentsPage::NameOf(const QString& id) const
{
    const int row = model.RowOf(id);
    return row < 0 ? id : model.index(row).data(Model::NameRole).toString();
}

} // namespace Norlis::Window
