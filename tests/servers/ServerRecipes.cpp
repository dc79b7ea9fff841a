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
    return kind == ServerKind::Apache && geteuid() == 0;
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
    text.replace("@PORT@", QString::number(plan.port));
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

ProgramStart Nginx(const ServerPlan& plan)
{
    WriteUsers(plan);
    QDir().mkpath(plan.state + "/temporary");
    // Without it, the processes of a server that root starts act as somebody else.
    const QString globals = geteuid() == 0 ? "daemon off; user root;" : "daemon off;";
    return {Find("nginx"),
            {"-p", plan.state, "-c", Configure("nginx.conf", plan), "-e", plan.state + "/error.log", "-g", globals},
            {},
            plan.state};
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
    static constexpr std::array<Recipe, 5> recipes = {Apache, Nginx, Lighttpd, Rclone, Sabre};
    return recipes.at(static_cast<std::size_t>(kind))(plan);
}

void GiveToServer(ServerKind kind, const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    if (ActsAsNobody(kind) && chown(path.constData(), nobody, nobody) != 0) {
        Fail(folder + " cannot be given to the server");
    }
}

} // namespace Norlis::Test
