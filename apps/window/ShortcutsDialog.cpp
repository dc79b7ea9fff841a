#include "ShortcutsDialog.h"

#include <apps/window/page/QuickLook.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace Norlis::Window {

namespace {

/// As it reads when no letter is marked.
QString Plain(QString text)
{
    return text.remove('&').remove(QStringLiteral("…"));
}

QTreeWidgetItem& AddGroup(QTreeWidget& list, const QString& title)
{
    const auto group = new QTreeWidgetItem(&list, {title});
    QFont bold = list.font();
    bold.setBold(true);
    group->setFont(0, bold);
    return *group;
}

void AddKeys(QTreeWidgetItem& group, const QString& what, const QList<QKeySequence>& keys)
{
    const QString mark =
        group.treeWidget()->isRightToLeft() ? QString(QChar(0x200E)) : QString(); // keys are read from the left
    const QString text = QKeySequence::listToString(keys, QKeySequence::NativeText);
    const auto line = new QTreeWidgetItem(&group, {what, mark + QString(text).replace("; ", ", ") + mark});
    line->setData(0, Qt::AccessibleTextRole, what + ": " + text); // arrow keys do not lead to the other column
}

void AddKeysOf(const QMenu& menu, QTreeWidgetItem& group)
{
    const auto entries = menu.actions();
    for (const QAction* const entry : entries) {
        if (entry->menu()) {
            AddKeysOf(*entry->menu(), group);
        } else if (!entry->shortcut().isEmpty()) {
            AddKeys(group, Plain(entry->text()), entry->shortcuts());
        }
    }
}

} // namespace

ShortcutsDialog::ShortcutsDialog(const QMenuBar& bar, QWidget* parent) : QDialog(parent)
{
    setObjectName("shortcuts");
    setWindowTitle(tr("Keyboard Shortcuts"));
    const auto list = new QTreeWidget;
    list->setObjectName("keys");
    list->setAccessibleName(windowTitle());
    list->setColumnCount(2);
    list->setHeaderHidden(true);
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setSelectionMode(QTreeWidget::NoSelection);
    const auto menus = bar.actions();
    for (const QAction* const each : menus) {
        AddKeysOf(*each->menu(), AddGroup(*list, Plain(each->text())));
    }
    auto& sheet = AddGroup(*list, tr("In the quick look"));
    const auto sheetKeys = QuickLook::Keys();
    for (const auto& [what, keys] : sheetKeys) {
        AddKeys(sheet, what, keys);
    }
    list->expandAll();
    list->resizeColumnToContents(0);
    list->header()->resizeSection(0, list->columnWidth(0) + 3 * fontMetrics().averageCharWidth());
    list->header()->setStretchLastSection(false);
    list->resizeColumnToContents(1);
    const int columns = list->header()->length() + list->verticalScrollBar()->sizeHint().width();
    list->header()->setStretchLastSection(true);
    list->setCurrentItem(list->topLevelItem(0));
    const auto buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    const auto layout = new QVBoxLayout(this);
    layout->addWidget(list);
    layout->addWidget(buttons);
    list->setSizeAdjustPolicy(QTreeWidget::AdjustToContents);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // no line is kept for it, unless it is needed
    const QSize wanted(columns + 8 * fontMetrics().averageCharWidth(), sizeHint().height());
    resize(wanted.boundedTo(screen()->availableGeometry().size() * 92 / 100));
    if (width() < wanted.width()) {
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    }
}

} // namespace Norlis::Window
