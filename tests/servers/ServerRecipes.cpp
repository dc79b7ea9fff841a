#include "ServerRecipes.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <array>
#include <map>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

constexpr uid_t nobody = 65534;

/// Apache refuses to serve as root.
bool ActsAsNobody(ServerKind kind)
{
    return (kind == ServerKind::Apache || kind == ServerKind::ApacheDigest) && geteuid() == 0;
}

[[noreturn]] void Fail(const QString& text)
{
    throw std::runtime_error(text.toStdString());
}

QString Find(const QString& program)
{
    const QString path =
        QStandardPaths::findExecutable(program, {"/usr/sbin", "/usr/bin", "/usr/local/sbin", "/usr/local/bin"});
    if (path.isEmpty()) {
        Fail("There is no program " + program + ". This command installs it: tools/install-packages test servers");
    }
    return path;
}

void Write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        Fail(path + ": " + file.errorString());
    }
}

/// Copies a configuration, with what stands between @ replaced, into the state folder. Returns its path there.
/// \param more what stands between other @, and what replaces it
QString Configure(const QString& name, const ServerPlan& plan, const std::map<QString, QString>& more = {})
{
    QFile file(QString(NORLIS_SERVER_CONFIGURATIONS "/") + name);
    if (!file.open(QIODevice::ReadOnly)) {
        Fail(file.fileName() + ": " + file.errorString());
    }
    QString text = QString::fromUtf8(file.readAll());
    text.replace("@STATE@", plan.state).replace("@DOCUMENTS@", plan.documents).replace("@USER@", plan.user);
    text.replace("@PORT@", QString::number(plan.port)).replace("@PORT_BEHIND@", QString::number(plan.portBehind));
    text.replace("@PASSWORD@", plan.password);
    for (const auto& [key, value] : more) {
        text.replace('@' + key + '@', value);
    }
    const QString path = plan.state + '/' + name;
    Write(path, text.toUtf8());
    return path;
}

/// A file of users as Apache's htpasswd writes it, which other servers understand too.
void WriteUsers(const ServerPlan& plan)
{
    const QByteArray hash = QCryptographicHash::hash(plan.password.toUtf8(), QCryptographicHash::Sha1).toBase64();
    Write(plan.state + "/users", plan.user.toUtf8() + ":{SHA}" + hash + '\n');
}

/// The same as htdigest writes it (RFC 7616, 3.4.2).
void WriteDigestUsers(const ServerPlan& plan)
{
    const QByteArray user = plan.user.toUtf8() + ":Norlis:";
    const QByteArray hash = QCryptographicHash::hash(user + plan.password.toUtf8(), QCryptographicHash::Md5).toHex();
    Write(plan.state + "/digest-users", user + hash + '\n');
}

ProgramStart Apache(const ServerPlan& plan)
{
    WriteUsers(plan);
    QDir().mkpath(plan.state + "/locks");
    GiveToServer(ServerKind::Apache, plan.state + "/locks");
    QStringList arguments = {"-d", plan.state, "-f", Configure("apache.conf", plan), "-DFOREGROUND"};
    if (ActsAsNobody(ServerKind::Apache)) {
        arguments << "-DAS_NOBODY";
    }
    return {Find("apache2"), arguments, {}, plan.state};
}

ProgramStart ApacheDigest(const ServerPlan& plan)
{
    WriteDigestUsers(plan);
    ProgramStart start = Apache(plan);
    start.arguments << "-DDIGEST";
    return start;
}

/// \param configuration path
ProgramStart NginxWith(const QString& configuration, const ServerPlan& plan)
{
    QDir().mkpath(plan.state + "/temporary");
    // Without it, the processes of a server that root starts act as somebody else.
    const QString globals = geteuid() == 0 ? "daemon off; user root;" : "daemon off;";
    return {Find("nginx"),
            {"-p", plan.state, "-c", configuration, "-e", plan.state + "/error.log", "-g", globals},
            {},
            plan.state};
}

ProgramStart Nginx(const ServerPlan& plan)
{
    WriteUsers(plan);
    return NginxWith(Configure("nginx.conf", plan), plan);
}

ProgramStart Lighttpd(const ServerPlan& plan)
{
    WriteUsers(plan);
    QDir().mkpath(plan.state + "/temporary");
    return {Find("lighttpd"), {"-D", "-f", Configure("lighttpd.conf", plan)}, {}, plan.state};
}

ProgramStart Rclone(const ServerPlan& plan)
{
    // Directories are not remembered, because tests change documents behind the server's back.
    return {Find("rclone"),
            {"serve", "webdav", plan.documents, "--addr", "127.0.0.1:" + QString::number(plan.port), "--config",
             "/dev/null", "--dir-cache-time", "0s"},
            {"RCLONE_USER=" + plan.user, "RCLONE_PASS=" + plan.password},
            plan.state};
}

/// For servers of a few lines of their own, which come with these tests.
QStringList Variables(const ServerPlan& plan)
{
    return {"NORLIS_USER=" + plan.user, "NORLIS_PASSWORD=" + plan.password, "NORLIS_DOCUMENTS=" + plan.documents,
            "NORLIS_PORT=" + QString::number(plan.port)};
}

ProgramStart Sabre(const ServerPlan& plan)
{
    return {Find("php"),
            {"-q", "-d", "display_errors=0", "-d", "log_errors=1", "-d", "memory_limit=-1", "-S",
             "127.0.0.1:" + QString::number(plan.port), NORLIS_SERVER_CONFIGURATIONS "/sabre.php"},
            QStringList{"PHP_CLI_SERVER_WORKERS=8"} + Variables(plan),
            plan.state};
}

/// Path of what the target more-servers builds.
QString Built(const QString& name)
{
    const QString path = QStringLiteral(NORLIS_MORE_SERVERS "/") + name;
    if (!QFile::exists(path)) {
        Fail("There is no " + path + ". The target more-servers makes it.");
    }
    return path;
}

ProgramStart Tomcat(const ServerPlan& plan)
{
    const QString home = "/usr/share/tomcat10";
    Configure("tomcat.web.xml", plan);
    Configure("tomcat.users.xml", plan);
    // Compiling more would take longer than the tests do.
    return {Find("java"),
            {"-XX:+UseSerialGC", "-XX:TieredStopAtLevel=1", "-Xmx256m", "-Dcatalina.home=" + home,
             "-Dcatalina.base=" + plan.state, "-Djava.io.tmpdir=" + plan.state, "-cp",
             home + "/bin/bootstrap.jar:" + home + "/bin/tomcat-juli.jar", "org.apache.catalina.startup.Bootstrap",
             "-config", Configure("tomcat.server.xml", plan), "start"},
            {},
            plan.state};
}

ProgramStart Nephele(const ServerPlan& plan)
{
    return {Find("node"), {Built("node/nephele.mjs")}, Variables(plan), plan.state};
}

ProgramStart NpmWebdav(const ServerPlan& plan)
{
    return {Find("node"), {Built("node/npm-webdav.mjs")}, Variables(plan), plan.state};
}

ProgramStart Go(const ServerPlan& plan)
{
    return {Built("go-webdav"), {}, Variables(plan), plan.state};
}

ProgramStart Chezdav(const ServerPlan& plan)
{
    WriteDigestUsers(plan);
    return {Find("chezdav"),
            {"--local", "--no-mdns", "--port", QString::number(plan.port), "--path", plan.documents, "--htdigest",
             plan.state + "/digest-users", "--realm", "Norlis"},
            {},
            plan.state};
}

ProgramStart Squid(const ServerPlan& plan)
{
    const QByteArray hash = QCryptographicHash::hash(plan.password.toUtf8(), QCryptographicHash::Md5).toHex();
    Write(plan.state + "/squid-users", plan.user.toUtf8() + ':' + hash + '\n');
    // Those with different names may run at the same time.
    return {Find("squid"),
            {"-N", "-n", "norlis" + QString::number(plan.port), "-f", Configure("squid.conf", plan)},
            {},
            plan.state};
}

ProgramStart NginxFront(FrontKind kind, const ServerPlan& plan)
{
    // What differs from a front that only passes everything on, whatever its size.
    std::map<QString, QString> parts = {{"HTTP", {}},
                                        {"LISTEN", {}},
                                        {"SERVER", "client_max_body_size 0;"},
                                        {"LOCATION", "/"},
                                        {"LOCATION_BEHIND", {}}};
    switch (kind) {
    case FrontKind::NginxTls:
        parts["LISTEN"] = " ssl";
        parts["SERVER"] += "ssl_certificate certificate.pem; ssl_certificate_key certificate.pem;";
        break;
    case FrontKind::NginxGzip:
        parts["HTTP"] = "gzip on; gzip_proxied any; gzip_min_length 1; gzip_types *;";
        break;
    case FrontKind::NginxRateLimit:
        parts["HTTP"] = "limit_req_zone $server_port zone=all:1m rate=2r/s; limit_req_status 429;";
        parts["SERVER"] += "limit_req zone=all;";
        break;
    case FrontKind::NginxUnbuffered:
        parts["SERVER"] += "proxy_request_buffering off; proxy_buffering off; proxy_http_version 1.1;";
        break;
    case FrontKind::NginxBodyLimit:
        parts["SERVER"] = "client_max_body_size 1m;";
        break;
    case FrontKind::NginxDotFiles:
        parts["SERVER"] += "location ~ /\\. { return 403; }";
        break;
    case FrontKind::NginxSubPath:
        parts["LOCATION"] = "/cloud/";
        parts["LOCATION_BEHIND"] = "/";
        break;
    default:
        Fail("nginx is no such front");
    }
    return NginxWith(Configure("front.nginx.conf", plan, parts), plan);
}

} // namespace

ProgramStart Prepare(ServerKind kind, const ServerPlan& plan)
{
    using Recipe = ProgramStart (*)(const ServerPlan&);
    static constexpr std::array<Recipe, 11> recipes = {Apache, Nginx,   Lighttpd,  Rclone, Sabre,  ApacheDigest,
                                                       Tomcat, Nephele, NpmWebdav, Go,     Chezdav};
    return recipes.at(static_cast<std::size_t>(kind))(plan);
}

ProgramStart Prepare(FrontKind kind, const ServerPlan& plan)
{
    switch (kind) {
    case FrontKind::HaproxyTls:
        return {Find("haproxy"), {"-db", "-f", Configure("front-tls.haproxy.cfg", plan)}, {}, plan.state};
    case FrontKind::Tinyproxy:
        return {Find("tinyproxy"), {"-d", "-c", Configure("tinyproxy.conf", plan)}, {}, plan.state};
    case FrontKind::Squid:
        return Squid(plan);
    default:
        return NginxFront(kind, plan);
    }
}

void GiveToServer(ServerKind kind, const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    if (ActsAsNobody(kind) && chown(path.constData(), nobody, nobody) != 0) {
        Fail(folder + " cannot be given to the server");
    }
}

} // namespace Norlis::Test
