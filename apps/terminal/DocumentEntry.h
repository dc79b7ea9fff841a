#pragma once

#include <contracts/AbstractFileManager.h>

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace Norlis::Terminal {

/// A document of the list, as far as this program shows it.
struct DocumentEntry {
    QString id;
    QString name;
    quint64 size = 0; ///< bytes
    QDateTime modified;
    PDF::FileInfo::CloudStatus state = PDF::FileInfo::CloudStatus::OnlyInCloud;
    QString path;    ///< the local copy; empty when there is none
    QString md5Hash; ///< of the cloud copy; empty when it is unknown
};

/// Nothing when the list has no such document.
std::optional<DocumentEntry> EntryOf(const PDF::AbstractFileManager& documents, const QString& id);

/// All documents of the list, ordered by name.
std::vector<DocumentEntry> AllEntries(const PDF::AbstractFileManager& documents);

/// The entry with all that is known of it.
QJsonObject JsonOf(const DocumentEntry& entry);

/// The state in words for a person.
QString StateText(PDF::FileInfo::CloudStatus state);

/// The time in the user's own zone; "-" when it is unknown.
QString TimeText(const QDateTime& time);

} // namespace Norlis::Terminal
