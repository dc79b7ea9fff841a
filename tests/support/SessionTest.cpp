#include "SessionTest.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QCryptographicHash>
#include <QDir>
#include <QTest>

namespace Norlis::Test {

using Host::CloudProblem;
using Host::CloudSession;
using Social::NorlisCloudProtocol;

namespace {

constexpr int timeout = 20'000; // milliseconds; only a failing test waits for so long

std::string Line(const std::string& signal, const QStringList& arguments)
{
    return signal + '(' + arguments.join(", ").toStdString() + ')';
}

const char* NameOf(CloudProblem::Request request)
{
    switch (request) {
    case CloudProblem::Request::SignIn:
        return "SignIn";
    case CloudProblem::Request::List:
        return "List";
    case CloudProblem::Request::Upload:
        return "Upload";
    case CloudProblem::Request::Download:
        return "Download";
    case CloudProblem::Request::Remove:
        return "Remove";
    case CloudProblem::Request::Preview:
        return "Preview";
    case CloudProblem::Request::Quota:
        return "Quota";
    }
    return "";
}

} // namespace

std::string HashOf(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex().toStdString();
}

CloudEntry EntryOf(const QString& id, const QByteArray& content)
{
    CloudEntry entry;
    entry.id = id;
    entry.name = id + ".pdf";
    entry.size = content.size();
    entry.md5Hash = QString::fromStdString(HashOf(content));
    entry.createdAt = "2024-02-29T12:30:45Z";
    entry.modifiedAt = "2025-03-01T06:07:08Z";
    return entry;
}

Social::NorlisCloudSharingResult SharingOf(const QString& id, const QString& name)
{
    Social::NorlisCloudSharingResult sharing;
    sharing.isPrivate = false;
    sharing.id = id;
    sharing.fileName = name;
    sharing.downloadUrl = QUrl("https://cloud.example/" + id);
    sharing.createdAt = QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC);
    sharing.modifiedAt = QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC);
    sharing.lifetime = 3600;
    return sharing;
}

SessionTest::SessionTest()
{
    QDir().mkpath(folder);
    Open();
}

SessionTest::~SessionTest() = default;

void SessionTest::Open()
{
    session = service.serviceUrl.isEmpty() ? std::make_unique<CloudSession>(dataFolder, protocol)
                                           : std::make_unique<CloudSession>(dataFolder, service);
    const auto note = [this](const std::string& signal, const QStringList& arguments) {
        events.push_back(Line(signal, arguments));
    };
    const auto context = session.get();
    QObject::connect(
        context, &CloudSession::ListRefreshed, context,
        [=](const QStringList& added, const QStringList& changed, const QStringList& removed) {
            note("ListRefreshed", {'+' + added.join(' '), '~' + changed.join(' '), '-' + removed.join(' ')});
        });
    QObject::connect(context, &CloudSession::DocumentUploaded, context, [=](const QString& path, const QString& id) {
        note("DocumentUploaded", {QFileInfo(path).fileName(), id});
    });
    QObject::connect(context, &CloudSession::UploadCanceled, context,
                     [=](const QString& path) { note("UploadCanceled", {QFileInfo(path).fileName()}); });
    QObject::connect(context, &CloudSession::DocumentDownloaded, context, [=](const QString& id, const QString& path) {
        note("DocumentDownloaded", {id, QDir(folder).relativeFilePath(path)});
    });
    QObject::connect(context, &CloudSession::DownloadCanceled, context,
                     [=](const QString& id) { note("DownloadCanceled", {id}); });
    QObject::connect(context, &CloudSession::DocumentRemoved, context,
                     [=](const QString& id) { note("DocumentRemoved", {id}); });
    QObject::connect(context, &CloudSession::RemovalPendingChanged, context,
                     [=](const QString& id, bool isPending) { note(isPending ? "Hidden" : "Shown", {id}); });
    QObject::connect(context, &CloudSession::ReadyToClose, context, [=] { note("ReadyToClose", {}); });
    QObject::connect(context, &CloudSession::UploadWaiting, context,
                     [=](const QString& path) { note("UploadWaiting", {QFileInfo(path).fileName()}); });
    QObject::connect(context, &CloudSession::DownloadWaiting, context,
                     [=](const QString& id) { note("DownloadWaiting", {id}); });
    QObject::connect(context, &CloudSession::PreviewStored, context,
                     [=](const QString& id, const QString& size, const QString& path) {
                         note("PreviewStored", {id, size, QFileInfo(path).fileName()});
                     });
    QObject::connect(context, &CloudSession::Failed, context, [=](const CloudProblem& reported) {
        problem = reported;
        const auto subject =
            reported.subject.startsWith(root.path()) ? QFileInfo(reported.subject).fileName() : reported.subject;
        note("Failed", {NameOf(reported.request), subject, reported.message, reported.cause.reason});
    });
}

void SessionTest::Reopen()
{
    session.reset();
    Open();
}

std::vector<std::string> SessionTest::Events()
{
    return std::exchange(events, {});
}

bool SessionTest::WaitForEvent(const std::string& beginning, std::ptrdiff_t count)
{
    return QTest::qWaitFor([&] { return CountOf(beginning) >= count; }, timeout);
}

std::ptrdiff_t SessionTest::CountOf(const std::string& beginning) const
{
    return std::count_if(events.begin(), events.end(), [&](const auto& line) { return line.rfind(beginning, 0) == 0; });
}

bool SessionTest::WaitForCalls(const std::string& operation, std::size_t count)
{
    return QTest::qWaitFor([&] { return protocol->CallsOf(operation).size() >= count; }, timeout);
}

void SessionTest::LetWorkFinish()
{
    // Files are hashed one after the other, so everything that was begun earlier has been dealt with when the last one
    // of these is sent: hashing twice covers what begins with a hash and ends with another one.
    const bool wasSignedIn = std::exchange(protocol->signedIn, true);
    const auto refused = std::exchange(protocol->refused, {});
    const auto before = events;
    for (int round = 0; round < 3; ++round) {
        const auto path = Write("fence " + QString::number(++fences), "fence");
        const auto uploads = protocol->CallsOf("uploadFile").size();
        session->Upload({path});
        ASSERT_TRUE(WaitForCalls("uploadFile", uploads + 1));
        session->CancelUpload(path);
        ASSERT_TRUE(WaitForEvent("UploadCanceled(fence " + std::to_string(fences)));
        QFile::remove(path);
    }
    events.erase(std::remove_if(events.begin(), events.end(),
                                [](const auto& line) { return line.rfind("UploadCanceled(fence ", 0) == 0; }),
                 events.end());
    protocol->signedIn = wasSignedIn;
    protocol->refused = refused;
}

QString SessionTest::PathOf(const QString& name) const
{
    return folder + '/' + name;
}

QString SessionTest::Write(const QString& name, const QByteArray& content)
{
    QFile file(PathOf(name));
    EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size()) << name.toStdString();
    return file.fileName();
}

QByteArray SessionTest::Read(const QString& path) const
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList SessionTest::FilesIn(const QString& path) const
{
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

void SessionTest::Refresh(const QList<CloudEntry>& entries)
{
    const auto lists = protocol->CallsOf("retriveFileList").size();
    const auto refreshes = CountOf("ListRefreshed");
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", lists + 1));
    Answer("retriveFileList", Social::Success, entries);
    ASSERT_TRUE(WaitForEvent("ListRefreshed", refreshes + 1));
}

void SessionTest::Upload(const QString& path, const QString& id)
{
    const auto uploads = protocol->CallsOf("uploadFile").size();
    session->Upload({path});
    ASSERT_TRUE(WaitForCalls("uploadFile", uploads + 1));
    const auto before = CountOf("DocumentUploaded");
    Answer("uploadFile", Social::Success, SharingOf(id, QFileInfo(path).fileName()));
    ASSERT_TRUE(WaitForEvent("DocumentUploaded", before + 1));
}

void SessionTest::Download(const QString& id, const QByteArray& content)
{
    const auto downloads = protocol->CallsOf("downloadFile").size();
    session->Download(id, folder);
    ASSERT_TRUE(WaitForCalls("downloadFile", downloads + 1));
    const auto before = CountOf("DocumentDownloaded");
    Deliver(content);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded", before + 1));
}

void SessionTest::Deliver(const QByteArray& content)
{
    QFile file(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME]);
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
    file.close();
    Answer("downloadFile", Social::Success);
}

std::shared_ptr<PDF::FileInfo> SessionTest::Held(const QString& id)
{
    return session->Documents().GetFileInfo(id);
}

Status SessionTest::StatusOf(const QString& id)
{
    const auto held = Held(id);
    return held ? held->GetCloudStatus() : Status::NoSuchDocument;
}

QStringList SessionTest::Ids()
{
    QStringList ids;
    for (int index = 0; index < session->Documents().FilesCount(); ++index) {
        ids.append(session->Documents().GetDocumentId(index));
    }
    return ids;
}

void SessionTest::AnswerError(const std::string& operation, const QString& reason, Social::OAuth2::FailureKind kind)
{
    protocol->Fail(protocol->LastId(operation), reason, kind);
}

} // namespace Norlis::Test
