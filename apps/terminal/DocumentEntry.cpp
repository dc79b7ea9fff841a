#include "DocumentEntry.h"

#include <base/Utf8.h>
#include <host/session/CloudFacts.h>
#include <host/session/Records.h>

#include <algorithm>
#include <tuple>

namespace Norlis::Terminal {

namespace {

using Host::ToText;
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

DocumentEntry EntryOf(const QString& id, const Host::CloudFacts& facts, Status state, const QString& path)
{
    return {id,
            FromUtf8(facts.name),
            facts.size,
            facts.modifiedAt,
            state,
            path,
            Host::IsMd5(facts.hash) ? QString::fromStdString(facts.hash) : QString(),
            QString::fromStdString(facts.hash)};
}

bool IsBefore(const DocumentEntry& left, const DocumentEntry& right)
{
    const int order = left.name.compare(right.name, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : std::tie(left.name, left.id) < std::tie(right.name, right.id);
}

} // namespace

std::optional<DocumentEntry> EntryOf(Host::CloudSession& session, const QString& id)
{
    const auto* facts = session.Facts(id);
    const auto record = facts ? session.Documents().GetFileInfo(id) : nullptr;
    return record ? std::optional(EntryOf(id, *facts, record->GetCloudStatus(), ToText(record->GetPath())))
                  : std::nullopt;
}

std::vector<DocumentEntry> AllEntries(Host::CloudSession& session)
{
    const auto& documents = session.Documents(); // asked by index: by id it would go through all for each
    const int count = documents.FilesCount();
    std::vector<DocumentEntry> entries;
    entries.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        const auto id = documents.GetDocumentId(index);
        if (const auto* facts = session.Facts(id)) {
            entries.push_back(EntryOf(id, *facts, static_cast<Status>(documents.GetDocumentState(index)),
                                      documents.GetDocumentPath(index)));
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
