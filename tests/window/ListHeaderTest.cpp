#include "OpenedFiles.h"
#include "WindowTest.h"

#include <apps/window/list/ListHeader.h>

#include <QApplication>
#include <QComboBox>
#include <QListView>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

namespace Norlis::Test {

namespace {

using Window::Column;
using Window::ListHeader;

/// The titles above the list.
class ListHeaderTest : public WindowTest {
protected:
    void SetUp() override
    {
        PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
        PutIntoCloud("b.pdf", PdfOfColor(Qt::red) + QByteArray(10'000, '\n'));
        PutIntoCloud("c.pdf", PdfOfColor(Qt::red) + QByteArray(5'000, '\n'));
    }

    ~ListHeaderTest() override
    {
        window.reset();
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void OpenList()
    {
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"}));
        Action("List")->trigger();
        ASSERT_TRUE(Header());
    }

    /// The local copy has a folder.
    void Download(const QString& name)
    {
        Select({name});
        Action("Download")->trigger();
        ASSERT_TRUE(IsUpToDate(name));
        ASSERT_TRUE(WaitUntil([&] { return Header()->Has(Column::Folder); }));
    }

    ListHeader* Header() const
    {
        return Find<ListHeader>();
    }

    void ClickOn(Column column)
    {
        QTest::mouseClick(Header()->viewport(), Qt::LeftButton, {}, MiddleOf(column));
    }

    QPoint MiddleOf(Column column) const
    {
        return Header()->CellOf(column, Header()->viewport()->rect()).center();
    }

    /// The edge at the end of a column is moved.
    void Drag(Column column, int distance)
    {
        const QRect cell = Header()->CellOf(column, Header()->viewport()->rect());
        const QPoint edge(cell.right(), cell.center().y());
        QTest::mousePress(Header()->viewport(), Qt::LeftButton, {}, edge);
        for (const int step : {distance / 2, distance}) {
            const QPoint place = edge + QPoint(step, 0);
            QMouseEvent move(QEvent::MouseMove, place, Header()->viewport()->mapToGlobal(place), Qt::LeftButton,
                             Qt::LeftButton, {});
            QCoreApplication::sendEvent(Header()->viewport(), &move);
        }
        QTest::mouseRelease(Header()->viewport(), Qt::LeftButton, {}, edge + QPoint(distance, 0));
    }

    int WidthOf(Column column) const
    {
        return Header()->sectionSize(static_cast<int>(column));
    }

    QString CheckedEntry() const
    {
        for (const QAction* const entry : Action("Sort By")->menu()->actions()) {
            if (entry->isChecked()) {
                return QString(entry->text()).remove('&');
            }
        }
        return {};
    }
};

TEST_F(ListHeaderTest, AClickSortsASecondOneTurnsItRoundAndMenuAndBoxKnowIt)
{
    OpenList();
    ClickOn(Column::Size);
    EXPECT_EQ(Names(), QStringList({"b.pdf", "c.pdf", "a.pdf"})) << "the largest is what one looks for";
    EXPECT_EQ(CheckedEntry(), "Largest First");
    ClickOn(Column::Size);
    EXPECT_EQ(Names(), QStringList({"a.pdf", "c.pdf", "b.pdf"}));
    EXPECT_EQ(Header()->sortIndicatorSection(), static_cast<int>(Column::Size));
    EXPECT_EQ(Header()->sortIndicatorOrder(), Qt::AscendingOrder);
    EXPECT_EQ(CheckedEntry(), "Smallest First");
    Action("Thumbnails")->trigger();
    EXPECT_FALSE(Header());
    EXPECT_EQ(Find<QComboBox>("order")->currentText(), "Smallest First");
    Action("Name, Z to A")->trigger();
    EXPECT_EQ(Names(), QStringList({"c.pdf", "b.pdf", "a.pdf"}));
    EXPECT_EQ(Find<QComboBox>("order")->currentText(), "Name, Z to A");
    Action("List")->trigger();
    EXPECT_FALSE(Find<QComboBox>("order")) << "the header does the same";
    EXPECT_EQ(Header()->sortIndicatorSection(), static_cast<int>(Column::Name));
    EXPECT_EQ(Header()->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(ListHeaderTest, FolderAndStateGiveAnOrderToo)
{
    OpenList();
    Download("c.pdf");
    ClickOn(Column::Folder);
    EXPECT_EQ(Names(), QStringList({"a.pdf", "b.pdf", "c.pdf"})) << "those without a copy come first";
    ClickOn(Column::Folder);
    EXPECT_EQ(Names(), QStringList({"c.pdf", "b.pdf", "a.pdf"}));
    WriteFile(Local("downloads/c.pdf"), PdfOfColor(Qt::blue));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("c.pdf") == static_cast<int>(State::ChangedLocally); }));
    ClickOn(Column::State);
    EXPECT_EQ(Names(), QStringList({"c.pdf", "a.pdf", "b.pdf"})) << "what needs the user comes first";
}

TEST_F(ListHeaderTest, DraggedWidthsAreKeptAndFillTheWindow)
{
    OpenList();
    Download("c.pdf");
    const int state = WidthOf(Column::State);
    const int folder = WidthOf(Column::Folder);
    const int name = WidthOf(Column::Name);
    Drag(Column::Folder, -40);
    EXPECT_EQ(WidthOf(Column::Folder), folder - 40);
    EXPECT_EQ(WidthOf(Column::State), state + 40) << "the next one takes it";
    Drag(Column::Name, 30);
    EXPECT_EQ(WidthOf(Column::Name), name + 30);
    EXPECT_EQ(WidthOf(Column::Folder), folder - 70);
    Drag(Column::Size, -2000);
    EXPECT_GT(WidthOf(Column::Size), 20) << "none vanishes";
    EXPECT_EQ(Header()->length(), Documents()->viewport()->width());
    const QList<int> widths = Header()->Widths();
    Close();
    Open();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"}));
    EXPECT_EQ(Header()->Widths(), widths);
    EXPECT_EQ(WidthOf(Column::Folder), folder - 70);
    window->resize(window->width() + 100, window->height());
    EXPECT_TRUE(WaitUntil([&] { return Header()->length() == Documents()->viewport()->width(); }));
    EXPECT_EQ(WidthOf(Column::Folder), folder - 70) << "the name takes what the window has more";
}

TEST_F(ListHeaderTest, ANarrowWindowLeavesOutTheLeastImportantColumns)
{
    OpenList();
    Download("c.pdf");
    window->resize(window->minimumSizeHint().width(), 600);
    ASSERT_TRUE(WaitUntil([&] { return !Header()->Has(Column::Folder); }));
    EXPECT_TRUE(Header()->Has(Column::Name));
    EXPECT_TRUE(Header()->Has(Column::State));
    EXPECT_TRUE(Header()->Has(Column::Modified));
    EXPECT_LE(Header()->length(), Documents()->viewport()->width());
    window->resize(1100, 600);
    EXPECT_TRUE(WaitUntil([&] { return Header()->Has(Column::Folder); }));
}

TEST_F(ListHeaderTest, TheFolderTakesRoomOnlyWhileADocumentHasOneAndTheStateIsNeverCut)
{
    OpenList();
    EXPECT_FALSE(Header()->Has(Column::Folder));
    const QString longest = "Changed on this computer";
    const int room = WidthOf(Column::State) - Window::badgeEdge - 3 * Window::columnInset;
    EXPECT_EQ(Documents()->fontMetrics().elidedText(longest, Qt::ElideRight, room), longest);
    const int state = WidthOf(Column::State);
    Download("a.pdf");
    EXPECT_EQ(WidthOf(Column::State), state);
    const int folder = WidthOf(Column::Folder);
    ASSERT_TRUE(WaitUntil([&] {
        window->resize(window->width() - 20, 600);
        return WidthOf(Column::Folder) < folder;
    })) << "it gives way first";
    EXPECT_EQ(WidthOf(Column::State), state);
}

TEST_F(ListHeaderTest, TheFolderGoesWithTheLastCopy)
{
    OpenList();
    Download("a.pdf");
    ASSERT_TRUE(QFile::remove(Local("downloads/a.pdf")));
    Refresh();
    EXPECT_TRUE(WaitUntil([&] { return !Header()->Has(Column::Folder); }));
}

TEST_F(ListHeaderTest, CopiesThatWereFetchedToBeLookedAtHaveNoFolder)
{
    const OpenedFiles opened;
    OpenList();
    Select({"a.pdf"});
    Action("Open")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return !opened.paths.isEmpty(); }));
    Download("b.pdf");
    ASSERT_TRUE(QFile::remove(Local("downloads/b.pdf")));
    Refresh();
    EXPECT_TRUE(WaitUntil([&] { return !Header()->Has(Column::Folder); }));
    EXPECT_EQ(StateOf("a.pdf"), static_cast<int>(State::InSync));
}

TEST_F(ListHeaderTest, TheNameIsTheLastToBecomeShort)
{
    OpenList();
    Download("c.pdf");
    const int letter = Header()->fontMetrics().averageCharWidth();
    const int readable = 39 * letter;
    const int usualState = WidthOf(Column::State);
    int widthWithoutFolder = 0;
    while (WidthOf(Column::Name) >= readable) {
        ASSERT_GT(window->width(), window->minimumSizeHint().width());
        window->resize(window->width() - 5, 600);
        QCoreApplication::processEvents();
        ASSERT_TRUE(!Header()->Has(Column::Folder) || WidthOf(Column::State) == usualState) << "the folder goes first";
        widthWithoutFolder = qMax(widthWithoutFolder, Header()->Has(Column::Folder) ? 0 : window->width());
    }
    EXPECT_GT(widthWithoutFolder, window->width());
    EXPECT_LT(WidthOf(Column::State), usualState);
    for (const Column column : {Column::State, Column::Size, Column::Modified}) {
        EXPECT_TRUE(Header()->Has(column)) << "they have become narrower";
    }
    const QString state = "Only in the cloud";
    const int room = WidthOf(Column::State) - Window::badgeEdge - 3 * Window::columnInset;
    EXPECT_EQ(Documents()->fontMetrics().elidedText(state, Qt::ElideRight, room), state);
}

TEST_F(ListHeaderTest, LongNamesTakeTheRoomOfTheFolderThenOfTheSizeThenOfTheDate)
{
    const QString longer = QString("minutes of the meeting ").repeated(4);
    for (const QString number : {"1", "2", "3"}) {
        PutIntoCloud(longer + number + ".pdf", PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 6; }));
    Action("List")->trigger();
    Select({"a.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(IsUpToDate("a.pdf"));
    window->resize(1700, 600);
    ASSERT_TRUE(WaitUntil([&] { return Header()->Has(Column::Folder); }));
    QVector<Column> gone;
    while (window->width() > window->minimumSizeHint().width()) {
        window->resize(window->width() - 10, 600);
        QCoreApplication::processEvents();
        for (const Column column : {Column::Folder, Column::State, Column::Size, Column::Modified}) {
            if (!Header()->Has(column) && !gone.contains(column)) {
                gone.append(column);
            }
        }
        const int letters = WidthOf(Column::Name) / Header()->fontMetrics().averageCharWidth();
        ASSERT_TRUE(!Header()->Has(Column::Folder) || letters >= 80) << letters;
        ASSERT_TRUE(!Header()->Has(Column::Size) || letters >= 38) << letters;
    }
    EXPECT_EQ(gone.mid(0, 3), QVector<Column>({Column::Folder, Column::Size, Column::Modified}));
    EXPECT_TRUE(Header()->Has(Column::State));
}

TEST_F(ListHeaderTest, ASingleLongNameLeavesTheOthersTheirColumns)
{
    for (int number = 0; number < 20; ++number) {
        PutIntoCloud(QString("%1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    PutIntoCloud(QString("minutes of the meeting ").repeated(4) + ".pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 24; }));
    Action("List")->trigger();
    Download("c.pdf");
    EXPECT_EQ(window->width(), 1100);
    EXPECT_TRUE(Header()->Has(Column::Size) && Header()->Has(Column::Modified));
}

TEST_F(ListHeaderTest, TheTitlesReachFromOneSideToTheOtherWhileThereIsNothingToScroll)
{
    OpenList();
    EXPECT_EQ(Documents()->viewport()->width(), Documents()->width());
    EXPECT_EQ(Header()->width(), Documents()->width());
    EXPECT_EQ(Documents()->visualRect(Documents()->model()->index(0, 0)).top(), 0);
    window->resize(window->width(), window->minimumSizeHint().height());
    for (int number = 0; number < 10; ++number) {
        PutIntoCloud(QString("%1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    Refresh();
    EXPECT_TRUE(WaitUntil([&] { return Documents()->viewport()->width() < Documents()->width(); }));
    EXPECT_EQ(Header()->width(), Documents()->viewport()->width());
}

TEST_F(ListHeaderTest, FromRightToLeftTheListIsMirrored)
{
    OpenList();
    const auto columnsOfInk = [this] { // where something is painted in a line that the keyboard is not in
        const QImage line = Documents()
                                ->grab(Documents()
                                           ->visualRect(Documents()->model()->index(1, 0))
                                           .translated(Documents()->viewport()->pos()))
                                .toImage();
        const QColor paper = Documents()->palette().color(QPalette::Base);
        QList<int> found;
        for (int x = 0; x < line.width(); ++x) {
            for (int y = 0; y < line.height(); ++y) {
                if (line.pixelColor(x, y) != paper) {
                    found.append(x);
                    break;
                }
            }
        }
        return found;
    };
    ASSERT_TRUE(WaitUntil([&] { return !columnsOfInk().isEmpty(); }));
    EXPECT_LT(columnsOfInk().first(), 20) << "the picture is at the left";
    EXPECT_LT(MiddleOf(Column::Name).x(), MiddleOf(Column::Modified).x());
    QApplication::setLayoutDirection(Qt::RightToLeft);
    ASSERT_TRUE(WaitUntil([&] { return MiddleOf(Column::Name).x() > MiddleOf(Column::Modified).x(); }));
    const int width = Documents()->viewport()->width();
    EXPECT_TRUE(WaitUntil([&] { return columnsOfInk().last() > width - 20; })) << "the picture is at the right";
    EXPECT_GT(columnsOfInk().first(), 20) << "the date begins at the right of its column";
}

} // namespace

} // namespace Norlis::Test
