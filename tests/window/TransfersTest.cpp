#include "ServerWindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QListView>
#include <QRegularExpression>
#include <QScreen>
#include <QSplitter>
#include <QTest>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using testing::HasSubstr;

/// The panel of the transfers, over a server whose answers take as long as a test wants.
class TransfersTest : public ServerWindowTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    void DropSlowly(const QStringList& names)
    {
        server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
        QStringList paths;
        for (const QString& name : names) {
            paths.append(LocalFile(name, PdfOfText(name.toUtf8())));
        }
        Drop(paths);
        ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == names.size(); }));
    }

    /// What is called slow takes some seconds.
    void Download(const QStringList& names)
    {
        server.Misbehave(When("GET", "slow").Always(), Drips(10'000, 40));
        for (const QString& name : names) {
            server.Put(name, PdfOfColor(Qt::red) + QByteArray(1'200'000, ' '));
        }
        Refresh();
        ASSERT_TRUE(Shows(names));
        Select(names);
        Action("Download")->trigger();
    }

    /// Of the first transfer, as its row shows them.
    QString Figures() const
    {
        return window->findChild<QListView*>("transfers")
            ->model()
            ->index(0, 0)
            .data(Window::Transfers::ProgressRole)
            .toString();
    }

    /// In KiB per second; 0 where a text has none.
    static double RateIn(const QString& text)
    {
        static const QRegularExpression rate("([0-9.]+) (K|M)iB/s");
        const auto match = rate.match(text);
        return match.captured(1).toDouble() * (match.captured(2) == "M" ? 1024 : 1);
    }

    QString Title() const
    {
        return Find<QLabel>("transfersTitle")->text();
    }
};

TEST_F(TransfersTest, WhatWasCanceledCanBeStartedAgain)
{
    ASSERT_NO_FATAL_FAILURE(DropSlowly({"a.pdf"}));
    ClickButton("Cancel All");
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf canceled"}; }));
    EXPECT_EQ(Title(), "1 canceled");
    EXPECT_FALSE(Button("Try Again")->isEnabled()) << "nothing has failed";
    server.BehaveAgain();
    const auto list = Find<QListView>("transfers");
    const QRect row = list->visualRect(list->model()->index(0, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, {row.right() - 20, row.center().y()});
    EXPECT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf finished"}; }));
    EXPECT_EQ(server.Names(), QStringList{"a.pdf"});
}

TEST_F(TransfersTest, WhatAServerDoesNotAnswerIsStartingAndHasNoPercentage)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    Refresh();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    server.Misbehave(When("GET").Always(), Hangs());
    Action("Download")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return server.Count("GET") > 0; }));
    const auto row = Find<QListView>("transfers")->model()->index(0, 0);
    ASSERT_TRUE(WaitUntil([&] {
        return row.data(Window::Transfers::StatusRole).toInt() == static_cast<int>(Window::Transfers::Status::Running);
    }));
    EXPECT_EQ(row.data(Window::Transfers::ProgressRole).toString(), "starting…");
    EXPECT_EQ(row.data(Qt::AccessibleTextRole).toString(), "Download of a.pdf: starting…");
    EXPECT_TRUE(Button("Cancel All")->text().contains('&'));
}

TEST_F(TransfersTest, AButtonThatGoesLeavesTheKeyboardToTheDocumentsAndNotToTheNextButton)
{
    Drop({LocalFile("done.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"done.pdf finished"}; }));
    Button("Details")->setFocus();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return Button("Cancel All") && Button("Cancel All")->isEnabled(); }));
    EXPECT_EQ(QApplication::focusWidget(), Documents());
}

TEST_F(TransfersTest, TheWindowStaysAsLargeAsItIs)
{
    QFont large = window->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    window->setFont(large);
    window->resize(window->minimumSizeHint());
    const QSize before = window->size();
    ASSERT_NO_FATAL_FAILURE(DropSlowly({"a.pdf"}));
    ASSERT_TRUE(WaitUntil([&] { return Button("Cancel All") && Button("Cancel All")->isEnabled(); }));
    EXPECT_LE(window->height(), before.height() + 8 * window->fontMetrics().lineSpacing());
    window->resize(before.width(), window->screen()->availableGeometry().height() * 85 / 100);
    QCoreApplication::processEvents();
    EXPECT_LE(window->height(), window->screen()->availableGeometry().height());
}

TEST_F(TransfersTest, WhatSucceededIsToldOfBesideWhatFailed)
{
    server.Misbehave("PUT", IsOutOfSpace()); // the first that comes
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red)), LocalFile("b.pdf", PdfOfColor(Qt::blue)),
          LocalFile("c.pdf", PdfOfColor(Qt::green))});
    EXPECT_TRUE(WaitUntil([&] { return Title() == "✓ 2 documents uploaded · 1 failed"; })) << qPrintable(Title());
}

TEST_F(TransfersTest, TheHeadAgreesWithTheOnlyTransferThatIsLeft)
{
    ASSERT_NO_FATAL_FAILURE(Download({"fast.pdf", "slow.pdf"}));
    const auto figures = [](const QString& text) { return text.section(" · ", -2); };
    EXPECT_TRUE(WaitUntil([&] {
        return Transfers().filter("running").size() == 1 && RateIn(Figures()) > 0 &&
               figures(Figures()) == figures(Title());
    })) << qPrintable(Figures() + " / " + Title());
}

TEST_F(TransfersTest, TheTimeWithoutTheCloudSlowsNothingDown)
{
    server.Misbehave(When("GET").Always(), ClosesWithoutAnswer());
    ASSERT_NO_FATAL_FAILURE(Download({"slow one.pdf", "slow two.pdf"}));
    ASSERT_TRUE(WaitUntil([&] { return Transfers().filter("waiting").size() == 2; }));
    server.BehaveAgain();
    server.Misbehave(When("GET").Always(), Drips(10'000, 40));
    ClickButton("Try Now");
    ASSERT_TRUE(WaitUntil([&] { return RateIn(Title()) > 0 && RateIn(Figures()) > 0; }));
    EXPECT_GT(RateIn(Title()), 1.5 * RateIn(Figures())) << qPrintable(Figures() + " / " + Title()); // of the two
}

TEST_F(TransfersTest, WhatNeedsAttentionStandsBeforeWhatHasEnded)
{
    Drop({LocalFile("done.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"done.pdf finished"}; }));
    server.Misbehave(When("PUT").Always(), IsOutOfSpace());
    Drop({LocalFile("bad.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList({"bad.pdf failed", "done.pdf finished"}); }));
    const int before = server.Count("PUT");
    server.BehaveAgain();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    Drop({LocalFile("first.pdf", PdfOfColor(Qt::red)), LocalFile("second.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == before + 2; }));
    const auto names = [this] {
        QStringList each = Transfers();
        for (QString& row : each) {
            row = row.section(' ', 0, 0);
        }
        return each;
    };
    EXPECT_TRUE(WaitUntil([&] {
        return names() == QStringList({"first.pdf", "second.pdf", "bad.pdf", "done.pdf"}) ||
               names() == QStringList({"second.pdf", "first.pdf", "bad.pdf", "done.pdf"});
    }));
    EXPECT_THAT(Title().toStdString(), HasSubstr("1 failed"));
}

TEST_F(TransfersTest, OneLineIsLeftWhenAllHaveSucceeded)
{
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red)), LocalFile("b.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList({"b.pdf finished", "a.pdf finished"}); }));
    EXPECT_EQ(Title(), "✓ 2 documents uploaded");
    EXPECT_FALSE(Find<QListView>("transfers"));
    const auto panel = Find<QWidget>("transfersPanel");
    EXPECT_TRUE(WaitUntil([&] { return panel->height() < 4 * panel->fontMetrics().height(); })) << panel->height();
    const auto split = Find<QSplitter>("split");
    EXPECT_EQ(split->widget(0)->height() + split->handleWidth() + panel->height(), split->height());
    ClickButton("Details");
    EXPECT_TRUE(Find<QListView>("transfers"));
    EXPECT_TRUE(WaitUntil([&] { return panel->height() > 5 * panel->fontMetrics().height(); })) << panel->height();
    ClickButton("Clear");
    EXPECT_FALSE(Find<QWidget>("transfersPanel"));
}

TEST_F(TransfersTest, ThePanelStaysAsLargeAsTheUserHasMadeIt)
{
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf finished"}; }));
    ClickButton("Details");
    ASSERT_TRUE(Find<QListView>("transfers"));
    Drop({LocalFile("b.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList({"b.pdf finished", "a.pdf finished"}); }));
    EXPECT_TRUE(Find<QListView>("transfers"));
}

TEST_F(TransfersTest, WhoQuitsIsToldWhatBecomesOfRunningTransfers)
{
    ASSERT_NO_FATAL_FAILURE(DropSlowly({"a.pdf"}));
    window->close();
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Explanation().toStdString(), HasSubstr("canceled and do not go on later"));
    Answer("Quit");
    ASSERT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
    server.BehaveAgain();
    Open();
    ASSERT_TRUE(WaitUntil([&] { return Status().contains("as of"); }));
    EXPECT_EQ(Transfers(), QStringList());
    EXPECT_EQ(server.Names(), QStringList());
    EXPECT_TRUE(ReadFile(Local("a.pdf")));
}

TEST_F(TransfersTest, RowsStayInSightWhileManyOthersEnd)
{
    constexpr int count = 100; // more than are listed when they have ended
    for (int number = 0; number < count; ++number) {
        server.Put(QString("%1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == count; }));
    Documents()->selectAll();
    Action("Download")->trigger();
    const auto isBlank = [this] {
        const auto list = Find<QListView>("transfers");
        const QRect part(list->viewport()->mapTo(window.get(), QPoint()), list->viewport()->size());
        const QImage seen = window->screen()->grabWindow(window->winId()).toImage().copy(part);
        QImage blank = seen;
        blank.fill(seen.pixelColor(0, 0));
        return seen == blank;
    };
    int blanks = 0;
    ASSERT_TRUE(WaitUntil([&] {
        const int finished = Transfers().filter("finished").size();
        if (finished == Transfers().size()) {
            return true;
        }
        blanks += finished > 10 && isBlank() ? 1 : 0;
        return false;
    }));
    EXPECT_EQ(blanks, 0);
}

TEST_F(TransfersTest, ADoubleClickCancelsOneTransfer)
{
    ASSERT_NO_FATAL_FAILURE(DropSlowly({"a.pdf", "b.pdf"}));
    const auto list = Find<QListView>("transfers");
    const QRect row = list->visualRect(list->model()->index(0, 0));
    const QPoint button(row.right() - 20, row.center().y());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, button);
    ASSERT_TRUE(WaitUntil([&] { return Transfers().filter("canceled").size() == 1; })); // the other one is first now
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, button);
    EXPECT_EQ(Transfers().filter("running").size(), 1);
}

TEST_F(TransfersTest, NoButtonComesToWhereAnotherOneWas)
{
    server.Misbehave(When("PUT").Always(), IsOutOfSpace());
    Drop({LocalFile("a.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf failed"}; }));
    const QRect before = Button("Try Again")->geometry();
    const int sent = server.Count("PUT");
    server.BehaveAgain();
    server.Misbehave(When("PUT").Always(), HangsInTheRequest(10));
    ClickButton("Try Again");
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") > sent && Button("Cancel All")->isEnabled(); }));
    EXPECT_FALSE(Button("Cancel All")->geometry().intersects(before));
    ClickButton("Cancel All");
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf canceled"}; }));
}

} // namespace

} // namespace Norlis::Test
