#include "WindowTest.h"

#include <apps/window/pictures/PageView.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QScrollBar>
#include <QTest>
#include <qtestspontaneevent.h>
#include <QWheelEvent>

namespace Norlis::Test {

namespace {

/// Pages that are larger than the sheet that shows them.
class PageViewTest : public WindowTest {
protected:
    /// At the first of some documents of three pages, which are all here.
    void LookAtPages(const QStringList& names)
    {
        for (const QString& name : names) {
            PutIntoCloud(name, PdfOfColors({Qt::red, Qt::green, Qt::blue}));
        }
        OpenCloud();
        ASSERT_TRUE(Shows(names));
        Select(names);
        Action("Download")->trigger();
        for (const QString& name : names) {
            ASSERT_TRUE(IsUpToDate(name));
        }
        Select({names.first()});
        window->activateWindow();
        Documents()->setFocus();
        Press(Qt::Key_Space);
        ASSERT_TRUE(IsDrawn());
    }

    void Press(const QKeySequence& keys)
    {
        QTest::keySequence(QApplication::focusWidget(), keys);
    }

    Window::PageView& View() const
    {
        return *Find<Window::PageView>("pageView");
    }

    QSize Size() const
    {
        return View().Picture().size();
    }

    /// Waits until the page has a pixel for each of the screen.
    bool IsDrawn()
    {
        return WaitUntil([this] {
            const auto& picture = View().Picture();
            const QSize pixels = picture.size() * picture.devicePixelRatioF();
            const QSize drawn = picture.PageSize();
            return picture.IsSettled() && picture.Reason().isEmpty() && picture.PageCount() == 3 &&
                   (qAbs(drawn.width() - pixels.width()) < 2 || qAbs(drawn.height() - pixels.height()) < 2);
        });
    }

    bool IsPage(const QString& number)
    {
        return WaitUntil([&] { return Find<QLabel>("pageNumber")->text() == number; }) && IsDrawn();
    }

    void TurnWheel(const QPoint& place, int angle, Qt::KeyboardModifiers keys = Qt::NoModifier) const
    {
        QWheelEvent event(place, View().viewport()->mapToGlobal(place), {}, {0, angle}, Qt::NoButton, keys,
                          Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // others are not handed on to parents
        qApp->notify(View().viewport(), &event);
    }
};

TEST_F(PageViewTest, KeysEnlargeThePageWithAllPixelsAndNotTheThumbnailsBehind)
{
    LookAtPages({"a.pdf"});
    const QSize fitting = View().viewport()->size();
    const QSize thumbnail = Documents()->gridSize();
    EXPECT_EQ(Size(), fitting);
    EXPECT_FALSE(Button("Zoom Out")->isEnabled());
    for (int step = 0; step < 4; ++step) {
        Press(QString("Ctrl++"));
    }
    EXPECT_GT(Size().height(), 2 * fitting.height());
    EXPECT_TRUE(IsDrawn());
    Press(QString("Ctrl+-"));
    EXPECT_LT(Size().height(), 2 * fitting.height());
    Press(QString("Ctrl+0"));
    EXPECT_TRUE(IsDrawn());
    EXPECT_EQ(Size(), fitting);
    EXPECT_EQ(Documents()->gridSize(), thumbnail);
}

TEST_F(PageViewTest, TheMenuZoomsThePageAndNotTheThumbnailsBehindIt)
{
    LookAtPages({"a.pdf"});
    const QSize thumbnail = Documents()->gridSize();
    const QSize fitting = Size();
    EXPECT_FALSE(Action("Zoom Out")->isEnabled()) << "all of the page is seen";
    Action("Zoom In")->trigger();
    EXPECT_GT(Size().height(), fitting.height());
    EXPECT_TRUE(Action("Zoom Out")->isEnabled());
    Action("Usual Size")->trigger();
    EXPECT_TRUE(WaitUntil([&] { return Size() == fitting; }));
    EXPECT_EQ(Documents()->gridSize(), thumbnail);
    Press(Qt::Key_Escape);
    EXPECT_TRUE(Action("Zoom Out")->isEnabled()) << "of the thumbnails";
    Action("List")->trigger();
    EXPECT_FALSE(Action("Zoom In")->isEnabled());
    Press(Qt::Key_Space);
    EXPECT_TRUE(IsDrawn());
    EXPECT_TRUE(Action("Zoom In")->isEnabled()) << "of the page";
}

TEST_F(PageViewTest, APageIsOnlyAsLargeAsItCanBeDrawn)
{
    LookAtPages({"a.pdf"});
    for (int step = 0; step < 30; ++step) {
        Press(QString("Ctrl++"));
    }
    EXPECT_FALSE(Button("Zoom In")->isEnabled());
    EXPECT_LE(qMax(Size().width(), Size().height()) * View().devicePixelRatioF(), 4096);
    EXPECT_TRUE(IsDrawn());
}

TEST_F(PageViewTest, TheSheetGrowsWithThePageAndTellsHowLargeItIs)
{
    LookAtPages({"a.pdf"});
    const auto zoom = Find<QLabel>("quickLookZoom");
    const int usual = Find<QWidget>("quickLookSheet")->width();
    EXPECT_EQ(zoom->text(), "");
    for (int step = 0; step < 3; ++step) {
        Press(QString("Ctrl++"));
    }
    EXPECT_EQ(zoom->text(), "195 %");
    EXPECT_TRUE(WaitUntil([&] { return Find<QWidget>("quickLookSheet")->width() > usual; }));
    EXPECT_FALSE(View().IsLarger(Qt::Horizontal)) << "there is room beside it";
    for (int step = 0; step < 6; ++step) {
        Press(QString("Ctrl++"));
    }
    EXPECT_LT(Find<QWidget>("quickLookSheet")->width(), window->width());
    EXPECT_TRUE(View().IsLarger(Qt::Horizontal));
    Press(QString("Ctrl+0"));
    EXPECT_EQ(zoom->text(), "");
    EXPECT_TRUE(WaitUntil([&] { return Find<QWidget>("quickLookSheet")->width() == usual; }));
}

TEST_F(PageViewTest, ALandscapePageIsAsHighAsThereIsRoomBesideIt)
{
    PutIntoCloud("wide.pdf", PdfOfContent("0 0 842 595", "1 0 0 rg 0 0 842 595 re f"));
    OpenCloud();
    ASSERT_TRUE(Shows({"wide.pdf"}));
    Select({"wide.pdf"});
    Documents()->setFocus();
    Press(Qt::Key_Space);
    ASSERT_TRUE(WaitUntil([&] { return View().Picture().IsSettled() && !View().Picture().PageSize().isEmpty(); }));
    EXPECT_TRUE(WaitUntil([&] {
        const QSize drawn = View().Picture().PageSize() / View().devicePixelRatioF();
        return qAbs(drawn.height() - View().viewport()->height()) < 2;
    })) << View().Picture().PageSize().height()
        << " of " << View().viewport()->height();
}

TEST_F(PageViewTest, ArrowsMoveALargePageAndElseGoToTheNeighbours)
{
    LookAtPages({"a.pdf", "b.pdf"});
    for (int step = 0; step < 6; ++step) {
        Press(QString("Ctrl++"));
    }
    const QPoint before = View().Picture().pos();
    Press(Qt::Key_Right);
    Press(Qt::Key_Down);
    EXPECT_LT(View().Picture().x(), before.x());
    EXPECT_LT(View().Picture().y(), before.y());
    EXPECT_EQ(Find<QLabel>("quickLookName")->text(), "a.pdf");
    Press(QString("Ctrl+0"));
    Press(Qt::Key_Right);
    EXPECT_EQ(Find<QLabel>("quickLookName")->text(), "b.pdf");
}

TEST_F(PageViewTest, ReadingOnGoesOverALargePageToTheTopOfTheNextOne)
{
    LookAtPages({"a.pdf", "b.pdf"});
    Press(QString("Ctrl++"));
    Press(QString("Ctrl++"));
    ASSERT_TRUE(IsDrawn());
    const QSize large = Size();
    View().MoveToTop();
    Press(Qt::Key_PageDown);
    EXPECT_TRUE(IsPage("Page 1 of 3"));
    EXPECT_LT(View().Picture().y(), 0);
    Press(Qt::Key_PageDown);
    EXPECT_TRUE(IsPage("Page 2 of 3"));
    EXPECT_EQ(Size(), large);
    EXPECT_EQ(View().Picture().y(), 0);
    for (int turn = 0; turn < 20 && Find<QLabel>("pageNumber")->text() == "Page 2 of 3"; ++turn) {
        TurnWheel({20, 20}, -120);
    }
    EXPECT_TRUE(IsPage("Page 3 of 3"));
    EXPECT_EQ(View().Picture().y(), 0);
    Click(Button("Next Document"));
    EXPECT_TRUE(IsPage("Page 1 of 3"));
    EXPECT_EQ(Size(), View().viewport()->size()) << "another document is seen whole at first";
}

TEST_F(PageViewTest, TheMouseEnlargesWhatIsBelowItAndPullsThePage)
{
    LookAtPages({"a.pdf"});
    const auto& picture = View().Picture();
    const QPoint place = View().viewport()->rect().center() + QPoint(20, 30);
    TurnWheel(place, 480, Qt::ControlModifier);
    ASSERT_TRUE(View().IsLarger(Qt::Vertical));
    const auto below = [&] { return 1.0 * picture.mapFrom(View().viewport(), place).y() / picture.height(); };
    const qreal before = below();
    TurnWheel(place, 240, Qt::ControlModifier);
    EXPECT_NEAR(below(), before, 0.005);
    const QPoint corner = picture.pos();
    QTest::mousePress(View().viewport(), Qt::LeftButton, {}, place);
    const QPoint end = place - QPoint(0, 25);
    QMouseEvent move(QEvent::MouseMove, end, View().viewport()->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(View().viewport(), &move);
    QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(picture.pos(), corner - QPoint(0, 25));
    QTest::mouseDClick(View().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(View().Zoom(), 1);
    QTest::mouseDClick(View().viewport(), Qt::LeftButton, {}, place);
    EXPECT_GT(View().Zoom(), 1);
    EXPECT_TRUE(Find<QWidget>("quickLook")) << "it was not a click beside the sheet";
}

} // namespace

} // namespace Norlis::Test
