#include <tests/support/PdfFiles.h>
#include <tests/support/Renderers.h>
#include <tests/support/Rounds.h>
#include <tests/support/ServiceContractTest.h>

#include <QPixmap>

#include <optional>

namespace Norlis::Test {

using testing::IsEmpty;

/// Of pictures: where they are kept, who draws them, and who waits for them.
class ServicePreviewTest : public ServiceContractTest {
protected:
    static QColor ColorOf(const QPixmap& picture)
    {
        return picture.toImage().pixelColor(picture.width() / 2, picture.height() / 2);
    }
};
NORLIS_FOR_EVERY_CLOUD(ServicePreviewTest);

TEST_P(ServicePreviewTest, ChangedContentHasANewPictureInTheCacheToo)
{
    auto settings = Service().Settings();
    settings.cacheFolder = Local("cache");
    Client other(settings, cloud->Token());
    ASSERT_TRUE(other.SignIn());
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    auto preview = other.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::red));
    cloud->Put("a.pdf", PdfOfColor(Qt::blue));
    if (!cloud->NoticesChangesByItself()) {
        ASSERT_TRUE(other.List()->Succeeds());
    }
    preview = other.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::blue));
    ASSERT_TRUE(other.List()->Succeeds()); // what is to be replaced has to be seen
    const auto upload = other.Upload(LocalFile("b.pdf", PdfOfColor(Qt::green)), id);
    ASSERT_TRUE(upload->Succeeds());
    preview = other.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::green));
}

TEST_P(ServicePreviewTest, AFileOnThisComputerIsDrawnWithoutASignIn)
{
    const Client nobody(Service().Settings(), cloud->Token());
    const auto draw = [&](const QString& path) {
        std::optional<QPixmap> drawn;
        const qint64 id = nobody.Protocol()->previewLocalFile(
            path, 1, {100, 100}, [&](qint64, Social::RequestResult, const QPixmap& picture, int) { drawn = picture; });
        EXPECT_GE(id, 0);
        EXPECT_TRUE(WaitUntil([&] { return drawn.has_value(); }));
        return drawn.value_or(QPixmap());
    };
    const QPixmap picture = draw(LocalFile("mine.pdf", PdfOfColor(Qt::red)));
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(ColorOf(picture), QColor(Qt::red));
    EXPECT_LE(qMax(picture.width(), picture.height()), 100);
    EXPECT_TRUE(draw(LocalFile("text.pdf", "text")).isNull());
    EXPECT_EQ(nobody.failures.back().document, "text.pdf");
}

TEST_P(ServicePreviewTest, EveryPageOfAFileOnThisComputerIsDrawn)
{
    const Client nobody(Service().Settings(), cloud->Token());
    const QVector<QColor> colors = {Qt::red, Qt::green, Qt::blue};
    const QString path = LocalFile("mine.pdf", PdfOfColors(colors));
    for (int page = 1; page <= 4; ++page) {
        std::optional<QPixmap> drawn;
        int pageCount = -1;
        nobody.Protocol()->previewLocalFile(path, page, {100, 100},
                                            [&](qint64, Social::RequestResult, const QPixmap& picture, int count) {
                                                drawn = picture;
                                                pageCount = count;
                                            });
        ASSERT_TRUE(WaitUntil([&] { return drawn.has_value(); }));
        EXPECT_EQ(pageCount, page <= 3 ? 3 : 0);
        EXPECT_TRUE(page == 4 ? drawn->isNull() : ColorOf(*drawn) == colors[page - 1]) << page;
    }
    EXPECT_EQ(nobody.failures.back().reason, "There is no such page");
}

TEST_P(ServicePreviewTest, EveryPageOfADocumentIsDrawn)
{
    const QVector<QColor> colors = {Qt::red, Qt::green, Qt::blue};
    const QString id = Put("a.pdf", PdfOfColors(colors));
    const auto second = client.Preview(id, {100, 100}, "2");
    const auto third = client.Preview(id, {100, 100}, "3");
    const auto first = client.Preview(id, {100, 100}, "1");
    ASSERT_TRUE(first->Succeeds() && second->Succeeds() && third->Succeeds());
    EXPECT_EQ(ColorOf(first->payload), colors[0]);
    EXPECT_EQ(ColorOf(second->payload), colors[1]);
    EXPECT_EQ(ColorOf(third->payload), colors[2]);
    for (const char* page : {"4", "0", "-1", "one", ""}) {
        EXPECT_TRUE(client.Preview(id, {100, 100}, page)->Fails()) << page;
        EXPECT_EQ(client.failures.back().reason, "There is no such page");
    }
}

TEST_P(ServicePreviewTest, PicturesAreKeptForTheNextTime)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    auto settings = Service().Settings();
    settings.cacheFolder = Local("cache");
    {
        Client first(settings, cloud->Token());
        ASSERT_TRUE(first.SignIn());
        ASSERT_TRUE(first.Preview(id, {100, 100})->Succeeds());
    }
    const QStringList kept = FilesBelow(Local("cache"));
    ASSERT_EQ(kept.size(), 1);
    Client second(settings, cloud->Token());
    ASSERT_TRUE(second.SignIn());
    ASSERT_TRUE(second.Preview(id, {100, 100})->Succeeds());
    EXPECT_EQ(FilesBelow(Local("cache")), kept);
    EXPECT_THAT(ChildProcesses("norlis-preview-renderer"), IsEmpty()); // none was needed

    LocalFile("cache/" + kept[0], "damaged");
    ASSERT_TRUE(second.Preview(id, {100, 100})->Succeeds());
    EXPECT_NE(ReadFile(Local("cache/" + kept[0])), QByteArray("damaged"));
}

TEST_P(ServicePreviewTest, ListsAndTransfersDoNotWaitBehindPreviews)
{
    const int many = IsThorough() ? 200 : 80;
    for (int number = 0; number < many; ++number) {
        cloud->Put(QString::number(number) + ".pdf", PdfOfText(QString::number(number)));
    }
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    std::vector<AnswerPtr<QPixmap>> previews;
    for (const CloudFile& file : qAsConst(list->payload)) {
        previews.push_back(client.Preview(file.id, {600, 600}));
    }
    ASSERT_TRUE(client.List()->Succeeds());
    ASSERT_TRUE(client.Upload(LocalFile("new.pdf", "content"))->Succeeds());
    ASSERT_TRUE(client.Download(list->payload[0].id, Local("target.pdf"))->Succeeds());
    const auto came = std::count_if(previews.begin(), previews.end(), [](const auto& each) { return each->Came(); });
    if (cloud->ManyDocuments() > 1000) { // others take longer for a list than for the pictures
        EXPECT_LT(came, many * 3 / 4);
    }
    for (const auto& preview : previews) {
        EXPECT_TRUE(preview->Succeeds());
    }
}

TEST_P(ServicePreviewTest, DestructionWithThousandsWaitingLeavesNoRenderer)
{
    for (int number = 0; number < 50; ++number) {
        cloud->Put(QString::number(number) + ".pdf", PdfOfText(QString::number(number)));
    }
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    std::vector<AnswerPtr<QPixmap>> previews;
    for (int count = 0; count < 5000; ++count) {
        previews.push_back(client.Preview(list->payload[count % 50].id, {100 + count / 50, 100}));
    }
    ASSERT_TRUE(WaitUntil([&] { return previews[0]->Came(); }));
    EXPECT_FALSE(ChildProcesses("norlis-preview-renderer").empty());
    client.Destroy();
    EXPECT_THAT(ChildProcesses("norlis-preview-renderer"), IsEmpty());
}

TEST_P(ServicePreviewTest, NoPictureIsHuge)
{
    const auto picture = client.Preview(Put("a.pdf", PdfOfColor(Qt::red)), {2'000'000'000, 2'000'000'000});
    EXPECT_TRUE(picture->Succeeds());
    EXPECT_LE(picture->payload.height(), 4096);
}

} // namespace Norlis::Test
