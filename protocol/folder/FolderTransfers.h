#pragma once

#include "FolderJobs.h"
#include "FolderStore.h"
#include <protocol/service/Request.h>

#include <variant>

namespace Norlis::Social {

/// What is copied for downloads from a folder and uploads to it, and how the copies get their names.
class FolderTransfers {
public:
    /// A task without its progress; or the reply when the request is refused at once.
    using Plan = std::variant<CopyJob::Task, Reply>;

    /// \param store        outlives this object, which outlives the jobs
    /// \param storageLimit see AuthInfo
    FolderTransfers(FolderStore& store, qint64 storageLimit);

    Plan Download(const Request::Download& request);
    Plan Upload(const Request::Upload& request);

private:
    Reply PublishDownload(const Request::Download& request, const FolderDocument& document, Files::AtomicFile& copy,
                          const Files::FileReader& source);

    /// Gives an upload the name of the document to replace, or else the first free one.
    Reply PublishUpload(const Request::Upload& request, const QString& name, Files::AtomicFile& copy,
                        const Files::FileReader& source);
    Files::AtomicFile::Outcome CommitNumbered(Files::AtomicFile& copy, const QString& wantedName, QString& name) const;
    Reply Uploaded(const QString& name, const Files::AtomicFile& copy, const QString& md5Hash);

    /// The reason when a document of a size, in bytes, would exceed the storage limit.
    std::optional<QString> ValidateSize(qint64 size, const QString& replacedDocument);

    FolderStore& store;
    const qint64 storageLimit;
};

/// The reply when a document is not found, or the folder cannot be used.
Reply NoSuchDocument(const QString& what, const FolderStore& store);

} // namespace Norlis::Social
