#include <tests/support/FileSizeLimit.h>
#include <tests/support/ServiceContractTest.h>

namespace Norlis::Test {

/// The words of our own failures, and the observer among the settings.
class ServiceFailureTest : public ServiceContractTest {};
NORLIS_FOR_EVERY_CLOUD(ServiceFailureTest);

TEST_P(ServiceFailureTest, TheReasonNamesWhatWasTried)
{
    ASSERT_TRUE(client.Upload(Local("missing.pdf"))->Fails());
    ASSERT_TRUE(client.Download("unknown", Local("none.pdf"))->Fails());
    ASSERT_TRUE(client.Remove("unknown")->Fails());
    ASSERT_EQ(client.failures.size(), 3U);
    EXPECT_EQ(client.failures[0].what, "Upload");
    EXPECT_EQ(client.failures[1].what, "Download");
    EXPECT_EQ(client.failures[2].what, "Removal");
}

TEST_P(ServiceFailureTest, TheReasonOfAFullDiskIsWhatTheSystemSays)
{
    cloud->Put("report.pdf", QByteArray(5'000'000, 'x'));
    const QString id = client.Entry("report.pdf").id;
    const FileSizeLimit full(2'500'000);
    EXPECT_TRUE(client.Download(id, Local("target.pdf"))->Fails());
    ASSERT_EQ(client.failures.size(), 1U);
    EXPECT_THAT(client.failures[0].reason.toStdString(), testing::HasSubstr("File too large"));
}

TEST_P(ServiceFailureTest, AnObserverThatHoldsTheLastReferenceSurvivesItsOwnCall)
{
    auto settings = Service().Settings();
    std::shared_ptr<NorlisCloudProtocol> protocol;
    auto note = std::make_shared<std::string>("kept");
    std::string seen;
    settings.onFailure = [&protocol, &seen, note = std::move(note)](const Social::OAuth2::Failure&) {
        protocol.reset();
        seen = *note;
    };
    protocol = std::make_shared<NorlisCloudProtocol>(std::exchange(settings, {}), "tests");
    protocol->deleteFile({}, [](qint64, Social::RequestResult) {}); // nobody is signed in
    EXPECT_EQ(seen, "kept");
}

} // namespace Norlis::Test
