#include <tests/support/PdfFiles.h>
#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

#include <QBuffer>
#include <QPixmap>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

QColor ColorOf(const AnswerPtr<QPixmap>& preview)
{
    EXPECT_TRUE(preview->Succeeds());
    const QImage image = preview->payload.toImage();
    return image.isNull() ? QColor() : image.pixelColor(image.width() / 2, image.height() / 2);
}

class RemotePreviewTest : public SignedInServiceTest<> {
protected:
    /// Fails, and says why.
    std::string ReasonWhyNot(const QString& id)
    {
        client.failures.clear();
        const auto preview = client.Preview(id, {64, 64});
        EXPECT_TRUE(preview->Fails());
        EXPECT_TRUE(preview->payload.isNull());
        EXPECT_EQ(client.failures.size(), 1U);
        return LastReason(client);
    }

    /// Pretends that all documents are of that size.
    void ClaimSize(qint64 size)
    {
        server.With([=](MemoryTree& tree) {
            tree.moreProperties = [=](const MemoryNode&, const PropertyName& name) {
                return name.second == "getcontentlength" ? std::optional(QByteArray::number(size)) : std::nullopt;
            };
        });
    }
};

TEST_F(RemotePreviewTest, DocumentIsFetchedOnceForAllSizes)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    const auto small = client.Preview(id, {64, 64});
    const auto middle = client.Preview(id, {191, 191});
    const auto large = client.Preview(id, {600, 600});
    for (const auto& preview : {small, middle, large}) {
        EXPECT_EQ(ColorOf(preview), QColor(Qt::red));
    }
    EXPECT_EQ(small->payload.height(), 64);
    EXPECT_EQ(large->payload.height(), 600);
    EXPECT_EQ(server.Count("GET"), 1);
    EXPECT_EQ(ColorOf(client.Preview(id, {191, 191})), QColor(Qt::red));
    EXPECT_EQ(server.Count("GET"), 1);
}

TEST_F(RemotePreviewTest, PictureIsKeptForTheVersion)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
    Client later(settings, server.Password());
    ASSERT_TRUE(later.SignIn());
    EXPECT_EQ(ColorOf(later.Preview(id, {64, 64})), QColor(Qt::red));
    EXPECT_EQ(server.Count("GET"), 1);
    Put("a.pdf", PdfOfColor(Qt::blue));
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::blue));
    EXPECT_EQ(server.Count("GET"), 2);
    later.Entry("a.pdf");
    EXPECT_EQ(ColorOf(later.Preview(id, {64, 64})), QColor(Qt::blue));
    EXPECT_EQ(server.Count("GET"), 2);
}

TEST_F(RemotePreviewTest, ReplacedContentHasItsOwnPictureThoughTheServerSeesNoOtherVersion)
{
    // As with servers whose ETags are a date in whole seconds and a length.
    server.With([](MemoryTree& tree) {
        tree.moreProperties = [](const MemoryNode&, const PropertyName& name) -> std::optional<QByteArray> {
            if (name.second == "getetag") {
                return R"("1792-5")";
            }
            return name.second == "getlastmodified" ? std::optional<QByteArray>("Mon, 12 Oct 2026 08:00:00 GMT")
                                                    : std::nullopt;
        };
    });
    const auto ofOneLength = [](const QByteArray& pdf) { return pdf.leftJustified(4'000, '\n'); };
    const QString id = Put("a.pdf", ofOneLength(PdfOfColor(Qt::red)));
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
    ASSERT_TRUE(client.Upload(LocalFile("b.pdf", ofOneLength(PdfOfColor(Qt::green))), id)->Succeeds());
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::green));
}

TEST_F(RemotePreviewTest, NothingButPicturesIsKept)
{
    EXPECT_EQ(ColorOf(client.Preview(Put("a.pdf", PdfOfColor(Qt::red)), {64, 64})), QColor(Qt::red));
    ReasonWhyNot(Put("b.pdf", "no PDF"));
    client.Destroy();
    const QStringList kept = FilesBelow(Local("cache"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_TRUE(kept[0].endsWith(".png"));
}

TEST_F(RemotePreviewTest, BrokenDocumentIsFetchedOncePerVersion)
{
    const QString id = Put("a.pdf", "no PDF");
    EXPECT_NE(ReasonWhyNot(id), "");
    EXPECT_NE(ReasonWhyNot(id), "");
    EXPECT_EQ(server.Count("GET"), 1);
    Put("a.pdf", PdfOfColor(Qt::red));
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
}

TEST_F(RemotePreviewTest, WhatIsNotTheDocumentSaysNothingAboutIt)
{
    const QByteArray pdf = PdfOfColor(Qt::red);
    const QString id = Put("a.pdf", pdf);
    for (const Misbehaviour& answer :
         {ShowsAPage(200), SendsGzip(), CutsWithoutLength(100), CutsAfterBytes(100), AnswersWith(206, {}, pdf),
          AnswersWith(200), AnswersWith(500), ClaimsLength(1'000'000'000), AnswersWith(200, {}, pdf + pdf)}) {
        server.BehaveAgain();
        server.Misbehave(When("GET").Always(), answer);
        EXPECT_NE(ReasonWhyNot(id), "");
    }
    server.BehaveAgain();
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
}

TEST_F(RemotePreviewTest, NothingIsFetchedInVain)
{
    EXPECT_THAT(ReasonWhyNot(Put("a.txt", "text")), HasSubstr("PDF"));
    EXPECT_THAT(ReasonWhyNot(Put("a.jpg", "picture")), HasSubstr("PDF"));
    EXPECT_TRUE(client.Preview("unknown", {64, 64})->Fails());
    EXPECT_EQ(server.Count("GET"), 0);
    ClaimSize(65 * 1024 * 1024);
    server.Misbehave(When("GET").Always(), IgnoresTheRange());
    EXPECT_THAT(ReasonWhyNot(Put("large.pdf", PdfOfColor(Qt::red))), HasSubstr("too large"));
    EXPECT_EQ(server.Count("GET"), 1); // which found out that no parts are to be had
}

/// Documents of which a preview needs only a small part.
class LargeRemotePreviewTest : public RemotePreviewTest {
protected:
    static QByteArray LargePdf(const QColor& color)
    {
        return PdfWithMuchElse(color, 4 * 1024 * 1024);
    }

    qint64 BytesAskedFor()
    {
        qint64 bytes = 0;
        for (const auto& request : server.Requests("GET")) {
            for (const auto& [name, value] : request.headers) {
                if (name.toLower() == "range") {
                    const auto ends = value.mid(static_cast<int>(qstrlen("bytes="))).split('-');
                    bytes += ends.value(1).toLongLong() - ends.value(0).toLongLong() + 1;
                }
            }
        }
        return bytes;
    }
};

TEST_F(LargeRemotePreviewTest, PictureOfPageOneCostsPageOne)
{
    EXPECT_EQ(ColorOf(client.Preview(Put("a.pdf", LargePdf(Qt::red)), {64, 64})), QColor(Qt::red));
    EXPECT_LE(server.Count("GET"), 8);
    EXPECT_GT(BytesAskedFor(), 0);
    EXPECT_LE(BytesAskedFor(), 1024 * 1024);
}

TEST_F(LargeRemotePreviewTest, ServerThatSendsNoPartsIsAskedForTheWholeDocument)
{
    server.Misbehave(When("GET").Always(), IgnoresTheRange());
    EXPECT_EQ(ColorOf(client.Preview(Put("a.pdf", LargePdf(Qt::red)), {64, 64})), QColor(Qt::red));
    EXPECT_EQ(server.Count("GET"), 2);
}

TEST_F(LargeRemotePreviewTest, ADocumentThatWasJustWrittenIsReadByPartsToo)
{
    const auto tagsWeakly = [](Wire& wire) { // as Apache does for a second
        auto answer = wire.Do(wire.Request());
        answer.headers.Set("ETag", "W/" + answer.headers.Value("ETag"));
        answer.headers.Set("Last-Modified", "Mon, 04 May 2026 09:30:00 GMT");
        answer.headers.Set("Date", "Mon, 04 May 2026 09:30:01 GMT");
        wire.Send(answer.Bytes());
        wire.Finish();
    };
    const QString id = Put("a.pdf", LargePdf(Qt::red));
    server.Misbehave("GET", Misbehaviour{tagsWeakly});
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
    for (const auto& request : server.Requests("GET")) {
        EXPECT_TRUE(request.headers.Has("Range"));
    }
}

TEST_F(LargeRemotePreviewTest, PartsOfTwoVersionsAreNotMixed)
{
    const QString id = Put("a.pdf", LargePdf(Qt::red));
    server.Misbehave(When("GET").From(2).Times(1), RunsFirst([this] { server.Put("a.pdf", LargePdf(Qt::blue)); }));
    EXPECT_THAT(ReasonWhyNot(id), HasSubstr("has changed"));
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::blue));
}

TEST_F(LargeRemotePreviewTest, AnotherPartThanAskedForIsNotTaken)
{
    const QString id = Put("a.pdf", LargePdf(Qt::red));
    server.Misbehave(When("GET").From(2).Times(1), StartsElsewhere(7));
    EXPECT_NE(ReasonWhyNot(id), "");
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
}

TEST_F(LargeRemotePreviewTest, PartThatCannotBeFetchedSaysNothingAboutTheDocument)
{
    const QString id = Put("a.pdf", LargePdf(Qt::red));
    server.Misbehave(When("GET").From(2).Times(1), AnswersWith(403));
    EXPECT_NE(ReasonWhyNot(id), "");
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
}

TEST_F(LargeRemotePreviewTest, DocumentWithoutItsEndIsNotSearchedThrough)
{
    const QString id = Put("a.pdf", LargePdf(Qt::red).left(1024 * 1024) + QByteArray(9 * 1024 * 1024, ' '));
    EXPECT_THAT(ReasonWhyNot(id), HasSubstr("Too much of the document"));
    EXPECT_LE(server.Count("GET"), 24);
    server.ForgetRequests();
    EXPECT_THAT(ReasonWhyNot(id), HasSubstr("Too much of the document"));
    EXPECT_EQ(server.Count("GET"), 0);
}

TEST_F(RemotePreviewTest, EndlessDocumentIsNotFetchedToItsEnd)
{
    const QString id = Put("a.pdf", PdfOfColor(Qt::red));
    server.Misbehave("GET", {[](Wire& wire) {
                         wire.Send("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n%PDF-1.4\n");
                         wire.SendWithoutEnd([](int) { return QByteArray(256 * 1024, ' '); });
                     }});
    EXPECT_NE(ReasonWhyNot(id), "");
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
}

TEST_F(RemotePreviewTest, ManyAreTakenBackAtOnceAndNoLongerFetched)
{
    for (int number = 0; number < 100; ++number) {
        server.Put(QString::number(number) + ".pdf", PdfOfColor(Qt::red));
    }
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    server.Misbehave(When("GET").Always(), Hangs());
    std::vector<AnswerPtr<QPixmap>> previews;
    for (int count = 0; count < 5'000; ++count) {
        previews.push_back(client.Preview(list->payload[count % 100].id, {50 + count / 100, 100}));
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("GET") == 2; }));
    for (const auto& preview : previews) {
        client.Cancel(preview->operation);
    }
    server.BehaveAgain();
    EXPECT_EQ(ColorOf(client.Preview(list->payload[50].id, {64, 64})), QColor(Qt::red));
    EXPECT_EQ(server.Count("GET"), 3);
    EXPECT_LE(server.OpenConnections(), 3);
    for (const auto& preview : previews) {
        EXPECT_FALSE(preview->Came());
    }
}

TEST_F(RemotePreviewTest, ListsAndTransfersDoNotWaitForPreviewsThatHang)
{
    for (int number = 0; number < 10; ++number) {
        server.Put(QString::number(number) + ".pdf", PdfOfColor(Qt::red));
    }
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    server.Misbehave(When("GET").Times(2), Hangs());
    std::vector<AnswerPtr<QPixmap>> previews;
    for (const CloudFile& file : qAsConst(list->payload)) {
        previews.push_back(client.Preview(file.id, {64, 64}));
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("GET") == 2; }));
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Download(list->payload[0].id, Local("target"))->Succeeds());
    EXPECT_TRUE(client.Upload(LocalFile("new.pdf", "content"))->Succeeds());
    EXPECT_TRUE(client.Remove(list->payload[9].id)->Succeeds());
    for (const auto& preview : previews) {
        EXPECT_FALSE(preview->Came());
        client.Cancel(preview->operation);
    }
}

TEST_F(RemotePreviewTest, HangingPreviewsMakeRoomForOthers)
{
    settings.silenceTimeout = shortTimeout;
    Client user(settings, server.Password());
    ASSERT_TRUE(user.SignIn());
    const QString first = Put("a.pdf", PdfOfColor(Qt::red));
    const QString second = Put("b.pdf", PdfOfColor(Qt::red));
    const QString third = Put("c.pdf", PdfOfColor(Qt::red));
    server.Misbehave(When("GET").Times(2), Hangs());
    const auto hanging = user.Preview(first, {64, 64});
    const auto alsoHanging = user.Preview(second, {64, 64});
    EXPECT_EQ(ColorOf(user.Preview(third, {64, 64})), QColor(Qt::red));
    EXPECT_TRUE(hanging->Fails());
    EXPECT_TRUE(alsoHanging->Fails());
    EXPECT_THAT(LastReason(user), HasSubstr("silent"));
    EXPECT_EQ(ColorOf(user.Preview(first, {64, 64})), QColor(Qt::red));
}

TEST_F(RemotePreviewTest, PreviewsOfAnEarlierSignInFetchNothingFromTheNewOne)
{
    settings.silenceTimeout = shortTimeout;
    Client user(settings, server.Password());
    ASSERT_TRUE(user.SignIn());
    for (int number = 0; number < 5; ++number) {
        server.Put(QString::number(number) + ".pdf", PdfOfColor(Qt::red));
    }
    const auto list = user.List();
    ASSERT_TRUE(list->Succeeds());
    server.Misbehave(When("GET").Times(2), Hangs());
    std::vector<AnswerPtr<QPixmap>> previews;
    for (const CloudFile& file : qAsConst(list->payload)) {
        previews.push_back(user.Preview(file.id, {64, 64}));
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("GET") == 2; }));
    user.Protocol()->logout();
    ASSERT_TRUE(user.SignIn());
    for (const auto& preview : previews) {
        EXPECT_TRUE(preview->Fails());
    }
    EXPECT_EQ(server.Count("GET"), 2);
}

QByteArray PngOfColor(const QColor& color, const QSize& size = {300, 400})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
}

class NextcloudPreviewTest : public SignedInServiceTest<NextcloudLikeServer> {
protected:
    /// A red document of which the server has a green picture.
    QString PutWithPicture(const QByteArray& picture = PngOfColor(Qt::green))
    {
        server.Put("a.pdf", PdfOfColor(Qt::red));
        server.SetPreview("a.pdf", picture);
        return client.Entry("a.pdf").id;
    }
};

TEST_F(NextcloudPreviewTest, PictureOfTheServerIsTaken)
{
    const QString id = PutWithPicture();
    const auto preview = client.Preview(id, {191, 191});
    EXPECT_EQ(ColorOf(preview), QColor(Qt::green));
    EXPECT_EQ(preview->payload.height(), 191);
    const auto requests = server.Requests("GET");
    ASSERT_EQ(requests.size(), 1U);
    const std::string target = requests[0].target.toStdString();
    for (const std::string& part : {"/index.php/core/preview?fileId=" + id.toStdString() + '&', std::string("&x=191&"),
                                    std::string("&y=191&"), std::string("&a=1&"), std::string("&forceIcon=0&")}) {
        EXPECT_THAT(target, HasSubstr(part));
    }
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::green));
    EXPECT_EQ(server.Count("GET"), 1);
}

TEST_F(NextcloudPreviewTest, LaterPagesAreRenderedHereForTheServerHasPageOneOnly)
{
    server.Put("a.pdf", PdfOfColors({Qt::red, Qt::blue}));
    server.SetPreview("a.pdf", PngOfColor(Qt::green));
    const QString id = client.Entry("a.pdf").id;
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64}, "2")), QColor(Qt::blue));
    EXPECT_EQ(ColorOf(client.Preview(id, {64, 64}, "1")), QColor(Qt::green));
}

TEST_F(NextcloudPreviewTest, PicturesOfOtherDocumentsAreTakenToo)
{
    server.Put("a.odt", "text");
    server.SetPreview("a.odt", PngOfColor(Qt::green));
    EXPECT_EQ(ColorOf(client.Preview(client.Entry("a.odt").id, {64, 64})), QColor(Qt::green));
}

TEST_F(NextcloudPreviewTest, WithoutAPictureTheDocumentIsRendered)
{
    for (const Misbehaviour& answer :
         {AnswersWith(404), AnswersWith(400), AnswersWith(403), AnswersWith(500), ShowsAPage(200), AnswersWith(200),
          RedirectsTo("http://icons.example/pdf.svg", 303)}) {
        server.Put("a.pdf", PdfOfColor(Qt::red)); // another version each time
        const QString id = PutWithPicture();
        server.BehaveAgain();
        server.Misbehave(When("GET", "/core/preview"), answer);
        EXPECT_EQ(ColorOf(client.Preview(id, {64, 64})), QColor(Qt::red));
    }
}

TEST_F(NextcloudPreviewTest, HostilePictureIsNotDecoded)
{
    QByteArray huge = PngOfColor(Qt::green);
    huge.replace(16, 8, QByteArray("\0\0\xff\xff\0\0\xff\xff", 8)); // the size that its head claims
    for (const QByteArray& picture :
         {huge, PngOfColor(Qt::green, {5000, 10}), PngOfColor(Qt::green).left(60), QByteArray("\x89PNG\r\n\x1a\n"),
          QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"><rect width=\"8\" "
                     "height=\"8\" fill=\"lime\"/></svg>"),
          QByteArray("P3 1 1 255 0 255 0\n"),
          QByteArray("/* XPM */\nstatic char* a[] = {\"1 1 1 1\", \". c green\", \".\"};\n")}) {
        EXPECT_EQ(ColorOf(client.Preview(PutWithPicture(picture), {64, 64})), QColor(Qt::red))
            << picture.left(20).constData();
    }
}

} // namespace

} // namespace Norlis::Test
