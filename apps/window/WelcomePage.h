#pragma once

#include <host/account/CloudAccountSettings.h>

#include <QUrl>
#include <QWidget>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace Norlis::Window {

class MessageBar;

/// Says what the program is for, and lets the user choose where the documents are: in a folder or on a server.
class WelcomePage : public QWidget {
    Q_OBJECT

public:
    explicit WelcomePage(QWidget* parent = nullptr);

    /// Fills in what is known of a service, but for the password.
    void Suggest(const QUrl& service, const Host::ServiceAccess& access);

    /// While a sign-in is under way there is nothing but the way back.
    void SetBusy(bool isBusy);
    void ShowProblem(const QString& title, const QString& detail);
    void ForgetPassword();

signals:
    /// \param service what ServiceAddress gave
    /// \param token   empty for a folder
    void Chosen(const QUrl& service, const QString& token, const Norlis::Host::ServiceAccess& access);
    void Canceled();

private:
    QWidget* FolderChoice();
    QWidget* ServerChoice();
    void ChooseFolder();
    void ChooseServer();

    QLineEdit* const folder;
    QLineEdit* const address;
    QLineEdit* const user;
    QLineEdit* const password;
    QLineEdit* const certificates;
    QPushButton* const useFolder;
    QPushButton* const signIn;
    MessageBar* const message;
    QWidget* const choices;
    QWidget* const waiting;
    QLineEdit* lastTried = folder; ///< what to type again when a sign-in fails
};

} // namespace Norlis::Window
