#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::PDF::Cloud {

using Social::NorlisCloudProtocol;
using Social::NorlisCloudSharingResult;
using Social::RequestResult;

NorlisCloudProtocolProxy::NorlisCloudProtocolProxy(const Social::OAuth2::AuthInfo& authInfo, const std::string& name)
    : protocol(std::make_unique<NorlisCloudProtocol>(authInfo, name, nullptr))
{
}

NorlisCloudProtocolProxy::~NorlisCloudProtocolProxy() = default;

qint64 NorlisCloudProtocolProxy::auth(const QMap<QString, QString>& fields,
                                      std::function<void(qint64, RequestResult)>&& done)
{
    return protocol->auth(fields, std::move(done));
}

void NorlisCloudProtocolProxy::logout()
{
    protocol->logout();
}

bool NorlisCloudProtocolProxy::loggedIn()
{
    return protocol->loggedIn();
}

qint64 NorlisCloudProtocolProxy::userName(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return protocol->userName(std::move(done));
}

qint64 NorlisCloudProtocolProxy::userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done)
{
    return protocol->userProfile(std::move(done));
}

qint64 NorlisCloudProtocolProxy::userPic(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return protocol->userPic(std::move(done));
}

qint64 NorlisCloudProtocolProxy::userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return protocol->userPic(std::move(done));
}

qint64 NorlisCloudProtocolProxy::retriveFileInfo(const FileFieldData& data,
                                                 std::function<void(qint64, RequestResult, FileInfo)>&& done)
{
    return protocol->retriveFileInfo(data, std::move(done));
}

qint64 NorlisCloudProtocolProxy::retriveFileList(const FileFieldData& data,
                                                 std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done)
{
    return protocol->retriveFileList(data, std::move(done));
}

qint64 NorlisCloudProtocolProxy::downloadFile(const FileFieldData& data,
                                              std::function<void(qint64, RequestResult)>&& done,
                                              std::function<void(qint64, int)>&& progress)
{
    return protocol->downloadFile(data, std::move(done), std::move(progress));
}

qint64 NorlisCloudProtocolProxy::deleteFile(const FileFieldData& data,
                                            std::function<void(qint64, RequestResult)>&& done)
{
    return protocol->deleteFile(data, std::move(done));
}

qint64
NorlisCloudProtocolProxy::uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                                     std::function<void(qint64, RequestResult, const NorlisCloudSharingResult&)>&& done,
                                     std::function<void(qint64, int)>&& progress)
{
    return protocol->uploadFile(localPath, fields, std::move(done), std::move(progress));
}

qint64
NorlisCloudProtocolProxy::userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done)
{
    return protocol->userQuota(std::move(done));
}

qint64 NorlisCloudProtocolProxy::retrievePreview(const QMap<QString, QString>& fields,
                                                 std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return protocol->retrievePreview(fields, std::move(done));
}

void NorlisCloudProtocolProxy::cancelOperation(qint64 id)
{
    protocol->cancelOperation(id);
}

} // namespace Norlis::PDF::Cloud
