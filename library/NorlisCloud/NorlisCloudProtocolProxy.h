#pragma once

#include <contracts/ICloudProtocol.h>
#include <contracts/OAuth2.h>
#include <NorlisCloud/Export.h>

#include <functional>
#include <memory>
#include <string>

namespace Norlis::Social {
class NorlisCloudProtocol;
}

namespace Norlis::PDF::Cloud {

/// The cloud service's protocol object as an ICloudProtocol: every operation is passed on unchanged.
///
/// Owns the protocol object; destroying the proxy ends all pending requests without a callback. Lives on the thread
/// that constructs it, where the callbacks arrive too.
class NORLIS_CLOUD_EXPORT NorlisCloudProtocolProxy : public ICloudProtocol {
public:
    /// Creates the protocol object with both arguments as they are. What that throws reaches the caller.
    NorlisCloudProtocolProxy(const Social::OAuth2::AuthInfo& authInfo, const std::string& name);
    ~NorlisCloudProtocolProxy() override;

    NorlisCloudProtocolProxy(const NorlisCloudProtocolProxy&) = delete;
    NorlisCloudProtocolProxy& operator=(const NorlisCloudProtocolProxy&) = delete;

    /// \name Passed on
    /// @{

    /// Passed on to the protocol object: see Ability.h.
    qint64 auth(const QMap<QString, QString>& fields,
                std::function<void(qint64, Social::RequestResult)>&& done) override;
    void logout() override;
    bool loggedIn() override;
    qint64 userName(std::function<void(qint64, Social::RequestResult, QString)>&& done) override;
    qint64 userProfile(std::function<void(qint64, Social::RequestResult, QUrl)>&& done) override;
    qint64 userPic(std::function<void(qint64, Social::RequestResult, QString)>&& done) override;
    qint64 userPic(std::function<void(qint64, Social::RequestResult, QPixmap)>&& done) override;

    qint64 retriveFileInfo(const FileFieldData& data,
                           std::function<void(qint64, Social::RequestResult, FileInfo)>&& done) override;
    qint64 retriveFileList(const FileFieldData& data,
                           std::function<void(qint64, Social::RequestResult, QList<FileInfo>)>&& done) override;
    qint64 downloadFile(const FileFieldData& data, std::function<void(qint64, Social::RequestResult)>&& done,
                        std::function<void(qint64, int)>&& progress) override;
    qint64 deleteFile(const FileFieldData& data, std::function<void(qint64, Social::RequestResult)>&& done) override;
    qint64
    uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
               std::function<void(qint64, Social::RequestResult, const Social::NorlisCloudSharingResult&)>&& done,
               std::function<void(qint64, int)>&& progress) override;

    qint64
    userQuota(std::function<void(qint64, Social::RequestResult, const QMap<QString, QuotaValue>&)>&& done) override;
    qint64 retrievePreview(const QMap<QString, QString>& fields,
                           std::function<void(qint64, Social::RequestResult, QPixmap)>&& done) override;
    void cancelOperation(qint64 id) override;

    /// @}

private:
    const std::unique_ptr<Social::NorlisCloudProtocol> protocol;
};

} // namespace Norlis::PDF::Cloud
