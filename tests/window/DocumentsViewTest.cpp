#include "WindowTest.h"

#include <host/CloudDocumentsModel.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
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
    EXPECT_THAT(Status().toStdString(), HasSubstr("1"));
    QTest::keyClicks(QApplication::focusWidget(), "x");
    EXPECT_EQ(EmptyTitle(), "No matching documents");
    ClickButton("Clear Search");
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
    shown.setHtml(Find<QListView>("transfers")->model()->index(0, 0).data(Qt::ToolTipRole).toString());
    EXPECT_EQ(shown.firstBlock().text().section(QChar::LineSeparator, 0, 0), "<b>bold<br>.pdf");
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
    Find<QComboBox>("order")->setCurrentIndex(3);
    EXPECT_EQ(Names().first(), "old and large.pdf");
    Find<QComboBox>("order")->setCurrentIndex(2);
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
