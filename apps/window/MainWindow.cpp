#include "MainWindow.h"

#include "AboutDialog.h"
#include "ShortcutsDialog.h"
#include "WelcomePage.h"

#include <apps/common/PrintableText.h>
#include <apps/window/page/DocumentsPage.h>
#include <apps/window/settings/SettingsDialog.h>
#include <apps/window/texts/ServiceTexts.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/Questions.h>
#include <host/account/ServiceAddress.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStackedWidget>

#include <glog/logging.h>

#include <utility>

namespace Norlis::Window {

using Host::CloudSession;
using PDF::Cloud::AbstractCloudManager;

namespace {

namespace Key {
const auto geometry = QStringLiteral("window/geometry");
} // namespace Key

/// Shows a dialog that deletes itself.
void OpenDialog(QDialog& dialog)
{
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.open();
}

} // namespace

MainWindow::MainWindow(const QString& dataFolder)
    : accounts(std::make_shared<Host::CloudAccountSettings>(dataFolder)),
      settings(dataFolder + "/window.ini", QSettings::IniFormat),
      pages(new QStackedWidget),
      welcome(new WelcomePage)
{
    setWindowTitle(tr("Documents"));
    pages->addWidget(welcome);
    setCentralWidget(pages);
    AddMenus();
    connect(welcome, &WelcomePage::Chosen, this, &MainWindow::SignIn);
    connect(welcome, &WelcomePage::Canceled, this, [this] {
        CloseSession();
        welcome->SetBusy(false);
    });
    qApp->installEventFilter(this); // shortcuts are told to their actions alone
    if (!restoreGeometry(settings.value(Key::geometry).toByteArray())) {
        const QRect available = screen()->availableGeometry();
        resize(QSize(1100, 760).boundedTo(available.size() * 85 / 100));
        move(available.center() - rect().center());
    }
}

void MainWindow::AddMenus()
{
    const auto program = menuBar()->addMenu(tr("&Application"));
    const auto change = program->addAction(tr("&Settings…"), this, &MainWindow::ShowSettings);
    change->setShortcut(QString("Ctrl+,"));
    change->setMenuRole(QAction::PreferencesRole);
    program->addSeparator();
    const auto quit = program->addAction(tr("&Quit"), this, &MainWindow::close);
    quit->setShortcuts({QString("Ctrl+Q"), QString("Ctrl+W")}); // on all desktops
    quit->setMenuRole(QAction::QuitRole);
    const auto help = menuBar()->addMenu(tr("&Help"));
    const auto keys = help->addAction(tr("&Keyboard Shortcuts"), this,
                                      [this] { OpenDialog(*new ShortcutsDialog(*menuBar(), this)); });
    keys->setShortcut(QKeySequence::HelpContents);
    const auto about = help->addAction(tr("&About Documents"), this, [this] { OpenDialog(*new AboutDialog(this)); });
    about->setMenuRole(QAction::AboutRole);
}

void MainWindow::ShowSettings()
{
    const auto dialog = new SettingsDialog(preferences, this);
    connect(dialog, &QDialog::accepted, this, [this] {
        if (session) {
            session->RefreshEvery(preferences.RefreshInterval());
        }
    });
    OpenDialog(*dialog);
}

MainWindow::~MainWindow()
{
    delete documents; // before the session
}

void MainWindow::Open()
{
    const QUrl service = accounts->ServiceUrl();
    const Host::CloudAccount known(accounts, service);
    if (service.isEmpty() || known.Token().isEmpty()) {
        AskForService(accounts->LastServiceUrl());
        return;
    }
    if (OpenSession(known)) {
        ShowDocuments();
        documents->SignIn(known.Token());
    }
}

void MainWindow::OpenService(const QUrl& service)
{
    const Host::CloudAccount wanted(accounts, service);
    if (wanted.Token().isEmpty()) {
        AskForService(service);
    } else {
        SignIn(service, wanted.Token(), {});
    }
}

void MainWindow::AskForService(const QUrl& suggestion)
{
    welcome->SetBusy(false);
    if (!suggestion.isEmpty()) {
        welcome->Suggest(suggestion, accounts->Access(suggestion));
    }
    pages->setCurrentWidget(welcome);
}

bool MainWindow::OpenSession(const Host::CloudAccount& wanted)
{
    CloseSession();
    try {
        session = std::make_unique<CloudSession>(wanted.DataFolder(), wanted.AuthInfo());
        session->RefreshEvery(preferences.RefreshInterval());
    } catch (const std::exception& problem) {
        AskForService(wanted.Service());
        welcome->ShowProblem(tr("The documents cannot be shown."), InUsersLanguage(QString::fromUtf8(problem.what())));
        return false;
    }
    account.emplace(wanted);
    return true;
}

void MainWindow::SignIn(const QUrl& service, const QString& token, const Host::ServiceAccess& access)
{
    const Host::CloudAccount wanted(accounts, service, access);
    if (!OpenSession(wanted)) {
        return;
    }
    pages->setCurrentWidget(welcome);
    welcome->SetBusy(true);
    const QString used = Host::IsFolder(service) ? wanted.Token() : token;
    connect(&session->Cloud(), &AbstractCloudManager::AuthorizationCompleted, welcome, [this, used] {
        session->Cloud().disconnect(welcome);
        session->disconnect(welcome);
        ShowDocuments();
        try {
            account->Remember(used);
        } catch (const std::exception& problem) {
            documents->ShowProblem(tr("The password could not be saved."),
                                   InUsersLanguage(QString::fromUtf8(problem.what())));
        }
        documents->OnSignedIn();
    });
    const bool isTokenGiven = Host::IsFolder(service) || token != Host::CloudAccount::TokenForNone();
    connect(session.get(), &CloudSession::Failed, welcome,
            [this, isTokenGiven](const Host::CloudProblem& problem) { OnSignInFailed(problem, isTokenGiven); });
    session->StaySignedIn(used);
}

void MainWindow::OnSignInFailed(const Host::CloudProblem& problem, bool isTokenGiven)
{
    const auto failed = problem; // the original is destroyed with the session
    CloseSession();
    welcome->SetBusy(false);
    const bool isRefused = failed.cause.kind == Social::OAuth2::FailureKind::NotSignedIn;
    const QString missing = isTokenGiven || !isRefused ? QString() : tr("No password or token was given.") + ' ';
    if (!isRefused) {
        welcome->FocusService(); // rather than the password, which is not what is wrong
    }
    welcome->ShowProblem(ProblemTitle(failed, {}), missing + ProblemDetail(failed), TechnicalText(failed));
}

void MainWindow::ShowDocuments()
{
    welcome->SetBusy(false);
    welcome->ForgetPassword();
    documents = new DocumentsPage(*session, settings);
    documents->AddMenusTo(*menuBar());
    pages->addWidget(documents);
    pages->setCurrentWidget(documents);
    documents->FocusDocuments();
    const QUrl& service = account->Service();
    setWindowTitle(tr("Documents — %1").arg(Host::ServiceText(service)));
    connect(documents, &DocumentsPage::FrontRequested, this, &MainWindow::ComeToFront);
    connect(documents, &DocumentsPage::SignOutRequested, this, [this] {
        const int changes = documents->CountOfChanges();
        const bool isRunning = documents->HasRunningTransfers();
        RunConfirmed(
            isRunning || changes > 0,
            isRunning ? tr("Transfers have not ended. Sign out anyway?")
                      : tr("%n document(s) have changes that are not in the cloud. Sign out anyway?", nullptr, changes),
            isRunning ? FateOfTransfers() : tr("The changes stay in the files on this computer."), tr("Sign Out"),
            [this] { SignOut(); });
    });
    // Queued, because the page must not be destroyed while it emits.
    connect(
        documents, &DocumentsPage::SignInRequested, this,
        [this] {
            const QUrl again = account->Service();
            interrupted = again;
            unsent = documents->UnsentFiles();
            CloseSession();
            AskForService(again);
        },
        Qt::QueuedConnection);
    OfferUpload(service == interrupted ? std::exchange(unsent, {}) : QStringList());
}

void MainWindow::Settle(const QString& question, const QString& consent, const std::function<void()>& action)
{
    const auto once = new QObject(session.get());
    const auto end = [=, ids = documents->PendingRemovals()] {
        once->deleteLater();
        isSettled = true;
        const QStringList names = documents->NamesOf(ids);
        if (names.isEmpty() || isClosingWithoutAsking) {
            action();
            return;
        }
        documents->SetClosing(false);
        setEnabled(true);
        if (keyboard) {
            keyboard->setFocus();
        }
        auto& box = AskToConfirm(*this, "confirmUnsentRemovals", question,
                                 tr("Not removed from the cloud: %1").arg(SomeOf(names)) + "\n\n" +
                                     tr("The documents stay there, and are in the list at the next start."),
                                 consent, action);
        box.button(QMessageBox::Cancel)->setText(tr("Stay"));
        connect(&box, &QDialog::rejected, this, [this] {
            isSettled = false;
            isCloseConfirmed = false;
        });
    };
    // Queued, because the session must not be destroyed while it emits.
    connect(session.get(), &CloudSession::ReadyToClose, once, end, Qt::QueuedConnection);
    session->PrepareToClose();
}

void MainWindow::ComeToFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    QWidget* const question = QApplication::activeModalWidget(); // which has to keep the keyboard
    (question ? question : this)->activateWindow();
}

void MainWindow::OfferUpload(const QStringList& files)
{
    offered += files;
    if (documents && !offered.isEmpty()) {
        documents->OfferUpload(std::exchange(offered, {}));
    }
}

void MainWindow::SignOut()
{
    if (session->HasPendingRemovals() && !isSettled) {
        Settle(tr("Removals could not be sent. Sign out anyway?"), tr("Sign Out"), [this] { SignOut(); });
        return;
    }
    session->SignOut();
    QString problem;
    try {
        account->Forget();
    } catch (const std::exception& error) {
        problem = InUsersLanguage(QString::fromUtf8(error.what()));
    }
    QMetaObject::invokeMethod(
        this,
        [this, problem] {
            const QUrl last = account->Service();
            CloseSession();
            AskForService(last);
            if (!problem.isEmpty()) {
                welcome->ShowProblem(tr("The settings could not be saved."), problem);
            }
        },
        Qt::QueuedConnection);
}

QString MainWindow::FateOfTransfers() const
{
    QStringList names;
    const QStringList files = documents->UnsentFiles();
    for (const QString& file : files) {
        names.append(Apps::Printable(QFileInfo(file).fileName()));
    }
    return tr("They are canceled and do not go on later. The files on this computer and the documents in the cloud "
              "stay as they are.") +
           (names.isEmpty() ? QString() : "\n\n" + tr("Not uploaded yet: %1").arg(SomeOf(names)));
}

void MainWindow::RunConfirmed(bool needsConfirmation, const QString& question, const QString& detail,
                              const QString& consent, const std::function<void()>& action)
{
    if (!needsConfirmation) {
        action();
        return;
    }
    AskToConfirm(*this, "confirmEnd", question, detail, consent, action);
}

void MainWindow::CloseSession()
{
    delete documents;
    documents = nullptr;
    setWindowTitle(tr("Documents"));
    session.reset();
    account.reset();
    isSettled = false;
}

void MainWindow::CloseWithoutAsking()
{
    isClosingWithoutAsking = true;
    close();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    // A window may have the keyboard while a question is open over it; Qt keeps it from the other keys only.
    const bool isBlocked = QApplication::activeModalWidget() && QApplication::activeWindow() == this;
    return (event->type() == QEvent::Shortcut && isBlocked) || QMainWindow::eventFilter(watched, event);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (documents && documents->HasRunningTransfers() && !isCloseConfirmed && !isClosingWithoutAsking) {
        event->ignore();
        RunConfirmed(true, tr("Transfers have not ended. Quit anyway?"), FateOfTransfers(), tr("Quit"), [this] {
            isCloseConfirmed = true;
            close();
        });
        return;
    }
    if (session && session->HasPendingRemovals() && !isSettled) {
        event->ignore();
        documents->SetClosing(true);
        keyboard = focusWidget();
        setEnabled(false);
        Settle(tr("Removals could not be sent. Quit anyway?"), tr("Quit Anyway"), [this] { close(); });
        return;
    }
    settings.setValue(Key::geometry, saveGeometry());
    delete documents;
    documents = nullptr;
    if (session) {
        try {
            session->SaveAndClose();
        } catch (const std::exception& problem) {
            if (isClosingWithoutAsking) {
                LOG(ERROR) << problem.what(); // there may be nobody to close a message box
            } else {
                QMessageBox::warning(this, windowTitle(), InUsersLanguage(QString::fromUtf8(problem.what())));
            }
        }
        session.reset();
    }
    event->accept();
}

} // namespace Norlis::Window
