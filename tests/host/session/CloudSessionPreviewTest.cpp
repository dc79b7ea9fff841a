#include <tests/support/SessionTest.h>

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QPixmap>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;

QPixmap Picture()
{
    QPixmap picture(4, 4);
    picture.fill(Qt::red);
    return picture;
}

class CloudSessionPreviewTest : public SessionTest {
protected:
    /// The requests for previews since the last call.
    std::vector<ScriptedProtocol::Call> TakePreviewCalls()
    {
        const auto calls = protocol->CallsOf("retrievePreview");
        const std::vector<ScriptedProtocol::Call> fresh(calls.begin() + seen, calls.end());
        seen = static_cast<int>(calls.size());
        return fresh;
    }

    void AnswerAll(const std::vector<ScriptedProtocol::Call>& calls)
    {
        for (const auto& call : calls) {
            protocol->Answer(call.id, Social::Success, Picture());
        }
    }

    /// Those pictures of a document that are on disk.
    static QStringList StoredPictures(const QString& id)
    {
        return QDir(QDir::tempPath()).entryList({id + "_*.png"}, QDir::Files, QDir::Name);
    }

    QStringList PreviewsAt(int index)
    {
        return session->Documents().GetPreviewsSet(index).keys();
    }

    int seen = 0;
};

TEST_F(CloudSessionPreviewTest, PicturesOfARefreshEnterTheList)
{
    Refresh({EntryOf("1")});
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));

    EXPECT_THAT(Events(),
                ElementsAre("ListRefreshed(+1, ~, -)", "PreviewStored(1, small, 1_small.png)",
                            "PreviewStored(1, medium, 1_medium.png)", "PreviewStored(1, large, 1_large.png)"));
    EXPECT_EQ(PreviewsAt(0), QStringList({"large", "medium", "small"}));
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(),
              QUrl::fromLocalFile(QDir::tempPath() + "/1_small.png"));
}

TEST_F(CloudSessionPreviewTest, PicturesThatComeBeforeTheirDocumentIsMergedAreNotLost)
{
    Upload(Write("2.pdf", "text"), "2"); // a local copy, which is hashed before the merge begins
    session->FetchPreviews("2");
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    const auto fetched = TakePreviewCalls();
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", 1));
    Answer("retriveFileList", Social::Success, QList<CloudEntry>{EntryOf("1"), EntryOf("2", "text")});
    AnswerAll(TakePreviewCalls());
    AnswerAll(fetched);
    EXPECT_EQ(session->Documents().FilesCount(), 1);
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    EXPECT_EQ(PreviewsAt(0).size(), 3);
}

TEST_F(CloudSessionPreviewTest, FetchedPicturesEndEachByItself)
{
    Refresh({EntryOf("1")});
    TakePreviewCalls();
    Events();
    session->FetchPreviews("1");
    EXPECT_EQ(protocol->CallsOf("retrievePreview").size(), 3u); // those of the list
    ASSERT_TRUE(WaitForCalls("retrievePreview", 6));
    const auto calls = TakePreviewCalls();
    QStringList edges;
    for (const auto& call : calls) {
        EXPECT_EQ(call.fields[NorlisCloudProtocol::ID], "1");
        EXPECT_EQ(call.fields[NorlisCloudProtocol::FILE_PREVIEW_WIDTH],
                  call.fields[NorlisCloudProtocol::FILE_PREVIEW_HEIGHT]);
        edges.append(call.fields[NorlisCloudProtocol::FILE_PREVIEW_WIDTH]);
    }
    EXPECT_EQ(edges, QStringList({"40", "100", "191"}));

    protocol->Answer(calls[0].id, Social::Canceled);
    AnswerError("retrievePreview", "the document is encrypted"); // the large one
    protocol->Answer(calls[1].id, Social::Success, Picture());
    ASSERT_TRUE(WaitForEvent("PreviewStored"));
    EXPECT_THAT(Events(), ElementsAre("Failed(Preview, 1, Retrieving file preview canceled, )",
                                      "Failed(Preview, 1, Retrieving file preview error, the document is encrypted)",
                                      "PreviewStored(1, medium, 1_medium.png)"));
    EXPECT_EQ(PreviewsAt(0), QStringList("medium"));
}

TEST_F(CloudSessionPreviewTest, FetchingIsRefusedOnceForEachSize)
{
    Refresh({EntryOf("1")});
    Events();
    protocol->refused = {"retrievePreview"};
    session->FetchPreviews("1");
    session->FetchPreviews("unknown");
    ASSERT_TRUE(WaitForEvent("Failed(Preview, unknown"));
    LetWorkFinish();
    const std::string refused = "Failed(Preview, 1, Retrieve file preview failed, )";
    const std::string unknown =
        "Failed(Preview, unknown, The preview was not fetched, it is not in the list of documents)";
    EXPECT_THAT(Events(), ElementsAre(refused, refused, refused, unknown, unknown, unknown));
}

TEST_F(CloudSessionPreviewTest, FailuresThatNobodyAskedForAreNotReported)
{
    protocol->refused = {"retrievePreview"};
    Refresh({EntryOf("1")});
    protocol->refused.clear();
    Refresh({EntryOf("1"), EntryOf("2")});
    for (const auto& call : TakePreviewCalls()) {
        if (call.id != -1) {
            Social::OAuth2::Failure failure;
            failure.reason = "no renderer";
            session->NoteFailure(failure);
            protocol->Answer(call.id, Social::Error);
        }
    }
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+1, ~, -)", "ListRefreshed(+2, ~, -)"));

    session->FetchPreviews("1"); // and their reasons do not stick to others
    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 3));
    Answer("retrievePreview", Social::Error);
    EXPECT_EQ(problem.cause.reason, "");
}

TEST_F(CloudSessionPreviewTest, PicturesOfUnchangedContentAreNotReportedAgain)
{
    Refresh({EntryOf("1")});
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    Refresh({EntryOf("1")});
    Events();
    QSignalSpy updates(&session->Documents(), qOverload<int>(&PDF::AbstractFileManager::FileUpdated));
    AnswerAll(TakePreviewCalls());
    LetWorkFinish();
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_EQ(updates.count(), 0);

    session->FetchPreviews("1"); // those that somebody waits for are
    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 3));
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    EXPECT_EQ(Events().size(), 3u);
}

TEST_F(CloudSessionPreviewTest, PicturesOfOldContentAreShownNoLonger)
{
    Refresh({EntryOf("1")});
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    Refresh({EntryOf("1")});
    const auto late = TakePreviewCalls();
    Events();

    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(), QUrl());
    AnswerAll(late); // of the content before
    LetWorkFinish();
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(), QUrl());
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~1, -)"));

    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(),
              QUrl::fromLocalFile(QDir::tempPath() + "/1_small.png"));
}

TEST_F(CloudSessionPreviewTest, UploadOfOtherContentDropsThePicturesAndOfTheSameKeepsThem)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    Refresh({EntryOf("1", "text")});
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));

    session->UploadChanges("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    Answer("uploadFile", Social::Success, SharingOf("1", "1.pdf"));
    EXPECT_EQ(PreviewsAt(0).size(), 3);

    Write("1.pdf", "other text");
    session->UploadChanges("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 3));
    Answer("uploadFile", Social::Success, SharingOf("1", "1.pdf"));
    EXPECT_EQ(PreviewsAt(0).size(), 0);
}

TEST_F(CloudSessionPreviewTest, PicturesKeepTheLocalCopyOfTheirDocument)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    session->FetchPreviews("1");
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    EXPECT_EQ(Held("1")->GetPath().utf8string(), path.toStdString());
    EXPECT_EQ(StatusOf("1"), Status::InSync);
}

TEST_F(CloudSessionPreviewTest, PicturesLeaveTheDiskWithTheirDocument)
{
    Refresh({EntryOf("removed"), EntryOf("departed"), EntryOf("kept")});
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(kept, large"));
    ASSERT_EQ(StoredPictures("removed").size(), 3);
    ASSERT_EQ(StoredPictures("departed").size(), 3);

    session->Remove("removed");
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    EXPECT_EQ(StoredPictures("removed").size(), 3) << "the service may refuse";
    Answer("deleteFile", Social::Success);
    ASSERT_TRUE(WaitForEvent("DocumentRemoved"));
    EXPECT_EQ(StoredPictures("removed"), QStringList());

    Reopen(); // it departs while nobody looks
    Refresh({EntryOf("kept")});
    EXPECT_EQ(StoredPictures("departed"), QStringList());
    EXPECT_EQ(StoredPictures("kept").size(), 3);
}

TEST_F(CloudSessionPreviewTest, PicturesThatComeAfterTheirDocumentIsGoneLeaveTheDiskToo)
{
    Refresh({EntryOf("1")});
    const auto late = TakePreviewCalls();
    Refresh({});
    AnswerAll(late);
    EXPECT_EQ(StoredPictures("1").size(), 3);
    LetWorkFinish();
    EXPECT_EQ(StoredPictures("1"), QStringList());
}

TEST_F(CloudSessionPreviewTest, PictureOfADocumentThatIsGoneIsIgnoredUnlessSomebodyWaits)
{
    Refresh({EntryOf("1")});
    const auto ofList = TakePreviewCalls();
    session->FetchPreviews("1");
    ASSERT_TRUE(WaitForCalls("retrievePreview", 6));
    const auto fetched = TakePreviewCalls();
    Refresh({});
    Events();
    AnswerAll(ofList);
    LetWorkFinish();
    EXPECT_THAT(Events(), IsEmpty());

    protocol->Answer(fetched.front().id, Social::Success, Picture());
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_THAT(Events(),
                ElementsAre("Failed(Preview, 1, The preview was not fetched, the document is no longer in the list)"));
    EXPECT_EQ(session->Documents().FilesCount(), 0);
}

} // namespace

} // namespace Norlis::Test
