#include "ContractTest.h"
#include "Rounds.h"

namespace Norlis::TestKit {

using testing::IsEmpty;

/// What transfers leave behind that were given up.
class CancellationTest : public SignedInContractTest {};
NORLIS_FOR_EVERY_CLOUD(CancellationTest);

/// The same when the cloud has done what was asked already, and has not told it yet.
class LateCancellationTest : public SignedInContractTest {
protected:
    void SetUp() override
    {
        if (!cloud->WorksInTheBackground()) {
            GTEST_SKIP() << "Nothing can come in between";
        }
        SignedInContractTest::SetUp();
    }
};
NORLIS_FOR_EVERY_CLOUD(LateCancellationTest);

TEST_P(CancellationTest, AnUploadCanceledBeforeItBeganLeavesNothing)
{
    const auto upload = client.Upload(LocalFile("report.pdf", "content"));
    client.Cancel(upload->operation);
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_FALSE(upload->Came());
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(CancellationTest, AnUploadCanceledMidwayLeavesNothing)
{
    WriteSparseFile(Local("large.pdf"), Large(512 * 1024 * 1024));
    const auto upload = client.Upload(Local("large.pdf"));
    int canceledAt = 0;
    upload->onProgress = [&](int percent) {
        if (percent >= 3) {
            client.Cancel(upload->operation);
            canceledAt = percent;
        }
    };
    ASSERT_TRUE(WaitUntil([&] { return canceledAt > 0; }));
    EXPECT_LT(canceledAt, 50);
    EXPECT_TRUE(WaitUntil([&] { return cloud->Content().isEmpty(); }));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(upload->percents.back(), canceledAt);
    EXPECT_FALSE(upload->Came());
}

TEST_P(LateCancellationTest, AnUploadCanceledAfterItWasPutInPlaceIsTakenBack)
{
    const auto upload = client.Upload(LocalFile("report.pdf", "content"));
    QCoreApplication::processEvents();
    ASSERT_TRUE(BlockUntil([&] { return cloud->Content() == QStringList("report.pdf"); }));
    client.Cancel(upload->operation);
    EXPECT_TRUE(WaitUntil([&] { return cloud->Content().isEmpty(); }));
    EXPECT_FALSE(upload->Came());
}

TEST_P(CancellationTest, AnUploadCanceledAtItsLastProgressIsTakenBack)
{
    const auto upload = client.Upload(LocalFile("report.pdf", "content"));
    upload->onProgress = [&](int percent) {
        if (percent == 100) {
            client.Cancel(upload->operation);
        }
    };
    ASSERT_TRUE(WaitUntil([&] { return !upload->percents.empty() && upload->percents.back() == 100; }));
    EXPECT_TRUE(WaitUntil([&] { return cloud->Content().isEmpty(); }));
    EXPECT_FALSE(upload->Came());
}

TEST_P(LateCancellationTest, AnUploadCutOffByDestructionAfterItWasPutInPlaceIsTakenBackOrWhole)
{
    const auto upload = client.Upload(LocalFile("report.pdf", "content"));
    QCoreApplication::processEvents();
    ASSERT_TRUE(BlockUntil([&] { return cloud->Content() == QStringList("report.pdf"); }));
    client.Destroy();
    ExpectNothingIsLeft("report.pdf");
    EXPECT_EQ(cloud->Get("report.pdf").value_or("content"), QByteArray("content"));
    EXPECT_FALSE(upload->Came());
}

TEST_P(CancellationTest, AnUploadCutOffByDestructionLeavesNothing)
{
    WriteSparseFile(Local("large.pdf"), Large(512 * 1024 * 1024));
    const auto upload = client.Upload(Local("large.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return upload->percents.size() > 1; }));
    client.Destroy();
    ExpectNothingIsLeft();
}

TEST_P(LateCancellationTest, ACanceledReplacementNeverTakesTheDocumentAway)
{
    cloud->Put("report.pdf", "old");
    const QString id = client.Entry("report.pdf").id;
    const auto upload = client.Upload(LocalFile("report.pdf", "new"), id);
    QCoreApplication::processEvents();
    ASSERT_TRUE(BlockUntil([&] { return cloud->Get("report.pdf") == QByteArray("new"); }));
    client.Cancel(upload->operation);
    ASSERT_TRUE(client.List()->Succeeds());
    LetThingsSettle();
    // A service may be writing notes of its own at any moment.
    EXPECT_TRUE(WaitUntil([&] { return cloud->Content() == QStringList("report.pdf"); }));
}

TEST_P(CancellationTest, ACanceledUploadTellsNothingAboutTheDocumentOfItsName)
{
    cloud->Put("report.pdf", "somebody else's");
    ASSERT_THAT(client.Entry("report.pdf").md5Hash, IsForeignHash("somebody else's"));
    WriteSparseFile(Local("report.pdf"), Large(32 * 1024 * 1024));
    const auto upload = client.Upload(Local("report.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return upload->percents.size() > 1; }));
    client.Cancel(upload->operation);
    ASSERT_TRUE(WaitUntil([&] { return cloud->Content() == QStringList("report.pdf"); })); // it came to its end
    EXPECT_THAT(client.Entry("report.pdf").md5Hash, IsForeignHash("somebody else's"));
}

TEST_P(CancellationTest, UploadsCanceledAtAnyMomentLeaveNothing)
{
    const QString path = LocalFile("report.pdf", QByteArray(1'500'000, 'x'));
    for (int round = 0; round < 70; round += Stride(3)) {
        const auto upload = client.Upload(path);
        QCoreApplication::processEvents();
        int spins = round * 115; // a different moment each time
        BlockUntil([&] { return --spins <= 0; });
        if (round % 2 != 0) {
            QCoreApplication::processEvents();
        }
        if (upload->Came()) {
            ASSERT_TRUE(client.Remove(upload->payload.id)->Succeeds());
        } else {
            client.Cancel(upload->operation);
        }
    }
    ASSERT_TRUE(client.List()->Succeeds());
    LetThingsSettle();
    // What a server was sent before its connection was cut may appear later, and is swept then.
    EXPECT_TRUE(WaitUntil([&] { return cloud->Content().isEmpty(); }));
}

TEST_P(CancellationTest, NothingAppearsAtTheTargetAfterCancellation)
{
    cloud->Put("report.pdf", QByteArray(200'000, 'x'));
    const QString id = client.Entry("report.pdf").id;
    int written = 0;
    for (int round = 0; round < 160; round += Stride(3)) {
        const QString target = Local(QString::number(round) + ".pdf");
        const auto download = client.Download(id, target);
        QCoreApplication::processEvents();
        int spins = round * 25;
        BlockUntil([&] { return --spins <= 0; });
        client.Cancel(download->operation);
        const bool wasThere = QFile::exists(target);
        written += wasThere ? 1 : 0;
        if (round % 10 == 0) {
            LetThingsSettle();
        }
        QFile::remove(target);
    }
    ASSERT_TRUE(client.List()->Succeeds());
    LetThingsSettle();
    EXPECT_THAT(FilesBelow(folder.path()), IsEmpty()) << written << " were written in time";
}

TEST_P(CancellationTest, ManyTransfersCanceledAtOnceLeaveNothing)
{
    cloud->Put("there.pdf", QByteArray(300'000, 'x'));
    const QString id = client.Entry("there.pdf").id;
    const QString path = LocalFile("report.pdf", QByteArray(300'000, 'y'));
    std::vector<qint64> operations;
    for (int count = 0; count < 1000; ++count) {
        operations.push_back(client.Upload(path)->operation);
        operations.push_back(client.Download(id, Local("target.pdf"))->operation);
    }
    QCoreApplication::processEvents();
    for (const qint64 operation : operations) {
        client.Cancel(operation);
    }
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(WaitUntil([&] { return cloud->Content() == QStringList("there.pdf"); }));
    EXPECT_TRUE(WaitUntil([&] {
        QStringList files = FilesBelow(folder.path());
        files.removeAll("report.pdf");
        files.removeAll("target.pdf"); // there if a download was in time
        return files.isEmpty();
    }));
}

} // namespace Norlis::TestKit
