#include <tests/support/Files.h>
#include <tests/support/MemoryPieces.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Waiting.h>

#include <protocol/preview/RendererProcess.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace Norlis::Social {

using namespace Norlis::Test;
using testing::HasSubstr;

namespace {

struct Rendering {
    bool isOver = false;
    QImage image;
    int pageCount = 0;
    std::string reason;
};

} // namespace

/// The renderer itself, fed with documents of all kinds.
class RendererTest : public testing::Test {
protected:
    Rendering Render(const QByteArray& document, const QSize& box = {200, 200}, int number = 1)
    {
        RendererProcess renderer(NORLIS_RENDERER, 60'000);
        return Render(renderer, document, box, number);
    }

    Rendering Render(RendererProcess& renderer, const QByteArray& document, const QSize& box = {200, 200},
                     int number = 1)
    {
        WriteFile(path, document);
        Rendering outcome;
        renderer.Render(path, number, box, [&](const RenderedPage& page, const QString& reason) {
            outcome = {true, page.image, page.pageCount, reason.toStdString()};
        });
        EXPECT_TRUE(WaitUntil([&] { return outcome.isOver; }));
        return outcome;
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QString::fromUtf8("d\xc3\xb6"
                                                     "cument.pdf"));
};

TEST_F(RendererTest, APageFillsTheBoxAsFarAsItsShapeAllows)
{
    const Rendering portrait = Render(PdfOfColor(Qt::red, {300, 600}));
    EXPECT_EQ(portrait.image.size(), QSize(100, 200));
    EXPECT_EQ(portrait.image.pixelColor(50, 100), QColor(Qt::red));
    const Rendering landscape = Render(PdfOfColor(Qt::blue, {600, 300}));
    EXPECT_EQ(landscape.image.size(), QSize(200, 100));
    EXPECT_EQ(landscape.image.pixelColor(50, 50), QColor(Qt::blue));
}

TEST_F(RendererTest, EachPageCanBeRenderedAndIsToldHowManyThereAre)
{
    const QVector<QColor> colors = {Qt::red, Qt::green, Qt::blue};
    RendererProcess renderer(NORLIS_RENDERER, 60'000);
    for (const int number : {3, 1, 2}) {
        const Rendering outcome = Render(renderer, PdfOfColors(colors), {200, 200}, number);
        ASSERT_FALSE(outcome.image.isNull()) << outcome.reason;
        EXPECT_EQ(outcome.image.pixelColor(50, 100), colors[number - 1]);
        EXPECT_EQ(outcome.pageCount, 3);
    }
}

TEST_F(RendererTest, APageBeyondTheEndIsRefusedWithAReason)
{
    for (const int number : {2, 1000, std::numeric_limits<int>::max()}) {
        const Rendering outcome = Render(PdfOfColor(Qt::red), {200, 200}, number);
        EXPECT_TRUE(outcome.image.isNull()) << number;
        EXPECT_EQ(outcome.reason, "There is no such page");
    }
    EXPECT_NE(Render(PdfWithoutPages(), {200, 200}, 2).reason, "");
    EXPECT_THAT(Render(PdfWithPassword(), {200, 200}, 2).reason, HasSubstr("password"));
}

TEST_F(RendererTest, OfADocumentElsewhereOnlyWhatPageOneNeedsIsRead)
{
    const auto document = std::make_shared<MemoryPieces>(PdfWithMuchElse(Qt::red, 4 * 1024 * 1024));
    RendererProcess renderer(NORLIS_RENDERER, 60'000);
    Rendering outcome;
    renderer.Render(document, 1, {200, 200}, [&](const RenderedPage& page, const QString& reason) {
        outcome = {true, page.image, page.pageCount, reason.toStdString()};
    });
    ASSERT_TRUE(WaitUntil([&] { return outcome.isOver; }));
    ASSERT_FALSE(outcome.image.isNull()) << outcome.reason;
    EXPECT_EQ(outcome.image.pixelColor(100, 100), QColor(Qt::red));
    EXPECT_LE(document->bytesRead, 1024 * 1024);
    EXPECT_EQ(Render(renderer, PdfOfColor(Qt::blue)).image.pixelColor(50, 50), QColor(Qt::blue)); // a file is next
}

TEST_F(RendererTest, PaperIsWhiteWhereNothingIsPainted)
{
    const Rendering outcome = Render(PdfOfContent("0 0 100 100", ""));
    ASSERT_FALSE(outcome.image.isNull());
    EXPECT_EQ(outcome.image.pixelColor(10, 10), QColor(Qt::white));
}

TEST_F(RendererTest, TextIsPainted)
{
    const QImage image = Render(PdfOfText("Some words to be seen, again and again. ")).image;
    ASSERT_FALSE(image.isNull());
    bool isPainted = false;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            isPainted = isPainted || image.pixelColor(x, y).lightness() < 200;
        }
    }
    EXPECT_TRUE(isPainted);
}

TEST_F(RendererTest, WhatIsNoDocumentIsRefusedWithAReason)
{
    const QByteArray whole = PdfOfText("text", 3);
    const QByteArray garbage = QByteArray::fromHex("00ff5a").repeated(10'000);
    for (const QByteArray& document : {QByteArray(), QByteArray("text, and nothing else\n"), garbage, whole.left(20),
                                       QByteArray("%PDF-1.4"), "%PDF-1.4\n" + garbage, PdfWithoutPages()}) {
        const Rendering outcome = Render(document);
        EXPECT_TRUE(outcome.image.isNull()) << document.left(20).toStdString();
        EXPECT_NE(outcome.reason, "") << document.left(20).toStdString();
    }
}

TEST_F(RendererTest, ATruncatedDocumentEndsOneWayOrTheOther)
{
    const QByteArray whole = PdfOfText("text", 3);
    RendererProcess renderer(NORLIS_RENDERER, 60'000);
    for (int length = 0; length < whole.size(); length += whole.size() / 40 + 1) {
        const Rendering outcome = Render(renderer, whole.left(length));
        EXPECT_NE(outcome.image.isNull(), outcome.reason.empty()) << length;
    }
}

TEST_F(RendererTest, DamagedBytesEndOneWayOrTheOther)
{
    const QByteArray whole = PdfOfText("text", 3);
    RendererProcess renderer(NORLIS_RENDERER, 60'000);
    quint32 state = 1;
    for (int round = 0; round < 100; ++round) {
        QByteArray damaged = whole;
        for (int count = 0; count < 20; ++count) {
            state = state * 1664525 + 1013904223;
            damaged[static_cast<int>((state >> 8U) % static_cast<quint32>(damaged.size()))] = static_cast<char>(state);
        }
        const Rendering outcome = Render(renderer, damaged);
        EXPECT_NE(outcome.image.isNull(), outcome.reason.empty()) << round;
    }
}

TEST_F(RendererTest, APasswordIsAReason)
{
    EXPECT_THAT(Render(PdfWithPassword()).reason, HasSubstr("password"));
}

TEST_F(RendererTest, AbsurdPageSizesEndOneWayOrTheOther)
{
    for (const char* mediaBox :
         {"0 0 1e9 1e9", "0 0 1000000 1", "0 0 1 1000000", "0 0 0.001 0.001", "0 0 0 0", "100 100 0 0", "-5 -5 5 5",
          "0 0 99999999999999999999 99999999999999999999", "a b c d", "0 0", "", "nan nan nan nan"}) {
        const Rendering outcome = Render(PdfOfContent(mediaBox, "1 0 0 rg 0 0 100 100 re f"));
        EXPECT_NE(outcome.image.isNull(), outcome.reason.empty()) << mediaBox;
        EXPECT_LE(outcome.image.width(), 200) << mediaBox;
        EXPECT_LE(outcome.image.height(), 200) << mediaBox;
    }
}

TEST_F(RendererTest, DeepNestingEndsOneWayOrTheOther)
{
    const QByteArray nested = QByteArray("[").repeated(1'000'000);
    for (const QByteArray& document :
         {PdfOfContent("0 0 100 100", QByteArray("q ").repeated(1'000'000)), PdfOfContent("0 0 100 100 " + nested, ""),
          PdfOfContent("0 0 100 100", nested), PdfOfContent("0 0 100 100", QByteArray("<<").repeated(1'000'000))}) {
        const Rendering outcome = Render(document);
        EXPECT_NE(outcome.image.isNull(), outcome.reason.empty());
    }
}

TEST_F(RendererTest, APageThatTakesLongIsGivenUp)
{
    RendererProcess renderer(NORLIS_RENDERER, 500);
    EXPECT_THAT(Render(renderer, PdfThatTakesLong(), {4096, 4096}).reason, HasSubstr("longer than 0.5 seconds"));
}

TEST_F(RendererTest, ManyDocumentsAreRenderedByOneProcess)
{
    RendererProcess renderer(NORLIS_RENDERER, 60'000);
    for (int round = 0; round < 20; ++round) {
        EXPECT_FALSE(Render(renderer, PdfOfColor(QColor::fromHsv(round * 10, 255, 255))).image.isNull());
        EXPECT_TRUE(Render(renderer, "no document").image.isNull());
    }
}

TEST_F(RendererTest, AFileThatIsGoneIsAReason)
{
    RendererProcess renderer(NORLIS_RENDERER, 60'000);
    Rendering outcome;
    renderer.Render(folder.filePath("gone.pdf"), 1, {100, 100}, [&](const RenderedPage& page, const QString& reason) {
        outcome = {true, page.image, page.pageCount, reason.toStdString()};
    });
    ASSERT_TRUE(WaitUntil([&] { return outcome.isOver; }));
    EXPECT_TRUE(outcome.image.isNull());
    EXPECT_NE(outcome.reason, "");
}

} // namespace Norlis::Social
