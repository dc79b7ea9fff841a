#include <NorlisTestKit/ScriptedProtocol.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace Norlis::Test {

using namespace TestKit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A protocol with one upload that runs, whose answers are written down.
class ScriptedProtocolTest : public testing::Test {
protected:
    ScriptedProtocolTest()
    {
        upload = protocol.uploadFile(
            "/a.pdf", {{"key", "value"}},
            [this](qint64 id, Social::RequestResult result, const ScriptedProtocol::Sharing& sharing) {
                answers.push_back(std::to_string(id) + ' ' + std::to_string(result) + ' ' + sharing.id.toStdString());
            },
            [this](qint64 id, int value) { answers.push_back(std::to_string(id) + ": " + std::to_string(value)); });
    }

    /// What a call of the protocol throws.
    template <typename Misuse>
    static std::string ErrorOf(Misuse misuse)
    {
        try {
            misuse();
        } catch (const std::logic_error& error) {
            return error.what();
        }
        return "no error";
    }

    ScriptedProtocol::Sharing sharing{false, "doc"};
    std::vector<std::string> answers;
    ScriptedProtocol protocol;
    qint64 upload = 0;
};

TEST_F(ScriptedProtocolTest, AnswersAreHeldUntilTheTestGivesThem)
{
    EXPECT_THAT(answers, IsEmpty());
    EXPECT_THAT(protocol.Running(), ElementsAre(upload));
    EXPECT_EQ(protocol.LastCall("uploadFile").localPath, "/a.pdf");
    protocol.Progress(upload, 50);
    protocol.Answer(upload, Social::Success, sharing);
    EXPECT_THAT(protocol.Running(), IsEmpty());
    protocol.Answer(upload, Social::Canceled); // once more
    protocol.AnswerAs(upload, 77, Social::Error);
    EXPECT_THAT(answers, ElementsAre("1: 50", "1 0 doc", "1 2 ", "77 1 "));
}

TEST_F(ScriptedProtocolTest, OperationIsRefusedOrAnswersInside)
{
    protocol.refused = {"logout", "auth"};
    EXPECT_EQ(protocol.auth({}, {}), -1);
    protocol.refused.clear();
    std::vector<std::string> seen;
    protocol.inside["auth"] = [&](qint64 id) { protocol.Answer(id, Social::Success); };
    protocol.auth({}, [&](qint64 id, auto) { seen.push_back(std::to_string(id)); });
    EXPECT_THAT(seen, ElementsAre("2"));
    EXPECT_EQ(protocol.CallsOf("auth").size(), 2U);
}

TEST_F(ScriptedProtocolTest, FailureIsToldJustBeforeTheAnswer)
{
    auto* const source = dynamic_cast<PDF::Cloud::IFailureSource*>(static_cast<PDF::Cloud::ICloudProtocol*>(&protocol));
    ASSERT_TRUE(source);
    source->SetFailureObserver([this](const Social::OAuth2::Failure& failure) {
        answers.push_back(std::to_string(failure.operation) + ": " + failure.reason.toStdString());
    });
    protocol.Fail(upload, "no room");
    EXPECT_THAT(answers, ElementsAre("1: no room", "1 1 "));
    source->SetFailureObserver({});
    protocol.Fail(upload, "again");
    EXPECT_THAT(answers, ElementsAre("1: no room", "1 1 ", "1 1 "));
}

TEST_F(ScriptedProtocolTest, AnswerToNoRequestSaysWhichOnesThereAre)
{
    EXPECT_EQ(ErrorOf([&] { protocol.Answer(7, Social::Success); }),
              "No callback is held for request 7; held are: uploadFile 1");
    const qint64 quota = protocol.userQuota({});
    EXPECT_EQ(ErrorOf([&] { protocol.Progress(quota, 50); }),
              "No progress callback is held for userQuota 2; held are: uploadFile 1, userQuota 2");
    protocol.Drop(upload);
    protocol.Drop(quota);
    EXPECT_EQ(ErrorOf([&] { protocol.Answer(upload, Social::Success); }),
              "No callback is held for uploadFile 1; held are: none");
    EXPECT_EQ(ErrorOf([&] { protocol.LastId("deleteFile"); }), "deleteFile was not called");
}

TEST_F(ScriptedProtocolTest, AnswerWithAnotherPayloadChangesNothing)
{
    EXPECT_EQ(ErrorOf([&] { protocol.Answer(upload, Social::Success, QUrl()); }),
              "uploadFile 1 is answered with a payload of another type");
    EXPECT_THAT(answers, IsEmpty());
    EXPECT_THAT(protocol.Running(), ElementsAre(upload));
}

TEST_F(ScriptedProtocolTest, NameOfNoOperationIsAnError)
{
    const auto noUpload = HasSubstr("no operation upload ");
    EXPECT_THAT(ErrorOf([&] { protocol.CallsOf("upload"); }), noUpload);
    EXPECT_THAT(ErrorOf([&] { protocol.LastCall("upload"); }), noUpload);
    protocol.refused = {"upload"};
    EXPECT_THAT(ErrorOf([&] { protocol.userQuota({}); }), noUpload);
    EXPECT_THAT(ErrorOf([&] { protocol.cancelOperation(upload); }), noUpload);
    protocol.refused.clear();
    protocol.inside["upload"] = {};
    EXPECT_THAT(ErrorOf([&] { protocol.logout(); }), noUpload);
    EXPECT_EQ(protocol.calls.size(), 1U);
}

} // namespace Norlis::Test
