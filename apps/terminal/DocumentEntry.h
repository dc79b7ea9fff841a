#pragma once

#include <host/session/CloudSession.h>

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace Norlis::Terminal {

/// A document of the list, with what this program shows of it.
struct DocumentEntry {
    QString id;
    QString name;
    quint64 size = 0; ///< bytes
    QDateTime modified;
    PDF::FileInfo::CloudStatus state = PDF::FileInfo::CloudStatus::OnlyInCloud;
    QString path;    ///< the local copy; empty when there is none
    QString md5Hash; ///< of the cloud copy; empty when it is unknown
    QString version; ///< differs between versions of the cloud copy; empty when nothing tells them apart
};

/// Nothing if the list has no such document.
std::optional<DocumentEntry> EntryOf(Host::CloudSession& session, const QString& id);

/// All documents of the list, sorted by name.
std::vector<DocumentEntry> AllEntries(Host::CloudSession& session);

/// All fields of the entry.
QJsonObject JsonOf(const DocumentEntry& entry);

/// The state, for people to read.
QString StateText(PDF::FileInfo::CloudStatus state);

/// The time in the local time zone; "-" if it is unknown.
QString TimeText(const QDateTime& time);

} // namespace Norlis::Terminal
