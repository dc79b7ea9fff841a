#include "NextcloudLikeServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QUrlQuery>

// The interfaces beside WebDAV.
namespace Norlis::TestKit {

namespace {

ServerResponse Json(const QJsonObject& object)
{
    return {200,
            {{"Content-Type", "application/json; charset=utf-8"}},
            QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

ServerResponse Picture(const QByteArray& png)
{
    return {200, {{"Content-Type", "image/png"}, {"Cache-Control", "private, max-age=86400"}}, png};
}

QUrlQuery QueryOf(const ServerRequest& request)
{
    return QUrlQuery(QUrl::fromEncoded(request.target).query(QUrl::FullyEncoded));
}

} // namespace

bool NextcloudLikeServer::IsPublic(const ServerRequest& request) const
{
    return request.Path().startsWith("/index.php/login/v2") || request.Path() == "/status.php";
}

std::optional<ServerResponse> NextcloudLikeServer::ServeBesideWebDav(const ServerRequest& request)
{
    const QByteArray path = request.Path();
    if (path == "/status.php") {
        return Json(
            {{"installed", true}, {"maintenance", false}, {"productname", "Nextcloud"}, {"version", "31.0.0.0"}});
    }
    if (path.startsWith("/index.php/login/v2")) {
        return SignIn(request);
    }
    if (path == "/index.php/core/preview") {
        return Preview(request);
    }
    if (path.startsWith("/index.php/avatar/" + UserId()) || path.startsWith("/remote.php/dav/avatars/" + UserId())) {
        return Avatar();
    }
    if (path.startsWith("/ocs/")) {
        return Ocs(request, path.mid(path.indexOf(".php") + 4));
    }
    return {};
}

ServerResponse NextcloudLikeServer::Preview(const ServerRequest& request)
{
    const QUrlQuery query = QueryOf(request);
    const auto size = [&](const QString& key) {
        return query.hasQueryItem(key) ? query.queryItemValue(key).toInt() : 32;
    };
    const auto picture = previews.find(query.queryItemValue("fileId").toLongLong());
    if (size("x") == 0 || size("y") == 0 || !query.hasQueryItem("fileId")) {
        return {400, {}, {}};
    }
    if (picture != previews.end() && !picture->second.isEmpty()) {
        return Picture(picture->second);
    }
    return query.queryItemValue("forceIcon") == "0" ? ServerResponse{404, {}, {}} : Picture("an icon");
}

ServerResponse NextcloudLikeServer::Avatar() const
{
    return avatar.isEmpty() ? ServerResponse{404, {}, {}} : Picture(avatar);
}

ServerResponse NextcloudLikeServer::Ocs(const ServerRequest& request, const QByteArray& what)
{
    if (request.headers.Value("OCS-APIRequest").toLower() != "true") {
        return {412, {}, {}};
    }
    const int success = request.Path().startsWith("/ocs/v1") ? 100 : 200;
    const auto respond = [success](const QJsonObject& data) {
        return Json(
            {{"ocs", QJsonObject{{"meta", QJsonObject{{"status", "ok"}, {"statuscode", success}}}, {"data", data}}}});
    };
    if (what == "/cloud/capabilities") {
        const QJsonObject capabilities = {{"dav", QJsonObject{{"chunking", "1.0"}}},
                                          {"files", QJsonObject{{"bigfilechunking", true}}},
                                          {"checksums", QJsonObject{{"preferredUploadType", "SHA1"}}}};
        return respond({{"version", QJsonObject{{"major", 31}, {"minor", 0}, {"string", "31.0.0"}}},
                        {"capabilities", capabilities}});
    }
    if (what == "/cloud/user") {
        const QJsonObject quota = {{"used", quotaUsed}, {"free", quotaAvailable}, {"quota", quotaAvailable}};
        return respond({{"id", QString::fromLatin1(UserId())},
                        {"display-name", QString("Zo\u00eb Norlis")},
                        {"displayname", QString("Zo\u00eb Norlis")},
                        {"email", "zoe@example.com"},
                        {"quota", quota}});
    }
    if (what == "/core/apppassword" && request.method == "DELETE") {
        password = "revoked";
        return respond({});
    }
    return {404, {}, {}};
}

/// The exchange by which a browser signs a program in.
ServerResponse NextcloudLikeServer::SignIn(const ServerRequest& request)
{
    if (request.method != "POST") {
        return {405, {}, {}};
    }
    const QByteArray path = request.Path();
    if (path == "/index.php/login/v2") {
        pollToken = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
        isSignInApproved = false;
        const QString origin = QString::fromLatin1(Origin());
        return Json({{"poll", QJsonObject{{"token", QString::fromLatin1(pollToken)},
                                          {"endpoint", origin + "/index.php/login/v2/poll"}}},
                     {"login", origin + "/index.php/login/v2/flow/begin"}});
    }
    if (path != "/index.php/login/v2/poll" || !isSignInApproved || request.body != "token=" + pollToken) {
        return {404, {}, {}};
    }
    isSignInApproved = false; // the answer comes once
    return Json({{"server", QString::fromLatin1(Origin())},
                 {"loginName", User()},
                 {"appPassword", QString::fromUtf8(password)}});
}

} // namespace Norlis::TestKit
