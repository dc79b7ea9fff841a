#include <tests/support/Files.h>
#include <tests/support/MemoryPieces.h>
#include <tests/support/Renderers.h>
#include <tests/support/Waiting.h>

#include <protocol/preview/RendererProcess.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace Norlis::Social {

using namespace Norlis::Test;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

struct Outcome {
    int count = 0;
    QImage image;
    int pageCount = 0;
    std::string reason;
};

} // namespace

/// What is made of a renderer that does not behave.
class RendererProcessTest : public testing::Test {
protected:
    /// A file of that name, for the renderers to be asked about.
    QString File(const QString& name)
    {
        const QString path = folder.filePath(name);
        WriteFile(path, "content");
        return path;
    }

    Outcome Render(RendererProcess& renderer, const QString& name = "a.pdf", const QSize& box = {20, 30},
                   int number = 1)
    {
        Outcome outcome;
        renderer.Render(File(name), number, box, [&](const RenderedPage& page, const QString& reason) {
            ++outcome.count;
            outcome.image = page.image;
            outcome.pageCount = page.pageCount;
            outcome.reason = reason.toStdString();
        });
        EXPECT_FALSE(renderer.IsIdle());
        EXPECT_TRUE(WaitUntil([&] { return outcome.count > 0; }));
        EXPECT_TRUE(renderer.IsIdle());
        QCoreApplication::processEvents();
        EXPECT_EQ(outcome.count, 1);
        return outcome;
    }

    static std::string ReasonOf(RendererProcess& renderer, const std::shared_ptr<DocumentPieces>& document)
    {
        Outcome outcome;
        renderer.Render(document, 1, {20, 30}, [&](const RenderedPage& page, const QString& reason) {
            ++outcome.count;
            outcome.image = page.image;
            outcome.reason = reason.toStdString();
        });
        EXPECT_TRUE(WaitUntil([&] { return outcome.count > 0; }));
        EXPECT_TRUE(renderer.IsIdle());
        EXPECT_TRUE(outcome.image.isNull());
        return outcome.reason;
    }

    FakeRenderers fakes;
    QTemporaryDir folder;
};

TEST_F(RendererProcessTest, APictureIsHandedOver)
{
    RendererProcess renderer(fakes.Make("answer"));
    const Outcome outcome = Render(renderer);
    EXPECT_EQ(outcome.image.size(), QSize(20, 30));
    EXPECT_EQ(outcome.image.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(fakes.Requests(), QStringList("20x30 a.pdf"));
}

TEST_F(RendererProcessTest, TheWantedPageIsAskedForAndTheNumberOfPagesHandedOver)
{
    RendererProcess renderer(fakes.Make("answer"));
    const Outcome outcome = Render(renderer, "a.pdf", {20, 30}, 4);
    EXPECT_EQ(outcome.image.size(), QSize(20, 30));
    EXPECT_EQ(outcome.pageCount, 10);
    EXPECT_EQ(fakes.Requests(), QStringList("20x30 a.pdf page 4"));
}

TEST_F(RendererProcessTest, NothingOfThisProcessIsInherited)
{
    qputenv("NORLIS_TEST_SECRET", "secret");
    const int open = dup(STDIN_FILENO); // a copy is not closed when another program is started
    RendererProcess renderer(NORLIS_FAKE_RENDERER);
    EXPECT_EQ(Render(renderer).reason, "; 0 1 2");
    EXPECT_EQ(qgetenv("NORLIS_TEST_SECRET"), "secret"); // here it stays
    close(open);
    qunsetenv("NORLIS_TEST_SECRET");
}

TEST_F(RendererProcessTest, OnlyAFileIsHandedOver)
{
    RendererProcess renderer(fakes.Make("answer"));
    MakeLink(File("a.pdf"), folder.filePath("link.pdf"));
    MakeNamedPipe(folder.filePath("pipe.pdf"));
    for (const char* name : {"missing.pdf", "link.pdf", "pipe.pdf", "."}) {
        Outcome outcome;
        renderer.Render(folder.filePath(name), 1, {20, 30}, [&](const RenderedPage& page, const QString& reason) {
            ++outcome.count;
            outcome.image = page.image;
            outcome.reason = reason.toStdString();
        });
        EXPECT_TRUE(WaitUntil([&] { return outcome.count > 0; })) << name;
        EXPECT_TRUE(outcome.image.isNull()) << name;
        EXPECT_THAT(outcome.reason, testing::StartsWith("It ")) << name;
    }
    EXPECT_TRUE(fakes.Requests().isEmpty());
}

TEST_F(RendererProcessTest, PiecesOfADocumentAreHandedOver)
{
    RendererProcess renderer(fakes.Make("read"));
    EXPECT_EQ(ReasonOf(renderer, std::make_shared<MemoryPieces>("content")), "content");
    EXPECT_EQ(ReasonOf(renderer, std::make_shared<MemoryPieces>("other")), "other");
}

TEST_F(RendererProcessTest, NothingButTheDocumentIsHandedOver)
{
    RendererProcess beyond(fakes.Make("read-beyond"));
    EXPECT_THAT(ReasonOf(beyond, std::make_shared<MemoryPieces>("content")), HasSubstr("other than the document"));
    RendererProcess renderer(fakes.Make("read"));
    EXPECT_THAT(Render(renderer).reason, HasSubstr("other than the document")) << "of a file";
}

TEST_F(RendererProcessTest, PieceThatIsLostEndsTheRendering)
{
    RendererProcess renderer(fakes.Make("read"));
    const auto document = std::make_shared<MemoryPieces>("content");
    document->isLost = true;
    EXPECT_EQ(ReasonOf(renderer, document), "It is lost");
    document->isLost = false;
    EXPECT_EQ(ReasonOf(renderer, document), "content");
}

TEST_F(RendererProcessTest, OneProcessServesManyDocumentsAndLargePictures)
{
    RendererProcess renderer(fakes.Make("answer"));
    Render(renderer);
    const auto before = ChildProcesses("FakeRenderer");
    ASSERT_EQ(before.size(), 1U);
    EXPECT_EQ(Render(renderer, "b.pdf", {4096, 4096}).image.size(), QSize(4096, 4096));
    EXPECT_EQ(ChildProcesses("FakeRenderer"), before);
}

TEST_F(RendererProcessTest, BoxesAreKeptWithinReason)
{
    RendererProcess renderer(fakes.Make("answer"));
    EXPECT_EQ(Render(renderer, "a.pdf", {1'000'000, 1}).image.size(), QSize(4096, 1));
    EXPECT_EQ(Render(renderer, "a.pdf", {-5, 0}).image.size(), QSize(1, 1));
}

TEST_F(RendererProcessTest, ARefusalBringsItsReason)
{
    RendererProcess renderer(fakes.Make("refuse"));
    const Outcome outcome = Render(renderer);
    EXPECT_TRUE(outcome.image.isNull());
    EXPECT_EQ(outcome.reason, "for a reason");
}

TEST_F(RendererProcessTest, WhatIsNoPictureIsNotTaken)
{
    for (const char* behaviour : {"garbage", "nonsense-length", "short", "too-large", "too-few-pages", "too-many-pages",
                                  "empty", "half", "refuse-at-length", "die"}) {
        RendererProcess renderer(fakes.Make(behaviour));
        const Outcome outcome = Render(renderer);
        EXPECT_TRUE(outcome.image.isNull()) << behaviour;
        EXPECT_NE(outcome.reason, "") << behaviour;
        EXPECT_TRUE(WaitUntil([&] { return ChildProcesses("FakeRenderer").empty(); })) << behaviour;
    }
}

TEST_F(RendererProcessTest, ARendererThatSpeaksUnaskedIsNotBelieved)
{
    RendererProcess renderer(fakes.Make("talkative"));
    const Outcome outcome = Render(renderer);
    EXPECT_TRUE(outcome.image.isNull());
}

TEST_F(RendererProcessTest, WhatFollowsAnAnswerIsNotTakenForTheNext)
{
    RendererProcess renderer(fakes.Make("twice"));
    for (int count = 0; count < 20; ++count) {
        const QSize box(10 + count, 10);
        const Outcome outcome = Render(renderer, QString::number(count), box);
        if (!outcome.image.isNull()) {
            EXPECT_EQ(outcome.image.size(), box);
        }
    }
}

TEST_F(RendererProcessTest, AnotherDocumentIsRenderedAfterOneThatKilledTheRenderer)
{
    RendererProcess renderer(fakes.Make("die-of-bad"));
    EXPECT_TRUE(Render(renderer, "bad.pdf").image.isNull());
    EXPECT_FALSE(Render(renderer, "good.pdf").image.isNull());
    EXPECT_TRUE(Render(renderer, "bad.pdf").image.isNull());
    EXPECT_FALSE(Render(renderer, "good.pdf").image.isNull());
}

TEST_F(RendererProcessTest, ARendererThatWasKilledMeanwhileIsStartedAgain)
{
    RendererProcess renderer(fakes.Make("answer"));
    Render(renderer);
    for (const int child : ChildProcesses("FakeRenderer")) {
        kill(child, SIGKILL);
    }
    ASSERT_TRUE(WaitUntil([&] { return ChildProcesses("FakeRenderer").empty(); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(Render(renderer).image.isNull());
}

TEST_F(RendererProcessTest, AProgramThatIsMissingIsAReason)
{
    RendererProcess missing("/no/such/program");
    EXPECT_THAT(Render(missing).reason, HasSubstr("cannot be started"));
    EXPECT_THAT(Render(missing).reason, HasSubstr("cannot be started"));
    RendererProcess none("");
    EXPECT_THAT(Render(none).reason, HasSubstr("not installed"));
}

TEST_F(RendererProcessTest, ADocumentThatTakesTooLongIsGivenUp)
{
    RendererProcess renderer(fakes.Make("hang"), 300);
    const Outcome outcome = Render(renderer);
    EXPECT_THAT(outcome.reason, HasSubstr("longer than 0.3 seconds"));
    EXPECT_THAT(ChildProcesses("FakeRenderer"), IsEmpty());
    EXPECT_THAT(Render(renderer, "b.pdf").reason, HasSubstr("longer"));
}

TEST_F(RendererProcessTest, NoProcessIsLeftAndNobodyCalledAfterDestruction)
{
    int calls = 0;
    for (const char* behaviour : {"hang", "answer", "garbage"}) {
        for (int turns = 0; turns < 3; ++turns) {
            auto renderer = std::make_unique<RendererProcess>(fakes.Make(behaviour));
            renderer->Render(File("a.pdf"), 1, {20, 30},
                             [&](const RenderedPage&, const QString&) { calls += renderer ? 0 : 1; });
            for (int turn = 0; turn < turns; ++turn) {
                QCoreApplication::processEvents();
            }
            renderer.reset();
            EXPECT_THAT(ChildProcesses("FakeRenderer"), IsEmpty());
            EXPECT_THAT(ChildProcesses(behaviour), IsEmpty());
            QCoreApplication::processEvents();
        }
    }
    EXPECT_EQ(calls, 0);
}

} // namespace Norlis::Social
