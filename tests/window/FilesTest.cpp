#include "WindowTest.h"

#include <apps/window/commands/CopiedDocuments.h>

#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QUrl>

namespace Norlis::Test {

namespace {

using testing::IsEmpty;

/// Files that come from other programs, and go to them.
class FilesTest : public WindowTest {
protected:
    void SetUp() override
    {
        OpenCloud();
        ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    }

    static QMimeData* DataOf(const QStringList& paths)
    {
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        const auto data = new QMimeData;
        data->setUrls(urls);
        return data;
    }

    static QStringList ClipboardFiles()
    {
        return Window::LocalPaths(QGuiApplication::clipboard()->mimeData());
    }

    /// What the window says while these files hover, and whether they may be dropped.
    QString HintFor(const QStringList& paths, bool* mayDrop)
    {
        const auto page = window->findChild<QWidget*>("documentsPage");
        const std::unique_ptr<QMimeData> data(DataOf(paths));
        QDragEnterEvent enter(page->rect().center(), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(page, &enter);
        *mayDrop = enter.isAccepted() && enter.dropAction() == Qt::CopyAction;
        const auto hint = Find<QWidget>("dropHint");
        const QString text = hint ? hint->findChild<QLabel*>()->text() : QString();
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(page, &leave);
        EXPECT_FALSE(Find<QWidget>("dropHint"));
        return text;
    }
};

TEST_F(FilesTest, TheWindowSaysWhatADropWouldDo)
{
    bool mayDrop = false;
    EXPECT_EQ(HintFor({"/a.pdf", "/b.PDF", "/c.txt"}, &mayDrop), "Drop to upload 2 documents");
    EXPECT_TRUE(mayDrop);
    EXPECT_EQ(HintFor({folder.path()}, &mayDrop), "Drop to upload the documents in the folder");
    EXPECT_TRUE(mayDrop);
    EXPECT_EQ(HintFor({"/c.txt"}, &mayDrop), "Only PDF documents can be uploaded");
    EXPECT_FALSE(mayDrop);
}

TEST_F(FilesTest, WhatADropWouldDoIsNotWrittenBelowWhatIsDragged)
{
    const auto page = window->findChild<QWidget*>("documentsPage");
    const std::unique_ptr<QMimeData> data(DataOf({"/a.pdf"}));
    const auto textWhileAt = [&](int y) {
        QDragMoveEvent move({page->width() / 2, y}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(page, &move);
        return Find<QWidget>("dropHint")->findChild<QLabel*>()->alignment();
    };
    QDragEnterEvent enter({1, page->height() - 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(page, &enter);
    EXPECT_TRUE(textWhileAt(page->height() - 1) & Qt::AlignTop);
    EXPECT_TRUE(textWhileAt(page->height() / 3) & Qt::AlignBottom);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(page, &leave);
}

TEST_F(FilesTest, TheDocumentsInADroppedFolderAreUploaded)
{
    const QDir dropped(Local("dropped"));
    ASSERT_TRUE(dropped.mkpath("below"));
    WriteFile(dropped.filePath("a.pdf"), PdfOfColor(Qt::red));
    WriteFile(dropped.filePath("below/b.PDF"), PdfOfColor(Qt::blue));
    WriteFile(dropped.filePath("notes.txt"), "text");
    WriteFile(dropped.filePath("not-really.pdf"), "text");
    Drop({dropped.path()});
    EXPECT_TRUE(Shows({"a.pdf", "b.PDF"}));
    EXPECT_EQ(Message(), "");
}

TEST_F(FilesTest, AFolderWithoutDocumentsIsMentioned)
{
    ASSERT_TRUE(QDir().mkdir(Local("empty")));
    Drop({Local("empty")});
    EXPECT_TRUE(WaitUntil([&] { return Message() == "There are no PDF documents in the folder."; }));
}

TEST_F(FilesTest, AFolderWithManyDocumentsIsAskedAbout)
{
    constexpr int many = 51;
    ASSERT_TRUE(QDir().mkdir(Local("many")));
    for (int number = 0; number < many; ++number) {
        WriteFile(Local(QStringLiteral("many/%1.pdf").arg(number)), PdfOfColor(Qt::red));
    }
    Drop({Local("many")});
    ASSERT_TRUE(WaitUntil([&] { return Questions().size() == 1; }));
    EXPECT_EQ(Question(), "Upload 51 files?");
    Answer("Cancel");
    EXPECT_THAT(Transfers(), IsEmpty());
}

TEST_F(FilesTest, WhatIsNamedLikeADocumentButIsNoneIsRefused)
{
    Drop({LocalFile("empty.pdf", {}), LocalFile("garbage.pdf", "garbage")});
    EXPECT_EQ(Message(), "2 of the files are not PDF documents and were not uploaded. empty.pdf, garbage.pdf");
    EXPECT_THAT(Transfers(), IsEmpty());
}

TEST_F(FilesTest, CopiedFilesAreUploadedByPasting)
{
    QGuiApplication::clipboard()->setText("text");
    Action("Paste")->trigger();
    EXPECT_EQ(Message(), "There are no files on the clipboard.");
    QGuiApplication::clipboard()->setMimeData(DataOf({LocalFile("a.pdf", PdfOfColor(Qt::red))}));
    Action("Paste")->trigger();
    EXPECT_TRUE(Shows({"a.pdf"}));
    EXPECT_EQ(Message(), "");
}

TEST_F(FilesTest, CopiedDocumentsAreOnTheClipboardOnceAllAreHere)
{
    const QByteArray content = PdfOfColor(Qt::blue);
    Drop({LocalFile("here.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(IsUpToDate("here.pdf"));
    PutIntoCloud("there.pdf", content);
    Refresh();
    ASSERT_TRUE(Shows({"here.pdf", "there.pdf"}));
    QGuiApplication::clipboard()->clear();
    Select({"here.pdf", "there.pdf"});
    Action("Copy")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return ClipboardFiles().size() == 2; }));
    EXPECT_EQ(ClipboardFiles().first(), Local("here.pdf"));
    EXPECT_EQ(ReadFile(ClipboardFiles().last()), content);
    EXPECT_FALSE(QDir(Local("downloads")).exists()) << "it was to be copied only";
}

TEST_F(FilesTest, DocumentsThatAreHereCanBeDraggedToOtherPrograms)
{
    PutIntoCloud("there.pdf", PdfOfColor(Qt::blue));
    Drop({LocalFile("here.pdf", PdfOfColor(Qt::red))});
    ASSERT_TRUE(IsUpToDate("here.pdf"));
    ASSERT_TRUE(Shows({"here.pdf", "there.pdf"}));
    const auto model = Documents()->model();
    EXPECT_TRUE(model->flags(model->index(0, 0)) & Qt::ItemIsDragEnabled);
    EXPECT_FALSE(model->flags(model->index(1, 0)) & Qt::ItemIsDragEnabled);
    const std::unique_ptr<QMimeData> data(model->mimeData({model->index(0, 0)}));
    EXPECT_EQ(data->urls(), QList<QUrl>{QUrl::fromLocalFile(Local("here.pdf"))});
    EXPECT_TRUE(Documents()->dragEnabled());
}

} // namespace

} // namespace Norlis::Test
