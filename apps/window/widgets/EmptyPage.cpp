#include "EmptyPage.h"

#include "AccessibleParts.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Norlis::Window {

EmptyPage::EmptyPage(QWidget* parent)
    : QWidget(parent),
      picture(new QLabel),
      title(new QLabel),
      hint(new QLabel),
      button(new QPushButton)
{
    setObjectName("emptyPage");
    SetAccessibleRole(*title, QAccessible::Notification);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    button->setObjectName("emptyPageAction");
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    title->setFont(large);
    const auto layout = new QVBoxLayout(this);
    layout->addStretch();
    for (QLabel* const label : {picture, title, hint}) {
        label->setTextFormat(Qt::PlainText); // a search text may be part of it
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(label == hint);
        layout->addWidget(label);
    }
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addWidget(button, 0, Qt::AlignCenter);
    layout->addStretch();
    connect(button, &QPushButton::clicked, this, &EmptyPage::ActionChosen);
}

void EmptyPage::Show(Glyph glyph, const QString& newTitle, const QString& newHint, const QString& action)
{
    const int edge = fontMetrics().height() * 4;
    picture->setPixmap(GlyphIcon(glyph).pixmap(QSize(edge, edge), QIcon::Disabled));
    if (title->text() != newTitle) {
        title->setText(newTitle);
        ReadAloud(*title);
    }
    hint->setText(newHint);
    button->setText(action);
    button->setVisible(!action.isEmpty());
}

} // namespace Norlis::Window
