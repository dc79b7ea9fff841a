#include "StatusLine.h"

#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/ElidedLabel.h>

#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>
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
    layout->addStretch(1);
    layout->addWidget(tryNow); // where no text moves it
    layout->addWidget(stopWaiting);
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
    details = technical;
    Update();
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
    ShowParts(situation.isOffline ? OfflineParts() : OnlineParts());
}

void StatusLine::ShowParts(QVector<Part> parts)
{
    const auto textOf = [](const QVector<Part>& all) {
        QStringList texts;
        for (const Part& part : all) {
            texts.append(part.text);
        }
        return texts.join(" · ");
    };
    const QString whole = textOf(parts);
    int room = contentsRect().marginsRemoved(layout()->contentsMargins()).width();
    for (const QWidget* const other : std::initializer_list<const QWidget*>{tryNow, stopWaiting, storage}) {
        room -= other->isHidden() ? 0 : other->sizeHint().width() + layout()->spacing();
    }
    const auto fits = [&](QVector<Part> all) {
        if (all.last().importance == Importance::End) {
            all.removeLast();
        }
        return fontMetrics().horizontalAdvance(textOf(all)) < room;
    };
    while (!fits(parts)) {
        const auto least = std::min_element(parts.begin(), parts.end(), [](const Part& one, const Part& other) {
            return one.importance < other.importance;
        });
        if (least->importance >= Importance::Kept) {
            break;
        }
        parts.erase(least);
    }
    text->setText(textOf(parts));
    const bool isWhole = textOf(parts) == whole && fontMetrics().horizontalAdvance(whole) < room;
    text->setToolTip(ToolTipText({isWhole ? QString() : whole, isWhole ? reason : QString(), details}));
}

int StatusLine::SecondsWithoutAnswer() const
{
    if (situation.isOffline || !(situation.isRefreshing || situation.isSigningIn)) {
        return 0;
    }
    const qint64 seconds = situation.askedAt.secsTo(QDateTime::currentDateTime());
    return seconds < usualSeconds ? 0 : static_cast<int>(seconds);
}

QVector<StatusLine::Part> StatusLine::Numbers() const
{
    const int all = situation.all;
    QVector<Part> parts = {{situation.shown == all ? tr("%n document(s)", nullptr, all)
                                                   : tr("%1 of %n document(s)", nullptr, all).arg(situation.shown),
                            situation.isOffline ? Importance::Least : Importance::Kept}};
    if (situation.selected > 0) {
        parts.append({tr("%n selected, %1", nullptr, situation.selected).arg(SizeText(situation.selectedSize)),
                      situation.isOffline ? Importance::Least : Importance::Kept});
    }
    return parts;
}

QVector<StatusLine::Part> StatusLine::OnlineParts() const
{
    QVector<Part> parts = Numbers();
    if (const int seconds = SecondsWithoutAnswer()) {
        parts.append({tr("The cloud has not answered for %n s", nullptr, seconds), Importance::Kept});
    } else if (situation.isRefreshing) {
        parts.append({tr("refreshing…"), Importance::Least});
    } else if (situation.isSigningIn) {
        parts.append({tr("signing in…"), Importance::Least});
    } else if (situation.refreshedAt.isValid()) {
        parts.append({tr("as of %1").arg(TimeText(situation.refreshedAt.time())), Importance::Least});
    }
    return parts;
}

QVector<StatusLine::Part> StatusLine::OfflineParts() const
{
    QVector<Part> parts = {{tr("Offline"), Importance::Kept}};
    if (situation.nextAttempt.isValid()) {
        const qint64 wait = QDateTime::currentDateTime().msecsTo(situation.nextAttempt);
        constexpr qint64 second = 1000;
        parts.append({tr("trying again in %n s", nullptr, static_cast<int>(qMax(wait + second - 1, second) / second)),
                      Importance::Kept});
    } else {
        parts.append({tr("trying again…"), Importance::Kept});
    }
    if (situation.removals > 0) {
        parts.append({tr("%n removal(s) waiting", nullptr, situation.removals), Importance::Kept});
    }
    parts += Numbers();
    if (situation.refreshedAt.isValid()) {
        parts.append({tr("list of %1").arg(TimeText(situation.refreshedAt.time())), Importance::More});
    }
    if (!reason.isEmpty()) {
        parts.append({reason.chopped(reason.endsWith('.') ? 1 : 0), Importance::End});
    }
    return parts;
}

} // namespace Norlis::Window
