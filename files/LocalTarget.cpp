#include "LocalTarget.h"

#include "DocumentNames.h"

#include <QFileInfo>

namespace Norlis::Files {

TargetProblem WhyNoTarget(const QString& localPath)
{
    const QFileInfo target(localPath);
    const QString badName = WhyNoName(target.fileName());
    if (!badName.isEmpty()) {
        return {QStringLiteral("The name of the file to write %1").arg(badName), {}};
    }
    if (target.exists() && !target.isFile()) { // a device would be replaced just like a file
        return {QStringLiteral("%1 is not a file").arg(localPath), "Choose another folder to download to."};
    }
    return {};
}

} // namespace Norlis::Files
