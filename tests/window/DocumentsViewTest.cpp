#include "WindowTest.h"

#include <host/CloudDocumentsModel.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

/// How the documents are shown: what a search leaves, in which order, and by which names.
class DocumentsViewTest : public WindowTest {};

TEST_F(DocumentsViewTest, SearchNarrowsAsOneTypes)
{
    for (const auto name : {"Invoice May.pdf", "Invoice June.pdf", "Letter.pdf"}) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows({"Invoice June.pdf", "Invoice May.pdf", "Letter.pdf"}));
    QTest::keyClick(Documents(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(Find<QLineEdit>("search")->hasFocus());
    Type(QApplication::focusWidget(), "in");
    EXPECT_EQ(Names().size(), 2);
    QTest::keyClicks(QApplication::focusWidget(), "VOICE ju");
    EXPECT_EQ(Names(), QStringList{"Invoice June.pdf"});
    EXPECT_FALSE(Action("Download")->isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(Action("Download")->isEnabled()) << "the first one is selected";
    QTest::keyClick(Documents(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    EXPECT_THAT(Status().toStdString(), HasSubstr("1"));
    QTest::keyClicks(QApplication::focusWidget(), "x");
    EXPECT_EQ(EmptyTitle(), "No matching documents");
    ClickButton("Show All Documents");
    EXPECT_EQ(Names().size(), 3);
    QTest::keyClick(Documents(), Qt::Key_F, Qt::ControlModifier);
    Type(QApplication::focusWidget(), "letter");
    EXPECT_EQ(Names().size(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(Names().size(), 3);
}

TEST_F(DocumentsViewTest, SearchMindsNeitherCaseNorAccents)
{
    const QString composed = QString("Résumé – Zoë.pdf").normalized(QString::NormalizationForm_C);
    PutIntoCloud(composed, PdfOfColor(Qt::red));
    PutIntoCloud("Letter.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"Letter.pdf", composed}));
    const QString decomposed = QString("ZOË").normalized(QString::NormalizationForm_D);
    for (const QString& text : {QString("zoe"), QString("RESUME"), decomposed}) {
        Find<QLineEdit>("search")->setText(text);
        EXPECT_EQ(Names(), QStringList{composed}) << qPrintable(text);
    }
}

TEST_F(DocumentsViewTest, ANameDoesNotLookLikeAnotherOne)
{
    PutIntoCloud(QStringLiteral("evil\u202efdp.exe\u200b.pdf"), PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({QStringLiteral("evil\ufffdfdp.exe\ufffd.pdf")}));
    const QModelIndex document = Documents()->model()->index(0, 0);
    EXPECT_TRUE(document.data(Qt::ToolTipRole).toString().contains(QStringLiteral("evil\ufffdfdp.exe\ufffd.pdf")));
}

TEST_F(DocumentsViewTest, ANameIsNoMarkup)
{
    PutIntoCloud("<b>bold<br>.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"<b>bold<br>.pdf"}));
    QTextDocument shown;
    shown.setHtml(Documents()->model()->index(0, 0).data(Qt::ToolTipRole).toString());
    EXPECT_EQ(shown.firstBlock().text().section(QChar::LineSeparator, 0, 0), "<b>bold<br>.pdf");
    Select({"<b>bold<br>.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"<b>bold<br>.pdf finished"}; }));
    const auto transfers = window->findChild<QListView*>("transfers")->model();
    shown.setHtml(transfers->index(0, 0).data(Qt::ToolTipRole).toString());
    EXPECT_EQ(shown.firstBlock().text().section(QChar::LineSeparator, 0, 0), "<b>bold<br>.pdf");
}

TEST_F(DocumentsViewTest, AScrollBarIsSeenOnlyWhereThereIsSomethingToScroll)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const auto isPlain = [this] {
        const QImage bar = Documents()->verticalScrollBar()->grab().toImage();
        for (int line = 0; line < bar.height(); ++line) {
            if (bar.pixelColor(bar.width() / 2, line) != Documents()->palette().color(QPalette::Base)) {
                return false;
            }
        }
        return true;
    };
    EXPECT_TRUE(isPlain());
    const int width = Documents()->viewport()->width();
    window->resize(window->width(), 1);
    ASSERT_TRUE(WaitUntil([&] { return Documents()->verticalScrollBar()->maximum() > 0; }));
    EXPECT_FALSE(isPlain());
    EXPECT_EQ(Documents()->viewport()->width(), width);
}

TEST_F(DocumentsViewTest, TheMenuIsAboutWhatWasClicked)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    const auto entriesAt = [this](const QPoint& place) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, Documents()->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(Documents()->viewport(), &event);
        QStringList entries;
        const auto menu = Find<QMenu>("contextMenu");
        for (QAction* const entry : menu ? menu->actions() : QList<QAction*>()) {
            if (!entry->isSeparator() && entry->isEnabled()) {
                entries.append(entry->text().remove('&'));
            }
        }
        if (menu) {
            menu->close();
        }
        return entries;
    };
    const QRect document = Documents()->visualRect(Documents()->model()->index(0, 0));
    EXPECT_EQ(entriesAt(document.center()),
              QStringList({"Open", "Quick Look", "Download", "Download To…", "Copy", "Remove"}));
    EXPECT_EQ(entriesAt(document.center() + QPoint(0, 2 * document.height())),
              QStringList({"Upload…", "Paste", "Sort By", "View", "Refresh"}));
}

TEST_F(DocumentsViewTest, TheLineAtTheBottomTellsHowMuchIsSelected)
{
    PutIntoCloud("a.pdf", QByteArray("%PDF-").leftJustified(1024, ' '));
    PutIntoCloud("b.pdf", QByteArray("%PDF-").leftJustified(2048, ' '));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"a.pdf", "b.pdf"});
    EXPECT_TRUE(Status().startsWith("2 documents · 2 selected, 3.0 KiB · as of")) << qPrintable(Status());
    Select({});
    EXPECT_TRUE(Status().startsWith("2 documents · as of")) << qPrintable(Status());
}

TEST_F(DocumentsViewTest, WhatTheUserHasSelectedStaysWhenUploadsEnd)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const auto selected = [this] {
        const auto indexes = Documents()->selectionModel()->selectedIndexes();
        return indexes.size() == 1 ? indexes.first().data(Host::CloudDocumentsModel::NameRole).toString() : QString();
    };
    Drop({LocalFile("b.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return selected() == "b.pdf"; }));
    Drop({LocalFile("c.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return selected() == "c.pdf"; })) << "the selection was the program's";
    Select({"a.pdf"});
    Drop({LocalFile("d.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return Transfers().contains("d.pdf finished"); }));
    EXPECT_EQ(selected(), "a.pdf");
}

TEST_F(DocumentsViewTest, NumberedNamesFollowTheOneWithoutANumber)
{
    for (const char* const name : {"plan (10).pdf", "plan (2).pdf", "plan.pdf"}) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    EXPECT_TRUE(Shows({"plan.pdf", "plan (2).pdf", "plan (10).pdf"}));
}

TEST_F(DocumentsViewTest, WhatIsUploadedDuringASearchThatHidesItIsShownOnRequest)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Type(Find<QLineEdit>("search"), "a");
    Drop({LocalFile("b.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return Message() == "What was uploaded does not match what is searched for."; }));
    ClickButton("Show All");
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf"}));
    EXPECT_TRUE(WaitUntil([&] { return Documents()->currentIndex().row() == 1; }));
}

TEST_F(DocumentsViewTest, ALongNameHasTwoLines)
{
    const QString begin = "Minutes of the General Assembly ";
    const QStringList names = {begin + "in May.pdf", begin + "in May, second.pdf"};
    for (const QString& name : names) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows(names));
    const auto textOf = [this](int row) {
        QRect cell = Documents()->visualRect(Documents()->model()->index(row, 0));
        cell.setTop(cell.bottom() - 3 * Documents()->fontMetrics().lineSpacing() - 10); // below the picture
        return Documents()->grab(cell).toImage();
    };
    EXPECT_NE(textOf(0), textOf(1)); // in one line only the same beginning and end are left
}

TEST_F(DocumentsViewTest, NewDocumentsAreSelectedAndInViewUnlessTheUserHasSelectedOthers)
{
    for (int number = 0; number < 60; ++number) {
        PutIntoCloud(QString("document %1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 60; }));
    const auto selected = [this] {
        QStringList names;
        for (const auto& index : Documents()->selectionModel()->selectedIndexes()) {
            names.append(index.data(Host::CloudDocumentsModel::NameRole).toString());
        }
        names.sort();
        return names;
    };
    Drop({LocalFile("x 1.pdf", PdfOfColor(Qt::red)), LocalFile("x 2.pdf", PdfOfColor(Qt::blue))});
    ASSERT_TRUE(WaitUntil([&] { return selected() == QStringList({"x 1.pdf", "x 2.pdf"}); }));
    const QRect shown = Documents()->viewport()->rect();
    EXPECT_TRUE(shown.intersects(Documents()->visualRect(Documents()->currentIndex())));
    Drop({LocalFile("x 3.pdf", PdfOfColor(Qt::green))});
    ASSERT_TRUE(WaitUntil([&] { return selected() == QStringList("x 3.pdf"); }));
    Drop({LocalFile("x 4.pdf", PdfOfColor(Qt::green))});
    Select({"document 1.pdf"}); // meanwhile
    ASSERT_TRUE(WaitUntil([&] { return Names().contains("x 4.pdf") && Transfers().first() == "x 4.pdf finished"; }));
    EXPECT_EQ(selected(), QStringList("document 1.pdf"));
}

TEST_F(DocumentsViewTest, ADocumentThatCannotBeShownLooksTorn)
{
    PutIntoCloud("bad.pdf", "%PDF- and nothing else");
    OpenCloud();
    ASSERT_TRUE(Shows({"bad.pdf"}));
    const auto picture = [this] {
        return Documents()->grab(Documents()->visualRect(Documents()->model()->index(0, 0))).toImage();
    };
    Close();
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Open();
    const QImage unknown = picture(); // nobody can look
    Close();
    ASSERT_TRUE(QDir().rename(Local("away"), Cloud()));
    Open();
    EXPECT_TRUE(WaitUntil([&] { return picture() != unknown; }));
}

TEST_F(DocumentsViewTest, NumbersInNamesAreSortedByValueAndCaseDoesNotCount)
{
    for (const auto name : {"b10.pdf", "b9.pdf", "A.pdf", "c.pdf"}) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    EXPECT_TRUE(Shows({"A.pdf", "b9.pdf", "b10.pdf", "c.pdf"}));
    Find<QComboBox>("order")->setCurrentIndex(1);
    EXPECT_TRUE(Shows({"c.pdf", "b10.pdf", "b9.pdf", "A.pdf"}));
}

TEST_F(DocumentsViewTest, SizeAndDateGiveAnOrderToo)
{
    PutIntoCloud("old and large.pdf", PdfOfColor(Qt::red) + QByteArray(10'000, '\n'));
    PutIntoCloud("new and small.pdf", PdfOfColor(Qt::red));
    QFile old(Cloud("old and large.pdf"));
    ASSERT_TRUE(old.open(QFile::ReadWrite));
    ASSERT_TRUE(old.setFileTime(QDateTime::currentDateTime().addDays(-2), QFile::FileModificationTime));
    old.close();
    OpenCloud();
    ASSERT_TRUE(Shows({"new and small.pdf", "old and large.pdf"}));
    const auto choose = [this](const QString& order) { Find<QComboBox>("order")->setCurrentText(order); };
    choose("Largest First");
    EXPECT_EQ(Names().first(), "old and large.pdf");
    choose("Newest First");
    EXPECT_EQ(Names().first(), "new and small.pdf");
    choose("Oldest First");
    EXPECT_EQ(Names().first(), "old and large.pdf");
    choose("Smallest First");
    EXPECT_EQ(Names().first(), "new and small.pdf");
}

TEST_F(DocumentsViewTest, LayoutOrderAndSizeAreRemembered)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    const QSize thumbnail = Documents()->gridSize();
    Find<QComboBox>("order")->setCurrentIndex(1);
    QTest::keyClick(Documents(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_GT(Documents()->gridSize().width(), thumbnail.width());
    EXPECT_LT(Documents()->gridSize().height(), thumbnail.height());
    window->resize(777, 555);
    Close();
    Open();
    EXPECT_EQ(window->size(), QSize(777, 555));
    EXPECT_TRUE(Action("List")->isChecked());
    EXPECT_TRUE(Shows({"b.pdf", "a.pdf"}));
}

} // namespace

} // namespace Norlis::Test
