#include "WindowTest.h"

#include <QDir>
#include <QLabel>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using OfflineWindowTest = WindowTest;

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
                testing::MatchesRegex("1 document · Offline · trying again in .* s · The folder .* does not exist"));
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
    ASSERT_TRUE(WaitUntil([&] { return Button("Try Now") && Status().startsWith("1 document · Offline · "); }));
    EXPECT_EQ(Find<QLabel>("status")->parentWidget()->height(), height);
    Select({"a.pdf"});
    window->resize(window->minimumSizeHint());
    EXPECT_TRUE(WaitUntil([&] { return Status().startsWith("Offline · trying again"); }));
    window->resize(1100, 600);
    EXPECT_TRUE(WaitUntil([&] { return Status().startsWith("1 document · 1 selected, "); }));
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
