#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

namespace Norlis::Social {

/// What the cloud reports of an upload. After a failed or cancelled one, `id` names what was left behind in the cloud
/// and is empty when nothing was: the receiver deletes what it names.
struct NorlisCloudSharingResult {
    bool isPrivate = true;     ///< nobody else has access
    QString id = {};           ///< opaque; a single path segment
    QString fileName = {};     ///< the name that the document was given, which need not be the local one
    QUrl downloadUrl = {};     ///< empty when there is none
    QDateTime createdAt = {};  ///< invalid when unknown
    QDateTime modifiedAt = {}; ///< invalid when unknown
    int lifetime = 0;          ///< seconds for which the cloud keeps it; the largest int stands for ever
};

} // namespace Norlis::Social
