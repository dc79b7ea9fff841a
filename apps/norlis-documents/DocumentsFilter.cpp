#include "DocumentsFilter.h"

#include "Texts.h"

#include <host/CloudDocumentsModel.h>

#include <algorithm>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;

namespace {

QString Composed(const QString& text)
{
    return text.normalized(QString::NormalizationForm_C); // file names of some systems are decomposed
}

} // namespace

DocumentsFilter::DocumentsFilter(QObject* parent) : QSortFilterProxyModel(parent)
{
    if (collator.locale() == QLocale::c()) {
        collator.setLocale(QLocale::English); // that of programs has capitals before all small letters
    }
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    sort(0);
}

void DocumentsFilter::Search(const QString& text)
{
    words = Composed(text).split(' ', Qt::SkipEmptyParts);
    invalidateFilter();
}

void DocumentsFilter::SortBy(Order newOrder, Qt::SortOrder direction)
{
    if (newOrder != order) {
        order = newOrder;
        invalidate();
    }
    sort(0, direction);
}

QVariant DocumentsFilter::data(const QModelIndex& index, int role) const
{
    if (role != Qt::AccessibleTextRole && role != Qt::ToolTipRole) {
        return QSortFilterProxyModel::data(index, role);
    }
    QStringList lines = {index.data(Model::NameRole).toString(), StateText(index.data(Model::StateRole).toInt()),
                         SizeText(index.data(Model::SizeRole).toLongLong()),
                         DateText(index.data(Model::ModifiedRole).toDateTime()),
                         index.data(Model::PathRole).toString()};
    lines.removeAll({});
    return lines.join(role == Qt::ToolTipRole ? "\n" : ", ");
}

bool DocumentsFilter::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (words.isEmpty()) {
        return true;
    }
    const QString name = Composed(sourceModel()->index(sourceRow, 0, sourceParent).data(Model::NameRole).toString());
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return name.contains(word, Qt::CaseInsensitive); });
}

bool DocumentsFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (order == Order::Modified) {
        const auto leftDate = left.data(Model::ModifiedRole).toDateTime();
        const auto rightDate = right.data(Model::ModifiedRole).toDateTime();
        if (leftDate != rightDate) {
            return leftDate < rightDate;
        }
    }
    if (order == Order::Size) {
        const auto leftSize = left.data(Model::SizeRole).toLongLong();
        const auto rightSize = right.data(Model::SizeRole).toLongLong();
        if (leftSize != rightSize) {
            return leftSize < rightSize;
        }
    }
    const int names = CompareNames(left, right);
    return names != 0 ? names < 0 : left.data(Model::IdRole).toString() < right.data(Model::IdRole).toString();
}

int DocumentsFilter::CompareNames(const QModelIndex& left, const QModelIndex& right) const
{
    const QCollatorSortKey leftKey = KeyOf(left.data(Model::NameRole).toString());
    return leftKey.compare(KeyOf(right.data(Model::NameRole).toString()));
}

const QCollatorSortKey& DocumentsFilter::KeyOf(const QString& name) const
{
    auto found = keys.find(name);
    if (found == keys.end()) {
        constexpr int spare = 1000;
        if (keys.size() > 2 * sourceModel()->rowCount() + spare) {
            keys.clear(); // names that have gone
        }
        found = keys.insert(name, collator.sortKey(name));
    }
    return *found;
}

} // namespace Norlis::Window
