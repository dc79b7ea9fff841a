#include "WindowTest.h"

#include <QListView>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

namespace Norlis::Test {

namespace {

/// Thumbnails of the size that the user likes.
class ZoomTest : public WindowTest {
protected:
    void OpenWith(int number)
    {
        for (int each = 0; each < number; ++each) {
            PutIntoCloud(QString("document %1.pdf").arg(each), PdfOfColor(Qt::red));
        }
        OpenCloud();
        ASSERT_TRUE(WaitUntil([&] { return Names().size() == number; }));
    }

    int LineHeight() const
    {
        return Documents()->gridSize().height();
    }

    void Wheel(int steps, Qt::KeyboardModifiers modifiers)
    {
        const QPoint place = Documents()->viewport()->rect().center();
        QWheelEvent event(place, Documents()->viewport()->mapToGlobal(place), {}, {0, 120 * steps}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(Documents()->viewport(), &event);
    }
};

TEST_F(ZoomTest, LinesAreFilledEvenlyWhateverTheWidth)
{
    OpenWith(30);
    QTest::keyClick(Documents(), Qt::Key_Plus, Qt::ControlModifier);
    for (int width = 500; width < 1500; width += 37) {
        window->resize(width, 700);
        const QRect view = Documents()->viewport()->rect();
        int row = 0;
        const auto cell = [&](int number) { return Documents()->visualRect(Documents()->model()->index(number, 0)); };
        while (cell(row + 1).top() == cell(0).top()) {
            ++row;
        }
        EXPECT_EQ(cell(0).left(), view.left()) << width;
        EXPECT_LE(view.right() - cell(row).right(), row + 2) << width;
    }
}

TEST_F(ZoomTest, KeysMakeThumbnailsLargerAndSmallerWithinLimits)
{
    OpenWith(1);
    const int usual = LineHeight();
    QTest::keyClick(Documents(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(LineHeight(), usual + 32);
    QTest::keyClick(Documents(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(LineHeight(), usual);
    for (int press = 0; press < 20; ++press) {
        QTest::keyClick(Documents(), Qt::Key_Plus, Qt::ControlModifier);
    }
    EXPECT_EQ(LineHeight(), usual - 144 + 320);
    EXPECT_FALSE(Action("Zoom In")->isEnabled());
    for (int press = 0; press < 20; ++press) {
        QTest::keyClick(Documents(), Qt::Key_Minus, Qt::ControlModifier);
    }
    EXPECT_EQ(LineHeight(), usual - 144 + 96);
    EXPECT_FALSE(Action("Zoom Out")->isEnabled());
    QTest::keyClick(Documents(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(LineHeight(), usual);
    EXPECT_FALSE(Action("Usual Size")->isEnabled());
}

TEST_F(ZoomTest, TheWheelDoesItWithCtrlAndScrollsWithout)
{
    OpenWith(60);
    const int usual = LineHeight();
    Wheel(1, Qt::ControlModifier);
    EXPECT_EQ(LineHeight(), usual + 32);
    Wheel(-2, Qt::ControlModifier);
    EXPECT_EQ(LineHeight(), usual - 24);
    Documents()->scrollToTop();
    Wheel(-1, Qt::NoModifier);
    EXPECT_EQ(LineHeight(), usual - 24);
    EXPECT_GT(Documents()->verticalScrollBar()->value(), 0);
}

TEST_F(ZoomTest, TheDocumentInTheMiddleStaysInView)
{
    OpenWith(100);
    Documents()->verticalScrollBar()->setValue(Documents()->verticalScrollBar()->maximum() / 2);
    const QPersistentModelIndex middle = Documents()->indexAt(Documents()->viewport()->rect().center());
    ASSERT_TRUE(middle.isValid());
    for (const int key : {Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Minus, Qt::Key_Minus}) {
        QTest::keyClick(Documents(), key, Qt::ControlModifier);
        EXPECT_TRUE(Documents()->viewport()->rect().contains(Documents()->visualRect(middle).center())) << key;
    }
}

TEST_F(ZoomTest, LargeThumbnailsAreAsSharpAsTheScreen)
{
    QByteArray lines = "0 g ";
    for (int line = 0; line < 400; line += 4) { // black ones between white ones
        lines += "0 " + QByteArray::number(line) + " 400 2 re f ";
    }
    PutIntoCloud("lines.pdf", PdfOfContent("0 0 400 400", lines));
    OpenCloud();
    ASSERT_TRUE(Shows({"lines.pdf"}));
    const auto isSharp = [this] {
        const QRect cell = Documents()->visualRect(Documents()->model()->index(0, 0));
        const QImage image = Documents()->viewport()->grab(cell).toImage();
        int black = 0;
        int white = 0;
        for (int y = image.height() / 4; y < image.height() / 2; ++y) {
            const int light = image.pixelColor(image.width() / 2, y).lightness();
            black += light < 60 ? 1 : 0;
            white += light > 195 ? 1 : 0;
        }
        return black > image.height() / 20 && white > image.height() / 20;
    };
    for (int press = 0; press < 20; ++press) {
        QTest::keyClick(Documents(), Qt::Key_Plus, Qt::ControlModifier);
    }
    EXPECT_TRUE(WaitUntil(isSharp));
}

TEST_F(ZoomTest, TheSizeIsRememberedAndTheListHasNone)
{
    OpenWith(1);
    QTest::keyClick(Documents(), Qt::Key_Plus, Qt::ControlModifier);
    const int large = LineHeight();
    Action("List")->trigger();
    EXPECT_FALSE(Action("Zoom In")->isEnabled());
    const int line = LineHeight();
    Wheel(1, Qt::ControlModifier);
    EXPECT_EQ(LineHeight(), line);
    Action("Thumbnails")->trigger();
    EXPECT_EQ(LineHeight(), large);
    Close();
    Open();
    EXPECT_EQ(LineHeight(), large);
}

} // namespace

} // namespace Norlis::Test
