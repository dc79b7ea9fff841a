#include <protocol/service/QuotaRequests.h>

#include <tests/support/Waiting.h>

#include <gmock/gmock.h>

namespace Norlis::Social {

using Test::WaitUntil;
using testing::ElementsAre;
using testing::IsEmpty;

class QuotaRequestsTest : public testing::Test {
protected:
    /// The service has found it out.
    void Find(const QString& usage)
    {
        const auto found = std::exchange(searches, {});
        ASSERT_EQ(found.size(), 1U);
        found.front()({Success, usage, {}, false});
    }

    std::vector<std::function<void(Reply)>> searches; ///< under way
    bool isBusy = false;
    std::vector<std::string> answers; ///< "3 usage"
    QuotaRequests quotas{[this](const auto& found) { searches.push_back(found); }, [this] { return isBusy; },
                         [this](qint64 id, const Reply& reply) {
                             answers.push_back(std::to_string(id) + ' ' +
                                               std::get<QString>(reply.payload).toStdString());
                         }};
};

TEST_F(QuotaRequestsTest, EachIsAnsweredAtOnceWhileNothingElseGoesOn)
{
    quotas.Add(1);
    Find("one");
    quotas.Add(2);
    Find("two");
    EXPECT_THAT(answers, ElementsAre("1 one", "2 two"));
}

TEST_F(QuotaRequestsTest, WhatComesWhileOneIsUnderWayIsAnsweredByTheNext)
{
    quotas.Add(1);
    quotas.Add(2);
    quotas.Add(3);
    Find("old");
    EXPECT_THAT(answers, ElementsAre("1 old"));
    Find("new");
    EXPECT_THAT(answers, ElementsAre("1 old", "2 new", "3 new"));
    EXPECT_THAT(searches, IsEmpty());
}

TEST_F(QuotaRequestsTest, WhileTransfersRunTheyWaitForEachOther)
{
    isBusy = true;
    quotas.Add(1);
    Find("first");
    for (int id = 2; id <= 100; ++id) {
        quotas.Add(id);
    }
    EXPECT_THAT(searches, IsEmpty());
    isBusy = false;
    ASSERT_TRUE(WaitUntil([&] { return !searches.empty(); }));
    Find("last");
    EXPECT_EQ(answers.size(), 100U);
    EXPECT_EQ(answers.back(), "100 last");
}

TEST_F(QuotaRequestsTest, TransfersThatGoOnForeverDoNotHoldThemUp)
{
    isBusy = true;
    quotas.Add(1);
    Find("first");
    quotas.Add(2);
    ASSERT_TRUE(WaitUntil([&] { return !searches.empty(); }));
    Find("second");
    EXPECT_THAT(answers, ElementsAre("1 first", "2 second"));
}

TEST_F(QuotaRequestsTest, WhatIsCanceledIsNotAnswered)
{
    quotas.Add(1);
    quotas.Add(2);
    quotas.Cancel(1);
    quotas.Cancel(7);
    Find("old");
    Find("new");
    EXPECT_THAT(answers, ElementsAre("2 new"));
}

} // namespace Norlis::Social
