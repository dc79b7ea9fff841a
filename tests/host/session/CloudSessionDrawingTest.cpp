#include "FolderSessionTest.h"

#include <tests/support/PdfFiles.h>

#include <QSignalSpy>
#include <QTest>

namespace Norlis::Test {

namespace {

/// Pages that a view asks for one by one.
class CloudSessionDrawingTest : public FolderSessionTest {
protected:
    Host::DrawnPage Drawn(qint64 drawing)
    {
        QSignalSpy drawn(session.get(), &Host::CloudSession::PageDrawn);
        Host::DrawnPage page;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                for (const auto& each : drawn) {
                    if (each[0].toLongLong() == drawing) {
                        page = each[1].value<Host::DrawnPage>();
                        return true;
                    }
                }
                return false;
            },
            20'000));
        return page;
    }

    static QColor ColorOf(const Host::DrawnPage& page)
    {
        return page.picture.toImage().pixelColor(page.picture.rect().center());
    }
};

TEST_F(CloudSessionDrawingTest, AFileOnThisComputerIsDrawn)
{
    const auto failures = CountOf("Failed");
    const QString path = Put("mine.pdf", PdfOfColors({Qt::red, Qt::blue}));
    const auto first = Drawn(session->DrawLocalPreview(path, {50, 50}));
    EXPECT_EQ(ColorOf(first), QColor(Qt::red));
    EXPECT_EQ(first.pageCount, 2);
    EXPECT_EQ(ColorOf(Drawn(session->DrawLocalPreview(path, {50, 50}, 2))), QColor(Qt::blue));
    EXPECT_EQ(Drawn(session->DrawLocalPreview(path, {50, 50}, 3)).reason, "There is no such page");
    EXPECT_EQ(Drawn(session->DrawLocalPreview(cloud + "/none.pdf", {50, 50})).reason, "There is no such file");
    EXPECT_EQ(CountOf("Failed"), failures);
}

TEST_F(CloudSessionDrawingTest, ADocumentIsDrawnAtAnySize)
{
    Put("a.pdf", PdfOfColor(Qt::red));
    RefreshNow();
    const auto large = Drawn(session->DrawPreview(IdOf("a.pdf"), {640, 640}));
    EXPECT_EQ(ColorOf(large), QColor(Qt::red));
    EXPECT_EQ(large.picture.height(), 640);
    const auto none = Drawn(session->DrawPreview("none", {640, 640}));
    EXPECT_TRUE(none.picture.isNull());
    EXPECT_NE(none.reason, "");
    EXPECT_EQ(CountOf("Failed"), 0);
}

TEST_F(CloudSessionDrawingTest, WhatIsNoLongerWantedIsNotDrawn)
{
    const QString path = Put("mine.pdf", PdfOfColor(Qt::red));
    QSignalSpy drawn(session.get(), &Host::CloudSession::PageDrawn);
    const qint64 canceled = session->DrawLocalPreview(path, {50, 50});
    session->CancelDrawing(canceled);
    session->CancelDrawing(canceled);
    session->CancelDrawing(77);
    const qint64 wanted = session->DrawLocalPreview(path, {60, 60});
    EXPECT_FALSE(Drawn(wanted).picture.isNull());
    ASSERT_EQ(drawn.size(), 1);
    EXPECT_EQ(drawn[0][0].toLongLong(), wanted);
}

TEST_F(CloudSessionDrawingTest, NobodyIsSignedInForFilesAndForNothingElse)
{
    session->SignOut();
    const auto failures = CountOf("Failed");
    EXPECT_EQ(Drawn(session->DrawPreview("1", {50, 50})).reason, "Nobody is signed in");
    EXPECT_EQ(ColorOf(Drawn(session->DrawLocalPreview(Put("mine.pdf", PdfOfColor(Qt::red)), {50, 50}))),
              QColor(Qt::red));
    EXPECT_EQ(CountOf("Failed"), failures);
}

} // namespace

} // namespace Norlis::Test
