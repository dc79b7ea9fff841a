#include "DocumentsOrder.h"

#include "DocumentsFilter.h"
#include "ListHeader.h"

#include <QAccessible>
#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QMenu>
#include <QSettings>

#include <algorithm>
#include <array>

namespace Norlis::Window {

namespace {

const auto orderKey = QStringLiteral("view/order");

struct Choice {
    Column column;
    Qt::SortOrder direction;
};

constexpr std::array<Choice, 10> choices = {{
    {Column::Name, Qt::AscendingOrder},
    {Column::Name, Qt::DescendingOrder},
    {Column::Modified, Qt::DescendingOrder},
    {Column::Modified, Qt::AscendingOrder},
    {Column::Size, Qt::DescendingOrder},
    {Column::Size, Qt::AscendingOrder},
    {Column::Folder, Qt::AscendingOrder},
    {Column::Folder, Qt::DescendingOrder},
    {Column::State, Qt::AscendingOrder},
    {Column::State, Qt::DescendingOrder},
}};

} // namespace

DocumentsOrder::DocumentsOrder(DocumentsFilter& filter, ListHeader& header, QMenu& menu, QSettings& settings)
    : filter(filter),
      header(header),
      settings(settings),
      entries(new QActionGroup(this)),
      box(new QComboBox)
{
    const QStringList texts = {tr("&Name, A to Z"),         tr("Name, &Z to A"),   tr("Ne&west First"),
                               tr("&Oldest First"),         tr("&Largest First"),  tr("&Smallest First"),
                               tr("&Folder, A to Z"),       tr("Fol&der, Z to A"), tr("State, &Conflicts First"),
                               tr("State, Conflicts L&ast")};
    for (int choice = 0; choice < texts.size(); ++choice) {
        const auto entry = entries->addAction(menu.addAction(texts[choice]));
        entry->setCheckable(true);
        connect(entry, &QAction::triggered, this, [this, choice] { Choose(choice); });
        box->addItem(QString(texts[choice]).remove('&'));
    }
    box->setObjectName("order");
    box->setAccessibleName(tr("Sort order"));
    box->setToolTip(box->accessibleName());
    connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &DocumentsOrder::Choose);
    connect(box, &QComboBox::currentTextChanged, this, [this] { // Qt tells screen readers nothing
        QAccessibleEvent event(box, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    });
    connect(&header, &QHeaderView::sortIndicatorChanged, this, [this](int section, Qt::SortOrder direction) {
        const auto found = std::find_if(choices.begin(), choices.end(), [&](const Choice& each) {
            return static_cast<int>(each.column) == section && each.direction == direction;
        });
        Choose(static_cast<int>(found - choices.begin()));
    });
}

QComboBox& DocumentsOrder::Box()
{
    return *box;
}

void DocumentsOrder::Restore()
{
    Choose(qBound(0, settings.value(orderKey).toInt(), static_cast<int>(choices.size()) - 1));
}

void DocumentsOrder::Choose(int choice)
{
    if (choice == chosen) {
        return;
    }
    chosen = choice; // before the others tell of it
    const auto [column, direction] = choices.at(choice);
    entries->actions().at(choice)->setChecked(true);
    box->setCurrentIndex(choice);
    header.setSortIndicator(static_cast<int>(column), direction);
    filter.SortBy(column, direction);
    settings.setValue(orderKey, choice);
    emit Changed();
}

} // namespace Norlis::Window
