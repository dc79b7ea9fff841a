#include "CloudAccountSettings.h"

#include "IniFormat.h"
#include "ServiceAddress.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <glog/logging.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

constexpr auto serviceKey = "service/url";
constexpr auto lastKey = "service/last";
const auto certificateKey = QStringLiteral("/certificates");
const auto plainHttpKey = QStringLiteral("/plainHttp");

constexpr auto forUserAlone = QFile::ReadOwner | QFile::WriteOwner;

const auto roomAdvice = QStringLiteral("Free some space or check the permissions of its folder");

std::runtime_error Problem(const QString& path, const QString& what, const QString& advice)
{
    return std::runtime_error(QStringLiteral("\"%1\" %2. %3.").arg(path, what, advice).toStdString());
}

QString LastSystemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/// Creates the folder, and the folders above it, when they are missing. What is there must be the user's own folder.
void EnsureFolder(const QString& path)
{
    const QString parent = QFileInfo(path).path();
    if (!QFileInfo::exists(parent)) {
        EnsureFolder(parent);
    }
    const QByteArray native = QFile::encodeName(path);
    if (::mkdir(native.constData(), S_IRWXU) == 0) {
        return;
    }
    struct stat status {};
    if (errno != EEXIST || ::stat(native.constData(), &status) != 0) {
        throw Problem(path, "cannot be created: " + LastSystemError(), "Choose another folder");
    }
    if (!S_ISDIR(status.st_mode)) {
        throw Problem(path, "is not a folder", "Move it away or choose another folder");
    }
    if (status.st_uid != ::geteuid() || (status.st_mode & S_IWOTH) != 0) {
        throw Problem(path, "can be changed by other users",
                      "Make sure that only you can write to it or choose another folder");
    }
}

/// As above, and readable for the user alone even if it was there.
QString EnsurePrivateFolder(const QString& path)
{
    EnsureFolder(path);
    if (::chmod(QFile::encodeName(path).constData(), S_IRWXU) != 0) {
        throw Problem(path, "cannot be made private: " + LastSystemError(), "Choose another folder");
    }
    return path;
}

QString PreparedFolder(const QString& folder)
{
    const QString path = QDir::cleanPath(QDir(folder).absolutePath());
    EnsureFolder(path);
    EnsurePrivateFolder(path + "/tokens");
    EnsurePrivateFolder(path + "/services");
    // Made here, because QSettings would make it readable for others; it keeps the permissions of a file that is there.
    const QByteArray settings = QFile::encodeName(path + "/settings.ini");
    const int file = ::open(settings.constData(), O_RDONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        ::fchmod(file, S_IRUSR | S_IWUSR);
        ::close(file);
    }
    return path;
}

/// A file name that is the same for all spellings of a service's address, and gives no password away.
QString NameOf(const QUrl& service)
{
    QUrl url = service.adjusted(QUrl::RemovePassword | QUrl::RemoveFragment);
    url.setPath(NormalizedPath(url.path(QUrl::FullyEncoded)).chopped(1), QUrl::TolerantMode);
    if ((url.scheme() == "https" && url.port() == 443) || (url.scheme() == "http" && url.port() == 80)) {
        url.setPort(-1);
    }
    const auto hash = QCryptographicHash::hash(url.toEncoded(), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex().left(32));
}

/// Not QVariant::toBool, to which every text but a few is true.
bool IsTrue(const QVariant& value)
{
    return value.toString().trimmed().compare("true", Qt::CaseInsensitive) == 0;
}

QString AccessKey(const QUrl& service)
{
    return "access/" + NameOf(service);
}

void Store(const QSettings& settings)
{
    // All objects for one file share what is to be written. The status is each one's own, and that of a failure stays.
    QSettings writer(settings.fileName(), WholeIniFormat());
    writer.sync();
    if (writer.status() != QSettings::NoError) {
        throw Problem(settings.fileName(), "cannot be written", roomAdvice);
    }
}

} // namespace

CloudAccountSettings::CloudAccountSettings(const QString& folder)
    : folder(PreparedFolder(folder)),
      settings(this->folder + "/settings.ini", WholeIniFormat())
{
}

QUrl CloudAccountSettings::ServiceUrl() const
{
    return UrlAt(serviceKey);
}

QUrl CloudAccountSettings::LastServiceUrl() const
{
    return UrlAt(lastKey);
}

QUrl CloudAccountSettings::UrlAt(const char* key) const
{
    const QUrl url(settings.value(key).toString(), QUrl::StrictMode);
    return url.isValid() ? url : QUrl();
}

void CloudAccountSettings::SetServiceUrl(const QUrl& url)
{
    const QString address = url.toString(QUrl::FullyEncoded | QUrl::RemovePassword);
    settings.setValue(serviceKey, address);
    if (!url.isEmpty()) {
        settings.setValue(lastKey, address);
    }
    Store(settings);
}

QString CloudAccountSettings::Token(const QUrl& service) const
{
    QFile file(TokenFile(service));
    file.setPermissions(forUserAlone);
    const QByteArray bytes = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    return QString::fromUtf8(bytes.constData(), bytes.size());
}

void CloudAccountSettings::SetToken(const QUrl& service, const QString& token)
{
    if (token.isEmpty()) {
        ForgetToken(service);
        return;
    }
    // Written beside the old one, which stays until the new one is whole on the disk. Private before it holds anything,
    // and unbuffered, since a commit does not notice that there was no room for what is left in the buffer.
    QSaveFile file(TokenFile(service));
    const QByteArray bytes = token.toUtf8();
    const bool isStored = file.open(QFile::WriteOnly | QFile::Unbuffered) && file.setPermissions(forUserAlone) &&
                          file.write(bytes) == bytes.size() && file.commit();
    if (!isStored) {
        throw Problem(file.fileName(), "cannot be written: " + file.errorString(), roomAdvice);
    }
}

void CloudAccountSettings::ForgetToken(const QUrl& service)
{
    QFile::remove(TokenFile(service));
}

ServiceAccess CloudAccountSettings::Access(const QUrl& service) const
{
    const QString key = AccessKey(service);
    return {settings.value(key + certificateKey).toString(), IsTrue(settings.value(key + plainHttpKey))};
}

void CloudAccountSettings::SetAccess(const QUrl& service, const ServiceAccess& access)
{
    const QString key = AccessKey(service);
    settings.remove(key);
    if (!access.certificateFile.isEmpty()) {
        settings.setValue(key + certificateKey, access.certificateFile);
    }
    if (access.allowPlainHttp) {
        settings.setValue(key + plainHttpKey, true);
    }
    Store(settings);
}

QString CloudAccountSettings::ServiceFolder(const QUrl& service) const
{
    return EnsurePrivateFolder(folder + "/services/" + NameOf(service));
}

QString CloudAccountSettings::TokenFile(const QUrl& service) const
{
    return folder + "/tokens/" + NameOf(service);
}

} // namespace Norlis::Host
