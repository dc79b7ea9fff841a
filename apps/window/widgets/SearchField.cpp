#include "SearchField.h"

#include "Alignment.h"
#include "Glyphs.h"

#include <QAction>
#include <QShortcut>

namespace Norlis::Window {

SearchField::SearchField(QWidget* parent) : QLineEdit(parent)
{
    setObjectName("search");
    setPlaceholderText(tr("Search"));
    setAlignment(StartOf(*this) | Qt::AlignVCenter); // beside the glass
    setAccessibleName(tr("Search by name"));
    const auto clearing = addAction(GlyphIcon(Glyph::Cancel), TrailingPosition);
    clearing->setText(tr("Clear Search"));
    clearing->setToolTip(tr("Clear Search"));
    clearing->setVisible(false);
    connect(clearing, &QAction::triggered, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, clearing,
            [clearing](const QString& text) { clearing->setVisible(!text.isEmpty()); });
    addAction(GlyphIcon(Glyph::Search), LeadingPosition)->setText(accessibleName());
    const auto escape = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetShortcut);
    connect(escape, &QShortcut::activated, this, [this] {
        clear();
        emit Left();
    });
}

} // namespace Norlis::Window
