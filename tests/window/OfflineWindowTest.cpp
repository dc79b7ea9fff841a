#include "ServerWindowTest.h"

#include <apps/window/page/StatusLine.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using OfflineWindowTest = WindowTest;

/// The window over a server that takes requests and does not answer them.
class SilentServerWindowTest : public ServerWindowTest {
protected:
    void SetUp() override
    {
        server.Put("a.pdf", PdfOfColor(Qt::red));
        SignIn();
        ASSERT_TRUE(Shows({"a.pdf"}));
    }

    void Silence()
    {
        server.Misbehave(TestKit::When("*").Always(), TestKit::Hangs());
    }

    /// As if the server had been asked that long ago.
    void ShowWait(int seconds, bool isSigningIn)
    {
        Window::StatusLine::Situation situation;
        situation.isRefreshing = !isSigningIn;
        situation.isSigningIn = isSigningIn;
        situation.askedAt = QDateTime::currentDateTime().addSecs(-seconds);
        Find<Window::StatusLine>()->Show(situation);
    }

    void ComeBack()
    {
        server.BehaveAgain();
        ClickButton("Try Now");
        EXPECT_TRUE(WaitUntil([&] { return Status().startsWith("1 document · as of "); })) << qPrintable(Status());
        EXPECT_FALSE(Button("Stop Waiting"));
    }
};

TEST_F(SilentServerWindowTest, AListThatTakesLongIsToldOfAndNeedNotBeWaitedFor)
{
    Silence();
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Status() == "1 document · refreshing…"; }));
    ShowWait(9, false);
    EXPECT_FALSE(Button("Stop Waiting")) << "nothing unusual";
    ShowWait(12, false);
    EXPECT_THAT(Status().toStdString(), testing::EndsWith("The cloud has not answered for 12 s"));
    EXPECT_TRUE(WaitUntil([&] { return Status().endsWith("13 s"); }));
    Button("Stop Waiting")->setFocus();
    ClickButton("Stop Waiting");
    ASSERT_TRUE(WaitUntil([&] { return Status().contains("Offline · trying again in "); }));
    EXPECT_THAT(Status().toStdString(), HasSubstr("The server has stopped answering"));
    EXPECT_FALSE(Button("Stop Waiting"));
    EXPECT_EQ(Names(), QStringList{"a.pdf"});
    EXPECT_EQ(Message(), "");
    ComeBack();
}

TEST_F(SilentServerWindowTest, ASignInThatTakesLongNeedNotBeWaitedFor)
{
    Close();
    Silence();
    Open();
    ASSERT_TRUE(WaitUntil([&] { return Status() == "1 document · signing in…"; }));
    ShowWait(12, true);
    ClickButton("Stop Waiting");
    ASSERT_TRUE(WaitUntil([&] { return Status().contains("Offline · trying again in "); }));
    ComeBack();
}

TEST_F(OfflineWindowTest, TheListOfTheLastTimeIsThereBeforeTheCloudAnswers)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Close();
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Open();
    EXPECT_EQ(Names(), QStringList{"a.pdf"});
    ASSERT_TRUE(WaitUntil([&] { return Status().contains(" · trying again in "); }));
    EXPECT_THAT(Status().toStdString(),
                testing::MatchesRegex("Offline · trying again in .* s · 1 document · The folder .* does not exist"));
    EXPECT_EQ(Message(), "");
    EXPECT_TRUE(Action("Upload…")->isEnabled()); // it will wait
    ASSERT_TRUE(QFile::remove(Local("away/a.pdf")) && QDir().rename(Local("away"), Cloud()));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    ClickButton("Try Now");
    EXPECT_TRUE(Shows({"b.pdf"}));
    EXPECT_EQ(Message(), "");
}

TEST_F(OfflineWindowTest, WhereThereIsLittleRoomTheNumbersGiveWayAndTheLineKeepsItsHeight)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const int height = Find<QLabel>("status")->parentWidget()->height();
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Button("Try Now") && Status().contains(" · 1 document · "); }));
    EXPECT_EQ(Find<QLabel>("status")->parentWidget()->height(), height);
    Select({"a.pdf"});
    window->resize(window->minimumSizeHint());
    EXPECT_TRUE(WaitUntil([&] { return Status().startsWith("Offline · ") && !Status().contains("1 document"); }));
    window->resize(1100, 600);
    EXPECT_TRUE(WaitUntil([&] { return Status().contains(" · 1 document · 1 selected, "); }));
}

TEST_F(OfflineWindowTest, WithLargeLettersTheAgeOfTheListGivesWayFirstAndTheToolTipHasAll)
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 1.5);
    QApplication::setFont(large);
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    window->resize(1800, 600);
    ASSERT_TRUE(WaitUntil([&] { return Status().contains(" · as of "); })) << qPrintable(Status());
    EXPECT_EQ(Find<QLabel>("status")->toolTip(), "");
    window->resize(window->minimumSizeHint());
    ASSERT_TRUE(WaitUntil([&] { return !Status().contains(" · as of "); })) << qPrintable(Status());
    EXPECT_TRUE(Status().startsWith("1 document · 1 selected, ")) << qPrintable(Status());
    EXPECT_THAT(Find<QLabel>("status")->toolTip().toStdString(), HasSubstr(" · as of "));
    window.reset();
    QApplication::setFont(before);
}

TEST_F(OfflineWindowTest, AnUploadThatIsBegunOfflineGoesOnByItself)
{
    OpenCloud();
    ASSERT_TRUE(Shows({}));
    Close();
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Open();
    ASSERT_TRUE(WaitUntil([&] { return Status().contains("Offline"); }));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf waiting"}; }));
    ASSERT_TRUE(QDir().rename(Local("away"), Cloud()));
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")).has_value(); })); // at the next attempt
    EXPECT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf finished"}; }));
}

TEST_F(OfflineWindowTest, AListThatCannotBeFetchedIsToldAndTheDocumentsStay)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Status().contains(" · list of "); }));
    EXPECT_THAT(Find<QLabel>("status")->toolTip().toStdString(), HasSubstr("does not exist"));
    EXPECT_EQ(Names(), QStringList{"a.pdf"});
    EXPECT_THAT(Questions(), IsEmpty());
    ASSERT_TRUE(QDir().rename(Local("away"), Cloud()));
    Refresh();
    EXPECT_TRUE(WaitUntil([&] { return Status().startsWith("1 document · as of "); }));
    EXPECT_EQ(Find<QLabel>("status")->toolTip(), "");
}

} // namespace

} // namespace Norlis::Test
