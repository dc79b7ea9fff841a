#include "DocumentEntry.h"

#include <base/Utf8.h>
#include <host/session/Records.h>

#include <algorithm>
#include <tuple>

namespace Norlis::Terminal {

namespace {

using Status = PDF::FileInfo::CloudStatus;

/// The machine-readable form.
QString StateWord(Status state)
{
    switch (state) {
    case Status::OnlyInCloud:
        return "only-in-cloud";
    case Status::InSync:
        return "in-sync";
    case Status::ChangedLocally:
        return "changed-locally";
    case Status::ChangedInCloud:
        return "changed-in-cloud";
    case Status::ChangedOnBothSides:
        return "changed-on-both-sides";
    case Status::NotUploaded:
        return "not-uploaded";
    case Status::NoSuchDocument:
        break;
    }
    return "unknown";
}

bool IsBefore(const DocumentEntry& left, const DocumentEntry& right)
{
    const int order = left.name.compare(right.name, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : std::tie(left.name, left.id) < std::tie(right.name, right.id);
}

} // namespace

std::optional<DocumentEntry> EntryOf(const PDF::AbstractFileManager& documents, const QString& id)
{
    const auto record = documents.GetFileInfo(id);
    if (!record || !record->GetRedactableCloudInfo()) {
        return std::nullopt;
    }
    auto& cloudInfo = *record->GetRedactableCloudInfo();
    return DocumentEntry{id,
                         FromUtf8(cloudInfo.GetFileName()),
                         cloudInfo.GetSize(),
                         cloudInfo.GetModifyTime(),
                         record->GetCloudStatus(),
                         QString::fromStdString(record->GetPath().utf8string()),
                         Host::IsMd5(cloudInfo.GetMd5Hash()) ? QString::fromStdString(cloudInfo.GetMd5Hash())
                                                             : QString(),
                         QString::fromStdString(cloudInfo.GetMd5Hash())};
}

std::vector<DocumentEntry> AllEntries(const PDF::AbstractFileManager& documents)
{
    std::vector<DocumentEntry> entries;
    const int count = documents.FilesCount();
    entries.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        if (auto entry = EntryOf(documents, documents.GetDocumentId(index))) {
            entries.push_back(std::move(*entry));
        }
    }
    std::sort(entries.begin(), entries.end(), IsBefore);
    return entries;
}

QJsonObject JsonOf(const DocumentEntry& entry)
{
    const auto textOrNull = [](const QString& text) { return text.isEmpty() ? QJsonValue() : QJsonValue(text); };
    return {{"id", entry.id},
            {"name", entry.name},
            {"size", static_cast<qint64>(entry.size)},
            {"modified", textOrNull(entry.modified.toUTC().toString(Qt::ISODate))},
            {"state", StateWord(entry.state)},
            {"path", textOrNull(entry.path)},
            {"md5", textOrNull(entry.md5Hash)}};
}

QString StateText(Status state)
{
    switch (state) {
    case Status::OnlyInCloud:
        return "only in the cloud";
    case Status::InSync:
        return "up to date";
    case Status::ChangedLocally:
        return "changed here";
    case Status::ChangedInCloud:
        return "changed in the cloud";
    case Status::ChangedOnBothSides:
        return "changed on both sides";
    case Status::NotUploaded:
        return "not uploaded";
    case Status::NoSuchDocument:
        break;
    }
    return "unknown";
}

QString TimeText(const QDateTime& time)
{
    return time.isValid() ? time.toLocalTime().toString("yyyy-MM-dd HH:mm") : QStringLiteral("-");
}

} // namespace Norlis::Terminal
