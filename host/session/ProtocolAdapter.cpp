#include "ProtocolAdapter.h"

#include <memory>
#include <utility>
#include <vector>

namespace Norlis::Host {

using Social::NorlisCloudSharingResult;
using Social::RequestResult;
using Social::OAuth2::FailureKind;

ProtocolAdapter::ProtocolAdapter(const Social::OAuth2::AuthInfo& authInfo, const std::string& name)
    : isFolder(authInfo.serviceUrl.isLocalFile()),
      protocol(authInfo, name)
{
}

template <typename... Payload, typename Request>
qint64 ProtocolAdapter::Await(std::function<void(qint64, RequestResult, Payload...)>&& done, Request request)
{
    const auto end = std::make_shared<std::function<void(qint64, RequestResult, Payload...)>>(std::move(done));
    const qint64 id = request([this, end](qint64 id, RequestResult result, const Payload&... payload) {
        const auto kept = end; // which this function may not outlive
        awaited.erase(id);
        (*kept)(id, result, payload...);
    });
    if (id >= 0) {
        awaited[id] = [id, end] { (*end)(id, Social::Error, Payload()...); };
    }
    return id;
}

void ProtocolAdapter::StopWaiting()
{
    std::vector<qint64> ids;
    for (const auto& each : awaited) {
        ids.push_back(each.first);
    }
    const auto tell = observer; // a callback may destroy this
    const auto guard = lifetime.Watch();
    for (const qint64 id : ids) {
        const auto node = guard ? awaited.extract(id) : decltype(awaited)::node_type(); // or cancel another request
        if (node) {
            protocol.cancelOperation(id);
            tell({id, "Waiting", {}, "The server has stopped answering", "Try again later.", FailureKind::Unavailable});
            node.mapped()();
        }
    }
}

qint64 ProtocolAdapter::auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done)
{
    return Await(std::move(done), [&](auto end) { return protocol.auth(fields, std::move(end)); });
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
    return Await(std::move(done), [&](auto end) { return protocol.retriveFileList(data, std::move(end)); });
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
    awaited.erase(id);
    protocol.cancelOperation(id);
}

void ProtocolAdapter::SetFailureObserver(FailureObserver newObserver)
{
    observer = newObserver;
    protocol.SetFailureObserver(std::move(newObserver));
}

} // namespace Norlis::Host
