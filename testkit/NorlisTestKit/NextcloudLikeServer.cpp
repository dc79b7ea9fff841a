#include "NextcloudLikeServer.h"

#include <QCryptographicHash>

namespace Norlis::TestKit {

namespace {

constexpr const char* userId = "u-4711";
const QByteArray files = "/remote.php/dav/files/" + QByteArray(userId);
const QByteArray uploads = "/remote.php/dav/uploads/" + QByteArray(userId);
const QString ownCloud = "http://owncloud.org/ns";
const QString nextcloud = "http://nextcloud.org/ns";
const PropertyName checksums = {ownCloud, "checksums"};

/// Name of the class in an error body, without its namespace.
QByteArray ExceptionOf(int status)
{
    static const std::map<int, QByteArray> names = {
        {400, "BadRequest"},         {401, "NotAuthenticated"}, {403, "Forbidden"},
        {404, "NotFound"},           {405, "MethodNotAllowed"}, {409, "Conflict"},
        {412, "PreconditionFailed"}, {423, "Locked"},           {507, "InsufficientStorage"}};
    const auto place = names.find(status);
    return place == names.end() ? "InternalServerError" : place->second;
}

/// What the header that asks for hashes wants to know of a body.
ServerHeaders HashesOf(const ServerRequest& request)
{
    static const std::map<QByteArray, QCryptographicHash::Algorithm> algorithms = {
        {"md5", QCryptographicHash::Md5}, {"sha1", QCryptographicHash::Sha1}, {"sha256", QCryptographicHash::Sha256}};
    ServerHeaders headers;
    const auto algorithm = algorithms.find(request.headers.Value("X-Hash").toLower());
    if (algorithm != algorithms.end()) {
        headers.emplace_back("X-Hash-" + algorithm->first.toUpper(),
                             QCryptographicHash::hash(request.body, algorithm->second).toHex());
    }
    return headers;
}

} // namespace

NextcloudLikeServer::NextcloudLikeServer()
{
    With([this](MemoryTree& own) {
        for (const QByteArray& path :
             {QByteArray("/remote.php"), QByteArray("/remote.php/dav"), QByteArray("/remote.php/dav/files"),
              QByteArray("/remote.php/dav/uploads"), files, uploads, DecodedPath(CollectionPath())}) {
            own.MakeCollection(path);
        }
        own.moreProperties = [this](const MemoryNode& node, const PropertyName& name) {
            return DialectProperty(node, name);
        };
    });
}

NextcloudLikeServer::~NextcloudLikeServer()
{
    Stop();
}

QByteArray NextcloudLikeServer::CollectionPath() const
{
    return files + "/Documents/";
}

QByteArray NextcloudLikeServer::UserId() const
{
    return userId;
}

void NextcloudLikeServer::SetQuota(qint64 used, qint64 available)
{
    With([&](MemoryTree&) {
        quotaUsed = used;
        quotaAvailable = available;
    });
}

void NextcloudLikeServer::SetPreview(const QString& name, const QByteArray& png)
{
    const qint64 id = FileId(name);
    With([&](MemoryTree&) { previews[id] = png; });
}

void NextcloudLikeServer::SetAvatar(const QByteArray& png)
{
    With([&](MemoryTree&) { avatar = png; });
}

void NextcloudLikeServer::SetPermissions(const QString& name, const QByteArray& letters)
{
    const qint64 id = FileId(name);
    With([&](MemoryTree&) { permissions[id] = letters; });
}

void NextcloudLikeServer::ApproveSignIn()
{
    With([&](MemoryTree&) { isSignInApproved = true; });
}

qint64 NextcloudLikeServer::FileId(const QString& name)
{
    qint64 id = 0;
    With([&](MemoryTree& own) {
        const MemoryNode* node = own.Find(CollectionPath() + name.toUtf8());
        id = node == nullptr ? 0 : node->number;
    });
    return id;
}

ServerResponse NextcloudLikeServer::Serve(const ServerRequest& request)
{
    const auto answer = ServeBesideWebDav(request);
    return answer ? *answer : WithErrorBody(request, ServeWebDav(request));
}

ServerResponse NextcloudLikeServer::ServeWebDav(const ServerRequest& request)
{
    const QByteArray path = request.Path();
    const bool isOfAnUpload = path.startsWith(uploads);
    const bool needsDestination = isOfAnUpload && (request.method == "MKCOL" || request.method == "PUT");
    if (needsDestination && !request.headers.Has("Destination")) {
        return {400, {}, {}};
    }
    if (request.method == "PUT") {
        return Store(request);
    }
    if (request.method == "MOVE") {
        return isOfAnUpload && path.endsWith("/.file") ? Assemble(request) : Move(request);
    }
    return tree.Answer(request);
}

ServerResponse NextcloudLikeServer::WithErrorBody(const ServerRequest& request, ServerResponse answer) const
{
    if (answer.status >= 400 && answer.body.isEmpty() && request.method != "HEAD") {
        answer.headers.Set("Content-Type", "application/xml; charset=utf-8");
        answer.body =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<d:error xmlns:d=\"DAV:\" xmlns:s=\"http://sabredav.org/ns\"><s:exception>Sabre\\DAV\\Exception\\" +
            ExceptionOf(answer.status) + "</s:exception><s:message>" + request.method + " of " +
            EscapedForXml(request.Path()) + " is not possible</s:message></d:error>";
    }
    return answer;
}

/// Adds the headers that say which document it is and in which version.
ServerResponse NextcloudLikeServer::Identified(ServerResponse answer, const QByteArray& path)
{
    const MemoryNode* node = tree.Find(path);
    if (answer.status < 300 && node != nullptr) {
        answer.headers.Set("ETag", node->etag);
        answer.headers.Set("OC-ETag", node->etag);
        answer.headers.Set("OC-FileId", QByteArray::number(node->number).rightJustified(8, '0') + "ocnorlis");
    }
    return answer;
}

ServerResponse NextcloudLikeServer::Store(const ServerRequest& request)
{
    ServerResponse answer = tree.Answer(request);
    MemoryNode* node = tree.Find(request.Path());
    if (answer.status >= 300 || node == nullptr) {
        return answer;
    }
    node->properties.erase(checksums);
    if (request.headers.Has("OC-Checksum")) {
        node->properties[checksums] = request.headers.Value("OC-Checksum"); // which the server does not verify
    }
    if (request.headers.Has("X-OC-Mtime")) {
        node->modifiedAt = QDateTime::fromSecsSinceEpoch(request.headers.Value("X-OC-Mtime").toLongLong(), Qt::UTC);
        answer.headers.Set("X-OC-Mtime", "accepted");
    }
    for (const auto& [name, value] : HashesOf(request)) {
        answer.headers.Set(name, value);
    }
    return Identified(answer, request.Path());
}

ServerResponse NextcloudLikeServer::Move(const ServerRequest& request)
{
    return Identified(tree.Answer(request), DecodedPath(request.headers.Value("Destination")));
}

/// Makes a document of the chunks beside the name ".file", in the order of their names.
ServerResponse NextcloudLikeServer::Assemble(const ServerRequest& request)
{
    const QByteArray folder = request.Path().left(request.Path().lastIndexOf('/'));
    const QByteArray target = DecodedPath(request.headers.Value("Destination"));
    ServerRequest whole = request;
    whole.method = "PUT";
    whole.target = EncodedPath(target);
    const QStringList names = tree.NamesIn(folder);
    for (const QString& name : names) {
        whole.body += tree.Find(folder + '/' + name.toUtf8())->content;
    }
    if (tree.Find(folder) == nullptr || !request.headers.Has("Destination")) {
        return {tree.Find(folder) == nullptr ? 404 : 400, {}, {}};
    }
    const QByteArray total = request.headers.Value("OC-Total-Length");
    if (!total.isEmpty() && total.toLongLong() != whole.body.size()) {
        return {400, {}, {}};
    }
    ServerResponse answer = Store(whole);
    if (answer.status < 300) {
        tree.Remove(folder);
    }
    return answer;
}

std::optional<QByteArray> NextcloudLikeServer::DialectProperty(const MemoryNode& node, const PropertyName& name) const
{
    const QString& local = name.second;
    if (name.first == ownCloud && local == "fileid") {
        return QByteArray::number(node.number);
    }
    if (name.first == ownCloud && local == "id") {
        return QByteArray::number(node.number).rightJustified(8, '0') + "ocnorlis";
    }
    if (name.first == ownCloud && local == "size") {
        return QByteArray::number(node.isCollection ? quotaUsed : node.content.size());
    }
    if (name.first == ownCloud && local == "permissions") {
        const auto letters = permissions.find(node.number);
        const QByteArray usual = node.isCollection ? "RGDNVCK" : "RGDNVW";
        return letters != permissions.end() ? letters->second : usual;
    }
    if (name == checksums) {
        const auto sums = node.properties.find(checksums);
        return sums == node.properties.end() ? std::nullopt
                                             : std::optional("<oc:checksum xmlns:oc=\"" + ownCloud.toLatin1() + "\">" +
                                                             EscapedForXml(sums->second) + "</oc:checksum>");
    }
    if (name.first == nextcloud && local == "has-preview") {
        const auto picture = previews.find(node.number);
        return QByteArray(picture != previews.end() && !picture->second.isEmpty() ? "true" : "false");
    }
    if (name.first == "DAV:" && node.isCollection && local == "quota-used-bytes") {
        return QByteArray::number(quotaUsed);
    }
    if (name.first == "DAV:" && node.isCollection && local == "quota-available-bytes") {
        return QByteArray::number(quotaAvailable);
    }
    return {};
}

} // namespace Norlis::TestKit
