#pragma once

#include "VersionMemory.h"
#include <contracts/OAuth2.h>
#include <files/LocalTarget.h>

#include <optional>

namespace Norlis::Social {

/// Remembers which files on this computer are copies that were delivered, or that were sent, and as what: only such a
/// one, unchanged since, may a download replace. What the user has put there himself, or has changed, is his.
class DeliveredFiles {
public:
    /// \param authInfo its `dataFolder` keeps the memory between runs
    explicit DeliveredFiles(const OAuth2::AuthInfo& authInfo);

    /// What a download of the document may take the place of. Nothing when a file is there that has to be left alone.
    std::optional<Files::ReplaceableFile> ReplaceableAt(const QString& document, const QString& localPath);

    /// A transfer of the document has succeeded.
    void Note(const QString& document, const OAuth2::TransferredFile& file);

    /// The copy has been renamed.
    void Move(const QString& document, const QString& from, const QString& to);

private:
    const OAuth2::ReplaceableFiles may;
    VersionMemory identities;
};

} // namespace Norlis::Social
