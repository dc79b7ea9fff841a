#include "ServerWindowTest.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <QWheelEvent>

namespace Norlis::Test {

namespace {

const QVector<QColor> threeColors = {Qt::red, Qt::green, Qt::blue};

/// The sheet that shows the pages of a document.
class QuickLookTest : public WindowTest {
protected:
    /// The documents of these names, of which the first is looked at.
    void LookAt(const QStringList& names, const QByteArray& content)
    {
        for (const QString& name : names) {
            PutIntoCloud(name, content);
        }
        OpenCloud();
        ASSERT_TRUE(Shows(names));
        Press(names.first());
    }

    /// A local copy of three pages.
    void LookAtThreePages()
    {
        PutIntoCloud("a.pdf", PdfOfColors(threeColors));
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf"}));
        Select({"a.pdf"});
        Action("Download")->trigger();
        ASSERT_TRUE(IsUpToDate("a.pdf"));
        Press("a.pdf");
        ASSERT_TRUE(ShowsPage("Page 1 of 3", Qt::red));
    }

    void Press(const QString& name)
    {
        Select({name});
        window->activateWindow();
        Documents()->setFocus();
        QTest::keyClick(Documents(), Qt::Key_Space);
        ASSERT_TRUE(Sheet());
    }

    QFrame* Sheet() const
    {
        return Find<QFrame>("quickLook");
    }

    QString Text(const QString& label) const
    {
        const auto found = Find<QLabel>(label);
        return found ? found->text() : QString();
    }

    QImage Picture() const
    {
        return Sheet()->findChild<QWidget*>("pagePicture")->grab().toImage();
    }

    /// Waits for it.
    bool ShowsPage(const QString& text, const QColor& color)
    {
        return WaitUntil([&] {
            const QImage picture = Picture();
            return Text("pageNumber") == text && picture.pixelColor(picture.rect().center()) == color;
        });
    }

    QStringList Selected() const
    {
        QStringList names;
        for (const auto& index : Documents()->selectionModel()->selectedIndexes()) {
            names.append(index.data().toString());
        }
        return names;
    }
};

TEST_F(QuickLookTest, SpaceShowsPageOneAndSpaceOrEscapeClosesIt)
{
    LookAt({"a.pdf"}, PdfOfColor(Qt::red));
    EXPECT_TRUE(ShowsPage("Page 1", Qt::red));
    EXPECT_EQ(Text("quickLookName"), "a.pdf");
    EXPECT_EQ(Text("quickLookState"), "Only in the cloud");
    EXPECT_FALSE(Find<QLabel>("quickLookNotice"));
    for (const auto key : {Qt::Key_Space, Qt::Key_Escape}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        EXPECT_FALSE(Sheet());
        EXPECT_TRUE(Documents()->hasFocus());
        EXPECT_EQ(Selected(), QStringList("a.pdf"));
        QTest::keyClick(Documents(), Qt::Key_Space);
        ASSERT_TRUE(Sheet());
    }
    Click(Button("Close Quick Look"));
    EXPECT_FALSE(Sheet());
}

TEST_F(QuickLookTest, SpaceIsForTheDocumentThatTheKeyboardIsAtThoughNoneIsSelected)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    ASSERT_TRUE(WaitUntil([&] { return Action("Quick Look")->isEnabled(); }));
    ASSERT_EQ(Selected(), QStringList());
    QTest::keyClick(Documents(), Qt::Key_Space);
    ASSERT_TRUE(Sheet());
    EXPECT_EQ(Text("quickLookName"), "a.pdf");
    EXPECT_EQ(Selected(), QStringList("a.pdf"));
}

TEST_F(QuickLookTest, ThePageHasAllPixelsOfTheScreen)
{
    QByteArray bars = "0 0 0 rg\n"; // narrower than the pixels of the small picture, which shows grey
    constexpr int count = 90;
    for (int bar = 0; bar < count; ++bar) {
        bars += QByteArray::number(bar * 595.0 / count) + " 0 " + QByteArray::number(595.0 / count / 2) + " 842 re f\n";
    }
    LookAt({"a.pdf"}, PdfOfContent("0 0 595 842", bars));
    EXPECT_TRUE(WaitUntil([&] {
        const QImage picture = Picture();
        int darkest = 255;
        int lightest = 0;
        for (int x = picture.width() * 2 / 5; x < picture.width() * 3 / 5; ++x) {
            const int lightness = picture.pixelColor(x, picture.height() / 2).lightness();
            darkest = qMin(darkest, lightness);
            lightest = qMax(lightest, lightness);
        }
        return darkest < 10 && lightest > 245;
    }));
}

TEST_F(QuickLookTest, KeysAndWheelTurnThePagesOfALocalCopy)
{
    LookAtThreePages();
    QTest::keyClick(Sheet(), Qt::Key_PageDown);
    EXPECT_TRUE(ShowsPage("Page 2 of 3", Qt::green));
    const auto turn = [this](int angle) {
        const QPoint middle = Sheet()->rect().center();
        QWheelEvent event(middle, Sheet()->mapToGlobal(middle), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(Sheet(), &event);
    };
    turn(-60);
    EXPECT_EQ(Text("pageNumber"), "Page 2 of 3");
    turn(-60);
    EXPECT_TRUE(ShowsPage("Page 3 of 3", Qt::blue));
    EXPECT_FALSE(Button("Next Page")->isEnabled());
    QTest::keyClick(Sheet(), Qt::Key_PageDown);
    EXPECT_EQ(Text("pageNumber"), "Page 3 of 3");
    Click(Button("Previous Page"));
    EXPECT_TRUE(ShowsPage("Page 2 of 3", Qt::green));
    for (int count = 0; count < 3; ++count) {
        QTest::keyClick(Sheet(), Qt::Key_PageUp);
    }
    EXPECT_TRUE(ShowsPage("Page 1 of 3", Qt::red));
    EXPECT_FALSE(Button("Previous Page")->isEnabled());
}

TEST_F(QuickLookTest, TheLastPageThatIsWantedWins)
{
    LookAtThreePages();
    for (int round = 0; round < 20; ++round) {
        QTest::keyClick(Sheet(), Qt::Key_PageDown);
        QTest::keyClick(Sheet(), Qt::Key_PageDown);
        QTest::keyClick(Sheet(), Qt::Key_PageUp);
    }
    EXPECT_TRUE(ShowsPage("Page 2 of 3", Qt::green));
}

TEST_F(QuickLookTest, LaterPagesOfWhatIsNotHereFollowItsDownload)
{
    LookAt({"a.pdf"}, PdfOfColors(threeColors));
    ASSERT_TRUE(ShowsPage("Page 1", Qt::red));
    QTest::keyClick(Sheet(), Qt::Key_PageDown);
    EXPECT_TRUE(Text("quickLookNotice").startsWith("To show the pages after the first one")) << "it is not here";
    EXPECT_EQ(Text("pageNumber"), "Page 2");
    EXPECT_NE(Picture().pixelColor(Picture().rect().center()), QColor(Qt::red)) << "which is page one";
    QTest::keyClick(Sheet(), Qt::Key_PageUp);
    EXPECT_EQ(Text("quickLookNotice"), "");
    EXPECT_TRUE(ShowsPage("Page 1", Qt::red));
    QTest::keyClick(Sheet(), Qt::Key_PageDown);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), "quickLookDownload");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(ShowsPage("Page 2 of 3", Qt::green));
    EXPECT_EQ(Text("quickLookNotice"), "");
    EXPECT_EQ(Text("quickLookState"), "Up to date");
    EXPECT_TRUE(Sheet()->hasFocus());
    EXPECT_FALSE(QDir(Local("downloads")).exists()) << "it was to be looked at only";
}

TEST_F(QuickLookTest, WhereThereIsNoPageThereIsNothingToZoom)
{
    LookAt({"a.pdf"}, PdfOfColors(threeColors));
    ASSERT_TRUE(ShowsPage("Page 1", Qt::red));
    Click(Button("Zoom In"));
    EXPECT_EQ(Text("quickLookZoom"), "125 %");
    Click(Button("Next Page"));
    EXPECT_EQ(Text("pageNumber"), "Page 2");
    EXPECT_FALSE(Button("Zoom In")->isEnabled());
    EXPECT_FALSE(Button("Zoom Out")->isEnabled());
    EXPECT_EQ(Text("quickLookZoom"), "");
}

TEST_F(QuickLookTest, ANeighbourOfWhatCanBeDownloadedHasTheKeyboardOnTheSheet)
{
    for (const char* const name : {"a.pdf", "b.pdf"}) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"a.pdf"});
    Documents()->setFocus();
    QTest::keyClick(Documents(), Qt::Key_Space);
    const auto sheet = Find<QWidget>("quickLook");
    ASSERT_TRUE(sheet);
    QTest::keyClick(sheet, Qt::Key_PageDown);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), "quickLookDownload");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_EQ(QApplication::focusWidget(), sheet);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_FALSE(Find<QWidget>("quickLook"));
}

TEST_F(QuickLookTest, ADownloadThatFailsSaysWhyAndCanBeTriedAgain)
{
    LookAt({"a.pdf"}, PdfOfColors(threeColors));
    ASSERT_TRUE(ShowsPage("Page 1", Qt::red));
    QDirIterator stores(Local("data"), {"documents.sqlite"}, QDir::Files, QDirIterator::Subdirectories);
    WriteFile(QFileInfo(stores.next()).path() + "/viewing", "no folder");
    QTest::keyClick(Sheet(), Qt::Key_PageDown);
    const QString question = Text("quickLookNotice");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(WaitUntil([&] { return Find<QWidget>("quickLookDownload") && Text("quickLookNotice") != question; }));
    EXPECT_NE(Text("quickLookNotice"), "");
}

TEST_F(QuickLookTest, ArrowsGoToTheNeighboursAndTheSelectionFollows)
{
    LookAt({"a.pdf", "b.pdf", "c.pdf"}, PdfOfColor(Qt::red));
    QTest::keyClick(Sheet(), Qt::Key_Left); // there is none
    EXPECT_EQ(Selected(), QStringList("a.pdf"));
    QTest::keyClick(Sheet(), Qt::Key_Right);
    EXPECT_EQ(Text("quickLookName"), "b.pdf");
    EXPECT_EQ(Selected(), QStringList("b.pdf"));
    Click(Button("Next Document"));
    EXPECT_EQ(Text("quickLookName"), "c.pdf");
    Click(Button("Previous Document"));
    EXPECT_EQ(Selected(), QStringList("b.pdf"));
    Action("List")->trigger();
    QTest::keyClick(Sheet(), Qt::Key_Up);
    EXPECT_EQ(Text("quickLookName"), "a.pdf");
    QTest::keyClick(Sheet(), Qt::Key_Down);
    QTest::keyClick(Sheet(), Qt::Key_Escape);
    EXPECT_EQ(Selected(), QStringList("b.pdf"));
}

TEST_F(QuickLookTest, OfTwoVersionsItShowsTheOneThatWouldBeOpenedAndSaysSo)
{
    OpenWithLocalCopy();
    Press("a.pdf");
    EXPECT_EQ(Text("quickLookState"), "Up to date");
    WriteFile(Local("downloads/a.pdf"), PdfOfColor(Qt::blue));
    PutIntoCloud("a.pdf", PdfOfColor(Qt::green));
    Refresh();
    EXPECT_TRUE(
        WaitUntil([&] { return Text("quickLookState") == "Changed on both sides · The version on this computer"; }));
    EXPECT_TRUE(ShowsPage("Page 1 of 1", Qt::blue));
}

TEST_F(QuickLookTest, WhatCannotBeShownSaysWhy)
{
    LookAt({"bad.pdf"}, "%PDF- and nothing else");
    EXPECT_TRUE(WaitUntil([&] {
        return Text("quickLookNotice") == "The page cannot be shown: It is not a PDF document, or is damaged.";
    }));
}

TEST_F(QuickLookTest, ADocumentThatIsRemovedMakesRoomForTheNext)
{
    LookAt({"a.pdf", "b.pdf"}, PdfOfColor(Qt::red));
    QTest::keyClick(Sheet(), Qt::Key_Delete);
    EXPECT_TRUE(WaitUntil([&] { return Text("quickLookName") == "b.pdf"; }));
    QTest::keyClick(Sheet(), Qt::Key_Delete);
    EXPECT_TRUE(WaitUntil([&] { return !Sheet(); }));
}

TEST_F(QuickLookTest, TheKeyboardStaysInsideUntilAnotherPartIsAskedFor)
{
    LookAt({"a.pdf"}, PdfOfColor(Qt::red));
    QSet<QWidget*> reached;
    for (int step = 0; step < 20; ++step) {
        QTest::keyClick(QApplication::focusWidget(), step < 12 ? Qt::Key_Tab : Qt::Key_Backtab);
        ASSERT_TRUE(Sheet() == QApplication::focusWidget() || Sheet()->isAncestorOf(QApplication::focusWidget()));
        reached.insert(QApplication::focusWidget());
    }
    EXPECT_TRUE(reached.contains(Button("Close Quick Look")));
    EXPECT_TRUE(reached.contains(Button("Next Page")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(Find<QLineEdit>("search")->hasFocus());
    EXPECT_FALSE(Sheet());
}

TEST_F(QuickLookTest, AScreenReaderHearsWhatIsShown)
{
    LookAtThreePages();
    const auto sheet = QAccessible::queryAccessibleInterface(Sheet());
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->role(), QAccessible::Dialog);
    EXPECT_EQ(sheet->text(QAccessible::Name), "Quick look: a.pdf, Up to date");
    QTest::keyClick(Sheet(), Qt::Key_PageDown);
    const auto number = QAccessible::queryAccessibleInterface(Find<QLabel>("pageNumber"));
    EXPECT_EQ(number->text(QAccessible::Name), "Page 2 of 3");
}

TEST_F(QuickLookTest, ASpaceInANameThatIsTypedIsASpace)
{
    for (const auto name : {"a b.pdf", "a c.pdf"}) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows({"a b.pdf", "a c.pdf"}));
    window->activateWindow();
    Documents()->setFocus();
    QTest::keyClicks(Documents(), "a c");
    EXPECT_FALSE(Sheet());
    EXPECT_EQ(Selected(), QStringList("a c.pdf"));
}

/// The same over a server.
class QuickLookServerTest : public ServerWindowTest {};

TEST_F(QuickLookServerTest, APageThatTakesLongSaysSoUntilItIsThere)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    server.Misbehave(TestKit::When("GET").Always(), TestKit::Hangs());
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    Action("Quick Look")->trigger();
    const auto notice = [this] { return Find<QLabel>("quickLookNotice"); };
    EXPECT_TRUE(WaitUntil([&] { return notice() && notice()->text() == "Loading…"; }));
    server.BehaveAgain();
    server.Stop(); // what hangs would go on hanging
    server.Start();
    EXPECT_TRUE(WaitUntil([&] { return !notice() || notice()->text() != "Loading…"; }));
}

} // namespace

} // namespace Norlis::Test
