#include "VersionsDialog.h"

#include "AccessibleParts.h"
#include "CloudVersions.h"
#include "PagePicture.h"
#include "Texts.h"

#include <host/session/CloudFacts.h>
#include <host/session/CloudSession.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Norlis::Window {

namespace {

constexpr int pictureEdge = 180;
constexpr int letters = 40; // side by side at least, beside the buttons

QLabel* MakeText(const QString& name, bool isBold = false)
{
    const auto label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText); // names come from the server
    QFont font = label->font();
    font.setBold(isBold);
    label->setFont(font);
    return label;
}

} // namespace

/// One of the two versions: page one, and what is known of it.
class VersionCell : public QWidget {
public:
    VersionCell(const QString& title, Host::CloudSession& session)
        : picture(new PagePicture(session)),
          facts(MakeText({}))
    {
        picture->setFixedSize(pictureEdge, pictureEdge);
        const auto layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(picture, 0, Qt::AlignHCenter);
        layout->addWidget(MakeTitle(title), 0, Qt::AlignHCenter);
        layout->addWidget(facts, 0, Qt::AlignHCenter);
        facts->setAlignment(Qt::AlignHCenter);
    }

    void ShowFacts(qint64 size, const QDateTime& date, const QDateTime& other)
    {
        const bool isNewer = other.isValid() && date.toSecsSinceEpoch() > other.toSecsSinceEpoch();
        const QString when = DateText(date);
        facts->setText(
            SizeText(size) + '\n' +
            (isNewer ? QCoreApplication::translate("Norlis::Window::VersionsDialog", "%1 (newer)").arg(when) : when));
    }

    QString Text() const
    {
        return facts->text().replace('\n', ", ");
    }

    PagePicture* const picture;

private:
    static QLabel* MakeTitle(const QString& title)
    {
        const auto label = MakeText({}, true);
        label->setText(title);
        return label;
    }

    QLabel* const facts;
};

VersionsDialog::VersionsDialog(const QString& name, Host::CloudSession& session, const QVector<Case>& cases,
                               const QVector<Choice>& choices, const Decided& decided, QWidget& parent)
    : QDialog(&parent),
      session(session),
      cases(cases),
      decided(decided),
      question(MakeText("question", true)),
      news(MakeText("news")),
      here(new VersionCell(tr("On this computer"), session)),
      inCloud(new VersionCell(tr("In the cloud"), session)),
      forAll(new QCheckBox),
      skip(new QPushButton(tr("&Skip")))
{
    setObjectName(name);
    SetAccessibleRole(*this, QAccessible::AlertMessage); // as other questions
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(parent.window()->windowTitle());
    Arrange(choices);
    Show();
    open();
}

void VersionsDialog::Arrange(const QVector<Choice>& choices)
{
    question->setWordWrap(true);
    news->setText(tr("It has changed again since you were asked."));
    news->setWordWrap(true);
    news->hide();
    const auto layout = new QVBoxLayout(this);
    layout->addWidget(question);
    layout->addWidget(news);
    const auto both = new QHBoxLayout;
    both->addWidget(here);
    both->addWidget(inCloud);
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(both);
    layout->addSpacing(fontMetrics().height() / 2);
    const auto answers = new QGridLayout;
    answers->setColumnStretch(1, 1);
    answers->setHorizontalSpacing(fontMetrics().height());
    for (int number = 0; number < choices.size(); ++number) {
        AddChoice(number, choices[number], *answers);
    }
    layout->addLayout(answers);
    layout->addSpacing(fontMetrics().height() / 2);
    const auto last = new QHBoxLayout;
    const auto buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    buttons->addButton(skip, QDialogButtonBox::ActionRole);
    last->addWidget(forAll, 1);
    last->addWidget(buttons);
    layout->addLayout(last);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(skip, &QPushButton::clicked, this, [this] {
        cases.removeFirst();
        Show();
    });
}

void VersionsDialog::AddChoice(int number, const Choice& choice, QGridLayout& layout)
{
    const auto button = new QPushButton(choice.text);
    button->setAccessibleDescription(choice.consequence);
    if (number == 0) {
        button->setDefault(true);
        button->setFocus();
    }
    const auto consequence = MakeText({});
    consequence->setText(choice.consequence);
    consequence->setWordWrap(true);
    consequence->setMinimumWidth(fontMetrics().averageCharWidth() * letters);
    layout.addWidget(button, number, 0);
    layout.addWidget(consequence, number, 1);
    connect(button, &QAbstractButton::clicked, this,
            [this, number, losesNothing = choice.losesNothing] { Choose(number, losesNothing); });
}

void VersionsDialog::Show()
{
    if (cases.isEmpty()) {
        accept();
        return;
    }
    const Case& first = cases.first();
    shown = VersionsOf(cases);
    question->setText(first.question);
    const QFileInfo file(first.path);
    const auto* facts = session.Facts(first.id);
    const QDateTime changedHere = file.lastModified();
    const QDateTime changedInCloud = facts ? facts->modifiedAt : QDateTime();
    here->ShowFacts(file.size(), changedHere, changedInCloud);
    inCloud->ShowFacts(facts ? static_cast<qint64>(facts->size) : 0, changedInCloud, changedHere);
    here->picture->ShowFile(first.path);
    inCloud->picture->ShowInCloud(first.id);
    setAccessibleName(first.question);
    setAccessibleDescription(tr("Here: %1").arg(here->Text()) + ". " + tr("In the cloud: %1").arg(inCloud->Text()));
    const bool areMore = cases.size() > 1;
    forAll->setText(tr("Do the same for the %n other(s)", nullptr, cases.size() - 1));
    forAll->setVisible(areMore);
    skip->setVisible(areMore);
    const int breadth = sizeHint().width();
    resize(breadth, layout()->totalHeightForWidth(breadth)); // QDialog would leave too little to broken lines
}

void VersionsDialog::Choose(int choice, bool losesNothing)
{
    const auto about = forAll->isChecked() ? cases : QVector<Case>{cases.first()};
    // The list may have learned of versions that nobody has seen here.
    if (!losesNothing && VersionsOf(about) != shown.mid(0, about.size())) {
        Show();
        news->show();
        return;
    }
    news->hide();
    cases.remove(0, about.size());
    const auto action = decided; // it may end in the deletion of this
    Show();
    action(choice, about);
}

QStringList VersionsDialog::VersionsOf(const QVector<Case>& some) const
{
    QStringList ids;
    for (const Case& each : some) {
        ids.append(each.id);
    }
    return Window::VersionsOf(session, ids);
}

} // namespace Norlis::Window
