#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QSignalSpy>

#include <algorithm>
#include <cstring>

namespace Norlis::Test {

namespace {

using PreviewSize = FileInfo::PreviewSize;
using Previews = std::map<PreviewSize, ioPath>;

QPixmap Picture(const QColor& color, const QSize& size = {8, 6})
{
    QPixmap picture(size);
    picture.fill(color);
    return picture;
}

QString PreviewFile(const QString& id, PreviewSize size)
{
    return QDir::tempPath() + "/" + id + "_" + QString::fromStdString(FileInfo::previewSizetoString(size)) + ".png";
}

class PreviewTest : public CloudManagerTest {
protected:
    Previews HeldPreviews()
    {
        return file->GetRedactableCloudInfo()->GetPreviewsSet();
    }
};

TEST_F(PreviewTest, RequestCarriesIdAndBothEdges)
{
    file = RecordOf("ид");

    manager->RetrieveFilePreview(file, PreviewSize::Large, {200, 100});

    const QMap<QString, QString> expected = {
        {Social::NorlisCloudProtocol::ID, QStringLiteral("ид")},
        {Social::NorlisCloudProtocol::FILE_PREVIEW_WIDTH, "200"},
        {Social::NorlisCloudProtocol::FILE_PREVIEW_HEIGHT, "100"},
    };
    EXPECT_EQ(protocol->LastCall("retrievePreview").fields, expected);
    EXPECT_THAT(Events(), ElementsAre("RetrieveFilePreviewStarted(ид, 2)", "-> retrievePreview 1"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(PreviewTest, SizeIsSentAsGiven)
{
    manager->RetrieveFilePreview(file, PreviewSize::Small, QSize(-1, 0));
    const auto fields = protocol->LastCall("retrievePreview").fields;
    EXPECT_EQ(fields[Social::NorlisCloudProtocol::FILE_PREVIEW_WIDTH], "-1");
    EXPECT_EQ(fields[Social::NorlisCloudProtocol::FILE_PREVIEW_HEIGHT], "0");
}

TEST_F(PreviewTest, SignedOutOnlyAsksForAuthorization)
{
    protocol->signedIn = false;
    manager->RetrieveFilePreview(file, PreviewSize::Small, {40, 40});
    manager->RetrieveFilePreview(nullptr, PreviewSize::Small, {40, 40});
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()", "AuthorizationRequired()"));
}

TEST_F(PreviewTest, NullRecordThrowsAPlainException)
{
    try {
        manager->RetrieveFilePreview(nullptr, PreviewSize::Small, {40, 40});
        FAIL() << "nothing was thrown";
    } catch (const std::exception& error) {
        EXPECT_EQ(typeid(error), typeid(std::exception));
    }
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(PreviewTest, DocumentThatWasNeverUploadedIsAnErrorWithoutRequestOrStart)
{
    file->GetRedactableCloudInfo().reset();
    ASSERT_EQ(static_cast<int>(file->GetCloudStatus()), 5);
    QSignalSpy errors(manager.get(), &NorlisCloudManager::RetrieveFilePreviewError);

    manager->RetrieveFilePreview(file, PreviewSize::Medium, {100, 100});

    EXPECT_THAT(Events(),
                ElementsAre("ERROR Can`t retrieving preview for not upload files",
                            "RetrieveFilePreviewError(doc, 1, Can`t retrieving preview for not upload files)"));
    EXPECT_EQ(errors[0][0].value<std::shared_ptr<const FileInfo>>(), file);
    EXPECT_THAT(protocol->calls, IsEmpty());
}

TEST_F(PreviewTest, RefusedRequestIsReportedAfterItsStartAndNotRegistered)
{
    protocol->refused = {"retrievePreview"};
    manager->RetrieveFilePreview(file, PreviewSize::Medium, {100, 100});
    EXPECT_THAT(Events(), ElementsAre("RetrieveFilePreviewStarted(doc, 1)", "-> retrievePreview refused",
                                      "ERROR Retrieve file preview failed",
                                      "RetrieveFilePreviewError(doc, 1, Retrieve file preview failed)"));
    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(PreviewTest, PictureIsStoredAsPngAndItsPathIsSetBeforeTheSignal)
{
    file = RecordOf("Übersicht 1");
    QSignalSpy finished(manager.get(), &NorlisCloudManager::RetrieveFilePreviewFinished);
    Previews atSignal;
    QObject::connect(manager.get(), &NorlisCloudManager::RetrieveFilePreviewFinished, manager.get(),
                     [&] { atSignal = HeldPreviews(); });
    manager->RetrieveFilePreview(file, PreviewSize::Large, {191, 191});
    Forget();

    protocol->Answer(1, Social::Success, Picture(Qt::red));

    EXPECT_THAT(Events(), ElementsAre("RetrieveFilePreviewFinished(Übersicht 1, 2)"));
    EXPECT_EQ(finished[0][0].value<std::shared_ptr<FileInfo>>(), file);
    EXPECT_EQ(finished[0][1].value<PreviewSize>(), PreviewSize::Large);
    const auto stored = PreviewFile(QStringLiteral("Übersicht 1"), PreviewSize::Large);
    EXPECT_EQ(atSignal, (Previews{{PreviewSize::Large, ioPath(stored.toStdString())}}));
    EXPECT_EQ(QImageReader::imageFormat(stored), "png");
    EXPECT_EQ(QImage(stored).size(), QSize(8, 6));
    EXPECT_EQ(QImage(stored).pixelColor(3, 3), QColor(Qt::red));
}

TEST_F(PreviewTest, EachSizeHasItsOwnFile)
{
    for (const auto size : {PreviewSize::Small, PreviewSize::Medium, PreviewSize::Large}) {
        manager->RetrieveFilePreview(file, size, {40, 40});
        protocol->Answer(protocol->LastId("retrievePreview"), Social::Success, Picture(Qt::blue));
        EXPECT_TRUE(QFile::exists(PreviewFile("doc", size)));
        EXPECT_EQ(HeldPreviews()[size], ioPath(PreviewFile("doc", size).toStdString()));
    }
    EXPECT_EQ(HeldPreviews().size(), 3u);
}

TEST_F(PreviewTest, LaterAnswerForTheSameSizeOverwritesTheFile)
{
    const auto first = StartPreview();
    const auto second = StartPreview();

    protocol->Answer(second, Social::Success, Picture(Qt::red));
    protocol->Answer(first, Social::Success, Picture(Qt::green, {9, 9}));

    const QImage stored(PreviewFile("doc", PreviewSize::Small));
    EXPECT_EQ(stored.size(), QSize(9, 9));
    EXPECT_EQ(stored.pixelColor(0, 0), QColor(Qt::green));
    EXPECT_EQ(HeldPreviews().size(), 1u);
}

TEST_F(PreviewTest, EmptyPictureIsASaveFailure)
{
    file = RecordOf("leer");
    manager->RetrieveFilePreview(file, PreviewSize::Medium, {100, 100});
    Forget();

    protocol->Answer(1, Social::Success, QPixmap());

    EXPECT_THAT(Events(),
                ElementsAre("ERROR Cannot save preview for: leer with size: medium",
                            "RetrieveFilePreviewError(leer, 1, Cannot save preview for: leer with size: medium)"));
    EXPECT_TRUE(HeldPreviews().empty());
}

TEST_F(PreviewTest, PictureThatCannotBeWrittenIsASaveFailure)
{
    file = RecordOf("no such folder/doc");
    const auto id = StartPreview();
    Forget();

    protocol->Answer(id, Social::Success, Picture(Qt::red));

    const std::string message = "Cannot save preview for: no such folder/doc with size: small";
    EXPECT_THAT(Events(),
                ElementsAre("ERROR " + message, "RetrieveFilePreviewError(no such folder/doc, 0, " + message + ")"));
    EXPECT_TRUE(HeldPreviews().empty());
}

TEST_F(PreviewTest, PictureIsForItsOwnerAlone)
{
    const auto stored = PreviewFile("doc", PreviewSize::Small);
    protocol->Answer(StartPreview(), Social::Success, Picture(Qt::red));
    EXPECT_EQ(QFile::permissions(stored) &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
    EXPECT_TRUE(QFile::permissions(stored).testFlag(QFile::ReadOwner));
}

TEST_F(PreviewTest, LinkInThePicturesPlaceIsReplacedAndNotFollowed)
{
    file = RecordOf("linked");
    const auto stored = PreviewFile("linked", PreviewSize::Small);
    const auto target = Write("target", "somebody's file");
    ASSERT_TRUE(QFile::link(target, stored));
    const auto id = StartPreview();
    Forget();

    protocol->Answer(id, Social::Success, Picture(Qt::red));

    EXPECT_THAT(Events(), ElementsAre("RetrieveFilePreviewFinished(linked, 0)"));
    QFile untouched(target);
    ASSERT_TRUE(untouched.open(QIODevice::ReadOnly));
    EXPECT_EQ(untouched.readAll(), "somebody's file");
    EXPECT_FALSE(QFileInfo(stored).isSymLink());
    EXPECT_EQ(QImage(stored).size(), QSize(8, 6));
}

TEST_F(PreviewTest, NameMayBeAsLongAsTheFileSystemTakesIt)
{
    file = RecordOf(std::string(255 - std::strlen("_small.png"), 'n'));
    protocol->Answer(StartPreview(), Social::Success, Picture(Qt::red));
    EXPECT_EQ(HeldPreviews().size(), 1u);
}

TEST_F(PreviewTest, NothingButThePictureIsLeftBehind)
{
    const auto names = [] { return QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System); };
    QFile::remove(PreviewFile("alone", PreviewSize::Small));
    auto expected = names();

    file = RecordOf("alone");
    protocol->Answer(StartPreview(), Social::Success, QPixmap());
    EXPECT_EQ(names(), expected);
    protocol->Answer(StartPreview(), Social::Success, Picture(Qt::red));
    expected << "alone_small.png";
    std::sort(expected.begin(), expected.end());
    auto found = names();
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, expected);
}

TEST_F(PreviewTest, FolderInThePicturesPlaceIsASaveFailureThatLeavesNothing)
{
    file = RecordOf("folder");
    ASSERT_TRUE(QDir(QDir::tempPath()).mkpath("folder_small.png/inside"));
    const auto before = QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    const auto id = StartPreview();
    Forget();

    protocol->Answer(id, Social::Success, Picture(Qt::red));

    const std::string message = "Cannot save preview for: folder with size: small";
    EXPECT_THAT(Events(), ElementsAre("ERROR " + message, "RetrieveFilePreviewError(folder, 0, " + message + ")"));
    EXPECT_EQ(QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System), before);
    EXPECT_TRUE(HeldPreviews().empty());
}

TEST_F(PreviewTest, RecordThatLostItsCloudPartMeanwhileIsASaveFailure)
{
    const auto id = StartPreview();
    file->GetRedactableCloudInfo().reset();
    Forget();

    protocol->Answer(id, Social::Success, Picture(Qt::red));

    EXPECT_THAT(Events(),
                ElementsAre("ERROR Cannot save preview for: doc with size: small",
                            "RetrieveFilePreviewError(doc, 0, Cannot save preview for: doc with size: small)"));
}

TEST_F(PreviewTest, ErrorIsReported)
{
    QSignalSpy errors(manager.get(), &NorlisCloudManager::RetrieveFilePreviewError);
    const auto id = StartPreview();
    Forget();
    protocol->Answer(id, Social::Error);
    EXPECT_THAT(Events(), ElementsAre("ERROR Retrieving file preview error",
                                      "RetrieveFilePreviewError(doc, 0, Retrieving file preview error)"));
    EXPECT_EQ(errors[0][0].value<std::shared_ptr<const FileInfo>>(), file);
    EXPECT_TRUE(HeldPreviews().empty());
}

TEST_F(PreviewTest, CancellationIsReportedWithoutTheSize)
{
    QSignalSpy canceled(manager.get(), &NorlisCloudManager::RetrieveFilePreviewCanceled);
    const auto id = StartPreview();
    Forget();
    protocol->Answer(id, Social::Canceled);
    EXPECT_THAT(Events(), ElementsAre("INFO Retrieving file preview canceled", "RetrieveFilePreviewCanceled(doc)"));
    EXPECT_EQ(canceled[0][0].value<std::shared_ptr<const FileInfo>>(), file);
}

TEST_F(PreviewTest, ForeignResultIsIgnored)
{
    for (const auto result : {foreignResult, negativeResult}) {
        const auto id = StartPreview();
        Forget();
        protocol->Answer(id, result, Picture(Qt::red));
        EXPECT_THAT(Events(), IsEmpty());
        EXPECT_TRUE(HeldPreviews().empty());
    }
}

TEST_F(PreviewTest, CallbackWithAnUnknownIdLeavesTheRecordUntouched)
{
    const auto id = StartPreview();
    Forget();
    protocol->AnswerAs(id, id + 1000, Social::Success, Picture(Qt::red));
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_TRUE(HeldPreviews().empty());
}

TEST_F(PreviewTest, CallbackKeepsTheRecordAlive)
{
    const auto id = StartPreview();
    file.reset();
    Forget();
    protocol->Answer(id, Social::Success, Picture(Qt::red));
    EXPECT_THAT(Events(), ElementsAre("RetrieveFilePreviewFinished(doc, 0)"));
}

} // namespace

} // namespace Norlis::Test
