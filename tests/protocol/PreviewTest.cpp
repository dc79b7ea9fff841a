#include <tests/support/ContractTest.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Renderers.h>
#include <tests/support/Rounds.h>

#include <QPixmap>

namespace Norlis::Test {

using testing::IsEmpty;

class PreviewTest : public SignedInContractTest {
protected:
    static QColor ColorOf(const QPixmap& picture)
    {
        return picture.toImage().pixelColor(picture.width() / 2, picture.height() / 2);
    }

    QString Put(const QString& name, const QByteArray& content)
    {
        cloud->Put(name, content);
        return client.Entry(name).id;
    }
};
NORLIS_FOR_EVERY_CLOUD(PreviewTest);

TEST_P(PreviewTest, APictureOfEachSizeIsDelivered)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red, {300, 600}));
    const auto small = client.Preview(id, {64, 64});
    const auto middle = client.Preview(id, {191, 191});
    const auto large = client.Preview(id, {600, 600});
    ASSERT_TRUE(small->Succeeds());
    ASSERT_TRUE(middle->Succeeds());
    ASSERT_TRUE(large->Succeeds());
    EXPECT_EQ(small->payload.size(), QSize(32, 64));
    EXPECT_NEAR(middle->payload.width(), 96, 1);
    EXPECT_EQ(middle->payload.height(), 191);
    EXPECT_EQ(large->payload.size(), QSize(300, 600));
    for (const auto& answer : {small, middle, large}) {
        EXPECT_EQ(ColorOf(answer->payload), QColor(Qt::red));
    }
}

TEST_P(PreviewTest, ChangedContentHasANewPicture)
{
    auto settings = cloud->Settings();
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
    const auto upload = other.Upload(LocalFile("b.pdf", PdfOfColor(Qt::green)), id);
    ASSERT_TRUE(upload->Succeeds());
    preview = other.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::green));
}

TEST_P(PreviewTest, PicturesAreKeptForTheNextTime)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    auto settings = cloud->Settings();
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

TEST_P(PreviewTest, ABrokenDocumentIsAnErrorWithAReason)
{
    for (const auto& [name, content] : QMap<QString, QByteArray>{
             {"empty.pdf", {}},
             {"text.txt", "text"},
             {"password.pdf", PdfWithPassword()},
             {"no pages.pdf",
              PdfWithoutPages()}}.toStdMap()) {
        client.failures.clear();
        const auto preview = client.Preview(Put(name, content), {100, 100});
        EXPECT_TRUE(preview->Fails()) << qPrintable(name);
        EXPECT_TRUE(preview->payload.isNull());
        ASSERT_EQ(client.failures.size(), 1U);
        EXPECT_EQ(client.failures[0].document, name);
        EXPECT_NE(client.failures[0].reason, QString());
    }
}

TEST_P(PreviewTest, APictureWithoutASizeIsAnError)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    for (const QSize& box : {QSize(0, 0), QSize(-1, 100), QSize(100, 0)}) {
        EXPECT_TRUE(client.Preview(id, box)->Fails());
    }
    const auto huge = client.Preview(id, {2'000'000'000, 2'000'000'000});
    EXPECT_TRUE(huge->Succeeds());
    EXPECT_LE(huge->payload.height(), 2048);
}

TEST_P(PreviewTest, ListsAndTransfersDoNotWaitBehindPreviews)
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

TEST_P(PreviewTest, ThousandsCanBeAskedForAndCanceledAtOnce)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    for (int round = 0; round < 2; ++round) {
        std::vector<AnswerPtr<QPixmap>> previews;
        for (int count = 0; count < 5000; ++count) {
            previews.push_back(client.Preview(id, {100 + count % 3, 100}));
        }
        if (round == 1) {
            ASSERT_TRUE(WaitUntil([&] { return previews[0]->Came(); }));
        }
        int before = 0;
        for (const auto& preview : previews) {
            before += preview->count;
            client.Cancel(preview->operation);
        }
        ASSERT_TRUE(client.Preview(id, {50, 50})->Succeeds());
        int after = 0;
        for (const auto& preview : previews) {
            after += preview->count;
        }
        EXPECT_EQ(after, before);
    }
}

TEST_P(PreviewTest, DestructionWithThousandsWaitingLeavesNoRenderer)
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

} // namespace Norlis::Test
