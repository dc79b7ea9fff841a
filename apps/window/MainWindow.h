#pragma once

#include <apps/window/settings/Preferences.h>
#include <host/account/CloudAccount.h>
#include <host/session/CloudSession.h>

#include <QMainWindow>
#include <QPointer>
#include <QSettings>

#include <optional>

class QStackedWidget;

namespace Norlis::Window {

class DocumentsPage;
class WelcomePage;

/// The program's window: signs in and out, and shows the documents in between.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// \param dataFolder for settings, tokens, records and previews; see CloudAccountSettings, also for what this
    /// throws
    explicit MainWindow(const QString& dataFolder);
    ~MainWindow() override;

    /// Shows the documents of the last sign-in, or asks where the documents are.
    void Open();

    /// Signs in to that service, or asks for its password.
    void OpenService(const QUrl& service);

    void ComeToFront();

    /// Asks whether to upload the files, as soon as there are documents to add them to.
    /// \param files absolute paths
    void OfferUpload(const QStringList& files);

    /// Closes without question or message box: transfers are cancelled, and a failure to save the list is only logged.
    void CloseWithoutAsking();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AddMenus();
    void ShowSettings();
    void AskForService(const QUrl& suggestion);
    void SignIn(const QUrl& service, const QString& token, const Host::ServiceAccess& access);
    void OnSignInFailed(const Host::CloudProblem& problem, bool isTokenGiven);
    void ShowDocuments();
    void SignOut();

    /// Sends what the user could still have taken back, then runs the action; if that fails, when the user has agreed.
    /// \param question and what agrees, for then
    void Settle(const QString& question, const QString& consent, const std::function<void()>& action);

    /// Runs the action, if need be when the user has agreed.
    /// \param detail says what becomes of what is under way; may be empty
    void RunConfirmed(bool needsConfirmation, const QString& question, const QString& detail, const QString& consent,
                      const std::function<void()>& action);
    QString FateOfTransfers() const;

    /// Opens the records. On failure returns false, after telling the user.
    bool OpenSession(const Host::CloudAccount& wanted);
    void CloseSession();

    std::shared_ptr<Host::CloudAccountSettings> accounts;
    QSettings settings;
    Preferences preferences{settings};
    std::optional<Host::CloudAccount> account;
    std::unique_ptr<Host::CloudSession> session;
    QStackedWidget* const pages;
    WelcomePage* const welcome;
    DocumentsPage* documents = nullptr; ///< while there is a list to show
    QStringList offered;                ///< files
    QUrl interrupted;                   ///< the service that no longer took the password
    QStringList unsent;                 ///< files that were to be uploaded there
    bool isCloseConfirmed = false;
    bool isClosingWithoutAsking = false;
    QPointer<QWidget> keyboard; ///< what had it before the window waited for removals
    bool isSettled = false;     ///< there is nothing left to send
};

} // namespace Norlis::Window
