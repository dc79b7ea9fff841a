#include "ServerWindowTest.h"

#include <apps/window/widgets/Contrast.h>
#include <QDialog>
#include <QDir>

#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QTest>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using RemovalWindowTest = WindowTest;
using RemovalOverAServerTest = ServerWindowTest;

TEST_F(RemovalWindowTest, RemovalOfManyDocumentsAsksOnce)
{
    QStringList names;
    for (int number = 10; number <= 20; ++number) {
        names.append(QStringLiteral("%1.pdf").arg(number));
        PutIntoCloud(names.back(), PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows(names));
    Select(names);
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Question().toStdString(), HasSubstr("11 documents"));
    Answer("Cancel");
    EXPECT_TRUE(ReadFile(Cloud("10.pdf")));
    QTest::keyClick(Documents(), Qt::Key_Delete);
    EXPECT_THAT(Explanation().toStdString(), HasSubstr(".pdf and 6 more"));
    QSignalSpy removals(Documents()->model(), &QAbstractItemModel::rowsRemoved);
    Answer("Remove");
    ASSERT_TRUE(Shows({}));
    EXPECT_EQ(removals.count(), 1) << "each takes time in proportion to all";
    EXPECT_THAT(Questions(), IsEmpty());
    ClickButton("Undo");
    ASSERT_TRUE(Shows(names));
    EXPECT_TRUE(ReadFile(Cloud("10.pdf")));
    Select(names);
    Action("Remove")->trigger();
    Answer("Remove");
    window->close(); // which does not wait any longer
    EXPECT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
    EXPECT_FALSE(ReadFile(Cloud("10.pdf")));
}

TEST_F(RemovalWindowTest, TheNextDocumentIsSelectedAndAfterUndoTheOneThatIsBack)
{
    for (const char* const name : {"a.pdf", "b.pdf", "c.pdf"}) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"}));
    const auto selected = [this] {
        const auto indexes = Documents()->selectionModel()->selectedIndexes();
        return indexes.size() == 1 ? indexes.first().data(Host::CloudDocumentsModel::NameRole).toString() : QString();
    };
    Select({"b.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({"a.pdf", "c.pdf"}));
    EXPECT_TRUE(WaitUntil([&] { return selected() == "c.pdf"; })) << qPrintable(selected());
    Action("Undo Removal")->trigger();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"}));
    EXPECT_TRUE(WaitUntil([&] { return selected() == "b.pdf"; })) << qPrintable(selected());
    Select({"a.pdf", "c.pdf"}); // apart from each other
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({"b.pdf"}));
    Action("Undo Removal")->trigger();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"}));
    EXPECT_TRUE(WaitUntil([&] { return Documents()->selectionModel()->selectedIndexes().size() == 2; }));
}

TEST_F(RemovalWindowTest, ARemovalCanBeTakenBack)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"b.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    EXPECT_THAT(Questions(), IsEmpty());
    ASSERT_TRUE(Shows({"a.pdf"}));
    EXPECT_EQ(Message(), "“b.pdf” was removed.");
    EXPECT_TRUE(WaitUntil([&] { return Status().startsWith("1 document ·"); }));
    Select({"a.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({}));
    EXPECT_EQ(EmptyTitle(), "No documents yet");
    Refresh();
    EXPECT_TRUE(Shows({})); // a list does not bring back what is to be removed

    ClickButton("Undo"); // the last one first
    ASSERT_TRUE(Shows({"a.pdf"}));
    EXPECT_EQ(Message(), "“b.pdf” was removed.");
    Action("Undo Removal")->trigger();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    EXPECT_EQ(Message(), "");
    EXPECT_FALSE(Action("Undo Removal")->isEnabled());
    EXPECT_TRUE(ReadFile(Cloud("a.pdf")) && ReadFile(Cloud("b.pdf")));
}

TEST_F(RemovalWindowTest, ARemovalIsSentWhenTheWindowCloses)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"a.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({"b.pdf"}));
    EXPECT_TRUE(ReadFile(Cloud("a.pdf")));
    window->close();
    EXPECT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
    EXPECT_FALSE(ReadFile(Cloud("a.pdf")));
    EXPECT_TRUE(ReadFile(Cloud("b.pdf")));
}

TEST_F(RemovalWindowTest, ARemovalIsSentWhenTheUserSignsOut)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({}));
    Action("Sign Out")->trigger();
    EXPECT_TRUE(WaitUntil([&] { return !ReadFile(Cloud("a.pdf")); }));
}

TEST_F(RemovalWindowTest, WhatCannotBeSentIsInTheLineAtTheBottomAndAskedAboutWhenTheWindowCloses)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"a.pdf"});
    Documents()->setFocus();
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({"b.pdf"}));
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Refresh();
    EXPECT_TRUE(WaitUntil([&] { return Status().contains(" · 1 removal waiting"); })) << qPrintable(Status());
    window->close();
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    EXPECT_EQ(Question(), "Removals could not be sent. Quit anyway?");
    EXPECT_THAT(Explanation().toStdString(), testing::StartsWith("Not removed from the cloud: a.pdf\n"));
    Answer("Stay");
    EXPECT_TRUE(window->isVisible() && window->isEnabled());
    EXPECT_EQ(window->focusWidget(), Documents()) << "the next key is for what it was for before";
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf"}));
    EXPECT_TRUE(Message().startsWith("“a.pdf” was not removed.")) << qPrintable(Message());
    ASSERT_TRUE(QDir().rename(Local("away"), Cloud()));
    ClickButton("Try Now");
    ASSERT_TRUE(WaitUntil([&] { return Status().contains(" · as of "); }));
    Select({"a.pdf"});
    ASSERT_TRUE(WaitUntil([&] { return Action("Remove")->isEnabled(); }));
    Action("Remove")->trigger();
    ASSERT_TRUE(Shows({"b.pdf"}));
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    window->close();
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; })) << "once more";
    Answer("Quit Anyway");
    EXPECT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
    ASSERT_TRUE(QDir().rename(Local("away"), Cloud()));
    Open();
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf"}));
}

TEST_F(RemovalOverAServerTest, WhatIsRefusedWhenTheWindowClosesIsAskedAbout)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({}));
    server.Misbehave(TestKit::When("DELETE").Always(), TestKit::AnswersWith(403));
    window->close();
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    Answer("Stay");
    EXPECT_TRUE(Shows({"a.pdf"}));
    EXPECT_TRUE(Message().startsWith("“a.pdf” was not removed.")) << qPrintable(Message());
}

TEST_F(RemovalOverAServerTest, WhileTheWindowWaitsItsMessageCanBeRead)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({}));
    server.Misbehave(TestKit::When("DELETE").Always(), TestKit::Hangs());
    window->close();
    ASSERT_FALSE(window->isEnabled());
    ASSERT_EQ(Message(), "The removal is being sent to the cloud. Then the window closes.");
    const auto text = Find<QLabel>("messageText");
    const QImage picture = text->parentWidget()->grab(text->geometry()).toImage();
    qreal contrast = 1;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            contrast = qMax(contrast, Window::Contrast(picture.pixelColor(x, y), picture.pixelColor(0, 0)));
        }
    }
    EXPECT_GE(contrast, 4.5);
    window->CloseWithoutAsking();
}

TEST_F(RemovalOverAServerTest, UndoTellsThatTheRemovalHasBeenSent)
{
    server.Put("a.pdf", PdfOfColor(Qt::red));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_TRUE(Shows({}));
    server.Misbehave(TestKit::When("DELETE").Always(), TestKit::HangsInTheAnswer(0));
    Action("Sign Out")->trigger(); // sends it
    ASSERT_TRUE(WaitUntil([&] { return server.Count("DELETE") == 1; }));
    Action("Undo Removal")->trigger();
    EXPECT_EQ(Message(), "It is too late to undo: 1 document had already been removed.");
    EXPECT_EQ(Names(), QStringList());
    EXPECT_FALSE(Action("Undo Removal")->isEnabled());
}

} // namespace

} // namespace Norlis::Test
