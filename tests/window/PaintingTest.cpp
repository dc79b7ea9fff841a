#include "WindowTest.h"

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QScrollBar>
#include <QTest>

namespace Norlis::Test {

namespace {

/// What stands on the screen, of which only parts are painted when something changes.
class PaintingTest : public WindowTest {
protected:
    PaintingTest() : font(QApplication::font()), palette(QApplication::palette()) {}

    ~PaintingTest() override
    {
        window.reset();
        QApplication::setFont(font);
        QApplication::setPalette(palette);
    }

    QImage OnScreen() const
    {
        return PartOf(window->screen()->grabWindow(window->winId()));
    }

    /// Whether all of the documents, painted anew, would be what is on the screen.
    bool IsRight() const
    {
        return OnScreen() == PartOf(window->grab());
    }

    QRect Cell(int row) const
    {
        return Documents()->visualRect(Documents()->model()->index(row, 0));
    }

    QColor Picture(int row) const
    {
        constexpr int inPicture = 60;
        return OnScreen().pixelColor(Cell(row).center().x(), Cell(row).top() + inPicture);
    }

    bool HasPicture(int row, const QColor& color) const
    {
        return WaitUntil([&] { return Picture(row) == color && IsRight(); });
    }

    const QFont font;
    const QPalette palette;

private:
    QImage PartOf(const QPixmap& picture) const
    {
        const QWidget& viewport = *Documents()->viewport();
        const QRect part(viewport.mapTo(window.get(), QPoint()), viewport.size());
        return picture.toImage().convertToFormat(QImage::Format_RGB32).copy(part);
    }
};

TEST_F(PaintingTest, EachChangeOfADocumentIsSeen)
{
    PutIntoCloud("a document with a name of two lines.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 2; }));
    ASSERT_TRUE(HasPicture(0, Qt::red));
    ASSERT_TRUE(HasPicture(1, Qt::blue));

    const auto isSeen = [this](const std::function<void()>& change) {
        const QImage before = OnScreen();
        change();
        return WaitUntil([&] { return OnScreen() != before && IsRight(); });
    };
    EXPECT_TRUE(isSeen([this] { Select({"b.pdf"}); })) << "selection";
    Action("Download")->trigger();
    EXPECT_TRUE(isSeen([this] { ASSERT_TRUE(IsUpToDate("b.pdf")); })) << "state";
    ClickButton("Clear");
    EXPECT_TRUE(isSeen([this] { Documents()->clearSelection(); })) << "selection that is gone";
    EXPECT_TRUE(isSeen([this] { QTest::mouseMove(Documents()->viewport(), Cell(0).center()); })) << "pointer";
    EXPECT_TRUE(isSeen([this] { QTest::mouseMove(Documents()->viewport(), Cell(1).center()); })) << "pointer elsewhere";
    Find<QLineEdit>("search")->setFocus();
    Documents()->setCurrentIndex({});
    EXPECT_TRUE(isSeen([this] {
        Documents()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(Documents(), Qt::Key_Right);
    })) << "focus";
    PutIntoCloud("b.pdf", PdfOfColor(Qt::green));
    Refresh();
    EXPECT_TRUE(HasPicture(1, Qt::green));
    EXPECT_TRUE(isSeen([] {
        QPalette dark;
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(dark);
    })) << "colours";
    EXPECT_TRUE(isSeen([this] {
        QFont large = font;
        large.setPointSizeF(font.pointSizeF() * 1.5);
        QApplication::setFont(large);
    })) << "letters";
    ASSERT_TRUE(QFile::rename(Cloud("a document with a name of two lines.pdf"), Cloud("a.pdf")));
    EXPECT_TRUE(isSeen([this] { Refresh(); })) << "name";
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    EXPECT_TRUE(isSeen([this] { Find<QLineEdit>("search")->setText("b"); })) << "search";
    EXPECT_TRUE(isSeen([this] { Find<QLineEdit>("search")->clear(); })) << "no search";
    EXPECT_TRUE(isSeen([this] { Action("List")->trigger(); })) << "list";
}

TEST_F(PaintingTest, AChangedDocumentKeepsItsPictureUntilTheNewOneIsThere)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    ASSERT_TRUE(HasPicture(0, Qt::red));
    PutIntoCloud("a.pdf", PdfOfColor(Qt::blue));
    Refresh();
    QStringList seen;
    ASSERT_TRUE(WaitUntil([&] {
        seen.append(Picture(0).name());
        return Picture(0) == Qt::blue;
    }));
    seen.removeDuplicates();
    EXPECT_EQ(seen, QStringList({QColor(Qt::red).name(), QColor(Qt::blue).name()}));
}

TEST_F(PaintingTest, WhatIsScrolledIntoViewIsPaintedBesideWhatIsLeftInView)
{
    for (int number = 10; number < 60; ++number) {
        PutIntoCloud(QString("document %1.pdf").arg(number), PdfOfColor(number % 2 == 0 ? Qt::red : Qt::blue));
    }
    OpenCloud();
    QScrollBar& bar = *Documents()->verticalScrollBar();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 50 && bar.maximum() > 300; }));
    for (const int place : {40, 41, 95, 300, 299, 250, 0}) {
        bar.setValue(place);
        EXPECT_TRUE(WaitUntil([&] { return IsRight(); })) << place;
    }
    EXPECT_TRUE(HasPicture(0, Qt::red));
    EXPECT_TRUE(HasPicture(1, Qt::blue));
}

} // namespace

} // namespace Norlis::Test
