#include "ContractTest.h"
#include "PdfFiles.h"

#include <QPixmap>

namespace Norlis::TestKit {

using testing::IsEmpty;

class PreviewTest : public SignedInContractTest {
protected:
    void SetUp() override
    {
        if (!cloud->HasPreviews()) {
            GTEST_SKIP() << "The cloud has no pictures of documents";
        }
        SignedInContractTest::SetUp();
    }

    static QColor ColorOf(const QPixmap& picture)
    {
        return picture.toImage().pixelColor(picture.width() / 2, picture.height() / 2);
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
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    auto preview = client.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::red));
    cloud->Put("a.pdf", PdfOfColor(Qt::blue));
    if (!cloud->NoticesChangesByItself()) {
        ASSERT_TRUE(client.List()->Succeeds());
    }
    preview = client.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::blue));
    ASSERT_TRUE(client.List()->Succeeds()); // who has not seen a version may not replace it
    const auto upload = client.Upload(LocalFile("b.pdf", PdfOfColor(Qt::green)), id);
    ASSERT_TRUE(upload->Succeeds());
    preview = client.Preview(id, {100, 100});
    ASSERT_TRUE(preview->Succeeds());
    EXPECT_EQ(ColorOf(preview->payload), QColor(Qt::green));
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
        if (client.TellsFailures()) {
            ASSERT_EQ(client.failures.size(), 1U);
            EXPECT_EQ(client.failures[0].document, name);
            EXPECT_NE(client.failures[0].reason, QString());
        }
    }
}

TEST_P(PreviewTest, APictureWithoutASizeIsAnError)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    for (const QSize& box : {QSize(0, 0), QSize(-1, 100), QSize(100, 0)}) {
        EXPECT_TRUE(client.Preview(id, box)->Fails());
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

} // namespace Norlis::TestKit
