#include "DocumentsFilter.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/Texts.h>
#include <contracts/FileInfo.h>
#include <host/CloudDocumentsModel.h>

#include <QFileInfo>
#include <QMimeData>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;
using Status = PDF::FileInfo::CloudStatus;

namespace {

/// Without case and accents, for comparison.
QString Folded(const QString& text)
{
    static const QRegularExpression accents("[\\x{0300}-\\x{036F}]");
    return text.normalized(QString::NormalizationForm_KD).remove(accents).toCaseFolded();
}

/// The place of a state when documents are sorted by it: what needs the user most comes first.
qint64 Urgency(int state)
{
    static const QVector<Status> byUrgency = {Status::ChangedOnBothSides, Status::ChangedLocally,
                                              Status::ChangedInCloud, Status::OnlyInCloud, Status::InSync};
    return byUrgency.indexOf(static_cast<Status>(state));
}

} // namespace

DocumentsFilter::DocumentsFilter(QObject* parent) : QSortFilterProxyModel(parent)
{
    if (collator.locale() == QLocale::c()) {
        collator.setLocale(QLocale::English); // the C locale sorts all capitals before all lower-case letters
    }
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    QSortFilterProxyModel::sort(0);
}

void DocumentsFilter::setSourceModel(QAbstractItemModel* model)
{
    QSortFilterProxyModel::setSourceModel(model);
    Rearrange([this] { invalidate(); });
}

bool DocumentsFilter::IsOfKind(int state, Kind kind)
{
    const auto status = static_cast<Status>(state);
    switch (kind) {
    case Kind::All:
        break;
    case Kind::NotHere:
        return status == Status::OnlyInCloud;
    case Kind::Changed:
        return status == Status::ChangedLocally || status == Status::ChangedInCloud ||
               status == Status::ChangedOnBothSides;
    case Kind::InConflict:
        return status == Status::ChangedOnBothSides;
    }
    return true;
}

void DocumentsFilter::Show(Kind newKind)
{
    kind = newKind;
    Rearrange([this] { invalidate(); });
}

void DocumentsFilter::Search(const QString& text)
{
    words = Folded(text).split(' ', Qt::SkipEmptyParts);
    Rearrange([this] { invalidate(); }); // invalidateFilter would report each run of removed rows separately
}

void DocumentsFilter::SortBy(Column column, Qt::SortOrder direction)
{
    const bool isSameDirection = direction == sortOrder();
    order = column;
    Rearrange([&] {
        if (isSameDirection) {
            invalidate();
        } else {
            sort(0, direction);
        }
    });
}

void DocumentsFilter::Rearrange(const std::function<void()>& rearrange)
{
    ranks.reserve(sourceModel()->rowCount());
    for (int row = 0; row < sourceModel()->rowCount(); ++row) {
        ranks.push_back(RankOf(sourceModel()->index(row, 0)));
    }
    rearrange();
    rowCount(); // sorts now; views might not ask until the ranks are gone
    ranks.clear();
}

void DocumentsFilter::SetViewingFolder(const QString& folder)
{
    viewingFolder = folder;
}

QString DocumentsFilter::UsersFolder(const QModelIndex& document) const
{
    if (IsOfKind(document.data(Model::StateRole).toInt(), Kind::NotHere)) {
        return {}; // where it was is remembered
    }
    const QString path = document.data(Model::PathRole).toString();
    return !viewingFolder.isEmpty() && path.startsWith(viewingFolder) ? QString() : FolderOf(path);
}

QVariant DocumentsFilter::data(const QModelIndex& index, int role) const
{
    if (role == FolderRole) {
        return Apps::Printable(UsersFolder(index));
    }
    if (role == Model::NameRole) {
        return Apps::Printable(QSortFilterProxyModel::data(index, role).toString());
    }
    if (role != Qt::AccessibleTextRole && role != Qt::ToolTipRole) {
        return QSortFilterProxyModel::data(index, role);
    }
    QStringList lines = {index.data(Model::NameRole).toString(), StateText(index.data(Model::StateRole).toInt()),
                         SizeText(index.data(Model::SizeRole).toLongLong()),
                         DateText(index.data(Model::ModifiedRole).toDateTime()),
                         Apps::Printable(index.data(FolderRole).toString())};
    lines.removeAll({});
    return role == Qt::ToolTipRole ? ToolTipText(lines) : lines.join(", ");
}

Qt::ItemFlags DocumentsFilter::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags common = QSortFilterProxyModel::flags(index);
    return index.data(Model::PathRole).toString().isEmpty() ? common : common | Qt::ItemIsDragEnabled;
}

QStringList DocumentsFilter::mimeTypes() const
{
    return {"text/uri-list"};
}

QMimeData* DocumentsFilter::mimeData(const QModelIndexList& indexes) const
{
    QList<QUrl> urls;
    for (const auto& index : indexes) {
        const QString path = index.data(Model::PathRole).toString();
        if (QFileInfo(path).isFile()) {
            urls.append(QUrl::fromLocalFile(path));
        }
    }
    const auto dragged = new QMimeData; // which the caller takes
    dragged->setUrls(urls);
    return dragged;
}

bool DocumentsFilter::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    const auto index = sourceModel()->index(sourceRow, 0, sourceParent);
    return !index.data(Model::HiddenRole).toBool() && IsOfKind(index.data(Model::StateRole).toInt(), kind) &&
           IsFound(index);
}

bool DocumentsFilter::IsFound(const QModelIndex& sourceIndex) const
{
    if (words.isEmpty()) {
        return true;
    }
    const QString& folded = NameOf(sourceIndex.data(Model::NameRole).toString()).folded;
    return std::all_of(words.begin(), words.end(), [&](const QString& word) { return folded.contains(word); });
}

bool DocumentsFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const auto compare = [](const Rank& one, const Rank& other) {
        const int names = one.number == other.number ? one.name.compare(other.name) : 0;
        return one.number != other.number ? one.number < other.number : names != 0 ? names < 0 : one.id < other.id;
    };
    return ranks.empty() ? compare(RankOf(left), RankOf(right)) : compare(ranks[left.row()], ranks[right.row()]);
}

const DocumentsFilter::Name& DocumentsFilter::NameOf(const QString& text) const
{
    auto found = names.find(text);
    if (found == names.end()) {
        constexpr int slack = 1000;
        if (names.size() > 2 * sourceModel()->rowCount() + slack) {
            names.clear(); // drops those of removed documents
        }
        // Without ".pdf": "plan" comes before "plan (2)".
        found = names.insert(text, {collator.sortKey(QFileInfo(text).completeBaseName()), Folded(text)});
    }
    return *found;
}

DocumentsFilter::Rank DocumentsFilter::RankOf(const QModelIndex& index) const
{
    const QString name = index.data(Model::NameRole).toString();
    const QString id = index.data(Model::IdRole).toString();
    switch (order) {
    case Column::Name:
        break;
    case Column::Folder: {
        const QString folder = UsersFolder(index);
        return {folder.isEmpty() ? 0 : 1, NameOf(folder + '/' + name).key, id};
    }
    case Column::State:
        return {Urgency(index.data(Model::StateRole).toInt()), NameOf(name).key, id};
    case Column::Size:
        return {index.data(Model::SizeRole).toLongLong(), NameOf(name).key, id};
    case Column::Modified:
        return {index.data(Model::ModifiedRole).toDateTime().toMSecsSinceEpoch(), NameOf(name).key, id};
    }
    return {0, NameOf(name).key, id};
}

} // namespace Norlis::Window
