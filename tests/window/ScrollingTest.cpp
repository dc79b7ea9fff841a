#include "WindowTest.h"

#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QTest>

namespace Norlis::Test {

namespace {

/// Where one is among many documents, and where keys lead from there.
class ScrollingTest : public WindowTest {
protected:
    void SetUp() override
    {
        for (int number = 10; number < 70; ++number) {
            PutIntoCloud(QString("document %1.pdf").arg(number), PdfOfColor(Qt::red));
        }
        OpenCloud();
        ASSERT_TRUE(WaitUntil([&] { return Names().size() == count; }));
        window->activateWindow();
        Documents()->setFocus();
    }

    QModelIndex Document(int row) const
    {
        return Documents()->model()->index(row, 0);
    }

    bool IsWhollySeen(int row) const
    {
        return Documents()->viewport()->rect().contains(Documents()->visualRect(Document(row)));
    }

    /// Of what is selected; empty when it is not exactly one document, which is wholly seen.
    int SelectedRow() const
    {
        const auto selected = Documents()->selectionModel()->selectedIndexes();
        return selected.size() == 1 && IsWhollySeen(selected.first().row()) ? selected.first().row() : -1;
    }

    void Press(Qt::Key key)
    {
        QTest::keyClick(Documents(), key);
    }

    static constexpr int count = 60;
};

TEST_F(ScrollingTest, AnotherModeBeginsWithTheSameDocument)
{
    Documents()->selectionModel()->setCurrentIndex(Document(30), QItemSelectionModel::NoUpdate);
    Documents()->scrollToTop();
    for (const auto mode : {"List", "Thumbnails"}) {
        Action(mode)->trigger();
        EXPECT_EQ(Documents()->verticalScrollBar()->value(), 0) << mode;
    }
    Action("List")->trigger();
    Documents()->scrollTo(Document(20), QListView::PositionAtTop);
    Action("Thumbnails")->trigger();
    EXPECT_EQ(Documents()->visualRect(Document(20)).top(), 0);
}

TEST_F(ScrollingTest, ASelectedDocumentIsInViewInAnotherModeToo)
{
    Documents()->setCurrentIndex(Document(25));
    Documents()->scrollTo(Document(25), QListView::PositionAtBottom);
    for (const auto mode : {"List", "Thumbnails"}) {
        Action(mode)->trigger();
        EXPECT_TRUE(IsWhollySeen(25)) << mode;
    }
}

TEST_F(ScrollingTest, ASelectedDocumentOutOfSightDoesNotTakeThePlaceInAnotherMode)
{
    Documents()->setCurrentIndex(Document(2));
    Documents()->scrollTo(Document(40), QListView::PositionAtTop);
    for (const auto mode : {"List", "Thumbnails"}) {
        Action(mode)->trigger();
        EXPECT_TRUE(IsWhollySeen(40)) << mode;
    }
}

TEST_F(ScrollingTest, AKeySelectsWhereItLeadsAtItsFirstPress)
{
    for (const auto mode : {"Thumbnails", "List"}) {
        Action(mode)->trigger();
        Documents()->selectionModel()->clear(); // then none is current
        Press(Qt::Key_End);
        EXPECT_EQ(SelectedRow(), count - 1) << mode;
        Press(Qt::Key_Home);
        EXPECT_EQ(SelectedRow(), 0) << mode;
        Documents()->clearSelection();
        Press(Qt::Key_Home);
        EXPECT_EQ(SelectedRow(), 0) << mode << ", where the keyboard is already";
        for (int press = 0; press < count; ++press) {
            Press(Qt::Key_PageDown);
            EXPECT_GE(SelectedRow(), 0) << mode;
        }
    }
}

} // namespace

} // namespace Norlis::Test
