#include "CloudManagerBench.h"

#include <QSignalSpy>
#include <QTimer>

namespace Norlis::Test {

namespace {

class AutoRefreshTest : public CloudManagerTest {
protected:
    /// The manager's only timer.
    QTimer& Timer()
    {
        const auto timers = manager->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
        EXPECT_EQ(timers.size(), 1);
        return *timers.at(0);
    }

    void UseRefreshingManager(int interval)
    {
        settings->autoRefresh = true;
        settings->interval = interval;
        Use<NorlisCloudManager>();
    }

    void Tick()
    {
        ASSERT_TRUE(QMetaObject::invokeMethod(&Timer(), "timeout"));
    }
};

TEST_F(AutoRefreshTest, DisabledRefreshLeavesTheTimerIdleAndUnconnected)
{
    EXPECT_FALSE(Timer().isActive());
    EXPECT_EQ(settings->intervalCalls, 0);

    Tick();

    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_EQ(protocol->loggedInCalls, 0);
}

TEST_F(AutoRefreshTest, EnabledRefreshStartsARepeatingTimer)
{
    UseRefreshingManager(123456);

    EXPECT_TRUE(Timer().isActive());
    EXPECT_FALSE(Timer().isSingleShot());
    EXPECT_EQ(Timer().interval(), 123456);
}

TEST_F(AutoRefreshTest, SettingsAreAskedOnceAndNotKept)
{
    settings = std::make_shared<FixedAccountSettings>();
    UseRefreshingManager(1000);
    Tick();

    EXPECT_EQ(settings->enabledCalls, 1);
    EXPECT_EQ(settings->intervalCalls, 1);
    EXPECT_EQ(settings.use_count(), 1);
}

TEST_F(AutoRefreshTest, TicksOfTheRunningTimerFetchTheFilesListAgainAndAgain)
{
    UseRefreshingManager(1);
    QSignalSpy started(manager.get(), &NorlisCloudManager::RetrievingFilesListStarted);

    while (started.count() < 2) {
        ASSERT_TRUE(started.wait());
    }
    EXPECT_GE(protocol->CallsOf("retriveFileList").size(), 2u);
}

TEST_F(AutoRefreshTest, ConstructionItselfFetchesNothing)
{
    UseRefreshingManager(1);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(AutoRefreshTest, TickWhileSignedOutAsksForAuthorization)
{
    UseRefreshingManager(100000);
    protocol->signedIn = false;
    Tick();
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
}

TEST_F(AutoRefreshTest, TickDuringATransferDoesNothing)
{
    UseRefreshingManager(100000);
    StartDownload();
    Forget();
    Tick();
    EXPECT_THAT(Events(), IsEmpty());
}

} // namespace

} // namespace Norlis::Test
