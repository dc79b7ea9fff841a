// Uses two sessions, one over a folder and one over a WebDAV server, for as long as one likes, and says once a minute
// what that takes: memory, descriptors, threads and files should stay where they are after the first minutes.
//
//   Soak <seconds> <folder with PDF documents> [percent of a core that it takes, 15 unless told]

#include <tests/support/UsedHeap.h>

#include <host/session/CloudSession.h>

#include <NorlisTestKit/FaultServer.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <glog/logging.h>

#include <cstdio>

#include <sys/resource.h>

namespace {

using namespace Norlis;
using Host::CloudProblem;
using Host::CloudSession;
using PDF::Cloud::AbstractCloudManager;

constexpr int mostDocuments = 20;          // of a session
constexpr double usualShare = 0.15;        // of a core that the whole program takes, its renderers included
constexpr int timeBetweenSteps = 100;      // milliseconds between two steps, at least
constexpr qint64 longestStep = 5 * 60'000; // milliseconds; a step that takes longer never ends
constexpr int millisecondsPerMinute = 60'000;

QByteArray Read(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void Write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()) {
        qFatal("%s cannot be written", qPrintable(path));
    }
}

/// Seconds of a processor that this process and those of its children which have ended took.
double ProcessorTime()
{
    double seconds = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        for (const auto& time : {usage.ru_utime, usage.ru_stime}) {
            seconds += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
        }
    }
    return seconds;
}

/// Does one thing after the other with a session, as its user would, and nothing while something runs.
class User : public QObject {
public:
    User(const QString& folder, const Social::OAuth2::AuthInfo& service, const QString& token,
         const std::vector<QByteArray>& contents, quint32 seed)
        : contents(contents),
          random(seed),
          name(QFileInfo(folder).fileName()),
          folders{folder + "/documents", folder + "/elsewhere"},
          session(folder + "/data", service)
    {
        for (const QString& made : folders) {
            QDir().mkpath(made);
        }
        connect(&session.Cloud(), &AbstractCloudManager::AuthorizationCompleted, this, [this] { Done(); });
        connect(&session, &CloudSession::ListRefreshed, this, [this] { DoneWith(CloudProblem::Request::List); });
        connect(&session, &CloudSession::DocumentUploaded, this, [this] { DoneWith(CloudProblem::Request::Upload); });
        connect(&session, &CloudSession::DocumentDownloaded, this, &User::RemoveOtherCopy);
        connect(&session, &CloudSession::DocumentRemoved, this, [this] { DoneWith(CloudProblem::Request::Remove); });
        connect(&session, &CloudSession::PreviewStored, this, [this](const QString& id) { CountPreview(id); });
        connect(&session, &CloudSession::Failed, this, &User::NoteProblem);
        session.Cloud().Authorization(token);
    }

    bool IsBusy() const
    {
        return isBusy;
    }

    void Step()
    {
        if (since.isValid() && isBusy && since.hasExpired(longestStep)) {
            qFatal("A step that was begun %lld ms ago has no end: request %d", since.elapsed(),
                   static_cast<int>(running));
        }
        if (isBusy) {
            return;
        }
        isBusy = true;
        since.start();
        const int count = session.Documents().FilesCount();
        const auto kind = random.bounded(6);
        if (count == 0 || (kind == 0 && count < mostDocuments)) {
            running = CloudProblem::Request::Upload;
            const auto target = folders[0] + QStringLiteral("/%1 %2.pdf").arg(name).arg(++lastNumber);
            Write(target, SomeContent());
            session.Upload({target});
            return;
        }
        if (kind == 1) {
            running = CloudProblem::Request::List;
            session.Refresh();
            return;
        }
        const int index = static_cast<int>(random.bounded(static_cast<quint32>(count)));
        document = session.Documents().GetDocumentId(index);
        path = session.Documents().GetDocumentPath(index);
        if (kind == 2) {
            running = CloudProblem::Request::Preview;
            previewsToCome = 3;
            session.FetchPreviews(document);
        } else if (kind == 3 && count > mostDocuments / 2) {
            running = CloudProblem::Request::Remove;
            QFile::remove(path);
            session.Remove(document);
        } else if (kind == 4 && !path.isEmpty()) {
            running = CloudProblem::Request::Upload;
            Write(path, SomeContent());
            session.UploadChanges(document);
        } else {
            running = CloudProblem::Request::Download;
            session.Download(document, folders[path.startsWith(folders[0] + '/') ? 1 : 0]);
        }
    }

    int Documents()
    {
        return session.Documents().FilesCount();
    }

    int operations = 0;
    int failures = 0;

private:
    QByteArray SomeContent()
    {
        const auto& content = contents[random.bounded(static_cast<quint32>(contents.size()))];
        return content + "\n% " + QByteArray::number(random.generate64()) + '\n';
    }

    void Done()
    {
        isBusy = false;
        ++operations;
    }

    void DoneWith(CloudProblem::Request request)
    {
        if (isBusy && running == request) {
            Done();
        }
    }

    void CountPreview(const QString& id)
    {
        if (running == CloudProblem::Request::Preview && id == document && --previewsToCome == 0) {
            DoneWith(running);
        }
    }

    void RemoveOtherCopy(const QString&, const QString& newPath)
    {
        if (path != newPath) {
            QFile::remove(path);
        }
        DoneWith(CloudProblem::Request::Download);
    }

    void NoteProblem(const CloudProblem& problem)
    {
        const bool isOfRemoved =
            problem.request == CloudProblem::Request::Preview && !session.Documents().GetFileInfo(problem.subject);
        if (!isOfRemoved) { // whose pictures a refresh asked for
            ++failures;
            std::fprintf(stderr, "%s: %s: %s\n", qPrintable(problem.subject), qPrintable(problem.message),
                         qPrintable(problem.cause.reason));
        }
        if (problem.request == CloudProblem::Request::Preview) {
            CountPreview(problem.subject);
        } else {
            DoneWith(problem.request);
        }
    }

    const std::vector<QByteArray>& contents;
    QRandomGenerator random;
    const QString name; ///< in those of its documents: ids are made of names, and all pictures are in one folder
    const std::array<QString, 2> folders;
    CloudSession session;
    bool isBusy = true;
    CloudProblem::Request running = CloudProblem::Request::SignIn;
    QElapsedTimer since;
    int lastNumber = 0;
    int previewsToCome = 0;
    QString document;
    QString path; ///< of its local copy when the step began
};

int CountOf(const QString& folder, QDirIterator::IteratorFlag flag = QDirIterator::NoIteratorFlags)
{
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, flag);
    int count = 0;
    for (; entries.hasNext(); entries.next()) {
        ++count;
    }
    return count;
}

/// KiB
qint64 ResidentMemory()
{
    const QByteArray status = Read("/proc/self/status");
    const int begin = status.indexOf("VmRSS:") + 6;
    return status.mid(begin, status.indexOf("kB", begin) - begin).trimmed().toLongLong();
}

void PrintRow(qint64 minutes, User& first, User& second, const QString& root)
{
    std::printf("%7lld %10d %8d %9d %9lld %9lld %11d %7d %6d %8.1f\n", minutes, first.operations + second.operations,
                first.failures + second.failures, first.Documents() + second.Documents(), Test::UsedHeap() / 1024,
                ResidentMemory(), CountOf("/proc/self/fd") - 1, CountOf("/proc/self/task"),
                CountOf(root, QDirIterator::Subdirectories), ProcessorTime());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    const QTemporaryDir root;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TMPDIR", QFile::encodeName(root.path())); // the library stores pictures there
    const QGuiApplication application(argc, argv);
    FLAGS_logtostderr = true;
    FLAGS_minloglevel = google::GLOG_WARNING;
    google::InitGoogleLogging(argv[0]);

    const auto arguments = QGuiApplication::arguments();
    const qint64 duration = arguments.value(1).toLongLong() * 1000;
    const double share = arguments.size() > 3 ? arguments[3].toDouble() / 100 : usualShare;
    std::vector<QByteArray> contents;
    for (const auto& file : QDir(arguments.value(2)).entryInfoList({"*.pdf"}, QDir::Files)) {
        contents.push_back(Read(file.filePath()));
    }
    if (duration <= 0 || share <= 0 || contents.empty()) {
        std::fputs("Usage: Soak <seconds> <folder with PDF documents> [percent of a core]\n", stderr);
        return 2;
    }

    TestKit::FaultServer server;
    Social::OAuth2::AuthInfo overFolder;
    QDir().mkpath(root.filePath("cloud"));
    overFolder.serviceUrl = QUrl::fromLocalFile(root.filePath("cloud"));
    Social::OAuth2::AuthInfo overServer;
    overServer.serviceUrl = server.Address();
    std::array<std::unique_ptr<User>, 2> users = {
        std::make_unique<User>(root.filePath("first"), overFolder, "token", contents, 1),
        std::make_unique<User>(root.filePath("second"), overServer, server.Password(), contents, 2),
    };

    QElapsedTimer elapsed;
    elapsed.start();
    QTimer steps;
    QObject::connect(&steps, &QTimer::timeout, [&] {
        server.ForgetRequests();
        if (ProcessorTime() < share * static_cast<double>(elapsed.elapsed()) * 1e-3) {
            for (const auto& user : users) {
                user->Step();
            }
        }
    });
    steps.start(timeBetweenSteps);

    std::puts("minutes operations failures documents  heap/KiB   RSS/KiB descriptors threads  files CPU time/s");
    qint64 minutes = 0;
    QTimer report;
    QObject::connect(&report, &QTimer::timeout, [&] { PrintRow(++minutes, *users[0], *users[1], root.path()); });
    report.start(millisecondsPerMinute);
    QTimer::singleShot(static_cast<int>(duration), &application, &QCoreApplication::quit);
    QGuiApplication::exec();

    steps.stop();
    const int failures = users[0]->failures + users[1]->failures;
    const int operations = users[0]->operations + users[1]->operations;
    std::printf("%d operations, %d of them failed\n", operations, failures);
    return failures == 0 ? 0 : 1;
}
