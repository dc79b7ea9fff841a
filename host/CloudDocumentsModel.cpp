#include "CloudDocumentsModel.h"

#include <QUrl>

#include <algorithm>
#include <iterator>

namespace Norlis::Host {

using PDF::AbstractFileManager;
using PDF::FileInfo;

namespace {

/// Without the sizes whose address is empty, since their picture was of other content.
QVariantMap StoredPreviews(QVariantMap previews)
{
    for (auto preview = previews.begin(); preview != previews.end();) {
        preview = preview->toUrl().isEmpty() ? previews.erase(preview) : std::next(preview);
    }
    return previews;
}

} // namespace

CloudDocumentsModel::CloudDocumentsModel(AbstractFileManager& documents, const QHash<QString, quint64>& cloudSizes,
                                         QObject* parent)
    : QAbstractListModel(parent),
      documents(&documents)
{
    connect(&documents, qOverload<const std::shared_ptr<FileInfo>&>(&AbstractFileManager::FileAdded), this,
            [this](const std::shared_ptr<FileInfo>& file) { OnAdded(*file); });
    connect(&documents, qOverload<const std::shared_ptr<const FileInfo>&>(&AbstractFileManager::FileRemoved), this,
            [this](const std::shared_ptr<const FileInfo>& file) {
                OnRemoved(QString::fromStdString(FileInfo(*file).GetId())); // whose getters are not const
            });
    connect(&documents, qOverload<int>(&AbstractFileManager::FileUpdated), this, &CloudDocumentsModel::OnUpdated);
    connect(&documents, &QObject::destroyed, this, [this] {
        beginResetModel();
        rows.clear();
        endResetModel();
    });
    hiddenUpdate.setSingleShot(true);
    connect(&hiddenUpdate, &QTimer::timeout, this, &CloudDocumentsModel::TellOfHidden);
    for (int index = 0; index < documents.FilesCount(); ++index) {
        // The list would search for every document to tell more of its size.
        const QString id = documents.GetDocumentId(index);
        const quint64 size = cloudSizes.value(id, static_cast<quint32>(documents.GetFileSize(index)));
        rows.push_back({id, static_cast<qint64>(size), documents.GetModifiedDateTime(index)});
    }
}

int CloudDocumentsModel::RowOf(const QString& id) const
{
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.id == id; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

int CloudDocumentsModel::VisibleCount() const
{
    return hidden.isEmpty() ? Count()
                            : static_cast<int>(std::count_if(rows.begin(), rows.end(), [this](const Row& row) {
                                  return !hidden.contains(row.id);
                              }));
}

void CloudDocumentsModel::SetHidden(const QString& id, bool isHidden)
{
    if (isHidden) {
        hidden.insert(id);
    } else {
        hidden.remove(id);
    }
    hiddenChanges.insert(id);
    hiddenUpdate.start();
}

void CloudDocumentsModel::TellOfHidden()
{
    int first = -1;
    int last = -1;
    for (int row = 0; row < rowCount(); ++row) {
        if (hiddenChanges.contains(rows[row].id)) {
            first = first < 0 ? row : first;
            last = row;
        }
    }
    hiddenChanges.clear();
    if (first >= 0) {
        emit dataChanged(index(first), index(last), {HiddenRole});
    }
}

int CloudDocumentsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Count();
}

QVariant CloudDocumentsModel::data(const QModelIndex& modelIndex, int role) const
{
    if (!checkIndex(modelIndex, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Row& row = rows[modelIndex.row()];
    const int index = IndexOf(modelIndex.row());
    const bool isHeld = documents && index >= 0 && index < documents->FilesCount();
    switch (role) {
    case IdRole:
        return row.id;
    case SizeRole:
        return row.size;
    case ModifiedRole:
        return row.modified;
    case HiddenRole:
        return hidden.contains(row.id);
    case NameRole:
        return isHeld ? documents->GetDocumentName(index) : QVariant();
    case PathRole:
        return isHeld ? documents->GetDocumentPath(index) : QVariant();
    case StateRole:
        return isHeld ? documents->GetDocumentState(index) : QVariant();
    case PreviewsRole:
        return isHeld ? StoredPreviews(documents->GetPreviewsSet(index)) : QVariant();
    default:
        return {};
    }
}

QHash<int, QByteArray> CloudDocumentsModel::roleNames() const
{
    return {{NameRole, "name"},         {IdRole, "id"},        {PathRole, "path"},
            {StateRole, "state"},       {SizeRole, "size"},    {ModifiedRole, "modified"},
            {PreviewsRole, "previews"}, {HiddenRole, "hidden"}};
}

void CloudDocumentsModel::OnAdded(FileInfo& file)
{
    const auto id = QString::fromStdString(file.GetId());
    // Slots that heard of it before may have changed the list again.
    if (documents->FilesCount() != Count() + 1 || documents->GetDocumentId(0) != id) {
        CatchUp();
        return;
    }
    PutIn({0, 0, 1}, {RowOf(file)});
}

void CloudDocumentsModel::OnRemoved(const QString& id)
{
    const int row = RowOf(id);
    const int count = documents->FilesCount();
    const bool isSimple =
        row >= 0 && count == Count() - 1 && (row == count || documents->GetDocumentId(row) == rows[row + 1].id);
    if (!isSimple) {
        CatchUp();
        return;
    }
    TakeOut({row, 1, 0});
}

void CloudDocumentsModel::OnUpdated(int row)
{
    if (row >= Count() || documents->FilesCount() != Count() || documents->GetDocumentId(row) != rows[row].id) {
        CatchUp();
        return;
    }
    if (const auto file = documents->GetFileInfo(rows[row].id)) {
        rows[row] = RowOf(*file);
    }
    emit dataChanged(index(row), index(row));
}

void CloudDocumentsModel::CatchUp()
{
    // Views that hear of one step may change the list again.
    for (auto change = Compare(); documents && change.gone + change.added > 0; change = Compare()) {
        if (change.gone > 0) {
            TakeOut(change);
            continue;
        }
        std::deque<Row> missing;
        for (int index = change.first; index < change.first + change.added; ++index) {
            const auto file = documents->GetFileInfo(documents->GetDocumentId(index));
            missing.push_back(RowOf(*file));
        }
        PutIn(change, missing);
    }
    if (!rows.empty()) {
        emit dataChanged(index(0), index(Count() - 1)); // what was said of single rows may be lost
    }
}

/// What lies between the rows that are the same at both ends.
CloudDocumentsModel::Difference CloudDocumentsModel::Compare() const
{
    const int held = documents ? documents->FilesCount() : 0;
    int first = 0;
    while (first < held && first < Count() && documents->GetDocumentId(first) == rows[first].id) {
        ++first;
    }
    int same = 0;
    while (same < held - first && same < Count() - first &&
           documents->GetDocumentId(held - 1 - same) == rows[Count() - 1 - same].id) {
        ++same;
    }
    return {first, Count() - same - first, held - same - first};
}

void CloudDocumentsModel::TakeOut(const Difference& change)
{
    pending = change;
    beginRemoveRows({}, change.first, change.first + change.gone - 1);
    const auto first = rows.begin() + change.first;
    rows.erase(first, first + change.gone);
    pending.gone = 0;
    endRemoveRows();
    pending = {};
}

void CloudDocumentsModel::PutIn(const Difference& change, const std::deque<Row>& added)
{
    pending = change;
    beginInsertRows({}, change.first, change.first + change.added - 1);
    rows.insert(rows.begin() + change.first, added.begin(), added.end());
    pending = {};
    endInsertRows();
}

int CloudDocumentsModel::IndexOf(int row) const
{
    if (row < pending.first) {
        return row;
    }
    return row < pending.first + pending.gone ? -1 : row - pending.gone + pending.added;
}

int CloudDocumentsModel::Count() const
{
    return static_cast<int>(rows.size());
}

CloudDocumentsModel::Row CloudDocumentsModel::RowOf(FileInfo& file)
{
    auto& cloudInfo = file.GetRedactableCloudInfo();
    const quint64 size = cloudInfo ? cloudInfo->GetSize() : file.GetSize();
    return {QString::fromStdString(file.GetId()), static_cast<qint64>(size),
            cloudInfo ? cloudInfo->GetModifyTime() : QDateTime()};
}

} // namespace Norlis::Host
