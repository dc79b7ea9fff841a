#include "Questions.h"

#include <apps/window/texts/Texts.h>

#include <QCoreApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace Norlis::Window {

namespace {

/// The translation context.
struct Questions {
    Q_DECLARE_TR_FUNCTIONS(Norlis::Window::Questions)
};

struct Answer {
    QString text;
    std::function<void()> action;
};

/// \param answers beside Cancel, the first of which is the default unless it destroys something
QMessageBox& Ask(QWidget& widget, const QString& name, const QString& question, const QString& explanation,
                 const QVector<Answer>& answers, bool isDestructive)
{
    const auto box = new QMessageBox(isDestructive ? QMessageBox::Warning : QMessageBox::Question,
                                     Questions::tr("Documents"), question, QMessageBox::Cancel, &widget);
    if (const auto label = box->findChild<QLabel*>("qt_msgbox_label")) { // as the other questions
        QFont bold = label->font();
        bold.setBold(true);
        label->setFont(bold);
    }
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText); // names come from the server
    box->setInformativeText(explanation);
    box->setDefaultButton(QMessageBox::Cancel);
    for (const Answer& answer : answers) {
        const auto button =
            box->addButton(answer.text, isDestructive ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
        QObject::connect(button, &QAbstractButton::clicked, &widget, answer.action);
        if (!isDestructive && &answer == &answers.first()) {
            box->setDefaultButton(button);
        }
    }
    OpenInTurn(*box);
    return *box;
}

} // namespace

void OpenInTurn(QDialog& dialog)
{
    const auto others = dialog.parentWidget()->window()->findChildren<QDialog*>();
    for (QDialog* const other : others) {
        if (other != &dialog && other->isVisible() && other->isModal()) {
            QObject::connect(
                other, &QDialog::finished, &dialog, [&dialog] { OpenInTurn(dialog); }, Qt::QueuedConnection);
            return;
        }
    }
    dialog.open();
}

QMessageBox& AskToConfirm(QWidget& widget, const QString& name, const QString& question, const QString& explanation,
                          const QString& consent, const std::function<void()>& action)
{
    return Ask(widget, name, question, explanation, {{consent, action}}, true);
}

void AskToUseCloud(QWidget& widget, const QStringList& names, const std::function<void()>& action)
{
    const QString question = names.size() == 1
                                 ? Questions::tr("Use the cloud’s version of “%1”?").arg(names.first())
                                 : Questions::tr("Use the cloud’s versions of %n documents?", nullptr, names.size());
    Ask(widget, "confirmUseCloud", question, Questions::tr("The changes on this computer are lost."),
        {{Questions::tr("Use the Cloud’s"), action}}, true);
}

QMessageBox& AskToUpload(QWidget& widget, const QStringList& names, const std::function<void()>& action)
{
    const QString question = names.size() == 1 ? Questions::tr("Upload “%1”?").arg(names.first())
                                               : Questions::tr("Upload %n files?", nullptr, names.size());
    return Ask(widget, "confirmUpload", question, names.size() == 1 ? QString() : SomeOf(names),
               {{Questions::tr("&Upload"), action}}, false);
}

void AskToOpen(QWidget& widget, int number, const std::function<void()>& action)
{
    Ask(widget, "confirmOpening", Questions::tr("Open %n documents?", nullptr, number), {},
        {{Questions::tr("&Open"), action}}, true);
}

void AskToRemove(QWidget& widget, const QStringList& names, int changed, const std::function<void()>& action)
{
    const QString question = names.size() == 1
                                 ? Questions::tr("Remove “%1” from the cloud?").arg(names.first())
                                 : Questions::tr("Remove %n documents from the cloud?", nullptr, names.size());
    Ask(widget, "confirmRemoval", question,
        (names.size() == 1 ? QString() : SomeOf(names) + "\n\n") +
            (changed == 0 ? QString()
                          : Questions::tr("%n document(s) have changes that are not in the cloud. These will be in the "
                                          "files on this computer only.",
                                          nullptr, changed) +
                                "\n\n") +
            Questions::tr("Copies on this computer are kept. For half a minute, Undo takes it back."),
        {{Questions::tr("&Remove"), action}}, true);
}

} // namespace Norlis::Window
