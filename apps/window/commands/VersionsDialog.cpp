#include "VersionsDialog.h"

#include <apps/window/pictures/PagePicture.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/Questions.h>
#include <host/session/CloudFacts.h>
#include <host/session/CloudSession.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

namespace Norlis::Window {

namespace {

constexpr int usualEdge = 180; // of a picture
constexpr int leastEdge = 60;  // smaller ones say nothing
constexpr int letters = 60;    // in a line that tells of a consequence
constexpr int frame = 40;      // of a window, with its title

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
class VersionCell {
public:
    VersionCell(const QString& title, Host::CloudSession& session)
        : picture(new PagePicture(session)),
          title(MakeText({}, true)),
          facts(MakeText({}))
    {
        this->title->setText(title);
        facts->setAlignment(Qt::AlignHCenter);
    }

    void AddTo(QGridLayout& layout, int column) const
    {
        layout.addWidget(picture, 0, column, Qt::AlignHCenter);
        layout.addWidget(title, 1, column, Qt::AlignHCenter);
        layout.addWidget(facts, 2, column, Qt::AlignHCenter);
    }

    void SetEdge(int edge) const
    {
        picture->setVisible(edge >= leastEdge);
        picture->setFixedSize(edge, edge);
    }

    void ShowFacts(qint64 size, const QDateTime& date, const QDateTime& other) const
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
    Q_DISABLE_COPY(VersionCell)

    QLabel* const title;
    QLabel* const facts;
};

VersionsDialog::VersionsDialog(const QString& name, Host::CloudSession& session, const QVector<Case>& cases,
                               const QVector<Choice>& choices, const Decided& decided, QWidget& parent)
    : QDialog(&parent),
      session(session),
      cases(cases),
      decided(decided),
      content(new QWidget),
      question(MakeText("question", true)),
      news(MakeText("news")),
      here(std::make_unique<VersionCell>(tr("On this computer"), session)),
      inCloud(std::make_unique<VersionCell>(tr("In the cloud"), session)),
      forAll(new QCheckBox),
      skip(new QPushButton(tr("&Skip")))
{
    setObjectName(name);
    SetAccessibleRole(*this, QAccessible::AlertMessage); // as other questions
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Documents"));
    Arrange(choices);
    OpenInTurn(*this);
}

VersionsDialog::~VersionsDialog() = default;

void VersionsDialog::open()
{
    Show();
    QDialog::open();
}

void VersionsDialog::Arrange(const QVector<Choice>& choices)
{
    question->setWordWrap(true);
    SetAccessibleRole(*question, QAccessible::Notification); // the next one is read aloud, too
    news->setText(tr("It has changed again since you were asked."));
    news->setWordWrap(true);
    news->hide();
    const auto layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(question);
    layout->addWidget(news);
    const auto both = new QGridLayout;
    here->AddTo(*both, 0);
    inCloud->AddTo(*both, 1);
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
    layout->addStretch();
    const auto scroll = new QScrollArea; // for very large letters
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    const auto last = new QHBoxLayout;
    const auto buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    last->addWidget(forAll, 1);
    last->addWidget(skip);
    last->addWidget(buttons);
    const auto all = new QVBoxLayout(this);
    all->setSpacing(fontMetrics().height());
    all->addWidget(scroll);
    all->addLayout(last);
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
        usual = button;
    }
    const auto consequence = MakeText({});
    consequence->setText(choice.consequence);
    consequence->setWordWrap(true);
    consequence->setMinimumWidth(
        qMin(fontMetrics().averageCharWidth() * letters, screen()->availableSize().width() / 2));
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
    FitToScreen();
    usual->setDefault(true); // by now the dialog knows of it, and has it back when no button has the keyboard
    usual->setFocus();
    ReadAloud(*question);
}

void VersionsDialog::FitToScreen()
{
    const QSize room = screen()->availableSize() - QSize(0, frame);
    const QMargins margins = layout()->contentsMargins();
    const int rest = margins.top() + margins.bottom() + layout()->spacing() + skip->sizeHint().height();
    SetPictures(usualEdge);
    const int tooMuch = ContentHeight() + rest - room.height();
    if (tooMuch > 0) {
        SetPictures(usualEdge - tooMuch);
    }
    const int bar = ContentHeight() + rest > room.height() ? style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
    resize(QSize(content->sizeHint().width() + margins.left() + margins.right() + bar, ContentHeight() + rest)
               .boundedTo(room));
}

void VersionsDialog::SetPictures(int edge)
{
    here->SetEdge(qMax(0, edge));
    inCloud->SetEdge(qMax(0, edge));
    content->layout()->activate(); // otherwise the layouts in it hear of that later
}

int VersionsDialog::ContentHeight() const
{
    return content->layout()->totalHeightForWidth(content->sizeHint().width());
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
