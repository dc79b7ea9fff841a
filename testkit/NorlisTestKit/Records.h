#pragma once

#include <contracts/FileInfo.h>

#include <memory>
#include <string>

namespace Norlis::TestKit {

/// The cloud part of a record, with a value in every field; name and hash follow from the id.
inline PDF::FileInfo::CloudInfo CloudInfoOf(const std::string& id)
{
    return {id,
            id + ".pdf",
            1234,
            true,
            QUrl(QStringLiteral("https://cloud.example/files/") + QString::fromStdString(id)),
            QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC),
            QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC),
            3600,
            "cloud hash of " + id};
}

/// A document that exists in the cloud only.
inline std::shared_ptr<PDF::FileInfo> RecordOf(const std::string& id)
{
    return std::make_shared<PDF::FileInfo>(CloudInfoOf(id));
}

} // namespace Norlis::TestKit
