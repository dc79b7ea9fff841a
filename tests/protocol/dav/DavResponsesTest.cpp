#include <protocol/dav/DavResponses.h>

#include <gtest/gtest.h>

namespace Norlis::Social {

namespace {

using Change = ChangeResult::Outcome;

HttpResponse Answer(int status, const QByteArray& body = {}, const QByteArray& type = {})
{
    HttpResponse response;
    response.head.status = status;
    response.head.fields = {{"content-type", type}};
    response.body = body;
    return response;
}

HttpResponse MultiStatus(const QByteArrayList& statuses)
{
    QByteArray body = "<D:multistatus xmlns:D=\"DAV:\">";
    for (const QByteArray& status : statuses) {
        body += "<D:response><D:href>/a</D:href><D:status>" + status + "</D:status></D:response>";
    }
    return Answer(207, body + "</D:multistatus>");
}

} // namespace

TEST(ChangeTest, StatusSaysWhatHasBecomeOfIt)
{
    for (const int status : {200, 201, 204}) {
        EXPECT_EQ(JudgeChange(Answer(status)).outcome, Change::Done) << status;
    }
    for (const int status : {301, 400, 401, 403, 405, 409, 412, 413, 423, 429}) {
        EXPECT_EQ(JudgeChange(Answer(status)).outcome, Change::Refused) << status;
    }
    for (const int status : {0, 202, 203, 206, 207, 226, 404, 410, 500, 502, 503, 504, 507}) {
        EXPECT_EQ(JudgeChange(Answer(status)).outcome, Change::Unclear) << status;
    }
}

TEST(ChangeTest, PageIsNoAnswer)
{
    for (const HttpResponse& page :
         {Answer(200, "Sign in", "text/html; charset=utf-8"), Answer(200, "Sign in", "Application/XHTML+xml"),
          Answer(200, "\n<!DOCTYPE HTML><p>Sign in"), Answer(200, "<HTML>")}) {
        EXPECT_EQ(JudgeChange(page).outcome, Change::Unclear) << page.body.constData();
    }
    EXPECT_EQ(JudgeChange(Answer(200, "Saved", "text/plain")).outcome, Change::Done);
    EXPECT_EQ(JudgeChange(Answer(201, "<html>Created", "text/html")).outcome, Change::Done);
}

TEST(LockTokenTest, IsSentBackInAngleBrackets)
{
    const auto tokenOf = [](int status, const QByteArray& field) {
        HttpResponse response = Answer(status);
        response.head.fields.append({"lock-token", field});
        return LockTokenOf(response);
    };
    EXPECT_EQ(tokenOf(200, "<urn:uuid:1>"), "<urn:uuid:1>");
    EXPECT_EQ(tokenOf(201, "urn:uuid:1"), "<urn:uuid:1>");
    for (const char* field : {"", "<urn:uuid:1", "<urn:uuid:1> x", "urn:uuid:1>", "<a> <b>"}) {
        EXPECT_EQ(tokenOf(200, field), "") << field;
    }
    EXPECT_EQ(tokenOf(423, "<urn:uuid:1>"), "");
}

TEST(ChangeTest, LostAnswerSaysNothing)
{
    HttpResponse lost = Answer(201);
    lost.fault = HttpResponse::Fault::Broken;
    EXPECT_EQ(JudgeChange(lost).outcome, Change::Unclear);
}

TEST(ChangeTest, SeveralStatusesMeanTheirFirstFailure)
{
    const auto judged = [](const QByteArrayList& statuses) { return JudgeChange(MultiStatus(statuses)); };
    EXPECT_EQ(judged({"HTTP/1.1 201 Created", "HTTP/1.1 204"}).outcome, Change::Done);
    const ChangeResult refused =
        judged({"HTTP/1.1 200 OK", "HTTP/1.1 424 Failed Dependency", "HTTP/1.1  423 Locked", "HTTP/1.1 403 Forbidden"});
    EXPECT_EQ(refused.outcome, Change::Refused);
    EXPECT_EQ(refused.response.Status(), 423);
    EXPECT_TRUE(refused.isOfPart);
    EXPECT_EQ(judged({"HTTP/1.1 424 Failed Dependency"}).response.Status(), 424);
    EXPECT_EQ(judged({"HTTP/1.1 500 Failed"}).outcome, Change::Unclear);
    for (const QByteArrayList& unreadable : {QByteArrayList{}, QByteArrayList{"fine"}, {"HTTP/1.1 204", ""}}) {
        EXPECT_EQ(judged(unreadable).outcome, Change::Unclear) << unreadable.join(',').constData();
    }
    EXPECT_EQ(JudgeChange(Answer(207, "<D:multistatus xmlns:D=\"DAV:\"><D:status>HTTP/1.1 204 OK</D:status>")).outcome,
              Change::Unclear);
}

} // namespace Norlis::Social
