#include "ServiceAddress.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace Norlis::Host {

namespace {

std::invalid_argument Refusal(const QString& text)
{
    return std::invalid_argument(text.toStdString());
}

/// Whether the text is meant as an address. Paths may have colons too, so only schemes that people try count alone.
bool IsAddress(const QString& text)
{
    static const QRegularExpression beginning("^([a-z][a-z0-9+.-]*://|(file|https?|davs?|webdavs?|ftps?|sftp):)",
                                              QRegularExpression::CaseInsensitiveOption);
    return text.contains(beginning);
}

/// Whether the text is an address whose scheme is missing, and no path: it may have a password in it.
bool LacksScheme(const QString& text)
{
    static const QRegularExpression path("^([/~]|\\.\\.?(/|$))");
    static const QRegularExpression host("^/*[^/\\s]*[.:][^/\\s]*(/|$)");
    const bool isPath = (text.contains(path) && !text.startsWith("//")) || QFileInfo(text).isDir();
    return !isPath && (text.contains('@') || text.contains(host));
}

QUrl Parsed(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid()) {
        // Behind the semicolon it repeats the address, which may have a password in it.
        throw Refusal("The address is not valid: " + url.errorString().section(';', 0, 0));
    }
    static const QRegularExpression twoSchemes("^[^/]*//[^/]*://");
    if (text.contains(twoSchemes)) { // a user and a password would be part of its path
        throw Refusal("The address begins with two schemes");
    }
    if (url.userInfo(QUrl::FullyEncoded).contains(':')) { // also where the password stands before it
        // Other users of the machine can read the command line.
        throw Refusal("Leave the password out of the address; you will be asked for it");
    }
    if (url.hasQuery() || url.hasFragment()) {
        throw Refusal("The address of a service ends with its path. Write \"?\" as %3F and \"#\" as %23");
    }
    return url;
}

/// A user for the address of a server. RFC 7617 keeps some characters out.
void CheckUser(const QString& user)
{
    const bool isAnyForbidden = std::any_of(user.begin(), user.end(), [](QChar character) {
        return character == ':' || character.category() == QChar::Other_Control;
    });
    if (isAnyForbidden) {
        throw Refusal("A user name cannot contain colons or control characters");
    }
}

QUrl FolderAddress(const QUrl& url)
{
    if (!url.host().isEmpty() && url.host() != "localhost") {
        throw Refusal(
            "The address is that of a folder on another machine. Give the path where it is mounted on this one");
    }
    const QString path = QDir::cleanPath(url.path(QUrl::FullyDecoded));
    if (!path.startsWith('/')) {
        throw Refusal("The address has no path; it should look like file:///home/me/Cloud");
    }
    if (path.contains(QChar::Null)) {
        throw Refusal("The path of a folder cannot contain null characters");
    }
    return QUrl::fromLocalFile(path); // in which the same characters are percent-encoded for every spelling
}

QUrl ServerAddress(QUrl url, const QString& user)
{
    if (url.host().isEmpty()) {
        throw Refusal("The address has no server name; it should look like https://user@host/path/");
    }
    const QString userInAddress = url.userName(QUrl::FullyDecoded);
    if (!user.isEmpty() && !userInAddress.isEmpty() && user != userInAddress) {
        throw Refusal("The address and --user specify different users");
    }
    const QString either = user.isEmpty() ? userInAddress : user;
    CheckUser(either);
    url.setUserInfo({});
    if (!either.isEmpty()) {
        url.setUserName(either, QUrl::DecodedMode);
    }
    if (url.port() == (url.scheme() == "https" ? 443 : 80)) {
        url.setPort(-1);
    }
    url.setPath(NormalizedPath(url.path(QUrl::FullyEncoded)), QUrl::TolerantMode); // brackets are no error
    return url;
}

} // namespace

QUrl ServiceAddress(const QString& text, const QString& user)
{
    if (text.trimmed().isEmpty()) { // no folder: that would be the one in which the program happens to run
        throw Refusal("There is no address. Give the path of a folder, or the address of a WebDAV server");
    }
    if (!IsAddress(text) && LacksScheme(text)) {
        throw Refusal("The address has no scheme: write https:// before it, or http:// for a server on this computer "
                      "that uses no "
                      "encryption. If it is the path of a folder, write ./ before it");
    }
    const QUrl url =
        IsAddress(text) ? Parsed(text) : QUrl::fromLocalFile(QDir::cleanPath(QDir().absoluteFilePath(text)));
    if (!IsFolder(url) && Social::NorlisCloudProtocol::serviceSchemes().contains(url.scheme())) {
        return ServerAddress(url, user);
    }
    if (!IsFolder(url)) {
        throw Refusal(
            QStringLiteral(
                "\"%1:\" is not a supported kind of service. Use https: for a WebDAV server, or the path of a folder")
                .arg(url.scheme()));
    }
    if (!user.isEmpty()) {
        throw Refusal("--user is for servers; a folder does not need a user name");
    }
    return FolderAddress(url);
}

QString NormalizedPath(const QString& path)
{
    QStringList kept;
    const auto segments = path.split('/', Qt::SkipEmptyParts);
    for (const QString& segment : segments) {
        const QString decoded = QUrl::fromPercentEncoding(segment.toUtf8());
        if (decoded != "." && decoded != "..") {
            kept.append(segment);
        } else if (decoded == ".." && !kept.isEmpty()) {
            kept.removeLast();
        }
    }
    return kept.isEmpty() ? "/" : '/' + kept.join('/') + '/';
}

bool IsFolder(const QUrl& service)
{
    return service.isLocalFile();
}

QString ServiceText(const QUrl& service)
{
    return IsFolder(service) ? service.toLocalFile() : service.toDisplayString();
}

QString ServiceWord(const QUrl& service)
{
    static const QRegularExpression plainWord("^[A-Za-z0-9/:@%_.,+=-]+$");
    if (IsFolder(service)) {
        const QString path = service.toLocalFile();
        return path.contains(plainWord) ? path : "file://" + QUrl::toPercentEncoding(path, "/");
    }
    // Some characters mean something else in an address when they are encoded: those are quoted.
    QString address = service.toString(QUrl::FullyEncoded | QUrl::RemovePassword);
    return address.contains(plainWord) ? address : '\'' + address.replace("'", "'\\''") + '\'';
}

} // namespace Norlis::Host
