#pragma once

#include <host/account/CloudAccountSettings.h>

#include <QUrl>
#include <QWidget>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QScrollArea;
class QSpacerItem;
class QVBoxLayout;

namespace Norlis::Window {

class MessageBar;

/// Explains the program, and lets the user choose where the documents are: in a folder or on a server.
class WelcomePage : public QWidget {
    Q_OBJECT

public:
    explicit WelcomePage(QWidget* parent = nullptr);

    /// Fills in what is known about a service, except the password.
    void Suggest(const QUrl& service, const Host::ServiceAccess& access);

    /// While signing in, only the Cancel button is shown.
    void SetBusy(bool isBusy);
    /// Has the folder or the address that was tried last edited.
    void FocusService();

    void ShowProblem(const QString& title, const QString& detail, const QString& technical = {});
    void ForgetPassword();

signals:
    /// \param service as returned by ServiceAddress
    /// \param token   empty for a folder
    void Chosen(const QUrl& service, const QString& token, const Norlis::Host::ServiceAccess& access);
    void Canceled();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ArrangeChoices();
    void ArrangeWaiting();
    QWidget* Column();

    /// Leaves out the gaps of a low page, so that more of both ways to begin is in sight.
    void FitGaps();
    QWidget* FolderChoice();
    QWidget* ServerChoice();

    /// Scrolls to the message and to what is being filled in, as soon as both have their places.
    void RevealMessage();
    void ChooseFolder();

    /// Shows what the address will be taken for.
    void CompleteAddress();
    void ChooseServer();

    QLineEdit* const folder;
    QLineEdit* const address;
    QLineEdit* const user;
    QLineEdit* const password;
    QLineEdit* const certificates;
    QPushButton* const useFolder;
    QPushButton* const signIn;
    MessageBar* const message; ///< in the form that it is about
    QVBoxLayout* const folderForm;
    QVBoxLayout* const serverForm;
    QWidget* const choices;
    QWidget* const waiting;
    QSpacerItem* const above;
    QScrollArea* const scroll;     ///< with a large font not all may fit
    QLineEdit* lastTried = folder; ///< where to retry when a sign-in fails
};

} // namespace Norlis::Window
