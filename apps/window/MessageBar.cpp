#include "MessageBar.h"

#include "Glyphs.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace Norlis::Window {

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent),
      icon(new QLabel),
      text(new QLabel),
      details(new QLabel),
      showDetails(new QToolButton),
      buttonRow(new QHBoxLayout)
{
    setObjectName("message");
    setFrameShape(StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAccessibleName(tr("Message"));

    text->setObjectName("messageText");
    details->setObjectName("messageDetails");
    for (QLabel* const label : {text, details}) {
        label->setTextFormat(Qt::PlainText); // parts come from the server
        label->setWordWrap(true);
        label->setForegroundRole(QPalette::ToolTipText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    showDetails->setObjectName("showDetails");
    showDetails->setText(tr("Details"));
    showDetails->setAutoRaise(true);
    showDetails->setCheckable(true);
    connect(showDetails, &QToolButton::toggled, details, &QWidget::setVisible);
    const auto close = new QToolButton;
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
    layout->addWidget(close);
    connect(close, &QToolButton::clicked, this, [this] { Close(topic); });
    hide();
}

void MessageBar::Show(const QString& newTopic, const QString& title, const QString& detail,
                      const QVector<Remedy>& remedies, Kind kind)
{
    topic = newTopic;
    const auto picture = kind == Kind::Problem ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    const int edge = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(style()->standardIcon(picture).pixmap(edge, edge));
    text->setText(detail.isEmpty() ? title : title + ' ' + detail);
    text->setAccessibleName(text->text());
    SetDetails({});
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

void MessageBar::SetDetails(const QString& newDetails)
{
    details->setText(newDetails);
    details->hide();
    showDetails->setChecked(false);
    showDetails->setVisible(!newDetails.isEmpty());
}

void MessageBar::Close(const QString& closed)
{
    if (closed == topic) {
        topic.clear();
        const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
        hide();
        if (hadKeyboard) {
            emit KeyboardLeft();
        }
    }
}

QString MessageBar::Shown() const
{
    return topic;
}

} // namespace Norlis::Window
