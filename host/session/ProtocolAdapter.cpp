#include "ProtocolAdapter.h"

namespace Norlis::Host {

using Social::NorlisCloudSharingResult;
using Social::RequestResult;

ProtocolAdapter::ProtocolAdapter(const Social::OAuth2::AuthInfo& authInfo, const std::string& name)
    : isFolder(authInfo.serviceUrl.isLocalFile()),
      protocol(authInfo, name)
{
}

qint64 ProtocolAdapter::auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done)
{
    return protocol.auth(fields, std::move(done));
}

void ProtocolAdapter::logout()
{
    protocol.logout();
}

bool ProtocolAdapter::loggedIn()
{
    return protocol.loggedIn();
}

qint64 ProtocolAdapter::userName(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return protocol.userName(std::move(done));
}

qint64 ProtocolAdapter::userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done)
{
    return protocol.userProfile(std::move(done));
}

qint64 ProtocolAdapter::userPic(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return protocol.userPic(std::move(done));
}

qint64 ProtocolAdapter::userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return protocol.userPic(std::move(done));
}

qint64 ProtocolAdapter::retriveFileInfo(const FileFieldData& data,
                                        std::function<void(qint64, RequestResult, FileInfo)>&& done)
{
    return protocol.retriveFileInfo(data, std::move(done));
}

qint64 ProtocolAdapter::retriveFileList(const FileFieldData& data,
                                        std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done)
{
    return protocol.retriveFileList(data, std::move(done));
}

qint64 ProtocolAdapter::downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                                     std::function<void(qint64, int)>&& progress)
{
    return protocol.downloadFile(data, std::move(done), std::move(progress));
}

qint64 ProtocolAdapter::deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done)
{
    return protocol.deleteFile(data, std::move(done));
}

qint64 ProtocolAdapter::uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                                   std::function<void(qint64, RequestResult, const NorlisCloudSharingResult&)>&& done,
                                   std::function<void(qint64, int)>&& progress)
{
    return protocol.uploadFile(localPath, fields, std::move(done), std::move(progress));
}

qint64 ProtocolAdapter::userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done)
{
    return protocol.userQuota(std::move(done));
}

qint64 ProtocolAdapter::retrievePreview(const QMap<QString, QString>& fields,
                                        std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return protocol.retrievePreview(fields, std::move(done));
}

void ProtocolAdapter::cancelOperation(qint64 id)
{
    protocol.cancelOperation(id);
}

void ProtocolAdapter::SetFailureObserver(FailureObserver observer)
{
    protocol.SetFailureObserver(std::move(observer));
}

} // namespace Norlis::Host
