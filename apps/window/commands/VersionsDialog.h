#pragma once

#include <QDialog>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

class QCheckBox;
class QGridLayout;
class QLabel;
class QPushButton;

namespace Norlis::Host {
class CloudSession;
}

namespace Norlis::Window {

class VersionCell;

/// Shows a file on this computer and a document in the cloud side by side, which cannot both stay as they are, and lets
/// the user choose. Several such cases are gone through one after the other, or decided all at once. Opens in its turn
/// and deletes itself.
class VersionsDialog : public QDialog {
    Q_OBJECT

public:
    struct Case {
        QString question;
        QString path; ///< of the file
        QString id;   ///< of the document
    };

    struct Choice {
        QString text;
        QString consequence;
        bool losesNothing = false;
    };

    /// \param choice index of the choice
    /// \param about  cases that it is for
    using Decided = std::function<void(int choice, const QVector<Case>& about)>;

    /// \param name    of the object
    /// \param session must outlive this
    /// \param cases   at least one
    /// \param choices Enter chooses the first, which loses nothing
    /// \param decided called at most once for each case, and not for those that the user leaves alone
    VersionsDialog(const QString& name, Host::CloudSession& session, const QVector<Case>& cases,
                   const QVector<Choice>& choices, const Decided& decided, QWidget& parent);

    ~VersionsDialog() override;

    void open() override;

private:
    void Arrange(const QVector<Choice>& choices);
    void AddChoice(int number, const Choice& choice, QGridLayout& layout);

    /// Shows the next case, or closes.
    void Show();

    /// Has smaller pictures, or none, where all would be higher than the screen, as with large letters, and scrolls in
    /// the end.
    void FitToScreen();
    void SetPictures(int edge);
    int ContentHeight() const;
    void Choose(int choice, bool losesNothing);
    QStringList VersionsOf(const QVector<Case>& some) const;

    Host::CloudSession& session;
    QVector<Case> cases; ///< the first of which is shown
    const Decided decided;
    QStringList shown;      ///< versions of the cases, when their first was shown
    QWidget* const content; ///< all but the last line
    QLabel* const question;
    QLabel* const news;
    const std::unique_ptr<VersionCell> here;
    const std::unique_ptr<VersionCell> inCloud;
    QCheckBox* const forAll;
    QPushButton* const skip;
    QPushButton* usual = nullptr; ///< what Enter chooses
};

} // namespace Norlis::Window
