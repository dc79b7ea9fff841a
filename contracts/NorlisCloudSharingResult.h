#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

namespace Norlis::Social {

/// What the cloud reports of an upload. After a failed or cancelled one, `id` names what was left behind in the cloud
/// and is empty when nothing was: the receiver deletes what it names.
struct NorlisCloudSharingResult {
    bool isPrivate = true;
    QString id = {};
    QString fileName = {};
    QUrl downloadUrl = {};
    QDateTime createdAt = {};
    QDateTime modifiedAt = {};
    int lifetime = 0; ///< seconds
};

} // namespace Norlis::Social
