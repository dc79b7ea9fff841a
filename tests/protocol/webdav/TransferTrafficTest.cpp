#include <tests/support/MemoryInUse.h>
#include <tests/support/TransferFaultTest.h>

#include <QElapsedTimer>

#include <set>
#include <string>

namespace Norlis::Test {

namespace {

constexpr qint64 mebibyte = 1024 * 1024;

} // namespace

/// What transfers cost the server, the other requests and the memory.
class TransferTrafficTest : public TransferFaultTest<> {
protected:
    std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> Uploads(int count)
    {
        const QString path = LocalFile("report.pdf", "content");
        std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> uploads;
        for (int number = 0; number < count; ++number) {
            uploads.push_back(client.Upload(path));
        }
        return uploads;
    }
};

TEST_F(TransferTrafficTest, FourTransfersRunAtOnce)
{
    const QString id = Put("there.pdf", "content");
    server.Misbehave(When("PUT").Always(), Hangs());
    server.Misbehave(When("GET").Always(), Hangs());
    const auto uploads = Uploads(2);
    std::vector<AnswerPtr<>> downloads;
    for (int count = 0; count < 5; ++count) {
        downloads.push_back(client.Download(id, Local(QString::number(count))));
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") + server.Count("GET") == 4; }));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 2);
    EXPECT_EQ(server.Count("GET"), 2);
    client.Cancel(downloads[0]->operation);
    EXPECT_TRUE(WaitUntil([&] { return server.Count("GET") == 3; })); // the next one's turn
}

TEST_F(TransferTrafficTest, OtherRequestsDoNotWaitForTransfers)
{
    const QString id = Put("there.pdf", "content");
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(0));
    const auto uploads = Uploads(10);
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 4; }));
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Info(id)->Succeeds());
    EXPECT_TRUE(client.Quota()->Succeeds());
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 4);
}

TEST_F(TransferTrafficTest, ThousandsOfTransfersAreCanceledAtOnce)
{
    const QString id = Put("there.pdf", "content");
    LearnTheServer();
    server.Misbehave(When("PUT").Always(), Hangs());
    const auto uploads = Uploads(5000);
    std::vector<AnswerPtr<>> downloads;
    for (int count = 0; count < 5000; ++count) {
        downloads.push_back(client.Download(id, Local("target.pdf")));
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 4; }));
    QElapsedTimer time;
    time.start();
    for (const auto& download : downloads) {
        client.Cancel(download->operation);
    }
    for (auto upload = uploads.rbegin(); upload != uploads.rend(); ++upload) {
        client.Cancel((*upload)->operation);
    }
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_LT(time.elapsed(), 5'000);
    EXPECT_EQ(server.Count("PUT"), 4);
    EXPECT_EQ(server.Count("GET"), 0);
    ExpectOnServer({"there.pdf"});
    EXPECT_EQ(FilesBelow(folder.path()).filter(".part"), QStringList());
}

TEST_F(TransferTrafficTest, ConnectionsAreKept)
{
    for (int count = 0; count < 10; ++count) {
        const auto upload = client.Upload(LocalFile("report.pdf", "content"));
        ASSERT_TRUE(upload->Succeeds());
        ASSERT_TRUE(client.Download(upload->payload.id, Local("back.pdf"))->Succeeds());
        ASSERT_TRUE(client.Remove(upload->payload.id)->Succeeds());
    }
    EXPECT_LE(server.Connections(), 3);
}

TEST_F(TransferTrafficTest, AConnectionThatTheServerHasClosedMeanwhileDoesNoHarm)
{
    LearnTheServer();
    for (const char* method : {"PUT", "MOVE", "PROPFIND", "GET", "DELETE"}) {
        const QByteArray content = Pattern(200'000);
        server.Misbehave(method, ClosesInTheRequest(0));
        const auto upload = client.Upload(LocalFile("report.pdf", content));
        ASSERT_TRUE(upload->Succeeds()) << method;
        ASSERT_TRUE(client.Download(upload->payload.id, Local("back.pdf"))->Succeeds()) << method;
        EXPECT_EQ(ReadFile(Local("back.pdf")), content);
        ASSERT_TRUE(client.Remove(upload->payload.id)->Succeeds()) << method;
        ExpectOnServer({});
    }
}

TEST_F(TransferTrafficTest, OnlyKnownMethodsAreSentAndAlwaysWithTheCredentials)
{
    const auto upload = client.Upload(LocalFile("report.pdf", "content"));
    ASSERT_TRUE(upload->Succeeds());
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", "new"), upload->payload.id)->Succeeds());
    ASSERT_TRUE(client.Download(upload->payload.id, Local("back.pdf"))->Succeeds());
    ASSERT_TRUE(client.Remove(upload->payload.id)->Succeeds());
    std::set<std::string> methods;
    const auto requests = server.Requests();
    for (const SeenRequest& request : requests) {
        methods.insert(request.method.toStdString());
        EXPECT_EQ(request.headers.Has("Authorization"), &request != &requests.front()); // which shows how to sign in
        EXPECT_FALSE(request.headers.Has("Content-Range"));
        EXPECT_EQ(request.headers.Has("Depth"), request.method == "PROPFIND" || request.method == "LOCK");
        EXPECT_TRUE(request.target.startsWith("/documents/"));
    }
    methods.erase("PROPPATCH"); // which may not have come yet
    EXPECT_THAT(methods, testing::ElementsAre("DELETE", "GET", "LOCK", "MOVE", "PROPFIND", "PUT"));
}

TEST_F(TransferTrafficTest, AServerThatReadsSlowlyCostsNoMemory)
{
    WriteSparseFile(Local("large.pdf"), 400 * mebibyte);
    server.Misbehave("PUT", HangsInTheRequest(mebibyte));
    const qint64 before = MemoryInUse();
    const auto upload = client.Upload(Local("large.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 1 && upload->percents.size() > 1; }));
    EXPECT_FALSE(WaitUntil([&] { return MemoryInUse() - before > 40 * mebibyte; }, 1'000));
    client.Cancel(upload->operation);
}

TEST_F(TransferTrafficTest, ALargeDownloadCostsNoMemory)
{
    constexpr qint64 size = 400 * mebibyte;
    server.With([](MemoryTree& tree) {
        tree.moreProperties = [](const MemoryNode&, const PropertyName& name) {
            return name.second == "getcontentlength" ? std::optional(QByteArray::number(size)) : std::nullopt;
        };
    });
    const QString id = Put("large.pdf", "content");
    const Misbehaviour sendsALot = {[](Wire& wire) {
        wire.Send(ServerResponse{200, {{"Content-Length", QByteArray::number(size)}}, {}}.Head());
        wire.SendWithoutEnd([](int) { return QByteArray(mebibyte, 'x'); });
    }};
    server.Misbehave("GET", sendsALot);
    const qint64 before = MemoryInUse();
    qint64 most = before;
    const auto download = client.Download(id, Local("target.pdf"));
    download->onProgress = [&](int) { most = std::max(most, MemoryInUse()); };
    ASSERT_TRUE(WaitUntil([&] { return !download->percents.empty() && download->percents.back() >= 99; }));
    EXPECT_LT(most - before, 40 * mebibyte);
    EXPECT_TRUE(download->Succeeds());
}

} // namespace Norlis::Test
