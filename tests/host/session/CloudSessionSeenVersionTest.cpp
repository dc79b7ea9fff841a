#include "FolderSessionTest.h"

namespace Norlis::Test {

namespace {

/// What is replaced or removed is a version that somebody has seen, however old the list was that it was decided about.
using CloudSessionSeenVersionTest = FolderSessionTest;

TEST_F(CloudSessionSeenVersionTest, WhatIsToBeReplacedIsTheVersionThatWasSeenWheneverItIsSent)
{
    Put("plan.pdf", "seen");
    RefreshNow();
    const QString id = IdOf("plan.pdf");
    ASSERT_TRUE(QDir().rename(cloud, cloud + " away"));
    Reopen(); // with the stored list
    session->StaySignedIn("token");
    ASSERT_TRUE(WaitForEvent("Failed"));
    session->ReplaceWith(id, Write("mine.pdf", "mine"));
    ASSERT_TRUE(WaitForEvent("UploadWaiting"));
    ASSERT_TRUE(QDir().rename(cloud + " away", cloud));
    Put("plan.pdf", "somebody's work");
    const auto failures = CountOf("Failed");
    session->TryNow();
    ASSERT_TRUE(WaitForEvent("Failed", failures + 1));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    EXPECT_EQ(ReadFile(cloud + "/plan.pdf"), QByteArray("somebody's work"));
    session->ReplaceWith(id, Write("mine.pdf", "mine"));
    ASSERT_TRUE(WaitForEvent("DocumentUploaded")); // now that the list shows it
}

TEST_F(CloudSessionSeenVersionTest, NothingIsRemovedThatNoListOfThisSignInHasShown)
{
    Put("plan.pdf", "seen");
    RefreshNow();
    const QString id = IdOf("plan.pdf");
    Put("plan.pdf", "somebody's work");
    Reopen();
    SignIn();
    session->Remove(id);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    EXPECT_TRUE(QFile::exists(cloud + "/plan.pdf"));
}

} // namespace

} // namespace Norlis::Test
