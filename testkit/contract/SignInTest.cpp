#include "ContractTest.h"

#include <QPixmap>

namespace Norlis::TestKit {

using testing::IsEmpty;

class SignInTest : public ContractTest {};
NORLIS_FOR_EVERY_CLOUD(SignInTest);

TEST_P(SignInTest, SigningInLogsInWhenTheCallbackComes)
{
    const auto answer = client.Authorize();
    EXPECT_FALSE(client.Protocol()->loggedIn());
    answer->onDone = [this] { EXPECT_TRUE(client.Protocol()->loggedIn()); };
    EXPECT_TRUE(answer->Succeeds());
    EXPECT_EQ(answer->id, answer->operation);
    EXPECT_THAT(client.failures, IsEmpty());
}

TEST_P(SignInTest, AnUnreachableCloudFailsAndCanBeTriedAgain)
{
    cloud->Withdraw();
    const auto answer = client.Authorize();
    EXPECT_TRUE(answer->Fails());
    EXPECT_FALSE(client.Protocol()->loggedIn());
    if (client.TellsFailures()) {
        ASSERT_EQ(client.failures.size(), 1U);
        EXPECT_EQ(client.failures[0].operation, answer->operation);
        EXPECT_NE(client.failures[0].reason, QString());
        EXPECT_NE(client.failures[0].advice, QString());
    }

    cloud->Restore();
    EXPECT_TRUE(client.SignIn());
}

TEST_P(SignInTest, LogoutTakesEffectAtOnce)
{
    ASSERT_TRUE(client.SignIn());
    client.Protocol()->logout();
    EXPECT_FALSE(client.Protocol()->loggedIn());
    EXPECT_EQ(client.List()->operation, -1);
    EXPECT_TRUE(client.SignIn());
}

TEST_P(SignInTest, LogoutDuringSignInIsNotUndoneByIt)
{
    const auto answer = client.Authorize();
    client.Protocol()->logout();
    ASSERT_TRUE(WaitUntil([&] { return answer->Came(); }));
    EXPECT_EQ(answer->result, Social::Canceled);
    EXPECT_FALSE(client.Protocol()->loggedIn());
}

TEST_P(SignInTest, TheSignInThatFollowsALogoutCounts)
{
    const auto first = client.Authorize();
    client.Protocol()->logout();
    const auto second = client.Authorize();
    EXPECT_TRUE(second->Succeeds());
    ASSERT_TRUE(WaitUntil([&] { return first->Came(); }));
    EXPECT_EQ(first->result, Social::Canceled);
    EXPECT_TRUE(client.Protocol()->loggedIn());
}

TEST_P(SignInTest, CanceledSignInLogsNobodyIn)
{
    const auto canceled = client.Authorize();
    QCoreApplication::processEvents();
    const int before = canceled->count; // 1 if it was in time
    client.Cancel(canceled->operation);
    const auto other = client.Authorize();
    client.Protocol()->logout();
    ASSERT_TRUE(WaitUntil([&] { return other->Came(); }));
    EXPECT_EQ(canceled->count, before);
    EXPECT_FALSE(client.Protocol()->loggedIn());
}

TEST_P(SignInTest, WithoutSignInNothingStarts)
{
    const QString file = LocalFile("a.pdf", "content");
    EXPECT_EQ(client.UserName()->operation, -1);
    EXPECT_EQ(client.UserProfile()->operation, -1);
    EXPECT_EQ(client.UserPicAddress()->operation, -1);
    EXPECT_EQ(client.UserPic()->operation, -1);
    EXPECT_EQ(client.Info("id")->operation, -1);
    EXPECT_EQ(client.List()->operation, -1);
    EXPECT_EQ(client.Download("id", Local("target.pdf"))->operation, -1);
    EXPECT_EQ(client.Remove("id")->operation, -1);
    EXPECT_EQ(client.Upload(file)->operation, -1);
    EXPECT_EQ(client.Quota()->operation, -1);
    EXPECT_EQ(client.Preview("id", {100, 100})->operation, -1);
    EXPECT_EQ(client.failures.size(), client.TellsFailures() ? 11U : 0U);
    for (const auto& failure : client.failures) {
        EXPECT_EQ(failure.kind, Social::OAuth2::FailureKind::NotSignedIn);
    }

    ASSERT_TRUE(client.SignIn());
    LetThingsSettle();
    EXPECT_EQ(client.journal.back().rfind("done", 0), 0U);
    EXPECT_EQ(std::count_if(client.journal.begin(), client.journal.end(),
                            [](const std::string& line) { return line.rfind("done", 0) == 0; }),
              2); // the sign-in and what let things settle
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(SignInTest, TheUserIsKnownByNameAndPage)
{
    ASSERT_TRUE(client.SignIn());
    const auto name = client.UserName();
    const auto page = client.UserProfile();
    EXPECT_TRUE(name->Succeeds());
    EXPECT_FALSE(name->payload.isEmpty());
    EXPECT_TRUE(page->Succeeds());
    EXPECT_TRUE(page->payload.isValid());
}

TEST_P(SignInTest, BothPicturesOfTheUserAreAnswered)
{
    ASSERT_TRUE(client.SignIn());
    const auto address = client.UserPicAddress();
    const auto picture = client.UserPic();
    EXPECT_TRUE(address->Succeeds());
    EXPECT_TRUE(picture->Succeeds());
    EXPECT_EQ(address->payload.isEmpty(), picture->payload.isNull());
}

} // namespace Norlis::TestKit
