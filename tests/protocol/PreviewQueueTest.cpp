#include <tests/support/Files.h>
#include <tests/support/Renderers.h>
#include <tests/support/Waiting.h>

#include <protocol/preview/PreviewQueue.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace Norlis::Social {

using namespace Norlis::Test;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A source whose documents lie in a folder of its own; with `fetches` set, one whose fetches end when a test says so.
class FakeSource : public PreviewSource {
public:
    std::vector<Done>* fetches = nullptr;

    std::unique_ptr<Fetch> FetchForPreview(const PreviewSubject& subject, const QSize&, Done done) override
    {
        if (!fetches) {
            const QString path = folder.filePath(subject.name);
            WriteFile(path, "content");
            return std::make_unique<CompletedFetch>(Result{std::make_shared<FileInPlace>(path), {}, {}}, done);
        }
        fetches->push_back(std::move(done));
        return std::make_unique<Fetch>();
    }

private:
    const QTemporaryDir folder;
};

} // namespace

class PreviewQueueTest : public testing::Test {
protected:
    void Use(const QString& behaviour, const QString& cacheFolder = {})
    {
        queue = std::make_unique<PreviewQueue>(
            cacheFolder, source,
            [this](qint64 id, Reply reply) {
                EXPECT_EQ(replies.count(id), 0U);
                replies[id] = std::move(reply);
            },
            behaviour.isEmpty() ? QString() : fakes.Make(behaviour));
    }

    static PreviewSubject Document(int number, const QString& version = "1", int page = 1)
    {
        const QString id = "id" + QString::number(number);
        return {id, id + ".pdf", version, page};
    }

    static QImage Picture(int width, int height)
    {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::gray);
        return image;
    }

    bool Came(std::size_t count)
    {
        return WaitUntil([&] { return replies.size() == count; });
    }

    QSize SizeOf(qint64 id)
    {
        const auto image = std::get_if<QImage>(&replies.at(id).payload);
        return image ? image->size() : QSize();
    }

    FakeRenderers fakes;
    FakeSource source;
    QTemporaryDir folder;
    std::map<qint64, Reply> replies;
    std::unique_ptr<PreviewQueue> queue;
};

TEST_F(PreviewQueueTest, SizesOfOneDocumentComeFromOneRendering)
{
    Use("answer");
    queue->Add(1, Document(1), {20, 20});
    queue->Add(2, Document(1), {100, 100});
    queue->Add(3, Document(1), {50, 50});
    ASSERT_TRUE(Came(3));
    EXPECT_EQ(SizeOf(1), QSize(20, 20));
    EXPECT_EQ(SizeOf(2), QSize(100, 100));
    EXPECT_EQ(SizeOf(3), QSize(50, 50));
    EXPECT_EQ(fakes.Requests(), QStringList("100x100 id1.pdf"));
}

TEST_F(PreviewQueueTest, AFileOnThisComputerIsRenderedWhereItIsAndAgainWhenItHasChanged)
{
    Use("answer", folder.filePath("cache"));
    WriteFile(folder.filePath("mine.pdf"), "content");
    ASSERT_TRUE(QFile::link(folder.filePath("mine.pdf"), folder.filePath("link.pdf")));
    queue->AddLocal(1, folder.filePath("mine.pdf"), 1, {50, 50});
    ASSERT_TRUE(Came(1));
    EXPECT_EQ(SizeOf(1), QSize(50, 50));
    queue->AddLocal(2, folder.filePath("link.pdf"), 1, {50, 50}); // the same file
    ASSERT_TRUE(Came(2));
    EXPECT_EQ(fakes.Requests(), QStringList("50x50 mine.pdf"));
    WriteFile(folder.filePath("mine.pdf"), "other content");
    queue->AddLocal(3, folder.filePath("mine.pdf"), 1, {50, 50});
    ASSERT_TRUE(Came(3));
    EXPECT_EQ(fakes.Requests(), QStringList({"50x50 mine.pdf", "50x50 mine.pdf"}));
}

TEST_F(PreviewQueueTest, PagesOfOneDocumentAreRenderedOneByOneAndOnlyTheFirstIsKept)
{
    Use("answer", folder.filePath("cache"));
    for (const int page : {1, 2, 3}) {
        queue->Add(page, Document(1, "1", page), {50, 50});
        queue->Add(10 + page, Document(1, "1", page), {20, 20});
    }
    ASSERT_TRUE(Came(6));
    auto requests = fakes.Requests();
    requests.sort();
    EXPECT_EQ(requests, QStringList({"50x50 id1.pdf", "50x50 id1.pdf page 2", "50x50 id1.pdf page 3"}));
    for (const int page : {1, 2, 3}) {
        EXPECT_EQ(SizeOf(page), QSize(50, 50));
        EXPECT_EQ(SizeOf(10 + page), QSize(20, 20));
        EXPECT_EQ(replies.at(page).pageCount, 10);
        queue->Add(20 + page, Document(1, "1", page), {50, 50});
    }
    ASSERT_TRUE(Came(9));
    EXPECT_EQ(fakes.Requests().size(), 5);
    EXPECT_EQ(replies.at(21).pageCount, 10) << "it is kept with the picture";
    EXPECT_EQ(FilesBelow(folder.filePath("cache")).size(), 1);
}

TEST_F(PreviewQueueTest, APageThatCannotBeDrawnSaysNothingOfTheOthers)
{
    Use("too-many-pages");
    queue->Add(1, Document(1, "1", 2), {50, 50});
    ASSERT_TRUE(Came(1));
    EXPECT_EQ(replies.at(1).result, Error);
    queue->Add(2, Document(1), {50, 50});
    ASSERT_TRUE(Came(2));
    EXPECT_EQ(fakes.Requests().size(), 2) << "page one was tried";
}

TEST_F(PreviewQueueTest, ThereAreNoPagesBeforeTheFirst)
{
    Use("answer");
    WriteFile(folder.filePath("mine.pdf"), "content");
    queue->Add(1, Document(1, "1", 0), {50, 50});
    queue->AddLocal(2, folder.filePath("mine.pdf"), -1, {50, 50});
    ASSERT_EQ(replies.size(), 2U);
    EXPECT_EQ(replies[1].failure.reason, "There is no such page");
    EXPECT_EQ(replies[2].failure.reason, "There is no such page");
    EXPECT_THAT(fakes.Requests(), IsEmpty());
}

TEST_F(PreviewQueueTest, AFileThatCannotBeDrawnIsRefusedAtOnce)
{
    Use("answer");
    WriteFile(folder.filePath("mine.pdf"), "content");
    queue->AddLocal(1, folder.filePath("none.pdf"), 1, {50, 50});
    queue->AddLocal(2, folder.path(), 1, {50, 50});
    queue->AddLocal(3, {}, 1, {50, 50});
    queue->AddLocal(4, folder.filePath("mine.pdf"), 1, {});
    ASSERT_EQ(replies.size(), 4U);
    EXPECT_EQ(replies[1].failure.reason, "There is no such file");
    EXPECT_EQ(replies[2].failure.reason, "There is no such file");
    EXPECT_EQ(replies[3].failure.reason, "There is no such file");
    EXPECT_EQ(replies[4].failure.reason, "The requested size is empty");
    EXPECT_THAT(fakes.Requests(), IsEmpty());
}

TEST_F(PreviewQueueTest, AKeptPictureIsNotRenderedAgain)
{
    Use("answer", folder.path());
    queue->Add(1, Document(1), {100, 100});
    ASSERT_TRUE(Came(1));
    queue->Add(2, Document(1), {100, 100});
    queue->Add(3, Document(1), {30, 30});
    ASSERT_TRUE(Came(3));
    Use("answer", folder.path()); // as after a restart
    queue->Add(4, Document(1), {100, 100});
    ASSERT_TRUE(Came(4));
    EXPECT_EQ(SizeOf(3), QSize(30, 30));
    EXPECT_EQ(SizeOf(4), QSize(100, 100));
    EXPECT_EQ(fakes.Requests().size(), 1);
}

TEST_F(PreviewQueueTest, ALargerPictureOrANewerVersionIsRendered)
{
    Use("answer", folder.path());
    queue->Add(1, Document(1), {100, 100});
    ASSERT_TRUE(Came(1));
    queue->Add(2, Document(1), {200, 200});
    ASSERT_TRUE(Came(2));
    queue->Add(3, Document(1, "2"), {100, 100});
    ASSERT_TRUE(Came(3));
    EXPECT_EQ(SizeOf(2), QSize(200, 200));
    EXPECT_EQ(fakes.Requests().size(), 3);
}

TEST_F(PreviewQueueTest, AForgottenVersionIsRenderedAgain)
{
    for (const auto behaviour : {"answer", "refuse"}) {
        Use(behaviour, folder.path());
        replies.clear();
        const int before = fakes.Requests().size();
        queue->Add(1, Document(1), {100, 100});
        ASSERT_TRUE(Came(1));
        queue->Forget("id1", "2");
        queue->Add(2, Document(1), {100, 100});
        ASSERT_TRUE(Came(2));
        EXPECT_EQ(fakes.Requests().size(), before + 1);
        queue->Forget("id1", "1");
        queue->Add(3, Document(1), {100, 100});
        ASSERT_TRUE(Came(3));
        EXPECT_EQ(fakes.Requests().size(), before + 2);
        queue->Forget("id1", "1");
    }
}

TEST_F(PreviewQueueTest, AFetchThatWasUnderWayWhenTheContentWasReplacedIsNotKept)
{
    std::vector<PreviewSource::Done> fetches;
    source.fetches = &fetches;
    Use("answer", folder.path());
    const auto ask = [this](qint64 id) { queue->Add(id, Document(1), {100, 100}); };
    ask(1);
    ASSERT_TRUE(WaitUntil([&] { return fetches.size() == 1; }));
    queue->Forget("id1", "1");
    fetches[0]({{}, Picture(10, 20), {}});
    ASSERT_TRUE(Came(1));
    EXPECT_EQ(SizeOf(1), QSize(10, 20)); // the best there was
    ask(2);
    ASSERT_TRUE(WaitUntil([&] { return fetches.size() == 2; }));
    fetches[1]({{}, Picture(20, 10), {}});
    ASSERT_TRUE(Came(2));
    EXPECT_EQ(SizeOf(2), QSize(20, 10));
}

TEST_F(PreviewQueueTest, WhatGaveNoPictureIsNotTriedAgainUntilItChanges)
{
    Use("refuse");
    queue->Add(1, Document(1), {100, 100});
    queue->Add(2, Document(1), {50, 50});
    ASSERT_TRUE(Came(2));
    queue->Add(3, Document(1), {100, 100});
    ASSERT_TRUE(Came(3));
    for (const auto& [id, reply] : replies) {
        EXPECT_EQ(reply.result, Error) << id;
        EXPECT_EQ(reply.failure.reason, "for a reason");
        EXPECT_EQ(reply.failure.document, "id1.pdf");
    }
    EXPECT_EQ(fakes.Requests().size(), 1);
    queue->Add(4, Document(1, "2"), {100, 100});
    ASSERT_TRUE(Came(4));
    EXPECT_EQ(fakes.Requests().size(), 2);
}

TEST_F(PreviewQueueTest, WithoutARendererEveryRequestFails)
{
    Use("");
    for (int number = 0; number < 100; ++number) {
        queue->Add(number, Document(number), {100, 100});
    }
    ASSERT_TRUE(Came(100));
    EXPECT_EQ(replies.at(99).result, Error);
    EXPECT_THAT(replies.at(99).failure.reason.toStdString(), HasSubstr("not installed"));
}

TEST_F(PreviewQueueTest, DocumentsThatKillTheRendererDoNotHoldOthersUp)
{
    Use("die-of-bad");
    for (int number = 0; number < 40; ++number) {
        auto document = Document(number);
        if (number % 4 == 0) {
            document.name = "bad" + QString::number(number) + ".pdf";
        }
        queue->Add(number, document, {100, 100});
    }
    ASSERT_TRUE(Came(40));
    for (const auto& [id, reply] : replies) {
        EXPECT_EQ(reply.result, id % 4 == 0 ? Error : Success) << id;
    }
}

TEST_F(PreviewQueueTest, NothingIsRenderedForRequestsThatWereCanceledInTime)
{
    Use("answer");
    for (int number = 0; number < 5000; ++number) {
        queue->Add(number, Document(number), {100, 100});
    }
    for (int number = 0; number < 5000; ++number) {
        queue->Cancel(number);
    }
    queue->Add(5000, Document(5000), {100, 100});
    ASSERT_TRUE(Came(1));
    EXPECT_EQ(fakes.Requests(), QStringList("100x100 id5000.pdf"));
}

TEST_F(PreviewQueueTest, OneOfSeveralRequestsForADocumentCanBeCanceled)
{
    Use("answer");
    queue->Add(1, Document(1), {20, 20});
    queue->Add(2, Document(1), {1000, 1000});
    queue->Cancel(2);
    queue->Cancel(2);
    queue->Cancel(77);
    ASSERT_TRUE(Came(1));
    EXPECT_EQ(SizeOf(1), QSize(20, 20));
    EXPECT_EQ(fakes.Requests(), QStringList("20x20 id1.pdf"));
}

TEST_F(PreviewQueueTest, ARequestCanceledWhileItIsRenderedIsNotAnswered)
{
    Use("answer");
    queue->Add(1, Document(1), {2000, 2000});
    ASSERT_TRUE(WaitUntil([&] { return !fakes.Requests().isEmpty(); }));
    queue->Cancel(1);
    queue->Add(2, Document(2), {20, 20});
    ASSERT_TRUE(WaitUntil([&] { return replies.count(2) != 0; }));
    queue->Add(3, Document(1), {20, 20});
    ASSERT_TRUE(WaitUntil([&] { return replies.count(3) != 0; }));
    EXPECT_EQ(replies.count(1), 0U);
}

TEST_F(PreviewQueueTest, DestructionWithManyWaitingLeavesNoProcess)
{
    Use("hang");
    for (int number = 0; number < 5000; ++number) {
        queue->Add(number, Document(number), {100, 100});
    }
    ASSERT_TRUE(WaitUntil([&] { return !fakes.Requests().isEmpty(); }));
    queue.reset();
    EXPECT_THAT(ChildProcesses("FakeRenderer"), IsEmpty());
    EXPECT_THAT(ChildProcesses("hang"), IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(replies.empty());
}

} // namespace Norlis::Social
