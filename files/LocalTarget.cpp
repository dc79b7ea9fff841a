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

TargetProblem ForeignFileProblem(const QString& localPath)
{
    return {QStringLiteral("%1 is there already, and is not an unchanged copy of the document").arg(localPath),
            "Choose another folder, or move that file away first.", true};
}

std::optional<TargetProblem> PutInPlace(AtomicFile& file, const QString& localPath, const ReplaceableFile& replaceable)
{
    auto outcome = AtomicFile::Outcome::Done;
    if (replaceable.isAny) {
        outcome = file.CommitReplacing(localPath) ? outcome : AtomicFile::Outcome::Failed;
    } else if (replaceable.only.IsFile() && FileIdentity::OfPath(localPath).IsFile()) {
        outcome = file.CommitReplacing(localPath, replaceable.only);
    } else {
        outcome = file.CommitNew(localPath);
    }
    switch (outcome) {
    case AtomicFile::Outcome::Done:
        break;
    case AtomicFile::Outcome::NameTaken:
        return ForeignFileProblem(localPath);
    case AtomicFile::Outcome::Failed:
        return TargetProblem{QStringLiteral("%1 cannot be written: %2").arg(localPath, file.ErrorText()), {}};
    }
    return std::nullopt;
}

} // namespace Norlis::Files
