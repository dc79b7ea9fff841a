#include "FolderSessionTest.h"

#include <tests/support/PdfFiles.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

namespace Norlis::Test {

namespace {

using PDF::Cloud::AbstractCloudManager;

using CloudSessionFolderTest = FolderSessionTest;

TEST_F(CloudSessionFolderTest, ACopyWithChangesWhoseDocumentIsGoneIsMentioned)
{
    Put("plan.pdf", "plan");
    Put("bill.pdf", "bill");
    RefreshNow();
    QSignalSpy left(session.get(), &Host::CloudSession::CopyLeftBehind);
    for (const char* const name : {"plan.pdf", "bill.pdf"}) {
        session->Download(IdOf(name), QFileInfo(PathOf(name)).path());
        ASSERT_TRUE(WaitForEvent(std::string("DocumentDownloaded")));
        Events();
    }
    Write("plan.pdf", "a better plan"); // of which the list does not know
    ASSERT_TRUE(QFile::remove(cloud + "/plan.pdf") && QFile::remove(cloud + "/bill.pdf"));
    RefreshNow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return left.count() > 0; }, 20'000));
    EXPECT_EQ(left.first().first().toString(), PathOf("plan.pdf"));
    EXPECT_EQ(left.count(), 1);
}

TEST_F(CloudSessionFolderTest, AFolderThatIsGoneIsLookedForEveryFiveSeconds)
{
    session->StaySignedIn("token");
    const auto isOnline = [&] { return session->ConnectionState() == Host::CloudSession::Connection::Online; };
    ASSERT_TRUE(QTest::qWaitFor(isOnline, 20'000));
    ASSERT_TRUE(QDir().rename(cloud, cloud + " away"));
    for (int attempt = 0; attempt < 4; ++attempt) {
        const auto failures = CountOf("Failed");
        session->TryNow();
        ASSERT_TRUE(WaitForEvent("Failed", failures + 1));
        EXPECT_LE(QDateTime::currentDateTime().msecsTo(session->NextAttempt()), 5250);
    }
    ASSERT_TRUE(QDir().rename(cloud + " away", cloud));
}

/// Bytes that this process has read, from files and everything else.
qint64 BytesRead()
{
    QFile file("/proc/self/io");
    EXPECT_TRUE(file.open(QFile::ReadOnly));
    return QString::fromLatin1(file.readAll()).section("rchar: ", 1, 1).section('\n', 0, 0).toLongLong();
}

TEST_F(CloudSessionFolderTest, AVersionThatTheListShowsAsNewerIsNotReplacedWhoeverForgotWhichOneTheCopyIs)
{
    Put("plan.pdf", "first");
    RefreshNow();
    const auto id = session->DocumentNamed("plan.pdf");
    session->Download(id, folder);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    session.reset();
    const auto memories = QDir(dataFolder).entryList({"versions-*"}, QDir::Files);
    ASSERT_FALSE(memories.isEmpty());
    for (const QString& memory : memories) {
        QFile::remove(dataFolder + '/' + memory);
    }
    Put("plan.pdf", "theirs");
    Reopen();
    SignIn();
    RefreshNow();
    Write("plan.pdf", "mine");
    QSignalSpy read(session.get(), &Host::CloudSession::LocalCopyRead);
    session->ReadLocalCopy(PathOf("plan.pdf"));
    ASSERT_TRUE(read.wait(20'000));
    session->UploadChanges(id);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    QFile cloudCopy(cloud + "/plan.pdf");
    ASSERT_TRUE(cloudCopy.open(QFile::ReadOnly));
    EXPECT_EQ(cloudCopy.readAll(), "theirs");
}

TEST_F(CloudSessionFolderTest, AFolderOfAnotherServiceIsRefused)
{
    session.reset();
    auto other = service;
    other.serviceUrl = QUrl::fromLocalFile(folder);
    try {
        const Host::CloudSession wrong(dataFolder, other);
        FAIL() << "it was taken";
    } catch (const std::runtime_error& refusal) {
        EXPECT_THAT(refusal.what(), HasSubstr("another service"));
    }
    const Host::CloudSession same(dataFolder, service);
}

TEST_F(CloudSessionFolderTest, NewDocumentIsReadOnceWhenItIsSentAndOnceWhenItComesBack)
{
    constexpr int size = 30'000'000;
    const QString path = Write("large.pdf", QByteArray(size, 'x'));
    auto before = BytesRead();
    session->Upload({path});
    ASSERT_TRUE(WaitForEvent("DocumentUploaded"));
    EXPECT_LT(BytesRead() - before, size * 3 / 2);
    const QString id = Ids().constFirst();
    EXPECT_EQ(StatusOf(id), Status::InSync);
    EXPECT_EQ(Held(id)->GetMd5Hash(), HashOf(QByteArray(size, 'x')));

    const QString target = root.filePath("elsewhere");
    QDir().mkpath(target);
    QFile::remove(path); // else it would be read to see whether it has changes
    before = BytesRead();
    session->Download(id, target);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_LT(BytesRead() - before, size * 3 / 2);
    EXPECT_EQ(StatusOf(id), Status::InSync);
    EXPECT_EQ(Held(id)->GetCloudHashBeforeChange(), HashOf(QByteArray(size, 'x')));
}

TEST_F(CloudSessionFolderTest, FileThatIsSavedWhileItIsSentIsChangedHere)
{
    const QString path = Write("report.pdf", QByteArray(20'000'000, 'x'));
    QObject::connect(&session->Cloud(), &AbstractCloudManager::UploadingProgressValueChanged, &session->Cloud(),
                     [&](const QString&, int percent) {
                         if (percent == 100) { // the service has read it
                             Write("report.pdf", "saved meanwhile");
                         }
                     });
    session->Upload({path});
    ASSERT_TRUE(WaitForEvent("DocumentUploaded"));
    const auto held = Held(Ids().constFirst());
    EXPECT_EQ(held->GetCloudInfo()->GetSize(), 20'000'000u);
    EXPECT_EQ(held->GetCloudHashBeforeChange(), HashOf(QByteArray(20'000'000, 'x')));
    EXPECT_EQ(held->GetCloudStatus(), Status::ChangedLocally);
}

TEST_F(CloudSessionFolderTest, ManyDocumentsArriveTogetherAndNothingElseStays)
{
    constexpr int count = 50;
    for (int number = 0; number < count; ++number) {
        Put(QString("%1.pdf").arg(number), "content " + QByteArray::number(number));
    }
    RefreshNow();
    const auto ids = Ids();
    ASSERT_EQ(ids.size(), count);
    for (const auto& id : ids) {
        session->Download(id, folder);
    }
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded", count));
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), count);
    EXPECT_TRUE(FilesIn(dataFolder + "/downloads").isEmpty());
    for (const auto& id : ids) {
        EXPECT_EQ(StatusOf(id), Status::InSync);
    }
}

TEST_F(CloudSessionFolderTest, DocumentGoesUpIsEditedComesDownElsewhereAndIsRemoved)
{
    const auto first = PdfOfColor(Qt::red);
    const auto second = PdfOfColor(Qt::blue);
    const auto path = Write("report.pdf", first);
    session->Upload({path});
    ASSERT_TRUE(WaitForEvent("DocumentUploaded"));
    EXPECT_EQ(Read(cloud + "/report.pdf"), first);
    const auto id = IdOf("report.pdf");
    EXPECT_EQ(StatusOf(id), Status::InSync);
    Events();
    RefreshNow();
    EXPECT_THAT(Events(), Contains("ListRefreshed(+, ~, -)"));
    EXPECT_EQ(StatusOf(id), Status::InSync);

    Write("report.pdf", second);
    session->UploadChanges(id);
    ASSERT_TRUE(WaitForEvent("DocumentUploaded"));
    EXPECT_EQ(Read(cloud + "/report.pdf"), second);
    EXPECT_EQ(StatusOf(id), Status::InSync);

    const auto elsewhere = root.filePath("elsewhere");
    QDir().mkdir(elsewhere);
    session->Download(id, elsewhere);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_EQ(Read(elsewhere + "/report.pdf"), second);
    EXPECT_EQ(FilesIn(elsewhere), QStringList("report.pdf"));
    EXPECT_EQ(Held(id)->GetPath().utf8string(), (elsewhere + "/report.pdf").toStdString());

    session->Remove(id);
    ASSERT_TRUE(WaitForEvent("DocumentRemoved"));
    EXPECT_FALSE(QFile::exists(cloud + "/report.pdf"));
    EXPECT_EQ(session->Documents().FilesCount(), 0);
    EXPECT_THAT(Events(), Not(Contains(testing::StartsWith("Failed"))));
}

TEST_F(CloudSessionFolderTest, ChangeInTheCloudIsNoticedAndFetched)
{
    Put("a.pdf", PdfOfColor(Qt::red));
    RefreshNow();
    const auto id = IdOf("a.pdf");
    session->Download(id, folder);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_EQ(StatusOf(id), Status::InSync);

    const auto newer = PdfOfColor(Qt::blue) + "\n";
    Put("a.pdf", newer);
    Put("b.pdf", "b");
    Events();
    RefreshNow();
    EXPECT_THAT(Events(),
                Contains("ListRefreshed(+" + IdOf("b.pdf").toStdString() + ", ~" + id.toStdString() + ", -)"));
    EXPECT_EQ(StatusOf(id), Status::ChangedInCloud);

    session->Download(id, folder);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_EQ(Read(PathOf("a.pdf")), newer);
    EXPECT_EQ(StatusOf(id), Status::InSync);
}

TEST_F(CloudSessionFolderTest, CopyThatIsFoundToBeTheCloudCopyMayBeChangedAndSent)
{
    const auto path = Write("a.pdf", "first");
    session->Upload({path});
    ASSERT_TRUE(WaitForEvent("DocumentUploaded"));
    const auto id = IdOf("a.pdf");
    Write("a.pdf", "second"); // a program was killed when it had just sent this
    Put("a.pdf", "second");
    RefreshNow();
    EXPECT_EQ(StatusOf(id), Status::InSync);

    Write("a.pdf", "third");
    Events();
    session->UploadChanges(id);
    ASSERT_TRUE(WaitForEvent("DocumentUploaded")) << testing::PrintToString(Events());
    EXPECT_EQ(Read(cloud + "/a.pdf"), "third");
}

/// One that refreshes by itself, though not before a day has passed.
class CloudSessionWatchTest : public CloudSessionFolderTest {
protected:
    CloudSessionWatchTest()
    {
        SignIn();
        session->RefreshEvery(std::chrono::hours(24));
        QObject::connect(&session->Cloud(), &AbstractCloudManager::RetrievingFilesListStarted, session.get(),
                         [this] { ++lists; });
        RefreshNow();
        Events();
    }

    int lists = 0; ///< that were requested
};

TEST_F(CloudSessionWatchTest, ChangesByOthersAreShownByThemselves)
{
    Put("a.pdf", "a");
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));
    const auto id = IdOf("a.pdf");
    EXPECT_THAT(Events(), Contains("ListRefreshed(+" + id.toStdString() + ", ~, -)"));
    Put("a.pdf", "other");
    ASSERT_TRUE(WaitForEvent("ListRefreshed(+, ~" + id.toStdString() + ", -)"));
    ASSERT_TRUE(QFile::remove(cloud + "/a.pdf"));
    ASSERT_TRUE(WaitForEvent("ListRefreshed(+, ~, -" + id.toStdString() + ")"));
}

TEST_F(CloudSessionWatchTest, ManyChangesTakeFewLists)
{
    for (int number = 0; number < 300; ++number) {
        Put(QStringLiteral("%1.pdf").arg(number), "content");
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return session->Documents().FilesCount() == 300; }, 60'000));
    EXPECT_LE(lists, 4);
}

TEST_F(CloudSessionWatchTest, ChangeDuringATransferIsShownAfterIt)
{
    const auto path = Write("large.pdf", QByteArray(32 * 1024 * 1024, 'x'));
    session->Upload({path});
    Put("a.pdf", "a");
    ASSERT_TRUE(WaitForEvent("DocumentUploaded"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !IdOf("a.pdf").isEmpty(); }, 60'000));
}

TEST_F(CloudSessionWatchTest, FolderThatIsGoneIsPolledUntilItIsBack)
{
    session->RefreshEvery(std::chrono::milliseconds(100));
    RefreshNow();
    ASSERT_TRUE(QDir().rename(cloud, root.filePath("away")));
    ASSERT_TRUE(WaitForEvent("Failed(List", 2));
    ASSERT_TRUE(QDir().rename(root.filePath("away"), cloud));
    Put("a.pdf", "a");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !IdOf("a.pdf").isEmpty(); }, 60'000));
    Put("b.pdf", "b");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !IdOf("b.pdf").isEmpty(); }, 60'000));
}

TEST_F(CloudSessionFolderTest, PreviewsShowThePage)
{
    Put("a.pdf", PdfOfColor(Qt::red));
    RefreshNow();
    session->ShowPreviews({IdOf("a.pdf")});
    ASSERT_TRUE(WaitForEvent("PreviewStored", 3));
    const auto previews = session->Documents().GetPreviewsSet(0);
    ASSERT_EQ(previews.size(), 3);
    const QImage large(previews["large"].toUrl().toLocalFile());
    EXPECT_EQ(std::max(large.width(), large.height()), 191);
    const auto color = large.pixelColor(large.width() / 2, large.height() / 2);
    EXPECT_GT(color.red(), 200);
    EXPECT_LT(color.blue(), 50);

    session->FetchPreviews(IdOf("a.pdf"));
    ASSERT_TRUE(WaitForEvent("PreviewStored", 6));
}

TEST_F(CloudSessionFolderTest, DocumentThatIsNoPdfFailsOnlyForWhoAsks)
{
    Put("a.pdf", "no document");
    RefreshNow();
    const auto id = IdOf("a.pdf");
    session->FetchPreviews(id);
    ASSERT_TRUE(WaitForEvent("Failed(Preview", 3));
    EXPECT_EQ(CountOf("Failed"), 3);
    EXPECT_FALSE(problem.cause.reason.isEmpty());
    EXPECT_EQ(problem.cause.document, "a.pdf");
}

TEST_F(CloudSessionFolderTest, FailuresSayWhatTheServiceFound)
{
    Put("a.pdf", PdfOfColor(Qt::red));
    RefreshNow();
    const auto id = IdOf("a.pdf");
    QFile::remove(cloud + "/a.pdf");
    Events();

    session->Download(id, folder);
    ASSERT_TRUE(WaitForEvent("Failed(Download"));
    EXPECT_EQ(problem.message, "Download file error");
    EXPECT_FALSE(problem.cause.reason.isEmpty());
    EXPECT_FALSE(problem.cause.advice.isEmpty());
    EXPECT_THAT(FilesIn(folder), IsEmpty());

    session->Remove(id);
    ASSERT_TRUE(WaitForEvent("Failed(Remove"));
    EXPECT_FALSE(problem.cause.reason.isEmpty());

    QDir(cloud).removeRecursively();
    session->Refresh();
    ASSERT_TRUE(WaitForEvent("Failed(List"));
    EXPECT_FALSE(problem.cause.reason.isEmpty());
    session->Upload({Write("b.pdf", "b")});
    ASSERT_TRUE(WaitForEvent("Failed(Upload"));
    EXPECT_FALSE(problem.cause.reason.isEmpty());
    EXPECT_EQ(CountOf("Failed"), 4);
}

TEST_F(CloudSessionFolderTest, CancelledTransfersLeaveNothingOnEitherSide)
{
    QFile big(PathOf("big.pdf"));
    ASSERT_TRUE(big.open(QFile::WriteOnly) && big.resize(Q_INT64_C(300) * 1024 * 1024));
    big.close();
    QSignalSpy uploads(&session->Cloud(), &AbstractCloudManager::UploadingStarted);
    session->Upload({big.fileName()});
    ASSERT_TRUE(uploads.wait(20'000));
    session->CancelUpload(big.fileName());
    ASSERT_TRUE(WaitForEvent("UploadCanceled"));

    ASSERT_TRUE(QFile::rename(big.fileName(), cloud + "/big.pdf"));
    RefreshNow();
    QSignalSpy progress(&session->Cloud(), &AbstractCloudManager::DownloadingProgressValueChanged);
    session->Download(IdOf("big.pdf"), folder);
    ASSERT_TRUE(progress.wait(20'000));
    session->CancelDownload(IdOf("big.pdf"));
    ASSERT_TRUE(WaitForEvent("DownloadCanceled"));
    session->SaveAndClose(); // waits for the service to end
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    EXPECT_EQ(CountOf("Failed") + CountOf("Document"), 0);
}

TEST_F(CloudSessionFolderTest, ClosingInTheMiddleOfTransfersLeavesNoStagingBehind)
{
    QFile big(cloud + "/big.pdf");
    ASSERT_TRUE(big.open(QFile::WriteOnly) && big.resize(Q_INT64_C(300) * 1024 * 1024));
    RefreshNow();
    QSignalSpy progress(&session->Cloud(), &AbstractCloudManager::DownloadingProgressValueChanged);
    session->Download(IdOf("big.pdf"), folder);
    ASSERT_TRUE(progress.wait(20'000));
    session.reset();
    EXPECT_THAT(FilesIn(folder), IsEmpty());
}

TEST_F(CloudSessionFolderTest, SignOutIsReportedAsSuch)
{
    EXPECT_TRUE(session->IsSignedIn());
    session->Cloud().Logout();
    EXPECT_FALSE(session->IsSignedIn());
    session->Refresh();
    ASSERT_TRUE(WaitForEvent("Failed(List, , Not signed in"));
}

} // namespace

} // namespace Norlis::Test
