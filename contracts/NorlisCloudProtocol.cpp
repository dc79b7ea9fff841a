#include "NorlisCloudProtocol.h"

namespace Norlis::Social {

const QString NorlisCloudProtocol::ID = QStringLiteral("id");
const QString NorlisCloudProtocol::FILE_NAME = QStringLiteral("file_name");
const QString NorlisCloudProtocol::FILE_SIZE = QStringLiteral("file_size");
const QString NorlisCloudProtocol::MD5_HASH = QStringLiteral("md5_hash");
const QString NorlisCloudProtocol::FILE_MIME_TYPE = QStringLiteral("file_mime_type");
const QString NorlisCloudProtocol::CHUNK_MIME_TYPE = QStringLiteral("chunk_mime_type");
const QString NorlisCloudProtocol::SSO_TOKEN = QStringLiteral("sso_token");
const QString NorlisCloudProtocol::APP_ID_ON_CLOUD = QStringLiteral("app_id_on_cloud");
const QString NorlisCloudProtocol::API_VERSION = QStringLiteral("api_version");
const QString NorlisCloudProtocol::FILE_PREVIEW_WIDTH = QStringLiteral("file_preview_width");
const QString NorlisCloudProtocol::FILE_PREVIEW_HEIGHT = QStringLiteral("file_preview_height");
const QString NorlisCloudProtocol::FILE_PREVIEW_PAGE = QStringLiteral("file_preview_page");

} // namespace Norlis::Social
