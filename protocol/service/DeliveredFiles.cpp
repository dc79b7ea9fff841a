#include "DeliveredFiles.h"

#include <QFileInfo>

namespace Norlis::Social {

using Files::FileIdentity;
using Files::ReplaceableFile;
using OAuth2::ReplaceableFiles;

DeliveredFiles::DeliveredFiles(const OAuth2::AuthInfo& authInfo)
    : may(authInfo.replaceableFiles),
      identities(MemoryFile("delivered", authInfo))
{
}

std::optional<ReplaceableFile> DeliveredFiles::ReplaceableAt(const QString& document, const QString& localPath)
{
    ReplaceableFile replaceable;
    replaceable.isAny = may == ReplaceableFiles::All;
    const QFileInfo target(localPath);
    const bool isTaken = target.isFile() || target.isSymLink(); // what else may be there is refused in any case
    if (replaceable.isAny || !isTaken) {
        return replaceable;
    }
    if (may == ReplaceableFiles::Nothing) {
        return std::nullopt;
    }
    const auto known = identities.Find(document, localPath);
    replaceable.only = FileIdentity::OfPath(localPath);
    const bool isOurs = known && replaceable.only.IsFile() && known->version == replaceable.only.ToString();
    return isOurs ? std::optional(replaceable) : std::nullopt;
}

void DeliveredFiles::Note(const QString& document, const OAuth2::TransferredFile& file)
{
    if (may == ReplaceableFiles::OwnCopies) {
        identities.Remember(document, file.localPath, {file.identity, file.md5Hash});
    }
}

void DeliveredFiles::Move(const QString& document, const QString& from, const QString& to)
{
    const auto known = may == ReplaceableFiles::OwnCopies ? identities.Find(document, from) : std::nullopt;
    if (!known) {
        return;
    }
    const auto now = FileIdentity::OfPath(to);
    if (now.HasContentOf(FileIdentity::FromString(known->version))) { // a renaming is noted in the identity
        identities.Remember(document, to, {now.ToString(), known->md5Hash});
    }
}

} // namespace Norlis::Social
