#include "StatusLine.h"

#include "AccessibleParts.h"
#include "ElidedLabel.h"
#include "Texts.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <utility>

namespace Norlis::Window {

namespace {

constexpr int usualSeconds = 10; // for an answer

} // namespace

StatusLine::StatusLine(QWidget* parent)
    : TintedFrame(parent),
      text(new ElidedLabel),
      tryNow(new QPushButton(tr("Try Now"))),
      stopWaiting(new QPushButton(tr("Stop Waiting"))),
      storage(new StorageBar)
{
    setFrameShape(NoFrame);
    SetTint(Tint::Plain);
    text->setObjectName("status");
    SetAccessibleRole(*text, QAccessible::Notification);
    tryNow->setObjectName("tryNow");
    tryNow->setToolTip(tr("Connect to the cloud now"));
    stopWaiting->setToolTip(tr("Work offline until the cloud answers again"));
    stopWaiting->hide();
    const auto layout = new QHBoxLayout(this);
    const int gap = fontMetrics().height() / 3;
    layout->setContentsMargins(2 * gap, gap, 2 * gap, gap);
    layout->addWidget(text);
    layout->addWidget(tryNow);
    layout->addWidget(stopWaiting);
    layout->addStretch(1);
    layout->addWidget(storage);
    layout->addStrut(tryNow->sizeHint().height()); // nothing jumps when the button comes
    connect(tryNow, &QPushButton::clicked, this, &StatusLine::TryNowChosen);
    connect(stopWaiting, &QPushButton::clicked, this, &StatusLine::StopWaitingChosen);
    countdown.setInterval(1000);
    connect(&countdown, &QTimer::timeout, this, &StatusLine::Update);
}

void StatusLine::Show(const Situation& newSituation)
{
    const Situation before = std::exchange(situation, newSituation);
    if (!situation.isOffline) {
        Explain({}, {});
    }
    SetTint(situation.isOffline ? Tint::Notice : Tint::Plain);
    if (situation.isOffline || situation.isRefreshing || situation.isSigningIn) {
        countdown.start();
    } else {
        countdown.stop();
    }
    Update();
    if (situation.isOffline != before.isOffline) {
        ReadAloud(*text);
    }
}

void StatusLine::ReadNumbersAloud()
{
    ReadAloud(*text);
}

void StatusLine::Explain(const QString& newReason, const QString& technical)
{
    reason = newReason;
    text->setToolTip(ToolTipText({reason, technical}));
}

void StatusLine::resizeEvent(QResizeEvent* event)
{
    TintedFrame::resizeEvent(event);
    Update();
}

StorageBar& StatusLine::Storage()
{
    return *storage;
}

void StatusLine::Update()
{
    const bool hadKeyboard = tryNow->hasFocus() || stopWaiting->hasFocus();
    tryNow->setVisible(situation.isOffline);
    stopWaiting->setVisible(SecondsWithoutAnswer() > 0);
    if (hadKeyboard && !tryNow->hasFocus() && !stopWaiting->hasFocus()) {
        emit KeyboardLeft();
    }
    text->setText(situation.isOffline ? OfflineText() : OnlineText());
}

int StatusLine::SecondsWithoutAnswer() const
{
    if (situation.isOffline || !(situation.isRefreshing || situation.isSigningIn)) {
        return 0;
    }
    const qint64 seconds = situation.askedAt.secsTo(QDateTime::currentDateTime());
    return seconds < usualSeconds ? 0 : static_cast<int>(seconds);
}

QString StatusLine::NumbersText() const
{
    const int all = situation.all;
    const QString documents = situation.shown == all ? tr("%n document(s)", nullptr, all)
                                                     : tr("%1 of %n document(s)", nullptr, all).arg(situation.shown);
    if (situation.selected == 0) {
        return documents;
    }
    return documents + " · " + tr("%n selected, %1", nullptr, situation.selected).arg(SizeText(situation.selectedSize));
}

QString StatusLine::OnlineText() const
{
    QStringList parts = {NumbersText()};
    if (const int seconds = SecondsWithoutAnswer()) {
        parts.append(tr("The cloud has not answered for %n s", nullptr, seconds));
    } else if (situation.isRefreshing) {
        parts.append(tr("refreshing…"));
    } else if (situation.isSigningIn) {
        parts.append(tr("signing in…"));
    } else if (situation.refreshedAt.isValid()) {
        parts.append(tr("as of %1").arg(TimeText(situation.refreshedAt.time())));
    }
    return parts.join(" · ");
}

QString StatusLine::OfflineText() const
{
    QStringList parts = {tr("Offline")};
    if (situation.nextAttempt.isValid()) {
        const qint64 wait = QDateTime::currentDateTime().msecsTo(situation.nextAttempt);
        constexpr qint64 second = 1000;
        parts.append(tr("trying again in %n s", nullptr, static_cast<int>(qMax(wait + second - 1, second) / second)));
    } else {
        parts.append(tr("trying again…"));
    }
    if (situation.refreshedAt.isValid()) {
        parts.append(tr("list of %1").arg(TimeText(situation.refreshedAt.time())));
    }
    const QStringList all = QStringList(NumbersText()) + parts;
    const int room = contentsRect().width() - tryNow->sizeHint().width() - storage->sizeHint().width() -
                     4 * layout()->contentsMargins().left();
    if (fontMetrics().horizontalAdvance(all.join(" · ")) < room) {
        parts = all;
    }
    if (!reason.isEmpty()) { // last, because the end of the line is what gives way; all of it is in the tool tip
        parts.append(reason.chopped(reason.endsWith('.') ? 1 : 0));
    }
    return parts.join(" · ");
}

} // namespace Norlis::Window
