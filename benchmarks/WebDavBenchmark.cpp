// How long documents take to and from an Apache on this machine, beside what curl and rclone take for the same work on
// the same server in the same run, so that the ratios mean something on any machine. The protocol object checks and
// hashes what it moves, gives documents their names only when they are whole, and flushes downloads to the disk; curl
// does none of that, so that curl and md5sum one after the other are given too.
//
//   WebDavBenchmark [MiB of the large document, 1024] [small documents, 1000] [documents in the list, 10000] [rounds,
//   3]

#include <tests/servers/WebDavServer.h>

#include <contracts/NorlisCloudProtocol.h>

#include <NorlisTestKit/FaultServer.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

using namespace Norlis::Social;
using Norlis::Test::ServerKind;
using Norlis::Test::WebDavServer;
using CloudFiles = QList<NorlisCloudProtocol::File::FileInfo>;

[[noreturn]] void Stop(const QString& why)
{
    std::fprintf(stderr, "%s\n", qPrintable(why));
    std::exit(1);
}

double Seconds(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// Peak of this process's memory, in MiB, since the last call of ForgetPeak.
double PeakMemory()
{
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    const auto lines = status.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024;
        }
    }
    return 0;
}

void ForgetPeak()
{
    QFile refs("/proc/self/clear_refs");
    refs.open(QIODevice::WriteOnly);
    refs.write("5");
}

/// Watches for how long the event loop of this thread is held up.
class LoopWatch {
public:
    LoopWatch()
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
            longest = std::max(longest, since.nsecsElapsed());
            since.start();
        });
        timer.setTimerType(Qt::PreciseTimer);
        timer.start(1);
        since.start();
    }

    /// Milliseconds.
    double Longest() const
    {
        return static_cast<double>(longest) / 1e6;
    }

private:
    QTimer timer;
    QElapsedTimer since;
    qint64 longest = 0;
};

/// Somebody who is signed in to a collection and waits for what he asks for.
class User {
public:
    User(const WebDavServer& server, const QString& collection) : protocol(Settings(server, collection), "benchmark")
    {
        protocol.auth({{NorlisCloudProtocol::SSO_TOKEN, server.Password()}}, [this](qint64, RequestResult result) {
            Require(result);
            loop.quit();
        });
        loop.exec();
    }

    CloudFiles List()
    {
        CloudFiles files;
        protocol.retriveFileList({}, [&](qint64, RequestResult result, const CloudFiles& found) {
            Require(result);
            files = found;
            loop.quit();
        });
        loop.exec();
        return files;
    }

    QStringList Upload(const QStringList& paths)
    {
        QStringList ids;
        for (const QString& path : paths) {
            protocol.uploadFile(
                path, {{NorlisCloudProtocol::FILE_MIME_TYPE, "application/pdf"}},
                [&, count = paths.size()](qint64, RequestResult result, const NorlisCloudSharingResult& made) {
                    Require(result);
                    ids.append(made.id);
                    QuitAfter(ids.size(), count);
                },
                [](qint64, int) {});
        }
        loop.exec();
        return ids;
    }

    void Download(const QStringList& ids, const QString& folder)
    {
        int done = 0;
        for (const QString& id : ids) {
            protocol.downloadFile(
                {{{NorlisCloudProtocol::ID, id}, {NorlisCloudProtocol::FILE_NAME, folder + '/' + id}}, {}},
                [&](qint64, RequestResult result) {
                    Require(result);
                    QuitAfter(++done, ids.size());
                },
                [](qint64, int) {});
        }
        loop.exec();
    }

    void Remove(const QStringList& ids)
    {
        int done = 0;
        for (const QString& id : ids) {
            protocol.deleteFile({{{NorlisCloudProtocol::ID, id}}, {}}, [&](qint64, RequestResult result) {
                Require(result);
                QuitAfter(++done, ids.size());
            });
        }
        loop.exec();
    }

private:
    static OAuth2::AuthInfo Settings(const WebDavServer& server, const QString& collection)
    {
        OAuth2::AuthInfo settings;
        settings.serviceUrl = server.Address(collection);
        settings.onFailure = [](const OAuth2::Failure& failure) { Stop(failure.what + ": " + failure.reason); };
        return settings;
    }

    static void Require(RequestResult result)
    {
        if (result != Success) {
            Stop("A request has failed");
        }
    }

    void QuitAfter(int done, int count)
    {
        if (done == count) {
            loop.quit();
        }
    }

    QEventLoop loop;
    NorlisCloudProtocol protocol;
};

class Benchmark {
public:
    explicit Benchmark(int rounds) : rounds(rounds), server(ServerKind::Apache)
    {
        server.MakeCollection("ours");
        server.MakeCollection("peers");
        QFile login(local.filePath("netrc"));
        login.open(QIODevice::WriteOnly);
        login.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        login.write("machine 127.0.0.1 login " + server.User().toUtf8() + " password " + server.Password().toUtf8());
        login.close();
        // The first requests that come at once make this server start threads.
        Run("curl", Curl({"-Z", UrlOf("a"), UrlOf("b"), UrlOf("c"), UrlOf("d"), "-o", "/dev/null"}));
    }

    void LargeDocument(int megabytes)
    {
        const QString path = local.filePath("large.pdf");
        WriteNoise(path, megabytes);
        User user(server, "ours");
        for (int round = 0; round < rounds; ++round) {
            const double md5 = Seconds([&] { Run("md5sum", {path}); });
            const double curlUp = Seconds([&] { Run("curl", Curl({"-T", path, UrlOf("large.pdf")})); });
            ForgetPeak();
            LoopWatch watchUp;
            QStringList ids;
            const double up = Seconds([&] { ids = user.Upload({path}); });
            std::printf("up   %5d MiB: %.2f s, curl %.2f s, md5sum %.2f s; ratio to curl %.2f, to both %.2f; "
                        "peak memory %.0f MiB, longest slice %.1f ms\n",
                        megabytes, up, curlUp, md5, up / curlUp, up / (curlUp + md5), PeakMemory(), watchUp.Longest());

            const QString target = local.filePath("curl.pdf");
            const double curlDown = Seconds([&] { Run("curl", Curl({"-o", target, UrlOf("large.pdf")})); });
            const double sync = Seconds([&] { Run("sync", {target}); });
            QFile::remove(target);
            ForgetPeak();
            LoopWatch watchDown;
            const double down = Seconds([&] { user.Download(ids, local.path()); });
            std::printf("down %5d MiB: %.2f s, curl %.2f s, sync %.2f s, md5sum %.2f s; ratio to curl %.2f, to all "
                        "three %.2f; peak memory %.0f MiB, longest slice %.1f ms\n",
                        megabytes, down, curlDown, sync, md5, down / curlDown, down / (curlDown + sync + md5),
                        PeakMemory(), watchDown.Longest());
            std::fflush(stdout);
            QFile::remove(local.filePath(ids.constFirst()));
            user.Remove(ids);
        }
        QFile::remove(path);
    }

    void SmallDocuments(int count)
    {
        QStringList paths;
        for (int number = 0; number < count; ++number) {
            paths.append(local.filePath(QStringLiteral("small-%1.pdf").arg(number)));
            WriteNoise(paths.constLast(), 0, 64);
        }
        User user(server, "ours");
        for (int round = 0; round < rounds; ++round) {
            const double curlUp = Seconds([&] { RunForEach(count, "upload-file = \"%2\"\nurl = \"%1\"\n", paths); });
            LoopWatch watchUp;
            QStringList ids;
            const double up = Seconds([&] { ids = user.Upload(paths); });
            Print("up     ", count, up, curlUp, watchUp);

            const double curlDown = Seconds([&] { RunForEach(count, "url = \"%1\"\noutput = \"%2.back\"\n", paths); });
            QDir().mkpath(local.filePath("down"));
            LoopWatch watchDown;
            const double down = Seconds([&] { user.Download(ids, local.filePath("down")); });
            Print("down   ", count, down, curlDown, watchDown);

            const double curlRemove =
                Seconds([&] { RunForEach(count, "url = \"%1\"\nrequest = \"DELETE\"\n# %2\n", paths); });
            LoopWatch watchRemove;
            const double remove = Seconds([&] { user.Remove(ids); });
            Print("removed", count, remove, curlRemove, watchRemove);
        }
    }

    void LongList(int count)
    {
        server.MakeCollection("long");
        for (int number = 0; number < count; ++number) {
            QFile file(server.Folder() + QStringLiteral("/long/document %1.pdf").arg(number));
            file.open(QIODevice::WriteOnly);
            file.write("%PDF-");
            file.flush(); // or the time would be set before the content
            file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
        }
        User user(server, "long");
        const QString body = local.filePath("propfind.xml");
        QFile file(body);
        file.open(QIODevice::WriteOnly);
        file.write("<d:propfind xmlns:d=\"DAV:\"><d:prop><d:resourcetype/><d:getcontentlength/><d:getlastmodified/>"
                   "<d:getetag/></d:prop></d:propfind>");
        file.close();
        const QString url = server.Address("long").toString(QUrl::RemoveUserInfo);
        for (int round = 0; round < rounds; ++round) {
            const double curl = Seconds([&] {
                Run("curl",
                    Curl({"-X", "PROPFIND", "-H", "Depth: 1", "--data-binary", '@' + body, "-o", "/dev/null", url}));
            });
            const double rclone = Seconds([&] {
                Run("rclone", {"--config", "/dev/null", "lsjson", ":webdav:", "--webdav-url", url, "--webdav-user",
                               server.User(), "--webdav-pass", ObscuredPassword()});
            });
            ForgetPeak();
            LoopWatch watch;
            int listed = 0;
            const double ours = Seconds([&] { listed = user.List().size(); });
            if (listed != count) {
                Stop("The list is not complete");
            }
            std::printf(
                "list of %d: %.3f s, curl %.3f s, rclone %.2f s; ratio to curl %.2f, to rclone %.3f; peak memory "
                "%.0f MiB, longest slice %.1f ms\n",
                count, ours, curl, rclone, ours / curl, ours / rclone, PeakMemory(), watch.Longest());
            std::fflush(stdout);
        }
    }

    /// How long whoever destroys the protocol object waits while an upload hangs, beside how long that takes when
    /// nothing is under way.
    void Destruction()
    {
        const QString path = local.filePath("hanging.pdf");
        WriteNoise(path, 0, 64);
        for (int round = 0; round < rounds; ++round) {
            const double idle = DestroyWhileHanging({}, path);
            for (const char* method : {"PUT", "GET", "MOVE", "PROPFIND"}) {
                const double hanging = DestroyWhileHanging(method, path);
                std::printf("destroyed while %s hangs: %.1f ms, with nothing under way %.1f ms, ratio to 100 ms %.2f\n",
                            method, hanging * 1e3, idle * 1e3, hanging * 10);
            }
            std::fflush(stdout);
        }
    }

private:
    static double DestroyWhileHanging(const QByteArray& method, const QString& path)
    {
        Norlis::TestKit::FaultServer hangs;
        OAuth2::AuthInfo settings;
        settings.serviceUrl = hangs.Address();
        auto protocol = std::make_unique<NorlisCloudProtocol>(settings, "benchmark");
        QEventLoop loop;
        protocol->auth({{NorlisCloudProtocol::SSO_TOKEN, hangs.Password()}}, [&](auto...) { loop.quit(); });
        loop.exec();
        if (!method.isEmpty()) {
            const int before = hangs.Count(method);
            hangs.Misbehave(Norlis::TestKit::When(method.constData()).Always(), Norlis::TestKit::Hangs());
            protocol->uploadFile(
                path, {}, [](auto&&...) {}, [](auto...) {});
            QTimer look;
            QObject::connect(&look, &QTimer::timeout, &loop, [&] {
                if (hangs.Count(method) > before) {
                    loop.quit();
                }
            });
            look.start(1);
            loop.exec();
        }
        return Seconds([&] { protocol.reset(); });
    }

    static void Print(const char* what, int count, double ours, double curl, const LoopWatch& watch)
    {
        std::printf("%d of 64 KiB %s: %.2f s, curl -Z %.2f s, ratio %.2f; longest slice %.1f ms\n", count, what, ours,
                    curl, ours / curl, watch.Longest());
        std::fflush(stdout);
    }

    static void WriteNoise(const QString& path, int megabytes, int kilobytes = 0)
    {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        QByteArray noise(1024, '\0');
        quint32 state = qHash(path);
        for (int written = 0; written < megabytes * 1024 + kilobytes; ++written) {
            for (char& byte : noise) {
                state = state * 1664525 + 1013904223;
                byte = static_cast<char>(state >> 24U);
            }
            file.write(noise);
        }
    }

    QString UrlOf(const QString& name) const
    {
        return server.Address("peers").toString(QUrl::RemoveUserInfo) + name;
    }

    QStringList Curl(const QStringList& arguments) const
    {
        return QStringList{"-s", "--netrc-file", local.filePath("netrc")} + arguments;
    }

    QString ObscuredPassword() const
    {
        QProcess process;
        process.start("rclone", {"obscure", server.Password()});
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    /// One transfer of curl's for each file, many at once.
    void RunForEach(int count, const QString& lines, const QStringList& paths)
    {
        QFile config(local.filePath("config"));
        config.open(QIODevice::WriteOnly);
        QTextStream text(&config);
        for (int number = 0; number < count; ++number) {
            text << lines.arg(UrlOf(QString::number(number)), paths[number]);
        }
        text.flush();
        config.close();
        Run("curl", Curl({"-Z", "--parallel-max", "8", "-K", config.fileName()}));
    }

    static void Run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(program, arguments);
        if (!process.waitForFinished(600'000) || process.exitCode() != 0) {
            Stop(program + " has failed");
        }
    }

    const int rounds;
    WebDavServer server;
    const QTemporaryDir local;
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const auto argument = [&](int index, int otherwise) { return argc > index ? std::atoi(argv[index]) : otherwise; };
    Benchmark benchmark(argument(4, 3));
    benchmark.LargeDocument(argument(1, 1024));
    benchmark.SmallDocuments(argument(2, 1000));
    benchmark.LongList(argument(3, 10'000));
    benchmark.Destruction();
    return 0;
}
