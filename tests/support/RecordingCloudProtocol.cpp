#include "RecordingCloudProtocol.h"

#include <stdexcept>
#include <utility>

namespace Norlis::Test {

CloudProtocolRecording& Recorded()
{
    static CloudProtocolRecording recording;
    return recording;
}

namespace {

qint64 Record(const char* operation, const void* fields, std::function<void()> answer)
{
    Recorded().calls.emplace_back(operation);
    Recorded().fields = fields;
    Recorded().answer = std::move(answer);
    return Recorded().nextId;
}

} // namespace

} // namespace Norlis::Test

namespace Norlis::Social {

using Test::Record;
using Test::Recorded;

const QString NorlisCloudProtocol::ID = QStringLiteral("id");
const QString NorlisCloudProtocol::FILE_NAME = QStringLiteral("file name");
const QString NorlisCloudProtocol::FILE_SIZE = QStringLiteral("file size");
const QString NorlisCloudProtocol::MD5_HASH = QStringLiteral("md5 hash");
const QString NorlisCloudProtocol::FILE_MIME_TYPE = QStringLiteral("file mime type");
const QString NorlisCloudProtocol::CHUNK_MIME_TYPE = QStringLiteral("chunk mime type");
const QString NorlisCloudProtocol::SSO_TOKEN = QStringLiteral("sso token");
const QString NorlisCloudProtocol::APP_ID_ON_CLOUD = QStringLiteral("app id on cloud");
const QString NorlisCloudProtocol::API_VERSION = QStringLiteral("api version");
const QString NorlisCloudProtocol::FILE_PREVIEW_WIDTH = QStringLiteral("file preview width");
const QString NorlisCloudProtocol::FILE_PREVIEW_HEIGHT = QStringLiteral("file preview height");

class NorlisCloudProtocol::Private {};

NorlisCloudProtocol::NorlisCloudProtocol(const OAuth2::AuthInfo& authInfo, const std::string& name, QObject* parent)
    : QObject(parent)
{
    if (Recorded().constructorThrows) {
        throw std::invalid_argument("no such service");
    }
    ++Recorded().constructed;
    Recorded().authInfo = authInfo;
    Recorded().name = name;
    Recorded().parent = this->parent();
}

NorlisCloudProtocol::~NorlisCloudProtocol()
{
    ++Recorded().destroyed;
}

qint64 NorlisCloudProtocol::auth(const QMap<QString, QString>& fields,
                                 std::function<void(qint64, RequestResult)>&& done)
{
    return Record("auth", &fields, [done = std::move(done)] { done(7, Error); });
}

void NorlisCloudProtocol::logout()
{
    Recorded().calls.emplace_back("logout");
}

bool NorlisCloudProtocol::loggedIn()
{
    Recorded().calls.emplace_back("loggedIn");
    return Recorded().loggedIn;
}

qint64 NorlisCloudProtocol::userName(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return Record("userName", nullptr, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done)
{
    return Record("userProfile", nullptr, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::userPic(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return Record("userPic(QString)", nullptr, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return Record("userPic(QPixmap)", nullptr, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::retriveFileInfo(const File::FileFieldData& data,
                                            std::function<void(qint64, RequestResult, File::FileInfo)>&& done)
{
    return Record("retriveFileInfo", &data, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::retriveFileList(const File::FileFieldData& data,
                                            std::function<void(qint64, RequestResult, QList<File::FileInfo>)>&& done)
{
    return Record("retriveFileList", &data, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::downloadFile(const File::FileFieldData& data,
                                         std::function<void(qint64, RequestResult)>&& done,
                                         File::ProgressCallback&& progress)
{
    return Record("downloadFile", &data, [done = std::move(done), progress = std::move(progress)] {
        progress(7, 50);
        done(7, Error);
    });
}

qint64 NorlisCloudProtocol::deleteFile(const File::FileFieldData& data,
                                       std::function<void(qint64, RequestResult)>&& done)
{
    return Record("deleteFile", &data, [done = std::move(done)] { done(7, Error); });
}

qint64
NorlisCloudProtocol::uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                                std::function<void(qint64, RequestResult, const NorlisCloudSharingResult&)>&& done,
                                File::ProgressCallback&& progress)
{
    Recorded().localPath = &localPath;
    return Record("uploadFile", &fields, [done = std::move(done), progress = std::move(progress)] {
        progress(7, 50);
        done(7, Error, {});
    });
}

qint64
NorlisCloudProtocol::userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done)
{
    return Record("userQuota", nullptr, [done = std::move(done)] { done(7, Error, {}); });
}

qint64 NorlisCloudProtocol::retrievePreview(const QMap<QString, QString>& fields,
                                            std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return Record("retrievePreview", &fields, [done = std::move(done)] { done(7, Error, {}); });
}

void NorlisCloudProtocol::SetFailureObserver(FailureObserver) {}

void NorlisCloudProtocol::cancelOperation(qint64 id)
{
    Recorded().calls.emplace_back("cancelOperation");
    Recorded().cancelledId = id;
}

} // namespace Norlis::Social
