#include "LocalTarget.h"

#include "DocumentNames.h"

#include <QFileInfo>

namespace Norlis::Files {

std::optional<TargetProblem> ValidateTarget(const QString& localPath)
{
    const QFileInfo target(localPath);
    if (const auto badName = ValidateName(target.fileName())) {
        return TargetProblem{QStringLiteral("The name of the file to write %1").arg(*badName), {}};
    }
    if (target.exists() && !target.isFile()) { // a device would be replaced just like a file
        return TargetProblem{QStringLiteral("%1 is not a file").arg(localPath),
                             "Choose another folder to download to."};
    }
    return std::nullopt;
}

} // namespace Norlis::Files
