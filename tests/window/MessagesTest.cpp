#include "ServerWindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QToolButton>

namespace Norlis::Test {

namespace {

/// What is told above the documents.
class MessagesTest : public ServerWindowTest {
protected:
    void Change(const QString& name)
    {
        WriteFile(Local("downloads/" + name), PdfOfText("changed"));
        Refresh();
    }

    /// "1 of 2"; empty while there is only one message.
    QString Place() const
    {
        const auto next = Find<QToolButton>("nextMessage");
        return next ? next->text() : QString();
    }
};

TEST_F(MessagesTest, OneThatHidesAnotherSaysHowManyThereAre)
{
    OpenWithLocalCopy();
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    Refresh();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"b.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(IsUpToDate("b.pdf"));
    Change("a.pdf");
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; })) << qPrintable(Message());
    EXPECT_EQ(Place(), "");
    QApplication::clipboard()->setText("no file");
    Action("Paste")->trigger();
    EXPECT_EQ(Message(), "There are no files on the clipboard.");
    EXPECT_EQ(Place(), "1 of 2");
    ClickButton("1 of 2");
    EXPECT_EQ(Message(), "“a.pdf” was changed.");
    EXPECT_TRUE(Button("Upload Changes"));
    Change("b.pdf");
    ASSERT_TRUE(WaitUntil([&] { return Message() == "2 documents have changes that are not in the cloud."; }));
    ClickButton("2 of 2");
    EXPECT_EQ(Message(), "There are no files on the clipboard.");
    ClickButton("1 of 2");
    Click(Find<QToolButton>("closeMessage"));
    EXPECT_EQ(Message(), "There are no files on the clipboard.");
    EXPECT_EQ(Place(), "");
}

} // namespace

} // namespace Norlis::Test
