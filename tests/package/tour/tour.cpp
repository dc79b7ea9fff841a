// What an editor does with documents, from sign-in to removal, by two people with one folder: tour FOLDER WORK
// SAMPLE... Each step is printed when it is done; the first one that fails ends the program.

#include <host/account/ServiceAddress.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <functional>

namespace {

using namespace Norlis;
using Host::CloudSession;
using State = PDF::FileInfo::CloudStatus;

void Expect(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        std::exit(EXIT_FAILURE);
    }
    std::puts(what);
}

/// Makes a request and waits for the signal that it ends in.
template <typename Sender, typename Signal>
void Await(const char* what, Sender& sender, Signal signal, const std::function<void()>& request)
{
    QEventLoop loop;
    bool hasCome = false;
    QObject::connect(&sender, signal, &loop, [&] {
        hasCome = true;
        loop.quit();
    });
    QTimer::singleShot(std::chrono::seconds(60), &loop, &QEventLoop::quit);
    request();
    if (!hasCome) {
        loop.exec();
    }
    Expect(hasCome, what);
}

/// Somebody with a program of their own.
struct Person {
    Person(const QString& folder, const Social::OAuth2::AuthInfo& service)
        : files(folder + "/files"),
          session(folder + "/data", service),
          documents(session.Documents(), session.CloudSizes())
    {
        QDir().mkpath(files);
        QObject::connect(&session, &CloudSession::Failed, &session,
                         [this](const Host::CloudProblem& problem) { kind = problem.cause.kind; });
    }

    void SignIn()
    {
        Await("signed in", session.Cloud(), &PDF::Cloud::AbstractCloudManager::AuthorizationCompleted,
              [this] { session.Cloud().Authorization("a folder takes any"); });
        Refresh();
    }

    void Refresh()
    {
        Await("listed", session, &CloudSession::ListRefreshed, [this] { session.Refresh(); });
    }

    QString Id() const
    {
        return documents.index(0).data(Host::CloudDocumentsModel::IdRole).toString();
    }

    QString Path() const
    {
        return documents.index(0).data(Host::CloudDocumentsModel::PathRole).toString();
    }

    bool Is(State state) const
    {
        return documents.index(0).data(Host::CloudDocumentsModel::StateRole).toInt() == static_cast<int>(state);
    }

    void Download(const char* what)
    {
        Await(what, session, &CloudSession::DocumentDownloaded, [this] { session.Download(Id(), files); });
    }

    /// Saves another content, as an editor does.
    void Edit(const QString& content)
    {
        Expect(QFile::remove(Path()) && QFile::copy(content, Path()), "edited");
        Await("looked at", session, &CloudSession::LocalCopyRead, [this] { session.ReadLocalCopy(Path()); });
    }

    const QString files;
    CloudSession session;
    Host::CloudDocumentsModel documents;
    Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other; ///< of the last failure
};

QByteArray ContentOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void Tour(const QString& folder, const QString& work, const QStringList& samples)
{
    Social::OAuth2::AuthInfo service;
    service.serviceUrl = Host::ServiceAddress(folder);
    Person anna(work + "/anna", service);
    Person ben(work + "/ben", service);
    anna.SignIn();
    Expect(QFile::copy(samples.at(0), anna.files + "/plan.pdf"), "written");
    Await("uploaded", anna.session, &CloudSession::DocumentUploaded,
          [&] { anna.session.Upload({anna.files + "/plan.pdf"}); });

    ben.SignIn();
    Await("a picture is there", ben.session, &CloudSession::PreviewStored,
          [&] { ben.session.ShowPreviews({ben.Id()}); });
    ben.Download("downloaded");
    ben.Edit(samples.at(1));
    Expect(ben.Is(State::ChangedLocally), "the change is seen");
    Await("the change is in the cloud", ben.session, &CloudSession::DocumentUploaded,
          [&] { ben.session.UploadChanges(ben.Id()); });

    anna.Edit(samples.at(2));
    Await("the other change was not overwritten", anna.session, &CloudSession::Failed,
          [&] { anna.session.UploadChanges(anna.Id()); });
    Expect(anna.kind == Social::OAuth2::FailureKind::Conflict, "it is called a conflict");
    anna.Refresh();
    Expect(anna.Is(State::ChangedOnBothSides), "both have changed it");
    Await("replaced on purpose", anna.session, &CloudSession::DocumentUploaded,
          [&] { anna.session.ReplaceInCloud(anna.Id()); });

    ben.Refresh();
    Expect(ben.Is(State::ChangedInCloud), "the replacement is seen");
    ben.Download("fetched again");
    Expect(ContentOf(ben.Path()) == ContentOf(samples.at(2)), "it is what was sent");
    Await("removed", ben.session, &CloudSession::DocumentRemoved, [&] { ben.session.Remove(ben.Id()); });
    anna.Refresh();
    Expect(anna.documents.rowCount() == 0, "it is gone for everybody");
}

} // namespace

int main(int argc, char** argv)
try {
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 6) {
        std::fputs("usage: tour FOLDER WORK SAMPLE SAMPLE SAMPLE\n", stderr);
        return 2;
    }
    Tour(arguments.at(1), arguments.at(2), arguments.mid(3));
} catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return EXIT_FAILURE;
}
