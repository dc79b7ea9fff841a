#include "MessageBar.h"

#include "Glyphs.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace Norlis::Window {

MessageBar::MessageBar(QWidget* parent) : QFrame(parent), text(new QLabel), buttonRow(new QHBoxLayout)
{
    setObjectName("message");
    setFrameShape(StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAccessibleName(tr("Message"));

    const auto icon = new QLabel;
    const int edge = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(edge, edge));
    text->setObjectName("messageText");
    text->setTextFormat(Qt::PlainText); // parts come from the server
    text->setWordWrap(true);
    text->setForegroundRole(QPalette::ToolTipText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const auto close = new QToolButton;
    close->setIcon(GlyphIcon(Glyph::Cancel));
    close->setAutoRaise(true);
    close->setToolTip(tr("Close the message"));
    close->setAccessibleName(close->toolTip());

    const auto layout = new QHBoxLayout(this);
    layout->addWidget(icon);
    layout->addWidget(text, 1);
    layout->addLayout(buttonRow);
    layout->addWidget(close);
    connect(close, &QToolButton::clicked, this, [this] { Close(topic); });
    hide();
}

void MessageBar::Show(const QString& newTopic, const QString& title, const QString& detail,
                      const QVector<Remedy>& remedies)
{
    topic = newTopic;
    text->setText(detail.isEmpty() ? title : title + ' ' + detail);
    text->setAccessibleName(text->text());
    for (const auto old : qAsConst(buttons)) {
        old->hide();
        old->deleteLater(); // it may have been clicked just now
    }
    buttons.clear();
    for (const Remedy& remedy : remedies) {
        const auto button = new QPushButton(remedy.text);
        connect(button, &QPushButton::clicked, this, [this, action = remedy.action] {
            Close(topic);
            action();
        });
        buttonRow->addWidget(button);
        buttons.append(button);
    }
    show();
    QAccessibleEvent event(text, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void MessageBar::Close(const QString& closed)
{
    if (closed == topic) {
        topic.clear();
        hide();
    }
}

} // namespace Norlis::Window
