#include "MessageBar.h"

#include "AccessibleParts.h"
#include "Alignment.h"
#include "Glyphs.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Norlis::Window {

MessageBar::MessageBar(QWidget* parent)
    : TintedFrame(parent),
      icon(new QLabel),
      text(new QLabel),
      details(new QLabel),
      showDetails(new QToolButton),
      buttonRow(new QHBoxLayout),
      next(new QPushButton),
      close(new QToolButton)
{
    setObjectName("message");
    SetAccessibleRole(*this, QAccessible::Notification);
    setAccessibleName(tr("Message"));

    text->setObjectName("messageText");
    details->setObjectName("messageDetails");
    for (QLabel* const label : {text, details}) {
        label->setTextFormat(Qt::PlainText); // parts come from the server
        label->setWordWrap(true);
        label->setAlignment(StartOf(*label) | Qt::AlignVCenter);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    showDetails->setObjectName("showDetails");
    showDetails->setText(tr("Details"));
    showDetails->setAutoRaise(true);
    showDetails->setCheckable(true);
    connect(showDetails, &QToolButton::toggled, details, &QWidget::setVisible);
    next->setObjectName("nextMessage");
    next->setAutoDefault(true); // Return presses it too
    next->setToolTip(tr("Show the next message"));
    close->setObjectName("closeMessage");
    close->setIcon(GlyphIcon(Glyph::Cancel));
    close->setAutoRaise(true);
    close->setToolTip(tr("Close the message"));
    close->setAccessibleName(close->toolTip());

    const auto texts = new QVBoxLayout;
    texts->addWidget(text);
    texts->addWidget(details);
    const auto layout = new QHBoxLayout(this);
    layout->addWidget(icon);
    layout->addLayout(texts, 1);
    layout->addWidget(showDetails);
    layout->addLayout(buttonRow);
    layout->addWidget(next);
    layout->addWidget(close);
    connect(next, &QPushButton::clicked, this, [this] {
        current = (current + 1) % messages.size();
        ShowCurrent();
    });
    connect(close, &QToolButton::clicked, this, [this] { Close(messages[current].topic); });
    hide();
}

void MessageBar::Show(const QString& topic, const QString& title, const QString& detail,
                      const QVector<Remedy>& remedies, Kind kind)
{
    const Message message = {topic, detail.isEmpty() ? title : title + ' ' + detail, {}, remedies, kind};
    const auto old = Find(topic);
    if (!Waits(kind)) {
        Take(topic);
        messages.insert(messages.begin(), message);
        current = 0;
    } else if (old != messages.end()) {
        *old = message;
    } else {
        messages.push_back(message);
    }
    ShowCurrent();
}

void MessageBar::SetDetails(const QString& newDetails)
{
    messages[current].details = newDetails;
    ShowDetails(newDetails);
}

void MessageBar::SetSubject(const QString& subject)
{
    messages[current].subject = subject;
}

void MessageBar::Mended(const QString& topic, const QString& subject)
{
    const auto found = Find(topic);
    if (found != messages.end() && found->subject == subject) {
        Close(topic);
    }
}

void MessageBar::Close(const QString& topic)
{
    if (!Has(topic)) {
        return;
    }
    const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
    Take(topic);
    ShowCurrent();
    if (hadKeyboard) {
        emit KeyboardLeft();
    }
}

bool MessageBar::Has(const QString& topic) const
{
    return std::any_of(messages.begin(), messages.end(),
                       [&topic](const Message& message) { return message.topic == topic; });
}

std::vector<MessageBar::Message>::iterator MessageBar::Find(const QString& topic)
{
    return std::find_if(messages.begin(), messages.end(),
                        [&topic](const Message& message) { return message.topic == topic; });
}

void MessageBar::Take(const QString& topic)
{
    const auto found = Find(topic);
    if (found == messages.end()) {
        return;
    }
    const auto place = static_cast<std::size_t>(found - messages.begin());
    messages.erase(found);
    current -= place < current ? 1 : 0;
    current = current < messages.size() ? current : 0;
}

void MessageBar::ShowCurrent()
{
    for (const auto old : qAsConst(buttons)) {
        old->hide();
        old->deleteLater(); // it may have been clicked just now
    }
    buttons.clear();
    if (messages.empty()) {
        hide();
        return;
    }
    const Message& message = messages[current];
    const bool isOther = text->text() != message.text;
    ShowKind();
    text->setText(message.text);
    text->setAccessibleName(message.text);
    ShowDetails(message.details);
    for (const Remedy& remedy : message.remedies) {
        const auto button = new QPushButton(remedy.text);
        connect(button, &QPushButton::clicked, this, [this, topic = message.topic, action = remedy.action] {
            Close(topic);
            action();
        });
        buttonRow->addWidget(button);
        setTabOrder(buttons.isEmpty() ? static_cast<QWidget*>(showDetails) : buttons.last(), button);
        buttons.append(button);
    }
    next->setText(tr("%1 of %2").arg(current + 1).arg(messages.size()));
    next->setAccessibleName(next->text() + ". " + next->toolTip());
    next->setVisible(messages.size() > 1);
    setTabOrder(buttons.isEmpty() ? static_cast<QWidget*>(showDetails) : buttons.last(), next);
    setTabOrder(next, close);
    setAccessibleName(message.text);
    if (isOther) {
        ReadAloud(*this);
    }
    show();
}

bool MessageBar::Waits(Kind kind)
{
    return kind == Kind::Reminder || kind == Kind::Decision;
}

void MessageBar::ShowKind()
{
    const Kind kind = messages[current].kind;
    const bool isProblem = kind == Kind::Problem || kind == Kind::Decision;
    const int edge = fontMetrics().height();
    icon->setPixmap(GlyphIcon(isProblem ? Glyph::Problem : Glyph::Notice).pixmap(edge, edge));
    SetTint(isProblem ? Tint::Problem : Tint::Notice);
    QPalette readable = palette(); // while the window takes no input too
    const QColor ink = readable.color(QPalette::Active, QPalette::WindowText);
    readable.setColor(QPalette::Disabled, QPalette::WindowText, ink);
    readable.setColor(QPalette::Disabled, QPalette::Text, ink); // of what can be selected
    text->setPalette(readable);
}

void MessageBar::changeEvent(QEvent* event)
{
    TintedFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !messages.empty()) {
        ShowKind(); // the picture is in the colour of the text
    }
}

void MessageBar::ShowDetails(const QString& newDetails)
{
    details->setText(newDetails);
    details->hide();
    showDetails->setChecked(false);
    showDetails->setVisible(!newDetails.isEmpty());
}

} // namespace Norlis::Window
