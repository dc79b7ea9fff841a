#include "OpenedFiles.h"
#include "WindowTest.h"

#include <apps/window/list/DocumentsFilter.h>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QListView>
#include <QTest>

#include <cstdio>

namespace Norlis::Test {

namespace {

/// Documents that are opened in another program.
class OpeningTest : public WindowTest {
protected:
    void PressReturn()
    {
        Select({"a.pdf"});
        QTest::keyClick(Documents(), Qt::Key_Return);
        ASSERT_TRUE(WaitUntil([&] { return opened.paths.size() == 1; }));
    }

    /// The only document, which is not here.
    void OpenFromCloud()
    {
        PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf"}));
        PressReturn();
    }

    OpenedFiles opened;
};

TEST_F(OpeningTest, OpeningFetchesWhatIsNotHere)
{
    ASSERT_NO_FATAL_FAILURE(OpenFromCloud());
    EXPECT_EQ(QFileInfo(opened.paths.first()).fileName(), "a.pdf");
    EXPECT_FALSE(QDir(Local("downloads")).exists()) << "it was to be looked at only";
    EXPECT_EQ(Documents()->model()->index(0, 0).data(Window::DocumentsFilter::FolderRole).toString(), "");
    ASSERT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_EQ(Documents()->selectionModel()->selectedIndexes().size(), 1);
    ClickButton("Open");
    EXPECT_EQ(opened.paths.size(), 2);
    EXPECT_EQ(Transfers().size(), 1); // it is here now
}

TEST_F(OpeningTest, ReturnInTheQuickLookOpensTheDocument)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"a.pdf", "b.pdf"});
    Action("Quick Look")->trigger();
    ASSERT_TRUE(Find<QWidget>("quickLook"));
    QTest::keyClick(Find<QWidget>("quickLook"), Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return opened.paths.size() == 1; }));
    EXPECT_EQ(QFileInfo(opened.paths.first()).fileName(), "b.pdf") << "which is the current one";
}

TEST_F(OpeningTest, WhatIsSavedInAnotherProgramCanBeSentAtOnce)
{
    ASSERT_NO_FATAL_FAILURE(OpenFromCloud());
    const QByteArray changed = PdfOfText("changed");
    WriteFile(opened.paths.first() + ".new", changed); // as editors save
    ASSERT_EQ(std::rename(qPrintable(opened.paths.first() + ".new"), qPrintable(opened.paths.first())), 0);
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; }));
    ClickButton("Upload Changes");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == changed; }));
    EXPECT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_TRUE(WaitUntil([&] { return Message() == ""; }));
}

TEST_F(OpeningTest, WhatWasToldBeforeAnotherMessageIsToldAgainAfterIt)
{
    ASSERT_NO_FATAL_FAILURE(OpenFromCloud());
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    WriteFile(opened.paths.first(), PdfOfText("changed"));
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; }));
    Select({"b.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    EXPECT_EQ(Message(), "“b.pdf” was removed.");
    ClickButton("Undo");
    EXPECT_EQ(Message(), "“a.pdf” was changed.");
}

TEST_F(OpeningTest, ChangesOfAnotherProgramAreSeenWhenTheUserComesBack)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    WriteFile(Local("downloads/a.pdf"), PdfOfText("changed"));
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(window->findChild<QWidget*>("documentsPage"), &activation);
    EXPECT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedLocally); }));
}

TEST_F(OpeningTest, WhatIsSavedAfterItsDocumentHasGoneCanBecomeANewOne)
{
    ASSERT_NO_FATAL_FAILURE(OpenFromCloud());
    const QByteArray changed = PdfOfText("changed");
    WriteFile(opened.paths.first(), changed);
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; }));
    ASSERT_TRUE(QFile::remove(Cloud("a.pdf")));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return Message().startsWith("“a.pdf” is no longer in the cloud."); }));
    ClickButton("Upload as New");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == changed; }));
}

TEST_F(OpeningTest, WhatIsSavedWhileTheCloudHasAnotherVersionAsksWhatToDo)
{
    ASSERT_NO_FATAL_FAILURE(OpenFromCloud());
    PutIntoCloud("a.pdf", PdfOfText("theirs"));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedInCloud); }));
    WriteFile(opened.paths.first(), PdfOfText("ours"));
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed both here and in the cloud."; }));
    ClickButton("Resolve…");
    EXPECT_EQ(Questions().size(), 1);
    Answer("Cancel");
}

TEST_F(OpeningTest, AnOlderCopyIsNotOpenedInThePlaceOfANewerVersion)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    const QByteArray old = *ReadFile(Local("downloads/a.pdf"));
    const QByteArray newer = PdfOfText("newer");
    PutIntoCloud("a.pdf", newer);
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedInCloud); }));
    ASSERT_NO_FATAL_FAILURE(PressReturn());
    EXPECT_EQ(opened.paths.first(), Local("downloads/a.pdf"));
    EXPECT_EQ(ReadFile(opened.paths.first()), newer);
    EXPECT_EQ(Message(), "A newer version of “a.pdf” was fetched.");
    ClickButton("Open the Older One");
    ASSERT_EQ(opened.paths.size(), 2);
    const QString older = opened.paths.last();
    EXPECT_EQ(ReadFile(older), old);
    Close();
    EXPECT_FALSE(QFileInfo::exists(older)) << "nobody sees it any more";
}

} // namespace

} // namespace Norlis::Test
