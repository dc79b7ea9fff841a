#pragma once

// The editor of docs/embedding.md.

#include <host/session/ProtocolAdapter.h>
#include <host/session/Records.h>
#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisTestKit/FixedAccountSettings.h>

#include <QTemporaryDir>
#include <QTimer>

#include <map>

namespace Norlis::Test {

using Cloud = PDF::Cloud::NorlisCloudManager;
using Documents = PDF::Cloud::NorlisCloudFilesManager;
using Settings = TestKit::FixedAccountSettings;
using Status = PDF::FileInfo::CloudStatus;

class Editor : public QObject {
public:
    Editor(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& store, const QString& dataFolder, const QUrl& service);

    void SignIn(const QString& password);
    void Save(const QString& path);
    void ReplaceInCloud(const QString& id);
    void UseCloudVersion(const QString& id);
    void Fetch(const QString& id, const QString& folder);
    void CancelFetching(const QString& id);

    std::shared_ptr<PDF::FileInfo> Document(const QString& name) const;

    std::shared_ptr<PDF::IHashCalculator> hashes = std::make_shared<Host::Md5HashCalculator>();
    QString reason;
    int asked = 0; ///< how often for the password

    struct Fetching {
        std::shared_ptr<PDF::FileInfo> record; ///< a copy, whose path is that of what arrives
        QString folder;
        std::unique_ptr<QTemporaryDir> staging;
    };
    std::map<QString, Fetching> fetching; ///< by id

    // Destroyed from the last to the first.
    std::unique_ptr<Documents> documents;
    std::unique_ptr<Cloud> cloud;
    QTimer refresh;

private:
    void StartRefreshing();
    void AskForPassword();
    void OpenPasswordDialog()
    {
        ++asked;
    }
    void MergeFilesList(const QList<std::shared_ptr<PDF::FileInfo>>& files);
    void TakeUploaded(const std::shared_ptr<PDF::FileInfo>& record);
    void TakeDownloaded(const std::shared_ptr<const PDF::FileInfo>& record);
    void EndFetching(const std::shared_ptr<const PDF::FileInfo>& record);
    void TakePreview(const std::shared_ptr<PDF::FileInfo>& record, PDF::FileInfo::PreviewSize size);
    void Replace(const std::shared_ptr<PDF::FileInfo>& record);
    bool HasChanges(PDF::FileInfo& held) const;

    bool isAsking = false;
    Social::NorlisCloudProtocol* protocol = nullptr; ///< the cloud manager holds its adapter
};

} // namespace Norlis::Test
