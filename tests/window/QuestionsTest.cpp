#include "WindowTest.h"
#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Waiting.h>

#include <host/CloudDocumentsModel.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

/// What happens while the user thinks about an answer.
class QuestionsTest : public WindowTest {
protected:
    /// One document, which was changed on both sides; it is selected.
    void OpenWithConflict()
    {
        OpenWithLocalCopy();
        WriteFile(Local("downloads/a.pdf"), ours);
        ReplaceInCloud(theirs);
        ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedOnBothSides); }));
        ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    }

    /// As somebody else does; until the list shows it.
    void ReplaceInCloud(const QByteArray& content)
    {
        const auto modified = [this] {
            return Documents()->model()->index(0, 0).data(Host::CloudDocumentsModel::ModifiedRole);
        };
        const QVariant before = modified();
        PutIntoCloud("a.pdf", content);
        Refresh();
        ASSERT_TRUE(WaitUntil([&] { return modified() != before; }));
    }

    const QByteArray ours = PdfOfText("ours");
    const QByteArray theirs = PdfOfText("theirs");
    const QByteArray newer = PdfOfText("theirs, newer");
};

TEST_F(QuestionsTest, AVersionThatCameAfterTheQuestionIsNotReplaced)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    ASSERT_NO_FATAL_FAILURE(ReplaceInCloud(newer));
    Answer("Use Mine");
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; })); // again, since it is about another version now
    Answer("Use Mine");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == ours; }));
}

TEST_F(QuestionsTest, BothVersionsOfADocumentAreShown)
{
    OpenWithLocalCopy();
    WriteFile(Local("downloads/a.pdf"), PdfOfColor(Qt::green));
    ReplaceInCloud(PdfOfColor(Qt::magenta));
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedOnBothSides); }));
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    Action("Upload Changes")->trigger();
    ASSERT_EQ(Questions().size(), 1);
    const auto pictures = Questions().first()->findChildren<QWidget*>("pagePicture");
    ASSERT_EQ(pictures.size(), 2);
    const auto colorOf = [&](int picture) {
        const QImage shown = pictures[picture]->grab().toImage();
        return shown.pixelColor(shown.rect().center());
    };
    EXPECT_TRUE(WaitUntil([&] { return colorOf(0) == QColor(Qt::green) && colorOf(1) == QColor(Qt::magenta); }));
    Answer("Cancel");
}

TEST_F(QuestionsTest, BothVersionsOfADocumentCanBeKept)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Explanation().toStdString(),
                testing::AllOf(testing::HasSubstr("Here: "), testing::HasSubstr("In the cloud: ")));
    ASSERT_TRUE(WaitUntil([&] { return QApplication::activeWindow() == Questions().first(); }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); // which keeps both
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 2; }));
    const QString other = Names().first() == "a.pdf" ? Names().last() : Names().first();
    EXPECT_THAT(other.toStdString(), testing::StartsWith("a (from "));
    EXPECT_EQ(ReadFile(Cloud(other)), ours);
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), theirs);
    EXPECT_EQ(ReadFile(Local("downloads/a.pdf")), ours);
    EXPECT_EQ(StateOf(other), static_cast<int>(State::InSync));
    EXPECT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::OnlyInCloud); }));
}

TEST_F(QuestionsTest, TheVersionInTheCloudCanTakeThePlaceOfTheLocalOne)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    Answer("Use the Cloud’s");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a.pdf")) == theirs; }));
    EXPECT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::InSync); }));
}

TEST_F(QuestionsTest, AConflictThatOnlyTheCloudKnowsOfIsAskedAboutToo)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    WriteFile(Local("downloads/a.pdf"), ours);
    PutIntoCloud("a.pdf", theirs);
    Drop({Local("downloads/a.pdf")});
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    Answer("Use Mine");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == ours; }));
}

TEST_F(QuestionsTest, WhatIsSavedAfterTheAnswerIsAskedAboutWhenItIsTriedAgain)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    WriteFile(Local("downloads/a.pdf"), ours + "% and more"); // which the question was not about
    Answer("Use the Cloud’s");
    ASSERT_TRUE(WaitUntil([&] { return Transfers().contains("a.pdf failed"); }));
    EXPECT_EQ(ReadFile(Local("downloads/a.pdf")), ours + "% and more");
    ClickButton("Try Again");
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    Answer("Use the Cloud’s");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a.pdf")) == theirs; }));
    EXPECT_TRUE(WaitUntil([&] { return !Transfers().contains("a.pdf failed"); }));
}

TEST_F(QuestionsTest, ADownloadThatMeetsChangesAsksWhatIsToBecomeOfThem)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    const QByteArray cloud = *ReadFile(Cloud("a.pdf"));
    WriteFile(Local("downloads/a.pdf"), ours);
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedLocally); }));
    Action("Download")->trigger();
    EXPECT_EQ(Question(), "“a.pdf” has changes on this computer that are not in the cloud.");
    Answer("Use the Cloud’s");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a.pdf")) == cloud; }));
}

TEST_F(QuestionsTest, ATakenNameIsAskedAbout)
{
    PutIntoCloud("a.pdf", theirs);
    PutIntoCloud("b.pdf", theirs);
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    const QString mine = LocalFile("a.pdf", ours);
    const QString other = LocalFile("c.pdf", ours);
    Drop({mine, other});
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Question().toStdString(), testing::HasSubstr("“a.pdf”"));
    Answer("Cancel");
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"})); // which nobody has to be asked about
    Drop({mine});
    Answer("Keep Both");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a (2).pdf")) == ours; }));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), theirs);
    WriteFile(Local("b.pdf"), ours);
    Drop({Local("b.pdf")});
    Answer("Replace");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("b.pdf")) == ours; }));
    EXPECT_EQ(Names().filter("b").size(), 1);
}

TEST_F(QuestionsTest, SeveralTakenNamesAreAskedAboutOneByOneOrTogether)
{
    for (const char* const name : {"a.pdf", "b.pdf", "c.pdf", "d.pdf"}) {
        PutIntoCloud(name, theirs);
    }
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf", "d.pdf"}));
    QStringList mine;
    for (const char* const name : {"a.pdf", "b.pdf", "c.pdf", "d.pdf"}) {
        mine.append(LocalFile(name, ours));
    }
    Drop(mine);
    EXPECT_THAT(Question().toStdString(), testing::HasSubstr("“a.pdf”"));
    Answer("Skip");
    EXPECT_THAT(Question().toStdString(), testing::HasSubstr("“b.pdf”"));
    Answer("Replace");
    EXPECT_THAT(Question().toStdString(), testing::HasSubstr("“c.pdf”"));
    Answer("Do the same for the other one");
    Answer("Keep Both");
    EXPECT_THAT(Questions(), testing::IsEmpty());
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf", "c (2).pdf", "d.pdf", "d (2).pdf"}));
    EXPECT_TRUE(
        WaitUntil([&] { return ReadFile(Cloud("b.pdf")) == ours && Transfers().filter("finished").size() == 3; }));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), theirs);
    EXPECT_EQ(ReadFile(Cloud("c.pdf")), theirs);
}

TEST_F(QuestionsTest, WhatIsToBeAskedAtOnceIsAskedInTurn)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    PutIntoCloud("b.pdf", theirs);
    Refresh();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    WriteFile(Local("downloads/b.pdf"), ours); // somebody's own
    Select({"a.pdf", "b.pdf"});
    Action("Download")->trigger();
    EXPECT_EQ(Question(), "“a.pdf” was changed both here and in the cloud.");
    Answer("Cancel"); // which only one question lets one do
    ASSERT_TRUE(WaitUntil([&] { return Question().startsWith("There is another file “b.pdf”"); }));
    ASSERT_TRUE(WaitUntil([&] { return QApplication::activeWindow() == Questions().first(); }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(WaitUntil([&] { return Questions().isEmpty(); }));
}

TEST_F(QuestionsTest, TheKeyboardReachesEachAnswerAndCancel)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return QApplication::activeWindow() == Questions().first(); }));
    QStringList reached;
    for (int step = 0; step < 4; ++step) {
        const auto button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
        ASSERT_TRUE(button && button->isVisible());
        reached.append(button->text().remove('&'));
        QTest::keyClick(button, Qt::Key_Tab);
    }
    EXPECT_EQ(reached, QStringList({"Keep Both", "Use Mine", "Use the Cloud’s", "Cancel"}));
    Answer("Cancel");
    EXPECT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed both here and in the cloud."; }));
}

TEST_F(QuestionsTest, EnterKeepsBothWhileTheTickHasTheKeyboard)
{
    for (const char* const name : {"a.pdf", "b.pdf"}) {
        PutIntoCloud(name, theirs);
    }
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Drop({LocalFile("a.pdf", ours), LocalFile("b.pdf", ours)});
    ASSERT_TRUE(WaitUntil([&] { return QApplication::activeWindow() == Questions().first(); }));
    for (int step = 0; step < 5 && !qobject_cast<QCheckBox*>(QApplication::focusWidget()); ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(Shows({"a.pdf", "a (2).pdf", "b.pdf", "b (2).pdf"}));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), theirs);
    EXPECT_EQ(ReadFile(Cloud("b.pdf")), theirs);
}

TEST_F(QuestionsTest, AQuestionInLargeLettersFitsOnTheScreen)
{
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 1.7);
    QApplication::setFont(large);
    OpenWithConflict();
    Action("Upload Changes")->trigger();
    QApplication::setFont(usual);
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_LE(Questions().first()->height(), Questions().first()->screen()->availableSize().height());
    EXPECT_TRUE(Questions().first()->rect().contains(
        Button("Cancel")->mapTo(Questions().first(), Button("Cancel")->rect().bottomRight())));
    Answer("Cancel");
}

TEST_F(QuestionsTest, WhatIsUpToDateHereIsNotFetchedAgain)
{
    OpenWithLocalCopy();
    Action("Download")->trigger();
    EXPECT_EQ(Message(), "“a.pdf” is up to date here.");
    EXPECT_EQ(Transfers().filter("a.pdf").size(), 1); // the first one
}

TEST_F(QuestionsTest, AnotherFileInThePlaceOfADownloadIsAskedAbout)
{
    PutIntoCloud("a.pdf", theirs);
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    MakeFolder(Local("downloads"));
    WriteFile(Local("downloads/a.pdf"), ours);
    Action("Download")->trigger();
    EXPECT_EQ(Question(), "There is another file “a.pdf” in " + Local("downloads") + " already.");
    Answer("Cancel");
    EXPECT_THAT(Transfers(), testing::IsEmpty());
    Action("Download")->trigger();
    Answer("Keep Both");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a (2).pdf")) == theirs; }));
    EXPECT_EQ(ReadFile(Local("downloads/a.pdf")), ours);
    ASSERT_TRUE(WaitUntil([&] { return IsUpToDate("a.pdf"); }));
    ASSERT_TRUE(QFile::remove(Local("downloads/a (2).pdf")));
    Refresh();
    Action("Download")->trigger();
    ASSERT_EQ(Questions().size(), 1);
    Answer("Replace");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a.pdf")) == theirs; }));
    const QStringList others = QDir(Local("downloads")).entryList({"a (from *"});
    ASSERT_EQ(others.size(), 1);
    EXPECT_EQ(ReadFile(Local("downloads/" + others.first())), ours);
    EXPECT_EQ(Message(), "Your file “a.pdf” is now called “" + others.first() + "”.");
}

TEST_F(QuestionsTest, WhatComesIntoThePlaceOfADownloadMeanwhileIsAskedAboutThen)
{
    PutIntoCloud("a.pdf", theirs);
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    MakeFolder(Local("downloads"));
    Action("Download")->trigger();
    WriteFile(Local("downloads/a.pdf"), ours);
    ASSERT_TRUE(WaitUntil([&] { return Transfers().contains("a.pdf failed"); }));
    ClickButton("Try Again");
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    Answer("Keep Both");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a (2).pdf")) == theirs; }));
    EXPECT_TRUE(WaitUntil([&] { return !Transfers().contains("a.pdf failed"); }));
}

TEST_F(QuestionsTest, FilesOfSeveralStartsAreAskedAboutTogetherAndTheQuestionKeepsTheKeyboard)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    window->OfferUpload({LocalFile("a.pdf", ours)});
    window->ComeToFront();
    window->OfferUpload({LocalFile("b.pdf", theirs), Local("a.pdf")});
    window->ComeToFront();
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    EXPECT_EQ(Question(), "Upload 2 files?");
    EXPECT_TRUE(WaitUntil([&] { return QApplication::activeWindow() == Questions().first(); }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf"}));
}

TEST_F(QuestionsTest, TheWindowBehindAQuestionTakesNoKeys)
{
    OpenWithLocalCopy();
    window->OfferUpload({LocalFile("new.pdf", ours)});
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    window->activateWindow(); // some window managers let the user do that
    ASSERT_TRUE(WaitUntil([&] { return window->isActiveWindow(); }));
    QTest::keyClick(window.get(), Qt::Key_U, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_Delete);
    QTest::keyClick(window.get(), Qt::Key_F9);
    QTest::keyClick(window.get(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->findChild<QFileDialog*>());
    EXPECT_EQ(Names(), QStringList{"a.pdf"});
    EXPECT_FALSE(Find<QWidget>("detailsPane"));
    EXPECT_TRUE(window->isVisible());
    Answer("Cancel");
    ASSERT_TRUE(WaitUntil([&] { return window->isActiveWindow(); }));
    QTest::keyClick(window.get(), Qt::Key_F9);
    EXPECT_TRUE(WaitUntil([&] { return Find<QWidget>("detailsPane"); }));
}

TEST_F(QuestionsTest, NobodyIsAskedAboutWhatCannotBeUploaded)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    window->OfferUpload({LocalFile("notes.txt", "notes")});
    EXPECT_TRUE(Questions().isEmpty());
    EXPECT_EQ(Message(), "“notes.txt” is not a PDF document and was not uploaded.");
    window->OfferUpload({Local("no such.pdf")});
    EXPECT_TRUE(Questions().isEmpty());
    EXPECT_EQ(Message(), "There is no file " + Local("no such.pdf") + ".");
}

TEST_F(QuestionsTest, AVersionThatCameAfterTheRemovalIsNotRemoved)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Explanation().toStdString(), testing::HasSubstr("1 document has changes that are not in the cloud."));
    Answer("Remove");
    ASSERT_TRUE(Shows({}));
    PutIntoCloud("a.pdf", newer);
    Refresh();
    window->close(); // sends what has not been sent
    ASSERT_TRUE(WaitUntil([&] { return !Questions().empty(); })) << "it is there still";
    Answer("Quit Anyway");
    EXPECT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), newer);
}

} // namespace

} // namespace Norlis::Test
