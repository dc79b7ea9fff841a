#include <tests/support/ServiceContractTest.h>

#include <files/FileIdentity.h>

namespace Norlis::Test {

/// What is told of the bytes of a transfer.
class TransferredFileTest : public ServiceContractTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(user.SignIn());
    }

    Client user{Service().Settings(), cloud->Token()};
};
NORLIS_FOR_EVERY_CLOUD(TransferredFileTest);

TEST_P(TransferredFileTest, TheHashOfWhatWasSentIsToldBeforeTheUploadEnds)
{
    const QString path = LocalFile("report.pdf", "content");
    const auto upload = user.Upload(path); // whose hash nobody knows beforehand
    std::size_t toldBefore = 0;
    upload->onDone = [&] { toldBefore = user.transferred.size(); };
    ASSERT_TRUE(upload->Succeeds());
    ASSERT_EQ(user.transferred.size(), 1U);
    EXPECT_EQ(toldBefore, 1U);
    const auto& told = user.transferred.front();
    EXPECT_EQ(told.operation, upload->operation);
    EXPECT_EQ(told.localPath, path);
    EXPECT_EQ(told.md5Hash, Md5Of("content"));
    EXPECT_EQ(told.identity, Files::FileIdentity::OfPath(path).ToString());
}

TEST_P(TransferredFileTest, OfAnUploadThatFailsNothingIsTold)
{
    EXPECT_TRUE(user.Upload(LocalFile("report.pdf", "content"), "no such document")->Fails());
    EXPECT_TRUE(user.Upload(LocalFile("report.pdf", "content"), {}, Md5Of("other"))->Fails());
    EXPECT_TRUE(user.transferred.empty());
}

TEST_P(TransferredFileTest, TheHashOfWhatHasArrivedIsToldBeforeTheDownloadEnds)
{
    cloud->Put("report.pdf", "content");
    const auto download = user.Download(user.Entry("report.pdf").id, Local("target.pdf"));
    std::size_t toldBefore = 0;
    download->onDone = [&] { toldBefore = user.transferred.size(); };
    ASSERT_TRUE(download->Succeeds());
    ASSERT_EQ(user.transferred.size(), 1U);
    EXPECT_EQ(toldBefore, 1U);
    const auto& told = user.transferred.front();
    EXPECT_EQ(told.operation, download->operation);
    EXPECT_EQ(told.localPath, Local("target.pdf"));
    EXPECT_EQ(told.md5Hash, Md5Of("content"));
    EXPECT_EQ(told.identity, Files::FileIdentity::OfPath(Local("target.pdf")).ToString());
}

} // namespace Norlis::Test
