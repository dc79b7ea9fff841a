#pragma once

#include <host/account/CloudAccount.h>
#include <host/session/CloudSession.h>

#include <QMainWindow>
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
    /// \param dataFolder for settings, tokens, records and pictures; see CloudAccountSettings, also for what it throws
    explicit MainWindow(const QString& dataFolder);
    ~MainWindow() override;

    /// Shows the documents of the last sign-in, or asks where there are some.
    void Open();

    /// Signs in to a service of the user's choice.
    void OpenService(const QUrl& service);

    /// As the close button does, but without a question or a box: transfers are cancelled, and that the list cannot be
    /// saved is only logged.
    void CloseUnasked();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void AskForService(const QUrl& suggestion);
    void SignIn(const QUrl& service, const QString& token, const Host::ServiceAccess& access);
    void OnSignInFailed(const Host::CloudProblem& problem);
    void ShowDocuments();
    void SignOut();
    void Whenever(bool endsTransfers, const QString& question, const QString& consent,
                  const std::function<void()>& action);

    /// Opens the records. False, and the user was told, when that fails.
    bool OpenSession(const Host::CloudAccount& wanted);
    void CloseSession();

    std::shared_ptr<Host::CloudAccountSettings> accounts;
    QSettings settings;
    std::optional<Host::CloudAccount> account;
    std::unique_ptr<Host::CloudSession> session;
    QStackedWidget* const pages;
    WelcomePage* const welcome;
    DocumentsPage* documents = nullptr; ///< while there is a list to show
    bool isCloseConfirmed = false;
    bool isUnasked = false; ///< the program must end
};

} // namespace Norlis::Window
