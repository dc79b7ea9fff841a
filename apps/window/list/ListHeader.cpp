#include "ListHeader.h"

#include "DocumentsFilter.h"

#include <apps/window/texts/Texts.h>
#include <host/CloudDocumentsModel.h>

#include <QPainter>

#include <algorithm>
#include <utility>
#include <vector>

namespace Norlis::Window {

namespace {

using Model = Host::CloudDocumentsModel;
using Status = PDF::FileInfo::CloudStatus;

// Widths in average characters; that of the state is as its texts need it.
constexpr std::array<int, columnCount> usualWidths = {0, 22, 0, 12, 18};
constexpr int leastWidth = 8;
constexpr int leastWidthOfFolder = 16; // in which one recognizes it
constexpr int leastWidthOfName = 24;   // with the picture
constexpr int readableWidthOfName = 40;
constexpr int widthOfPicture = 8;
constexpr int mostLetters = 80;  // that a name has room for before there is any for the folder
constexpr int mostOfFolder = 60; // letters, of which a column is made unasked

// As wide as any.
constexpr qint64 wideSize = 1023 * 1024;
constexpr qint64 wideDate = 1861649880; // seconds

constexpr std::array<Column, columnCount - 1> byImportance = {Column::State, Column::Modified, Column::Size,
                                                              Column::Folder};

constexpr int lookInterval = 300; // milliseconds

/// What nine of ten do not exceed: a single long name does not count.
int MostHave(std::vector<int>& lengths)
{
    if (lengths.empty()) {
        return 0;
    }
    const auto place = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() * 9 / 10);
    std::nth_element(lengths.begin(), place, lengths.end());
    return *place;
}

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
    for (const Status state : {Status::OnlyInCloud, Status::InSync, Status::ChangedLocally, Status::ChangedInCloud,
                               Status::ChangedOnBothSides}) {
        int& width = wanted.at(static_cast<int>(Column::State));
        const int number = static_cast<int>(state);
        stateWidths[number] = fontMetrics().horizontalAdvance(StateText(number)) + badgeEdge + 4 * columnInset;
        width = qMax(width, stateWidths[number]);
    }
    connect(this, &QHeaderView::sectionResized, this, &ListHeader::OnResized);
    looking.setSingleShot(true);
    looking.setInterval(lookInterval);
    connect(&looking, &QTimer::timeout, this, &ListHeader::Look);
}

void ListHeader::Follow(const DocumentsFilter& newFilter)
{
    filter = &newFilter;
    const QAbstractItemModel* const documents = filter->sourceModel();
    const auto lookSoon = [this] {
        if (!looking.isActive()) { // however long the changes go on
            looking.start();
        }
    };
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(documents, signal, this, lookSoon);
    }
    connect(documents, &QAbstractItemModel::dataChanged, this, lookSoon);
    Look();
}

void ListHeader::Look()
{
    const QAbstractItemModel& documents = *filter->sourceModel();
    const int foldersBefore = std::exchange(lettersOfFolders, 0);
    const int before = std::exchange(widestState, 0);
    std::vector<int> lengths;
    for (int row = 0; row < documents.rowCount(); ++row) {
        const auto document = documents.index(row, 0);
        lettersOfFolders = qMax(lettersOfFolders, filter->UsersFolder(document).size());
        widestState = qMax(widestState, stateWidths.value(document.data(Model::StateRole).toInt()));
        lengths.push_back(document.data(Model::NameRole).toString().size());
    }
    const int lettersBefore = std::exchange(lettersOfNames, MostHave(lengths));
    if (lettersOfFolders != foldersBefore || widestState != before || lettersOfNames != lettersBefore) {
        Fit();
    }
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

void ListHeader::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = section;
    option.position = Next(section) < 0 ? QStyleOptionHeader::End : QStyleOptionHeader::Middle;
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);

    // Inset like the cells, with the arrow beside the title and not at the far end.
    const QRect cell = rect.adjusted(columnInset, 0, -columnInset, 0);
    const bool isSorted = section == sortIndicatorSection();
    const int edge = isSorted ? style()->pixelMetric(QStyle::PM_HeaderMarkSize, &option, this) : 0;
    const int gap = isSorted ? columnInset : 0;
    const QString title = fontMetrics().elidedText(titles.horizontalHeaderItem(section)->text(), Qt::ElideRight,
                                                   cell.width() - edge - gap);
    const QSize size(fontMetrics().horizontalAdvance(title), cell.height());
    const bool isAtEnd = titles.horizontalHeaderItem(section)->textAlignment() & Qt::AlignRight;
    const auto side = isAtEnd ? Qt::AlignRight : Qt::AlignLeft;
    const QRect words = QStyle::alignedRect(option.direction, side | Qt::AlignVCenter, size, cell);
    style()->drawItemText(painter, words, Qt::AlignCenter, palette(), isEnabled(), title, QPalette::ButtonText);
    if (isSorted) {
        const bool isArrowLeft = isAtEnd != (option.direction == Qt::RightToLeft);
        option.rect = {isArrowLeft ? words.left() - gap - edge : words.right() + 1 + gap, cell.center().y() - edge / 2,
                       edge, edge};
        option.sortIndicator =
            sortIndicatorOrder() == Qt::AscendingOrder ? QStyleOptionHeader::SortDown : QStyleOptionHeader::SortUp;
        style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &option, painter, this);
    }
}

void ListHeader::Fit()
{
    isFitting = true;
    const int name = static_cast<int>(Column::Name);
    const int letter = fontMetrics().averageCharWidth();
    const int readable = letter * readableWidthOfName;
    const int names = letter * (qMin(lettersOfNames, mostLetters) + widthOfPicture);
    int needed = qBound(MinimumOf(name), names, readable);
    const int wholeName = qMax(readable, names);
    int comfortable = wholeName; // with the columns as wanted
    int spare = width() - readable;
    for (const Column column : byImportance) {
        const int section = static_cast<int>(column);
        const int least = LeastOf(column);
        const bool hasRoom = column == Column::Folder ? lettersOfFolders > 0 && comfortable + least <= width()
                                                      : needed + least <= width();
        setSectionHidden(section, !hasRoom);
        needed += least; // the less important ones go with it
        comfortable += wanted.at(section);
        spare -= hasRoom ? least : 0;
    }
    int rest = width();
    for (const Column column : byImportance) {
        if (Has(column)) {
            const int section = static_cast<int>(column);
            const int least = LeastOf(column);
            const int free = column == Column::Folder ? rest - least - wholeName : spare;
            const int more = qBound(0, free, WantedOf(column) - least);
            resizeSection(section, least + more);
            spare -= more;
            rest -= least + more;
        }
    }
    resizeSection(name, rest);
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

int ListHeader::WantedOf(Column column) const
{
    const int section = static_cast<int>(column);
    const int letter = fontMetrics().averageCharWidth();
    const bool isUsual = wanted.at(section) == usualWidths.at(section) * letter;
    return column == Column::Folder && isUsual
               ? qMax(wanted.at(section), letter * qMin(lettersOfFolders + 2, mostOfFolder))
               : wanted.at(section);
}

int ListHeader::LeastOf(Column column) const
{
    const int section = static_cast<int>(column);
    const QFontMetrics metrics = fontMetrics();
    int content = metrics.horizontalAdvance(titles.horizontalHeaderItem(section)->text()) + 2 * columnInset;
    switch (column) {
    case Column::Name:
        break;
    case Column::Folder:
        content =
            fontMetrics().averageCharWidth() * qMin(lettersOfFolders + 2, leastWidthOfFolder); // a path may be long
        break;
    case Column::State:
        content = qMax(content, widestState);
        break;
    case Column::Size:
        content = qMax(content, metrics.horizontalAdvance(SizeText(wideSize)) + 3 * columnInset);
        break;
    case Column::Modified:
        content = qMax(content,
                       metrics.horizontalAdvance(DateText(QDateTime::fromSecsSinceEpoch(wideDate))) + 3 * columnInset);
        break;
    }
    return qMin(wanted.at(section), content);
}

} // namespace Norlis::Window
