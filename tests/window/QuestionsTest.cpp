#include "WindowTest.h"
#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Waiting.h>

#include <contracts/FileInfo.h>
#include <host/CloudDocumentsModel.h>

#include <QAction>
#include <QListView>
#include <QMessageBox>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using State = PDF::FileInfo::CloudStatus;

/// What happens while the user thinks about an answer.
class QuestionsTest : public WindowTest {
protected:
    /// One document, which was changed on both sides; it is selected.
    void OpenWithConflict()
    {
        PutIntoCloud("a.pdf", PdfOfText("old"));
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf"}));
        Select({"a.pdf"});
        Action("Download")->trigger();
        ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::InSync); }));
        WriteFile(Local("downloads/a.pdf"), ours);
        ReplaceInCloud(PdfOfText("theirs"));
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
    const QByteArray newer = PdfOfText("theirs, newer");
};

TEST_F(QuestionsTest, AVersionThatCameAfterTheQuestionIsNotReplaced)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    Action("Upload Changes")->trigger();
    ASSERT_NO_FATAL_FAILURE(ReplaceInCloud(newer));
    Answer("Replace");
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; })); // again, since it is about another version now
    Answer("Replace");
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == ours; }));
}

TEST_F(QuestionsTest, AVersionThatCameAfterTheQuestionIsNotRemoved)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithConflict());
    QTest::keyClick(Documents(), Qt::Key_Delete);
    ASSERT_NO_FATAL_FAILURE(ReplaceInCloud(newer));
    Answer("Remove");
    EXPECT_THAT(Message().toStdString(), testing::HasSubstr("It has changed in the cloud since you were asked."));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), newer);
}

} // namespace

} // namespace Norlis::Test
