#pragma once

#include "DocumentChange.h"
#include "FolderJobs.h"
#include "FolderStore.h"
#include "SeenVersions.h"
#include <protocol/service/Request.h>

#include <memory>
#include <variant>

namespace Norlis::Social {

/// What downloads from a folder, uploads to it and removals do.
class FolderTransfers {
public:
    /// A task without its progress; or the reply when the request is refused at once.
    using Plan = std::variant<CopyJob::Task, Reply>;

    /// \param store        outlives this object, which outlives the jobs; so does `seen`
    /// \param storageLimit see AuthInfo
    FolderTransfers(FolderStore& store, SeenVersions& seen, qint64 storageLimit);

    Plan Download(const Request::Download& request);
    Plan Upload(const Request::Upload& request);
    std::variant<std::unique_ptr<FolderJob>, Reply> Remove(const Request::Remove& request);

private:
    class Delivery;
    class Replacement;
    class NewDocument;
    class Removal;

    /// The version of a document that a request starts from: the one that was seen.
    static std::optional<SeenVersion> Expected(const std::optional<QString>& seenVersion);

    /// The reason when a document of a size, in bytes, would exceed the storage limit.
    std::optional<QString> ValidateSize(qint64 size, const QString& replacedDocument);

    /// The refusal when an upload cannot be put in place any more: minutes may have passed since it began.
    std::optional<Reply> Refusal(const QString& name, qint64 size, const QString& replacedDocument);

    Reply Uploaded(const Request::Upload& request, const QString& name, const Files::FileIdentity& version,
                   const Files::FileReader& source);

    FolderStore& store;
    SeenVersions& seen;
    const qint64 storageLimit;
};

/// The reply when a document is not found, or the folder cannot be used.
Reply NoSuchDocument(const QString& what, const FolderStore& store);

} // namespace Norlis::Social
