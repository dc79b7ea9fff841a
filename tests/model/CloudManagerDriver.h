#pragma once

#include "CloudManagerHistory.h"
#include "Histories.h"

#include <QStringList>

namespace Norlis::Test {

/// Plays histories of the cloud manager, with documents, folders and arguments of its own. The library and the model
/// have one each, which use the same folder one after the other.
class CloudManagerDriver : public Driver<CloudAction> {
public:
    using FileInfo = PDF::FileInfo;
    using File = std::shared_ptr<FileInfo>;

    explicit CloudManagerDriver(const QString& folder);

protected:
    virtual bool HasManager() const = 0;
    virtual bool IsSyncInProgress() const = 0;
    virtual void MakeManager() = 0;
    virtual void DeleteManager() = 0;
    virtual void Operate(const CloudAction& action) = 0;
    virtual void Tick() = 0;
    virtual qint64 RequestCount() const = 0;
    virtual void Answer(qint64 request, qint64 id, const ModelAnswer& answer) = 0;
    virtual void Progress(qint64 request, qint64 id, int value) = 0;
    virtual void FlipSignedIn() = 0;
    virtual void FlipRefusal(const std::string& operation) = 0;

    // What the hash calculator and the file system answer.
    std::string HashOf(const ioPath& file);
    ioPath Normalized(const ioPath& file);

    void WriteRecord(const File& record);

    template <typename Manager>
    void OperateOn(Manager& manager, const CloudAction& action)
    {
        const auto size = FileInfo::PreviewSize(action.detail % 3);
        path = paths[action.subject % pathCount];
        list = {paths[action.subject % pathCount], paths[action.detail % pathCount]};
        File& record = records[action.subject % recordCount];
        switch (action.kind) {
        case CloudAction::Authorization:
            return manager.Authorization(Token(action.detail));
        case CloudAction::Logout:
            return manager.Logout();
        case CloudAction::UploadPath:
            return manager.Upload(path);
        case CloudAction::UploadRecord:
            return manager.Upload(record);
        case CloudAction::UploadList:
            return manager.Upload(list);
        case CloudAction::Download:
            return manager.Download(record, folder + '/');
        case CloudAction::DownloadList:
            documents = {record, records[action.detail % recordCount]};
            return manager.Download(documents, folder);
        case CloudAction::RetrieveFilesList:
            return manager.RetrieveFilesList();
        case CloudAction::RemoveFile:
            return manager.RemoveFile(record);
        case CloudAction::CancelUploading:
            return manager.CancelUploading(path);
        case CloudAction::CancelDownloading:
            return manager.CancelDownloading(record);
        case CloudAction::UserQuota:
            return manager.UserQuota();
        case CloudAction::RetrieveFilePreview:
            return manager.RetrieveFilePreview(record, size, {10 + action.detail, 20});
        default:
            return;
        }
    }

    const QString folder;
    QStringList paths;
    QList<File> records; ///< the last one is null

    // Arguments that are handed over by reference.
    QString path;
    QList<QString> list;
    QList<File> documents;

private:
    File MakeRecord(int number) const;
    static void Write(const QString& file);
    void Do(const CloudAction& action) override;

    /// In which order the requests are cancelled is left open.
    void Delete();

    void CallBack(const CloudAction& action);

    /// A path that the caller names, or the local path of a record.
    QString FileOf(const CloudAction& action) const;

    void Begin() override;
    void Finish() override;
    Trace State() override;

    bool hashingThrows = false;
    bool normalizingThrows = false;
    bool isBeingDeleted = false;
};

/// Of the library, and of its model.
std::unique_ptr<CloudManagerDriver> CloudManagerDriverOfLibrary(const QString& folder);
std::unique_ptr<CloudManagerDriver> CloudManagerDriverOfModel(const QString& folder);

/// "id=doc md5_hash=...", as both write it.
std::string FieldsText(const QMap<QString, QString>& fields);

} // namespace Norlis::Test
