#pragma once

#include <contracts/AbstractFileManager.h>
#include <contracts/ICloudInfoStorage.h>
#include <contracts/IFileSystem.h>
#include <contracts/IHashCalculator.h>
#include <NorlisCloud/Export.h>

#include <QDateTime>
#include <QMap>
#include <QStringList>
#include <QVariant>

#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string>

namespace Norlis {
class Lifetime;
}

namespace Norlis::PDF::Cloud {

/// The list of the user's cloud documents, newest first.
///
/// Restored from the record store by the constructor and written back by the destructor; in between only Remove touches
/// the store. Every record in the list must have a cloud part when the list is destroyed.
class NORLIS_CLOUD_EXPORT NorlisCloudFilesManager : public AbstractFileManager {
    Q_OBJECT

public:
    /// Keeps the collaborators for its whole life and loads every stored record. Throws std::invalid_argument or
    /// std::out_of_range for a stored number that is malformed or has more than 32 bits; what a collaborator throws
    /// reaches the caller too.
    NorlisCloudFilesManager(const std::shared_ptr<ICloudInfoStorage>& cloudInfoStorage,
                            const std::shared_ptr<IFileSystem>& fileSystem,
                            const std::shared_ptr<IHashCalculator>& hashCalculator);

    /// Saves the list. A record without a cloud part ends the program here.
    ~NorlisCloudFilesManager() override;

    /// Does nothing: previews are given as file URLs.
    void SetImageGetCallback(const std::function<QImage(const QString&)>& callback) override;
    std::string GetIdByPath(const ioPath& path) const override;
    void Add(const std::shared_ptr<FileInfo>& file) override;

    /// Also deletes the stored record at once when the given record has a cloud part, held or not. No file on disk is
    /// touched.
    void Remove(const std::shared_ptr<FileInfo>& file) override;

    /// Does nothing.
    void Rename(const QStringList& ids, const QString& name) override;

    /// Does nothing.
    void Clear() override;
    void Update(const std::shared_ptr<const FileInfo>& newer) override;
    int FilesCount() const override;
    int Limit() const override;
    std::shared_ptr<FileInfo> GetFileInfo(const QString& id) const override;
    QString GetDocumentName(int index) const override;
    QMap<QString, QVariant> GetPreviewsSet(int index) const override;
    QString GetDocumentId(int index) const override;
    QString GetDocumentPath(int index) const override;
    QDateTime GetModifiedDateTime(int index) const override;
    int GetDocumentState(int index) const override;
    int GetFileSize(int index) const override;

private:
    void Load();
    void Save();
    bool RemoveImpl(const std::shared_ptr<FileInfo>& file);
    bool TryToUpdate(const std::shared_ptr<FileInfo>& held, const std::shared_ptr<const FileInfo>& incoming);

    std::deque<std::shared_ptr<FileInfo>>::const_iterator FindById(const std::string& id) const;

    /// Null, and an error in the log that names the operation, when the list has no such index.
    std::shared_ptr<FileInfo> FindByIndex(int index, const char* operation) const;

    std::shared_ptr<ICloudInfoStorage> cloudInfoStorage;
    std::shared_ptr<IFileSystem> fileSystem;
    std::shared_ptr<IHashCalculator> hashCalculator;
    std::deque<std::shared_ptr<FileInfo>> files; ///< index 0 is the record added last
    std::set<std::string> removedFileIds;        ///< their stored records are deleted by Save
    std::unique_ptr<Lifetime> lifetime;
};

} // namespace Norlis::PDF::Cloud
