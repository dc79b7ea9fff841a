#include "WindowTest.h"

#include <host/CloudDocumentsModel.h>

#include <QAbstractButton>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QListView>
#include <QTest>
#include <QUrl>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class DocumentsWindowTest : public WindowTest {
protected:
    /// A document in the cloud in whose place, when it came, there was somebody's own file of its name.
    void FailToDownload()
    {
        PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf"}));
        MakeFolder(Local("downloads"));
        Select({"a.pdf"});
        Action("Download")->trigger();
        WriteFile(Local("downloads/a.pdf"), "somebody's own");
        ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList{"a.pdf failed"}; }));
    }

    /// Whether something of that colour is to be seen where the documents are.
    bool IsSeen(const QColor& color)
    {
        return WaitUntil([&] {
            const QImage picture = Documents()->grab().toImage();
            for (int y = 0; y < picture.height(); y += 4) {
                for (int x = 0; x < picture.width(); x += 4) {
                    if (picture.pixelColor(x, y) == color) {
                        return true;
                    }
                }
            }
            return false;
        });
    }
};

TEST_F(DocumentsWindowTest, DocumentsAreShownWithTheirPictures)
{
    PutIntoCloud("b.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("a.pdf", PdfOfColor(Qt::blue));
    OpenCloud();
    EXPECT_TRUE(Shows({"a.pdf", "b.pdf"}));
    EXPECT_TRUE(IsSeen(Qt::red));
    EXPECT_TRUE(IsSeen(Qt::blue));
    EXPECT_EQ(Message(), "");
    EXPECT_THAT(Status().toStdString(), HasSubstr("2"));
}

TEST_F(DocumentsWindowTest, PicturesAreFetchedForTheDocumentsInViewAlone)
{
    constexpr int count = 60;
    for (int number = 0; number < count; ++number) {
        PutIntoCloud(QStringLiteral("%1.pdf").arg(number), PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Names().size() == count; }));
    const auto hasPictures = [this](int row) {
        return Documents()->model()->index(row, 0).data(Host::CloudDocumentsModel::PreviewsRole).toMap().size() == 3;
    };
    ASSERT_TRUE(WaitUntil([&] { return hasPictures(0); }));
    EXPECT_FALSE(hasPictures(count - 1));
    Documents()->scrollToBottom();
    EXPECT_TRUE(WaitUntil([&] { return hasPictures(count - 1); }));
    EXPECT_FALSE(hasPictures(count / 2)) << "what was passed over";
}

TEST_F(DocumentsWindowTest, ChangedContentHasANewPicture)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    ASSERT_TRUE(IsSeen(Qt::red));
    PutIntoCloud("a.pdf", PdfOfText("longer") + "% and longer");
    PutIntoCloud("a.pdf", PdfOfColor(Qt::green, {400, 400}));
    Refresh();
    EXPECT_TRUE(IsSeen(Qt::green));
    EXPECT_FALSE(Documents()->grab().isNull());
}

TEST_F(DocumentsWindowTest, AnEmptyCloudSaysWhatToDo)
{
    OpenCloud();
    EXPECT_TRUE(WaitUntil([&] { return EmptyTitle() == "No documents yet"; }));
    EXPECT_TRUE(Button("Upload…"));
}

TEST_F(DocumentsWindowTest, DroppedDocumentsAreUploaded)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    const QByteArray content = PdfOfColor(Qt::red);
    Drop({LocalFile("ä b.pdf", content), LocalFile("c.pdf", PdfOfColor(Qt::blue))});
    EXPECT_TRUE(Shows({"ä b.pdf", "c.pdf"}) || Shows({"c.pdf", "ä b.pdf"}));
    EXPECT_TRUE(IsUpToDate("ä b.pdf"));
    EXPECT_EQ(ReadFile(Cloud("ä b.pdf")), content);
    EXPECT_TRUE(WaitUntil([&] {
        auto rows = Transfers();
        rows.sort();
        return rows == QStringList{"c.pdf finished", "ä b.pdf finished"};
    }));
}

TEST_F(DocumentsWindowTest, WhatIsNoPdfIsRefusedByNameAndTheRestIsUploaded)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    Drop({LocalFile("notes.txt", "text"), LocalFile("a.pdf", PdfOfColor(Qt::red))});
    EXPECT_THAT(Message().toStdString(), HasSubstr("“notes.txt” is not a PDF document"));
    EXPECT_TRUE(Shows({"a.pdf"}));
    ClickButton("Close the message");
    EXPECT_EQ(Message(), "");
}

TEST_F(DocumentsWindowTest, ADroppedLocalCopyReplacesItsDocument)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    const QString path = LocalFile("a.pdf", PdfOfColor(Qt::red));
    Drop({path});
    ASSERT_TRUE(IsUpToDate("a.pdf"));
    const QByteArray changed = PdfOfText("changed");
    WriteFile(path, changed);
    Drop({path});
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == changed; }));
    EXPECT_TRUE(Shows({"a.pdf"}));
    EXPECT_EQ(FilesBelow(Cloud()).filter(".pdf"), QStringList{"a.pdf"});
}

TEST_F(DocumentsWindowTest, WhatActsOnDocumentsNeedsASelectedOne)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf"}));
    const auto enabled = [this] {
        QStringList actions;
        for (const char* const text : {"Upload…", "Download", "Download To…", "Open", "Upload Changes", "Remove"}) {
            if (Action(text)->isEnabled()) {
                actions.append(text);
            }
        }
        return actions;
    };
    EXPECT_EQ(enabled(), QStringList{"Upload…"});
    Select({"a.pdf"});
    EXPECT_EQ(enabled(), QStringList({"Upload…", "Download", "Download To…", "Open", "Remove"}));
    Select({});
    EXPECT_EQ(enabled(), QStringList{"Upload…"});
}

TEST_F(DocumentsWindowTest, DownloadPutsTheSelectedDocumentsIntoTheFolder)
{
    const QByteArray content = PdfOfColor(Qt::red);
    PutIntoCloud("a.pdf", content);
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    PutIntoCloud("c.pdf", PdfOfColor(Qt::green));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf", "c.pdf"}));
    EXPECT_FALSE(Action("Download")->isEnabled());
    Select({"a.pdf", "c.pdf"});
    ClickButton("Download");
    EXPECT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_TRUE(IsUpToDate("c.pdf"));
    EXPECT_EQ(ReadFile(Local("downloads/a.pdf")), content);
    EXPECT_EQ(StateOf("b.pdf"), static_cast<int>(State::OnlyInCloud));
    EXPECT_FALSE(ReadFile(Local("downloads/b.pdf")));
}

TEST_F(DocumentsWindowTest, ADownloadThatFindsAnotherFileSaysSoAndCanBeTriedAgain)
{
    ASSERT_NO_FATAL_FAILURE(FailToDownload());
    EXPECT_EQ(ReadFile(Local("downloads/a.pdf")), QByteArray("somebody's own"));
    EXPECT_EQ(Message(), ""); // told among the transfers, and nowhere else
    ASSERT_TRUE(QFile::remove(Local("downloads/a.pdf")));
    ClickButton("Try Again");
    EXPECT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_EQ(Transfers(), QStringList{"a.pdf finished"});
    ClickButton("Clear");
    EXPECT_THAT(Transfers(), IsEmpty());
    EXPECT_FALSE(Find<QListView>("transfers"));
}

TEST_F(DocumentsWindowTest, TryAgainIsForWhatFailedWhateverIsSelected)
{
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    MakeFolder(Local("downloads"));
    Select({"a.pdf", "b.pdf"});
    Action("Download")->trigger();
    WriteFile(Local("downloads/a.pdf"), "somebody's own");
    ASSERT_TRUE(WaitUntil([&] { return Transfers() == QStringList({"a.pdf failed", "b.pdf finished"}); }));
    const auto list = Find<QListView>("transfers");
    list->setCurrentIndex(list->model()->index(1, 0));
    ASSERT_TRUE(QFile::remove(Local("downloads/a.pdf")));
    ClickButton("Try Again");
    EXPECT_TRUE(WaitUntil([&] { return Transfers() == QStringList({"a.pdf finished", "b.pdf finished"}); }));
}

TEST_F(DocumentsWindowTest, ADownloadOfADocumentThatHasGoneSaysSoWhenItIsTriedAgain)
{
    ASSERT_NO_FATAL_FAILURE(FailToDownload());
    ASSERT_TRUE(QFile::remove(Cloud("a.pdf")));
    Refresh();
    ASSERT_TRUE(Shows({}));
    ClickButton("Try Again");
    const auto transfer = Find<QListView>("transfers")->model()->index(0, 0);
    EXPECT_TRUE(WaitUntil(
        [&] { return transfer.data(Window::Transfers::DetailRole).toString().startsWith("It is not in the list"); }));
    EXPECT_EQ(Transfers(), QStringList{"a.pdf failed"});
}

TEST_F(DocumentsWindowTest, WhatWasChangedHereCanBeUploaded)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    EXPECT_FALSE(Action("Upload Changes")->isEnabled());
    const QByteArray changed = PdfOfText("changed");
    WriteFile(Local("downloads/a.pdf"), changed);
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedLocally); }));
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    Action("Upload Changes")->trigger();
    EXPECT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), changed);
}

TEST_F(DocumentsWindowTest, WhatChangedOnBothSidesIsNotReplacedWithoutAQuestion)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    const QByteArray theirs = PdfOfText("theirs");
    const QByteArray ours = PdfOfText("changed by us");
    PutIntoCloud("a.pdf", theirs);
    WriteFile(Local("downloads/a.pdf"), ours);
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedOnBothSides); }));
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload Changes")->isEnabled(); }));
    ASSERT_TRUE(WaitUntil([&] { return Action("Resolve Conflict…")->isVisible(); }));
    Action("Resolve Conflict…")->trigger();
    ASSERT_EQ(Questions().size(), 1);
    Answer("Cancel");
    Action("Upload Changes")->trigger();
    ASSERT_EQ(Questions().size(), 1);
    EXPECT_THAT(Question().toStdString(), HasSubstr("“a.pdf” was changed both here and in the cloud"));
    Answer("Cancel");
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), theirs);
    Drop({Local("downloads/a.pdf")});
    Answer("Use Mine");
    EXPECT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), ours);
    EXPECT_TRUE(WaitUntil([&] { return !Action("Resolve Conflict…")->isVisible(); }));
}

TEST_F(DocumentsWindowTest, WhatChangedInTheCloudIsFetchedToWhereTheCopyIs)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithLocalCopy());
    QSettings(Local("data/window.ini"), QSettings::IniFormat).setValue("downloadFolder", Local("elsewhere"));
    const QByteArray changed = PdfOfText("changed");
    PutIntoCloud("a.pdf", changed);
    Refresh();
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedInCloud); }));
    Action("Download")->trigger();
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Local("downloads/a.pdf")) == changed; }));
    EXPECT_TRUE(IsUpToDate("a.pdf"));
}

TEST_F(DocumentsWindowTest, ASizeBeyondFourGigabytesIsShownBeforeTheCloudAnswers)
{
    constexpr qint64 size = Q_INT64_C(4'831'838'208);
    PutIntoCloud("large.pdf", PdfOfColor(Qt::red));
    ASSERT_TRUE(QFile::resize(Cloud("large.pdf"), size)); // takes no room on the disk
    OpenCloud();
    ASSERT_TRUE(Shows({"large.pdf"}));
    Close();
    ASSERT_TRUE(QDir().rename(Cloud(), Local("away")));
    Open();
    ASSERT_EQ(Names(), QStringList{"large.pdf"});
    const auto shown = Documents()->model()->index(0, 0);
    EXPECT_EQ(shown.data(Host::CloudDocumentsModel::SizeRole).toLongLong(), size);
    EXPECT_THAT(shown.data(Qt::ToolTipRole).toString().toStdString(), HasSubstr("4.5 GiB"));
}

TEST_F(DocumentsWindowTest, AListThatLacksMostDocumentsIsMentionedUntilTheyAreBack)
{
    const QStringList names = {"a.pdf", "b.pdf", "c.pdf"};
    for (const QString& name : names) {
        PutIntoCloud(name, PdfOfColor(Qt::red));
    }
    OpenCloud();
    ASSERT_TRUE(Shows(names));
    for (const QString& name : {names[0], names[1]}) {
        ASSERT_TRUE(QFile::rename(Cloud(name), Local(name)));
    }
    Refresh();
    ASSERT_TRUE(Shows({"c.pdf"}));
    ASSERT_TRUE(WaitUntil([&] { return !Message().isEmpty(); }));
    EXPECT_THAT(Message().toStdString(), HasSubstr("2 of the 3 documents are gone"));
    EXPECT_THAT(Questions(), IsEmpty());
    ASSERT_TRUE(QFile::rename(Local("a.pdf"), Cloud("a.pdf")));
    Refresh();
    ASSERT_TRUE(Shows({"a.pdf", "c.pdf"}));
    EXPECT_THAT(Message().toStdString(), HasSubstr("2 of the 3 documents are gone"));
    ASSERT_TRUE(QFile::rename(Local("b.pdf"), Cloud("b.pdf")));
    Refresh();
    ASSERT_TRUE(Shows(names));
    EXPECT_TRUE(WaitUntil([&] { return Message().isEmpty(); }));
}

TEST_F(DocumentsWindowTest, TheStorageInUseIsShown)
{
    OpenCloud();
    EXPECT_TRUE(WaitUntil([&] { return Find<QWidget>("storage"); }));
    const auto used = [this] { return Find<QWidget>("storage")->findChild<QLabel*>()->text(); };
    const QString before = used();
    const QByteArray large = PdfOfColor(Qt::red).leftJustified(5 << 20, ' ');
    Drop({LocalFile("large.pdf", large)});
    EXPECT_TRUE(WaitUntil([&] { return used() != before; })) << "without a refresh";
}

} // namespace

} // namespace Norlis::Test
