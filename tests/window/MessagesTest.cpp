#include "OpenedFiles.h"
#include "ServerWindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

namespace Norlis::Test {

namespace {

using testing::IsEmpty;

/// What is told below the documents.
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
        const auto next = Find<QPushButton>("nextMessage");
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

TEST_F(MessagesTest, OneThatAppearsMovesNoDocumentButTheCurrentOneThatItWouldHide)
{
    for (int number = 10; number < 60; ++number) {
        PutIntoCloud(QStringLiteral("%1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == 50; }));
    const auto model = Documents()->model();
    const auto place = [&](const QModelIndex& document) {
        const auto viewport = Documents()->viewport();
        return QRect(viewport->mapTo(window.get(), Documents()->visualRect(document).topLeft()),
                     Documents()->visualRect(document).size());
    };
    const auto isInView = [&](const QModelIndex& document) {
        return Documents()->viewport()->rect().contains(Documents()->visualRect(document));
    };
    const auto tell = [this] {
        QApplication::clipboard()->setText("no file");
        Action("Paste")->trigger();
        EXPECT_EQ(Message(), "There are no files on the clipboard.");
    };
    Documents()->setCurrentIndex(model->index(0, 0));
    const QRect before = place(model->index(0, 0));
    const int height = Documents()->viewport()->height();
    tell();
    ASSERT_TRUE(WaitUntil([&] { return Documents()->viewport()->height() < height; }));
    EXPECT_EQ(place(model->index(0, 0)), before);
    Click(Find<QToolButton>("closeMessage"));
    ASSERT_TRUE(WaitUntil([&] { return Documents()->viewport()->height() == height; }));
    EXPECT_EQ(place(model->index(0, 0)), before);
    Documents()->setCurrentIndex(model->index(40, 0)); // comes into view at its lower edge
    ASSERT_TRUE(WaitUntil([&] { return isInView(Documents()->currentIndex()); }));
    tell();
    ASSERT_TRUE(WaitUntil([&] { return Documents()->viewport()->height() < height; }));
    EXPECT_TRUE(WaitUntil([&] { return isInView(Documents()->currentIndex()); }));
}

TEST_F(MessagesTest, FromRightToLeftWordsStandBesideTheirPictures)
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    OpenCloud();
    QApplication::clipboard()->setText("no file");
    ASSERT_TRUE(WaitUntil([&] { return Action("Paste")->isEnabled(); }));
    Action("Paste")->trigger();
    const QChar mark(0x200E);
    EXPECT_EQ(Action("Upload…")->text(), mark + QString("&Upload…") + mark) << "otherwise the dots come first";
    EXPECT_TRUE(Status().startsWith(mark)) << "as do numbers";
    const auto columnsOfInk = [](QWidget& part) { // the first and the last
        const QImage image = part.grab(part.rect().adjusted(10, 4, -10, -4)).toImage();
        QList<int> found;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (qAbs(image.pixelColor(x, y).lightness() - image.pixelColor(x, 0).lightness()) > 60) {
                    found.append(x);
                    break;
                }
            }
        }
        return found;
    };
    const auto message = Find<QLabel>("messageText");
    ASSERT_TRUE(message);
    const auto words = columnsOfInk(*message);
    ASSERT_FALSE(words.isEmpty());
    EXPECT_GT(words.first(), message->width() / 3) << "at the right, where its picture is";
    const auto search = Find<QLineEdit>("search");
    const auto hint = columnsOfInk(*search);
    ASSERT_FALSE(hint.isEmpty());
    EXPECT_GT(hint.first(), search->width() / 3) << "at the glass";
    window.reset();
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(MessagesTest, ADocumentThatCouldNotBeOpenedIsToldOfNoLongerOnceItIsEdited)
{
    OpenWithLocalCopy();
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    Refresh();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    Select({"a.pdf"});
    Action("Open")->trigger(); // there is no program
    ASSERT_TRUE(Message().startsWith("“a.pdf” cannot be opened.")) << qPrintable(Message());
    Change("a.pdf"); // so that there is one
    EXPECT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; })) << qPrintable(Message());
    EXPECT_EQ(Place(), "");
}

TEST_F(MessagesTest, ARemovalThatWasRefusedIsToldOfNoLongerOnceTheDocumentIsGone)
{
    OpenWithLocalCopy();
    Change("a.pdf");
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed."; }));
    Action("Remove")->trigger();
    PutIntoCloud("a.pdf", PdfOfText("theirs"));
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedOnBothSides); }));
    Answer("Remove");
    ASSERT_TRUE(WaitUntil([&] { return Message().startsWith("“a.pdf” was not removed."); })) << qPrintable(Message());
    ASSERT_TRUE(QFile::remove(Cloud("a.pdf")));
    Refresh();
    EXPECT_TRUE(WaitUntil([&] { return Message().startsWith("“a.pdf” is no longer in the cloud."); }));
    EXPECT_TRUE(WaitUntil([&] { return Place().isEmpty(); })) << qPrintable(Place());
    Drop({Local("downloads/a.pdf")}); // otherwise than by the message
    EXPECT_TRUE(WaitUntil([&] { return Message().isEmpty(); })) << qPrintable(Message());
}

TEST_F(MessagesTest, AConflictOfAnUploadThatNobodyAskedForIsNoQuestion)
{
    QSettings(Local("data/window.ini"), QSettings::IniFormat).setValue("uploadsByItself", true);
    server.Put("a.pdf", PdfOfText("first"));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const OpenedFiles opened;
    Select({"a.pdf"});
    Action("Open")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return !opened.paths.isEmpty(); }));
    const QByteArray theirs = PdfOfText("theirs");
    server.Put("a.pdf", theirs);
    WriteFile(opened.paths.first(), PdfOfText("ours"));
    ASSERT_TRUE(WaitUntil([&] { return Message() == "“a.pdf” was changed both here and in the cloud."; }))
        << qPrintable(Message());
    EXPECT_TRUE(Transfers().contains("a.pdf failed"));
    EXPECT_THAT(Questions(), IsEmpty());
    EXPECT_EQ(server.Get("a.pdf"), theirs);
    ClickButton("Resolve…");
    EXPECT_EQ(Questions().size(), 1);
}

TEST_F(MessagesTest, AConflictOfAnUploadThatTheUserHasChosenIsAQuestion)
{
    server.Put("a.pdf", PdfOfText("first"));
    SignIn();
    ASSERT_TRUE(Shows({"a.pdf"}));
    Select({"a.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(IsUpToDate("a.pdf"));
    Change("a.pdf");
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    server.Put("a.pdf", PdfOfText("theirs"));
    Action("Upload Changes")->trigger();
    EXPECT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
}

} // namespace

} // namespace Norlis::Test
