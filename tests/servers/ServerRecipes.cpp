#include "ServerRecipes.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <array>
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
        Fail("There is no program " + program);
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
QString Configure(const QString& name, const ServerPlan& plan)
{
    QFile file(QString(NORLIS_SERVER_CONFIGURATIONS "/") + name);
    if (!file.open(QIODevice::ReadOnly)) {
        Fail(file.fileName() + ": " + file.errorString());
    }
    QString text = QString::fromUtf8(file.readAll());
    text.replace("@STATE@", plan.state).replace("@DOCUMENTS@", plan.documents).replace("@USER@", plan.user);
    text.replace("@PORT@", QString::number(plan.port)).replace("@PORT_BEHIND@", QString::number(plan.portBehind));
    text.replace("@PASSWORD@", plan.password);
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

ProgramStart NginxWith(const QString& configuration, const ServerPlan& plan)
{
    QDir().mkpath(plan.state + "/temporary");
    // Without it, the processes of a server that root starts act as somebody else.
    const QString globals = geteuid() == 0 ? "daemon off; user root;" : "daemon off;";
    return {Find("nginx"),
            {"-p", plan.state, "-c", Configure(configuration, plan), "-e", plan.state + "/error.log", "-g", globals},
            {},
            plan.state};
}

ProgramStart Nginx(const ServerPlan& plan)
{
    WriteUsers(plan);
    return NginxWith("nginx.conf", plan);
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

ProgramStart Sabre(const ServerPlan& plan)
{
    return {Find("php"),
            {"-q", "-d", "display_errors=stderr", "-d", "memory_limit=-1", "-S",
             "127.0.0.1:" + QString::number(plan.port), NORLIS_SERVER_CONFIGURATIONS "/sabre.php"},
            {"PHP_CLI_SERVER_WORKERS=8", "NORLIS_USER=" + plan.user, "NORLIS_PASSWORD=" + plan.password,
             "NORLIS_DOCUMENTS=" + plan.documents},
            plan.state};
}

} // namespace

ProgramStart Prepare(ServerKind kind, const ServerPlan& plan)
{
    using Recipe = ProgramStart (*)(const ServerPlan&);
    static constexpr std::array<Recipe, 6> recipes = {Apache, Nginx, Lighttpd, Rclone, Sabre, ApacheDigest};
    return recipes.at(static_cast<std::size_t>(kind))(plan);
}

ProgramStart Prepare(FrontKind kind, const ServerPlan& plan)
{
    switch (kind) {
    case FrontKind::NginxTls:
        return NginxWith("front-tls.nginx.conf", plan);
    case FrontKind::NginxGzip:
        return NginxWith("front-gzip.nginx.conf", plan);
    case FrontKind::NginxRateLimit:
        return NginxWith("front-limit.nginx.conf", plan);
    case FrontKind::HaproxyTls:
        return {Find("haproxy"), {"-db", "-f", Configure("front-tls.haproxy.cfg", plan)}, {}, plan.state};
    case FrontKind::Tinyproxy:
        return {Find("tinyproxy"), {"-d", "-c", Configure("tinyproxy.conf", plan)}, {}, plan.state};
    }
    Fail("There is no such front");
}

void GiveToServer(ServerKind kind, const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    if (ActsAsNobody(kind) && chown(path.constData(), nobody, nobody) != 0) {
        Fail(folder + " cannot be given to the server");
    }
}

} // namespace Norlis::Test
