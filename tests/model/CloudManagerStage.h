#pragma once

#include "CloudManagerHistory.h"
#include "Histories.h"

#include <QStringList>

namespace Norlis::Test {

/// Where histories are played: documents, folders and arguments. Each side, the library and the model, has one of its
/// own, in the same folder one after the other.
class CloudManagerStage : public Stage<CloudDeed> {
public:
    using FileInfo = PDF::FileInfo;
    using File = std::shared_ptr<FileInfo>;

    explicit CloudManagerStage(const QString& folder);

protected:
    virtual bool HasManager() const = 0;
    virtual bool IsSyncInProgress() const = 0;
    virtual void MakeManager() = 0;
    virtual void DeleteManager() = 0;
    virtual void Operate(const CloudDeed& deed) = 0;
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
    void OperateOn(Manager& manager, const CloudDeed& deed)
    {
        const auto size = FileInfo::PreviewSize(deed.detail % 3);
        path = paths[deed.subject % pathCount];
        list = {paths[deed.subject % pathCount], paths[deed.detail % pathCount]};
        File& record = records[deed.subject % recordCount];
        switch (deed.kind) {
        case CloudDeed::Authorization:
            return manager.Authorization(Token(deed.detail));
        case CloudDeed::Logout:
            return manager.Logout();
        case CloudDeed::UploadPath:
            return manager.Upload(path);
        case CloudDeed::UploadRecord:
            return manager.Upload(record);
        case CloudDeed::UploadList:
            return manager.Upload(list);
        case CloudDeed::Download:
            return manager.Download(record, folder + '/');
        case CloudDeed::DownloadList:
            documents = {record, records[deed.detail % recordCount]};
            return manager.Download(documents, folder);
        case CloudDeed::RetrieveFilesList:
            return manager.RetrieveFilesList();
        case CloudDeed::RemoveFile:
            return manager.RemoveFile(record);
        case CloudDeed::CancelUploading:
            return manager.CancelUploading(path);
        case CloudDeed::CancelDownloading:
            return manager.CancelDownloading(record);
        case CloudDeed::UserQuota:
            return manager.UserQuota();
        case CloudDeed::RetrieveFilePreview:
            return manager.RetrieveFilePreview(record, size, {10 + deed.detail, 20});
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
    void Do(const CloudDeed& deed) override;

    /// In which order the requests are cancelled is left open.
    void Delete();

    void CallBack(const CloudDeed& deed);

    /// A path that the caller names, or the local path of a record.
    QString FileOf(const CloudDeed& deed) const;

    void Begin() override;
    void Finish() override;
    Trace State() override;

    bool hashingThrows = false;
    bool normalizingThrows = false;
    bool isBeingDeleted = false;
};

/// Where the library acts, and where its model does.
std::unique_ptr<CloudManagerStage> CloudManagerStageOfLibrary(const QString& folder);
std::unique_ptr<CloudManagerStage> CloudManagerStageOfModel(const QString& folder);

/// "id=doc md5_hash=...", as both write it.
std::string FieldsText(const QMap<QString, QString>& fields);

} // namespace Norlis::Test
