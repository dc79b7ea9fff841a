#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::Not;

QMap<QString, QString> ByCapability(const NorlisCloudProtocol::ServiceCapabilities& capabilities)
{
    QMap<QString, QString> findings;
    for (const auto& [capability, finding] : capabilities) {
        EXPECT_FALSE(findings.contains(capability)) << capability.toStdString();
        findings[capability] = finding;
    }
    return findings;
}

std::string TextOf(const NorlisCloudProtocol::ServiceCapabilities& capabilities)
{
    QStringList lines;
    for (const auto& [capability, finding] : capabilities) {
        lines << capability + ": " + finding;
    }
    return lines.join('\n').toStdString();
}

/// Does what it is asked for, and never says so.
Misbehaviour DoesItAndHangs()
{
    return {[](Wire& wire) { wire.Do(wire.Request()); }};
}

class ServerProbeTest : public SignedInServiceTest<> {
protected:
    QMap<QString, QString> Findings()
    {
        const auto capabilities = client.Probe();
        EXPECT_TRUE(capabilities->Succeeds()) << LastReason(client);
        EXPECT_EQ(server.Names(), QStringList());
        return ByCapability(capabilities->payload);
    }
};

TEST_F(ServerProbeTest, TellsWhatAGoodServerCanDo)
{
    const auto findings = Findings();
    EXPECT_EQ(findings["service"], "WebDAV");
    EXPECT_EQ(findings["software"], "not reported");
    EXPECT_EQ(findings["DAV classes"], "1");
    for (const char* capability :
         {"accepts uploads", "honours If-None-Match", "honours If-Match", "ETag in lists", "range requests",
          "ETag with the content", "MOVE", "custom properties", "honours Overwrite: F", "reports creation times"}) {
        EXPECT_EQ(findings[capability], "yes") << capability;
    }
    EXPECT_EQ(findings["proof of uploads"], "reading back");
    for (const char* capability :
         {"own file ids and checksums", "reports used storage", "reports free storage", "creates previews"}) {
        EXPECT_EQ(findings[capability], "no") << capability;
    }
}

TEST_F(ServerProbeTest, TellsWhatAServerCannotDo)
{
    const auto ignoresConditions = Misbehaviour{[](Wire& wire) {
        ServerRequest plain = wire.Request();
        plain.headers.Set("If-Match", "*");
        plain.headers.Set("If-None-Match", "\"none\"");
        wire.Send(wire.Do(plain).Bytes());
        wire.Finish();
    }};
    server.Misbehave(When("PUT").From(2).Times(2), ignoresConditions);
    server.Misbehave("GET", IgnoresTheRange());
    server.Misbehave("PROPPATCH", HasInnerStatus(403));
    server.Misbehave(When("MOVE").From(2), {[](Wire& wire) {
                         ServerRequest rash = wire.Request();
                         rash.headers.Set("Overwrite", "T");
                         wire.Send(wire.Do(rash).Bytes());
                         wire.Finish();
                     }});
    const auto findings = Findings();
    for (const char* capability :
         {"honours If-None-Match", "honours If-Match", "range requests", "custom properties", "honours Overwrite: F"}) {
        EXPECT_EQ(findings[capability], "no") << capability;
    }
}

TEST_F(ServerProbeTest, PropertiesThatDoNotComeBackAreNotStored)
{
    server.Misbehave(When("PROPPATCH").Always(), HasInnerStatus(200));
    EXPECT_EQ(Findings()["custom properties"], "no");
}

TEST_F(ServerProbeTest, TellsWhomALockKeepsOut)
{
    EXPECT_EQ(Findings()["locks"], "no");
    for (const char* token : {"<urn:uuid:1>", "urn:uuid:1"}) {
        server.Misbehave("LOCK", AnswersWith(200, {{"Lock-Token", token}}));
        EXPECT_EQ(Findings()["locks"], "yes, but not for programs that use none") << token;
        EXPECT_EQ(server.Requests("UNLOCK").back().headers.Value("Lock-Token"), "<urn:uuid:1>");
        server.Misbehave("LOCK", AnswersWith(200, {{"Lock-Token", token}}));
        server.Misbehave(When("PUT").From(5), AnswersWith(423));
        EXPECT_EQ(Findings()["locks"], "yes") << token;
        server.BehaveAgain();
    }
}

TEST_F(ServerProbeTest, AMoveThatIsOnlyClaimedIsNone)
{
    server.Misbehave(When("MOVE").Always(), OnlyClaimsToDoIt(201));
    EXPECT_EQ(Findings()["MOVE"], "no");
}

TEST_F(ServerProbeTest, TellsThatAProxyHasToRewriteDestinations)
{
    server.Misbehave(When("MOVE").Always(), AnswersWith(502));
    EXPECT_EQ(Findings()["MOVE"], "no (502): perhaps a proxy has to rewrite Destination");
}

TEST_F(ServerProbeTest, TellsWhichNamesAndDestinationsAServerTakes)
{
    server.Misbehave(
        When("*").Always(), {[](Wire& wire) {
            const bool isHidden = wire.Request().target.contains("/.");
            const bool isForbidden = isHidden || wire.Request().headers.Value("Destination").startsWith("http");
            wire.Send((isForbidden ? ServerResponse{isHidden ? 403 : 502, {}, {}} : wire.Do(wire.Request())).Bytes());
            wire.Finish();
        }});
    const auto findings = Findings();
    EXPECT_EQ(findings["accepts uploads"], "yes, but no names with a leading dot");
    EXPECT_EQ(findings["MOVE"], "yes, with only a path as the destination");
    EXPECT_EQ(findings["custom properties"], "yes");
    EXPECT_EQ(findings["honours Overwrite: F"], "yes");
}

TEST_F(ServerProbeTest, ServerThatOneCanOnlyReadFromIsDescribedToo)
{
    server.Misbehave(When("PUT").Always(), AnswersWith(403));
    const auto findings = Findings();
    EXPECT_EQ(findings["accepts uploads"], "no");
    EXPECT_FALSE(findings.contains("honours Overwrite: F"));
}

TEST_F(ServerProbeTest, LeavesNothingBehindWhereverItFails)
{
    settings.silenceTimeout = shortTimeout;
    Client user(settings, server.Password());
    ASSERT_TRUE(user.SignIn());
    for (const When& when :
         {When("OPTIONS"), When("PROPFIND"), When("PUT"), When("PUT").From(2), When("PROPFIND").From(2), When("GET"),
          When("MOVE"), When("PROPPATCH"), When("PUT").From(4), When("MOVE").From(2)}) {
        for (const Misbehaviour& fault : {AnswersWith(500), AnswersWith(401)}) {
            server.BehaveAgain();
            ASSERT_TRUE(user.SignIn());
            server.Misbehave(when, fault);
            ASSERT_TRUE(WaitUntil([answer = user.Probe()] { return answer->Came(); }));
            EXPECT_TRUE(WaitUntil([&] { return server.Names().isEmpty(); }, 5'000)) << when.operation.constData();
        }
        server.BehaveAgain();
        ASSERT_TRUE(user.SignIn());
        server.Misbehave(when, DoesItAndHangs());
        EXPECT_TRUE(user.Probe()->Fails());
        EXPECT_THAT(LastReason(user), HasSubstr("silent"));
        EXPECT_TRUE(WaitUntil([&] { return server.Names().isEmpty(); }, 5'000)) << when.operation.constData();
    }
}

TEST_F(ServerProbeTest, LeavesNothingBehindWhenItIsGivenUp)
{
    for (const char* method : {"PUT", "GET", "MOVE", "PROPPATCH"}) {
        for (const bool isDestroyed : {false, true}) {
            Client user(settings, server.Password());
            ASSERT_TRUE(user.SignIn());
            server.BehaveAgain();
            server.ForgetRequests();
            server.Misbehave(method, DoesItAndHangs());
            const auto probe = user.Probe();
            ASSERT_TRUE(WaitUntil([&] { return server.Count(method) == 1 && !server.Names().isEmpty(); }));
            if (isDestroyed) {
                user.Destroy();
            } else {
                user.Cancel(probe->operation);
            }
            EXPECT_TRUE(WaitUntil([&] { return server.Names().isEmpty(); }, 5'000)) << method << isDestroyed;
            EXPECT_FALSE(probe->Came());
        }
    }
}

TEST_F(ServerProbeTest, CanBeShownToOthers)
{
    server.Put("secret-plans.pdf", "content");
    for (const QByteArray& software : {QByteArray("Apache/2.4"), QByteArray("Files of norlis"),
                                       QByteArray("Server at 127.0.0.1 Port 80"), server.Password().toUtf8(),
                                       QByteArray("a\x1b[31mb\xe2\x80\xae"
                                                  "c"),
                                       QByteArray(10'000, 'x')}) {
        server.BehaveAgain();
        server.Misbehave("OPTIONS", Adds("Server", software));
        const auto capabilities = client.Probe();
        ASSERT_TRUE(capabilities->Succeeds());
        const std::string text = TextOf(capabilities->payload);
        for (const char* word : {"norlis", "127.0.0.1", "documents/", "secret-plans", "\x1b", "\u202e"}) {
            EXPECT_THAT(text, Not(HasSubstr(word)));
        }
        EXPECT_FALSE(HoldsSecret(QByteArray::fromStdString(text)));
        EXPECT_LT(text.size(), 1'000U);
        EXPECT_EQ(ByCapability(capabilities->payload)["software"] == "Apache/2.4", software == "Apache/2.4");
    }
    EXPECT_EQ(server.Names(), QStringList("secret-plans.pdf"));
}

class NextcloudProbeTest : public SignedInServiceTest<NextcloudLikeServer> {};

TEST_F(NextcloudProbeTest, ReportsWhatNextcloudSupports)
{
    server.SetQuota(1, 1);
    const auto capabilities = client.Probe();
    ASSERT_TRUE(capabilities->Succeeds());
    const auto findings = ByCapability(capabilities->payload);
    for (const char* capability :
         {"own file ids and checksums", "reports used storage", "reports free storage", "creates previews"}) {
        EXPECT_EQ(findings[capability], "yes") << capability;
    }
    EXPECT_EQ(findings["proof of uploads"], "the server's hash");
    EXPECT_EQ(server.Names(), QStringList());
}

} // namespace

} // namespace Norlis::Test
