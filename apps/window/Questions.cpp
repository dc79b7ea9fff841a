#include "Questions.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

namespace Norlis::Window {

namespace {

/// The translation context.
struct Questions {
    Q_DECLARE_TR_FUNCTIONS(Norlis::Window::Questions)
};

/// \param consent the title of the box and the text of the button that confirms
void Ask(QWidget& widget, const QString& name, const QString& question, const QString& explanation,
         const QString& consent, const std::function<void()>& action)
{
    const auto box = new QMessageBox(QMessageBox::Question, consent, question, QMessageBox::Cancel, &widget);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText); // names come from the server
    box->setInformativeText(explanation);
    const QAbstractButton* const yes = box->addButton(consent, QMessageBox::DestructiveRole);
    box->setDefaultButton(QMessageBox::Cancel);
    QObject::connect(box, &QMessageBox::buttonClicked, &widget, [yes, action](const QAbstractButton* button) {
        if (button == yes) {
            action();
        }
    });
    box->open();
}

} // namespace

void AskToReplace(QWidget& widget, const QStringList& names, const std::function<void()>& action)
{
    const QString question =
        names.size() == 1
            ? Questions::tr("“%1” has changed in the cloud too. Replace it?").arg(names.first())
            : Questions::tr("%n documents have changed in the cloud too. Replace them?", nullptr, names.size());
    Ask(widget, "confirmReplacement", question,
        Questions::tr("The changes made in the cloud will be lost. To keep both versions, download the one in the "
                      "cloud to another folder first."),
        Questions::tr("Replace"), action);
}

void AskToRemove(QWidget& widget, const QStringList& names, const std::function<void()>& action)
{
    const QString question = names.size() == 1
                                 ? Questions::tr("Remove “%1” from the cloud?").arg(names.first())
                                 : Questions::tr("Remove %n documents from the cloud?", nullptr, names.size());
    Ask(widget, "confirmRemoval", question, Questions::tr("This cannot be undone. Copies on this computer are kept."),
        Questions::tr("Remove"), action);
}

} // namespace Norlis::Window
