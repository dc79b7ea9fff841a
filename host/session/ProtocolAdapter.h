#pragma once

#include <base/Lifetime.h>
#include <contracts/ICloudProtocol.h>
#include <contracts/IFailureSource.h>
#include <contracts/NorlisCloudProtocol.h>
#include <host/Export.h>

#include <map>

namespace Norlis::Host {

/// A protocol object as an ICloudProtocol that also reaches what that interface has no operations for. Lives on the
/// thread that constructs it, where the callbacks arrive too.
class NORLIS_HOST_EXPORT ProtocolAdapter : public PDF::Cloud::ICloudProtocol, public PDF::Cloud::IFailureSource {
public:
    /// See NorlisCloudProtocol.
    ProtocolAdapter(const Social::OAuth2::AuthInfo& authInfo, const std::string& name);

    /// What is to be told to the protocol object itself.
    Social::NorlisCloudProtocol& Protocol()
    {
        return protocol;
    }

    /// Has the sign-ins and the lists that are under way fail at once, as they do when the service is silent for too
    /// long. Calls back from inside.
    void StopWaiting();

    /// Whether the service is a folder.
    bool IsFolder() const
    {
        return isFolder;
    }

    // Passed on to the protocol object: see Ability.h.
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
    void SetFailureObserver(FailureObserver newObserver) override;

private:
    /// Sends a request whose end StopWaiting may bring about.
    template <typename... Payload, typename Request>
    qint64 Await(std::function<void(qint64, Social::RequestResult, Payload...)>&& done, Request request);

    const bool isFolder;
    FailureObserver observer;
    std::map<qint64, std::function<void()>> awaited; ///< how each request fails, by operation
    Social::NorlisCloudProtocol protocol;
    Lifetime lifetime;
};

} // namespace Norlis::Host
