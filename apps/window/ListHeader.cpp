#include "ListHeader.h"

namespace Norlis::Window {

namespace {

// Widths in average characters.
constexpr std::array<int, columnCount> usualWidths = {0, 22, 36, 12, 18};
constexpr int leastWidth = 8;
constexpr int leastWidthOfName = 24; // with the picture

constexpr std::array<Column, columnCount - 1> byImportance = {Column::Size, Column::Modified, Column::State,
                                                              Column::Folder};

} // namespace

ListHeader::ListHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
{
    setObjectName("listHeader");
    setAccessibleName(tr("Columns"));
    titles.setHorizontalHeaderLabels({tr("Name"), tr("Folder"), tr("State"), tr("Size"), tr("Modified")});
    for (const Column column : {Column::Size, Column::Modified}) { // the largest and the newest are what one looks for
        titles.horizontalHeaderItem(static_cast<int>(column))->setData(Qt::DescendingOrder, Qt::InitialSortOrderRole);
    }
    titles.horizontalHeaderItem(static_cast<int>(Column::Size))->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setModel(&titles);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setSectionsClickable(true);
    setSortIndicatorShown(true);
    setHighlightSections(false);
    setFocusPolicy(Qt::NoFocus); // the keyboard sorts by the menu
    for (int section = 0; section < columnCount; ++section) {
        wanted.at(section) = usualWidths.at(section) * fontMetrics().averageCharWidth();
    }
    connect(this, &QHeaderView::sectionResized, this, &ListHeader::OnResized);
}

bool ListHeader::Has(Column column) const
{
    return !isSectionHidden(static_cast<int>(column));
}

QRect ListHeader::CellOf(Column column, const QRect& line) const
{
    const int section = static_cast<int>(column);
    return {sectionViewportPosition(section), line.top(), sectionSize(section), line.height()};
}

QList<int> ListHeader::Widths() const
{
    return {wanted.begin(), wanted.end()};
}

void ListHeader::SetWidths(const QList<int>& widths)
{
    if (widths.size() == columnCount) {
        for (int section = 0; section < columnCount; ++section) {
            wanted.at(section) = qMax(widths[section], MinimumOf(section));
        }
        Fit();
    }
}

void ListHeader::resizeEvent(QResizeEvent* event)
{
    QHeaderView::resizeEvent(event);
    Fit();
}

void ListHeader::Fit()
{
    isFitting = true;
    const int name = static_cast<int>(Column::Name);
    int room = width() - MinimumOf(name);
    bool hasRoom = true;
    for (const Column column : byImportance) {
        const int section = static_cast<int>(column);
        hasRoom = hasRoom && wanted.at(section) <= room;
        setSectionHidden(section, !hasRoom);
        if (hasRoom) {
            resizeSection(section, wanted.at(section));
            room -= wanted.at(section);
        }
    }
    resizeSection(name, MinimumOf(name) + room);
    for (int section = 0; section < columnCount; ++section) {
        setSectionResizeMode(section, Next(section) < 0 ? Fixed : Interactive);
    }
    isFitting = false;
    emit Arranged();
}

void ListHeader::OnResized(int section, int before, int after)
{
    const int next = Next(section);
    if (isFitting || next < 0) {
        return;
    }
    isFitting = true;
    const int both = before + sectionSize(next);
    const int first = qMax(MinimumOf(section), qMin(after, both - MinimumOf(next)));
    resizeSection(section, first);
    resizeSection(next, both - first);
    isFitting = false;
    wanted.at(section) = first;
    wanted.at(next) = both - first;
    emit Arranged();
    emit WidthsChanged();
}

int ListHeader::Next(int section) const
{
    for (int next = section + 1; next < columnCount; ++next) {
        if (!isSectionHidden(next)) {
            return next;
        }
    }
    return -1;
}

int ListHeader::MinimumOf(int section) const
{
    const bool isName = section == static_cast<int>(Column::Name);
    return fontMetrics().averageCharWidth() * (isName ? leastWidthOfName : leastWidth);
}

} // namespace Norlis::Window
