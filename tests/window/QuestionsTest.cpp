#include "WindowTest.h"
#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Waiting.h>

#include <host/CloudDocumentsModel.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
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
    const auto colorAt = [&](int quarter) {
        const QImage picture = Questions().first()->iconPixmap().toImage();
        return picture.pixelColor(picture.width() * quarter / 4, picture.height() * 2 / 5);
    };
    EXPECT_TRUE(WaitUntil([&] { return colorAt(1) == QColor(Qt::green) && colorAt(3) == QColor(Qt::magenta); }));
    Answer("Cancel");
}

TEST_F(QuestionsTest, BothVersionsOfADocumentCanBeKept)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Questions().first()->informativeText().toStdString(),
                testing::AllOf(testing::HasSubstr("Here: "), testing::HasSubstr("In the cloud: ")));
    EXPECT_EQ(Questions().first()->defaultButton()->text().remove('&'), "Keep Both");
    Answer("Keep Both");
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
    ASSERT_TRUE(WaitUntil([&] { return Transfers().contains("a.pdf failed"); }));
    ClickButton("Try Again");
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    EXPECT_EQ(Questions().first()->text(), "“a.pdf” has changes on this computer that are not in the cloud.");
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
    EXPECT_THAT(Questions().first()->text().toStdString(), testing::HasSubstr("“a.pdf”"));
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

TEST_F(QuestionsTest, FilesOfSeveralStartsAreAskedAboutTogetherAndTheQuestionKeepsTheKeyboard)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    window->OfferUpload({LocalFile("a.pdf", ours)});
    window->ComeToFront();
    window->OfferUpload({LocalFile("b.pdf", theirs), Local("a.pdf")});
    window->ComeToFront();
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    EXPECT_EQ(Questions().first()->text(), "Upload 2 files?");
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
    EXPECT_THAT(Questions().first()->informativeText().toStdString(),
                testing::HasSubstr("1 document has changes that are not in the cloud."));
    Answer("Remove");
    ASSERT_TRUE(Shows({}));
    PutIntoCloud("a.pdf", newer);
    Refresh();
    window->close(); // sends what has not been sent
    EXPECT_TRUE(WaitUntil([&] { return !window->isVisible(); }));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), newer);
}

} // namespace

} // namespace Norlis::Test
