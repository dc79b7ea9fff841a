#include <tests/support/ServiceTest.h>

namespace Norlis::Test {

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class ServerErrorTest : public SignedInServiceTest<> {
protected:
    void SetUp() override
    {
        SignedInServiceTest<>::SetUp();
        id = Put("a.pdf", "content");
    }

    /// Why the removal of a document fails that is answered like this.
    Social::OAuth2::Failure FailureOf(const Misbehaviour& answer)
    {
        server.BehaveAgain();
        server.Misbehave(When("DELETE").Always(), answer);
        client.failures.clear();
        EXPECT_TRUE(client.Remove(id)->Fails());
        EXPECT_EQ(client.failures.size(), 1U);
        EXPECT_EQ(LastFailure(client).what, "Removal");
        EXPECT_EQ(LastFailure(client).document, "a.pdf");
        return LastFailure(client);
    }

    std::string ReasonFor(const Misbehaviour& answer)
    {
        return FailureOf(answer).reason.toStdString();
    }

    QString id;
};

TEST_F(ServerErrorTest, EveryStatusIsSaidInWordsWithAdvice)
{
    const std::vector<std::tuple<int, std::string, std::string>> statuses = {
        {400, "does not understand", "address"},
        {402, "not expected", "WebDAV server"},
        {403, "does not allow", "permission"},
        {405, "cannot do this at that address", "address"},
        {407, "proxy", "proxy"},
        {409, "folder", "address"},
        {412, "changed by somebody else", "Refresh"},
        {413, "larger", "limit"},
        {414, "name is longer", "shorter"},
        {415, "kind", ""},
        {418, "not expected", "WebDAV server"},
        {423, "locked", "later"},
        {425, "processed", "later"},
        {429, "too many requests", "minutes"},
        {431, "name is longer", "shorter"},
        {500, "has failed", "later"},
        {501, "cannot do this", "WebDAV server"},
        {502, "gateway", "later"},
        {503, "not available", "later"},
        {504, "gateway", "later"},
        {505, "has failed", "later"},
        {507, "no room", "Free some space"},
        {599, "has failed", "later"},
        {304, "not expected", "WebDAV server"},
    };
    for (const auto& [status, reason, advice] : statuses) {
        const auto failure = FailureOf(AnswersWith(status, {{"Retry-After", "0"}}));
        EXPECT_THAT(failure.reason.toStdString(),
                    AllOf(HasSubstr(reason), EndsWith(" (" + std::to_string(status) + ")")));
        EXPECT_THAT(failure.advice.toStdString(), HasSubstr(advice));
    }
    EXPECT_TRUE(client.Protocol()->loggedIn());
}

TEST_F(ServerErrorTest, AStatusTellsWhatAProgramCanDo)
{
    using Kind = Social::OAuth2::FailureKind;
    const std::vector<std::pair<int, Kind>> statuses = {
        {403, Kind::Other}, {412, Kind::Conflict},    {423, Kind::Other},       {429, Kind::Unavailable},
        {500, Kind::Other}, {502, Kind::Unavailable}, {503, Kind::Unavailable}, {504, Kind::Unavailable},
        {507, Kind::Other}, {401, Kind::NotSignedIn}, // the last, since it signs out
    };
    for (const auto& [status, kind] : statuses) {
        EXPECT_EQ(FailureOf(AnswersWith(status, {{"Retry-After", "0"}})).kind, kind) << status;
    }
}

TEST_F(ServerErrorTest, MessageOfTheServerIsQuoted)
{
    EXPECT_THAT(ReasonFor(Refuses(403, "Sabre\\DAV\\Exception\\Forbidden", "Zoë works on it, until 17:00")),
                EndsWith("(403: Zoë works on it, until 17:00)"));
    EXPECT_THAT(ReasonFor(IsOutOfSpace()), EndsWith("(507: quota-not-exceeded)"));
}

TEST_F(ServerErrorTest, MessageIsOneShortLineWithoutControlCharacters)
{
    EXPECT_THAT(ReasonFor(Refuses(403, "Exception", "a\n\tb\r\nc\u009b31md\u202ee\u200bf")),
                EndsWith("(403: a b c 31md e f)"));
    EXPECT_LT(ReasonFor(Refuses(403, "Exception", QByteArray(10'000, 'x'))).size(), 400U);
    EXPECT_THAT(ReasonFor(Refuses(403, "Exception", "<b>bold</b> &amp;")), EndsWith("(403: <b>bold</b> &amp;)"));
}

TEST_F(ServerErrorTest, BodiesThatAreNoMessagesAreNotShown)
{
    const ServerHeaders xml = {{"Content-Type", "application/xml"}};
    for (const Misbehaviour& answer :
         {ShowsAPage(403), AnswersWith(403, {}, "just text"), AnswersWith(403, {}, "{\"error\": \"json\"}"),
          AnswersWith(403, {}, QByteArray(20'000'000, '<')), AnswersWith(403, xml, "<error>no namespace</error>"),
          AnswersWith(403, xml,
                      "<!DOCTYPE d [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]><d:error "
                      "xmlns:d=\"DAV:\"><d:x/></d:error>"
                      "<s:message>&b;</s:message>"),
          AnswersWith(403, {}, QByteArray("\0\1\2\3", 4))}) {
        const std::string reason = ReasonFor(answer);
        EXPECT_THAT(reason, AllOf(HasSubstr("does not allow it (403"), Not(HasSubstr("<")), Not(HasSubstr("json")),
                                  Not(HasSubstr("text")), Not(HasSubstr("aaaa"))));
        EXPECT_LT(reason.size(), 60U);
    }
}

TEST_F(ServerErrorTest, StatusCountsHoweverItsBodyEnds)
{
    EXPECT_THAT(ReasonFor(SendsRawBytes("HTTP/1.1 403 Forbidden\r\nContent-Length: 1000\r\n\r\nshort")),
                HasSubstr("does not allow it (403"));
    EXPECT_THAT(ReasonFor(SendsRawBytes("HTTP/1.1 507 Full\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n")),
                HasSubstr("no room left (507"));
}

} // namespace

} // namespace Norlis::Test
