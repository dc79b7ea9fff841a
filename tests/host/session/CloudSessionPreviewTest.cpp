#include <tests/support/SessionTest.h>

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>

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

    /// Shows documents and has the cloud deliver their pictures.
    void Show(const QStringList& ids)
    {
        const auto before = CountOf("PreviewStored");
        session->ShowPreviews(ids);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                AnswerAll(TakePreviewCalls());
                return CountOf("PreviewStored") == before + 3 * ids.size();
            },
            20'000));
    }

    /// What was asked for, as "id edge".
    static QStringList TextsOf(const std::vector<ScriptedProtocol::Call>& calls)
    {
        QStringList texts;
        for (const auto& call : calls) {
            texts.append(call.fields[NorlisCloudProtocol::ID] + ' ' +
                         call.fields[NorlisCloudProtocol::FILE_PREVIEW_WIDTH]);
        }
        return texts;
    }

    /// Those pictures of a document that are on disk.
    QStringList StoredPictures(const QString& id) const
    {
        return QDir(pictures).entryList({id + "_*.png"}, QDir::Files, QDir::Name);
    }

    QStringList PreviewsAt(int index)
    {
        return session->Documents().GetPreviewsSet(index).keys();
    }

    const QString pictures = dataFolder + "/pictures";
    int seen = 0;
};

TEST_F(CloudSessionPreviewTest, RefreshAsksForNoPictures)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    LetWorkFinish();
    EXPECT_THAT(TakePreviewCalls(), IsEmpty());
}

TEST_F(CloudSessionPreviewTest, PicturesOfWhatIsShownEnterTheList)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, small"));

    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+1 2, ~, -)", "PreviewStored(1, medium, 1_medium.png)",
                                      "PreviewStored(1, large, 1_large.png)", "PreviewStored(1, small, 1_small.png)"));
    EXPECT_EQ(PreviewsAt(0), QStringList({"large", "medium", "small"}));
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(), QUrl::fromLocalFile(pictures + "/1_small.png"));
}

TEST_F(CloudSessionPreviewTest, FourPicturesAreFetchedAtATimeOfTheLatestFirst)
{
    Refresh({EntryOf("a"), EntryOf("b"), EntryOf("c"), EntryOf("d"), EntryOf("e"), EntryOf("f"), EntryOf("g")});
    session->ShowPreviews({"a", "b", "c", "d", "e", "f"});
    LetWorkFinish();
    const auto first = TakePreviewCalls();
    EXPECT_EQ(TextsOf(first), QStringList({"a 100", "a 191", "b 100", "b 191"}));

    session->ShowPreviews({"e", "f", "g"}); // what has scrolled away and was not sent is dropped
    LetWorkFinish();
    EXPECT_THAT(TakePreviewCalls(), IsEmpty());
    AnswerAll(first);
    ASSERT_TRUE(WaitForEvent("PreviewStored(b, large"));
    LetWorkFinish();
    const auto second = TakePreviewCalls();
    EXPECT_EQ(TextsOf(second), QStringList({"g 100", "g 191", "e 100", "e 191"}));
    AnswerAll(second);
    LetWorkFinish();
    const auto third = TakePreviewCalls();
    EXPECT_EQ(TextsOf(third), QStringList({"f 100", "f 191", "g 40", "e 40"}));
    AnswerAll(third);
    LetWorkFinish();
    EXPECT_EQ(TextsOf(TakePreviewCalls()), QStringList({"f 40"}));
}

TEST_F(CloudSessionPreviewTest, PictureThatCannotBeHadIsNotFetchedAgainWhileItsDocumentIsInView)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    for (const auto& call : TakePreviewCalls()) {
        protocol->Answer(call.id, Social::Error);
    }
    session->ShowPreviews({"1", "2"});
    LetWorkFinish();
    const auto ofOther = TakePreviewCalls();
    EXPECT_EQ(TextsOf(ofOther), QStringList({"2 100", "2 191", "2 40"}));
    AnswerAll(ofOther);
    Refresh({EntryOf("1"), EntryOf("2")});
    LetWorkFinish();
    EXPECT_THAT(TakePreviewCalls(), IsEmpty());

    session->ShowPreviews({"2"});
    session->ShowPreviews({"2", "1"});
    LetWorkFinish();
    EXPECT_EQ(TextsOf(TakePreviewCalls()), QStringList({"1 100", "1 191", "1 40"}));
}

TEST_F(CloudSessionPreviewTest, APictureThatCannotBeMadeIsToldOnceWhileItsDocumentIsInView)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    QSignalSpy missing(session.get(), &Host::CloudSession::PreviewMissing);
    const auto failAll = [&](const QStringList& shown) {
        session->ShowPreviews(shown);
        LetWorkFinish();
        for (const auto& call : TakePreviewCalls()) {
            protocol->Fail(call.id, "no pages");
        }
        LetWorkFinish();
    };
    failAll({"1"});
    EXPECT_EQ(missing.count(), 1);
    failAll({"1", "2"});
    EXPECT_EQ(missing.count(), 2);
    failAll({"2"});
    failAll({"2", "1"});
    EXPECT_EQ(missing.count(), 3);
}

TEST_F(CloudSessionPreviewTest, APictureThatTheServiceWasAwayForIsFetchedAfterTheNextList)
{
    Refresh({EntryOf("1")});
    QSignalSpy missing(session.get(), &Host::CloudSession::PreviewMissing);
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    for (const auto& call : TakePreviewCalls()) {
        protocol->Fail(call.id, "the line is cut", Social::OAuth2::FailureKind::Unavailable);
    }
    LetWorkFinish();
    EXPECT_THAT(TakePreviewCalls(), IsEmpty());
    EXPECT_EQ(missing.count(), 0);
    Refresh({EntryOf("1")});
    LetWorkFinish();
    EXPECT_EQ(TextsOf(TakePreviewCalls()), QStringList({"1 100", "1 191", "1 40"}));
}

TEST_F(CloudSessionPreviewTest, PicturesAreFetchedWhenSomebodyHasSignedIn)
{
    Refresh({EntryOf("1")});
    protocol->signedIn = false;
    QSignalSpy asked(&session->Cloud(), &PDF::Cloud::AbstractCloudManager::AuthorizationRequired);
    session->ShowPreviews({"1"});
    QCoreApplication::processEvents();
    EXPECT_THAT(TakePreviewCalls(), IsEmpty());
    EXPECT_EQ(asked.count(), 0);

    session->Cloud().Authorization("token");
    protocol->signedIn = true;
    Answer("auth", Social::Success);
    EXPECT_TRUE(WaitForCalls("retrievePreview", 3));
}

TEST_F(CloudSessionPreviewTest, PicturesThatComeDuringAMergeAreNotLost)
{
    Upload(Write("2.pdf", "text"), "2"); // a local copy, which is hashed before the merge begins
    session->ShowPreviews({"2"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", 1));
    Answer("retriveFileList", Social::Success, QList<CloudEntry>{EntryOf("1"), EntryOf("2", "text")});
    AnswerAll(TakePreviewCalls());
    EXPECT_EQ(session->Documents().FilesCount(), 1);
    ASSERT_TRUE(WaitForEvent("PreviewStored(2, large"));
    EXPECT_EQ(Held("2")->GetRedactableCloudInfo()->GetPreviewsSet().size(), 3u);
}

TEST_F(CloudSessionPreviewTest, FetchedPicturesEndEachByItself)
{
    Refresh({EntryOf("1")});
    Events();
    session->FetchPreviews("1");
    EXPECT_THAT(protocol->CallsOf("retrievePreview"), IsEmpty());
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
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
        "Failed(Preview, unknown, The preview was not fetched, It is not in the list of documents)";
    EXPECT_THAT(Events(), ElementsAre(refused, refused, refused, unknown, unknown, unknown));
}

TEST_F(CloudSessionPreviewTest, FailuresThatNobodyAskedForAreNotReported)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    protocol->refused = {"retrievePreview"};
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 1));
    protocol->refused.clear();
    TakePreviewCalls();
    session->ShowPreviews({"2"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 3));
    for (const auto& call : TakePreviewCalls()) {
        protocol->Fail(call.id, "no renderer");
    }
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+1 2, ~, -)"));

    session->FetchPreviews("1"); // and their reasons do not stick to others
    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 3));
    Answer("retrievePreview", Social::Error);
    EXPECT_EQ(problem.cause.reason, "");
}

TEST_F(CloudSessionPreviewTest, PicturesOfUnchangedContentAreNotFetchedAgain)
{
    Refresh({EntryOf("1")});
    Show({"1"});
    Refresh({EntryOf("1")});
    Events();
    QSignalSpy updates(&session->Documents(), qOverload<int>(&PDF::AbstractFileManager::FileUpdated));
    session->ShowPreviews({});
    session->ShowPreviews({"1"});
    LetWorkFinish();
    EXPECT_THAT(TakePreviewCalls(), IsEmpty());
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_EQ(updates.count(), 0);

    session->FetchPreviews("1"); // those that somebody waits for are
    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 3));
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    EXPECT_EQ(Events().size(), 3u);
}

TEST_F(CloudSessionPreviewTest, PicturesOnDiskAreShownAfterARestartWithoutBeingFetched)
{
    Refresh({EntryOf("1"), EntryOf("2"), EntryOf("3")});
    Show({"1", "2", "3"});
    for (int restart = 0; restart < 2; ++restart) {
        Reopen();
        Refresh({EntryOf("1"), EntryOf("2"), EntryOf("3", "second edition")});
        Events();
        QFile::remove(pictures + "/2_medium.png");
        session->ShowPreviews({"1", "2", "3"});
        ASSERT_TRUE(WaitForEvent("PreviewStored(2, small"));
        LetWorkFinish();
        EXPECT_EQ(CountOf("PreviewStored"), 5);
        EXPECT_EQ(CountOf("PreviewStored(1"), 3);
        EXPECT_EQ(Held("1")->GetRedactableCloudInfo()->GetPreviewsSet().size(), 3u);
        EXPECT_EQ(TextsOf(TakePreviewCalls()), QStringList({"2 100", "3 100", "3 191", "3 40"}));
        if (restart == 0) {
            protocol->Answer(protocol->CallsOf("retrievePreview").end()[-4].id, Social::Success, Picture());
            ASSERT_TRUE(WaitForEvent("PreviewStored(2, medium"));
        }
    }
}

TEST_F(CloudSessionPreviewTest, PicturesAreForTheUserAlone)
{
    const auto everybodys = FilesIn(QDir::tempPath());
    Refresh({EntryOf("1"), EntryOf("../2/3")});
    Show({"1", "../2/3"});
    EXPECT_EQ(QFile::permissions(pictures) & (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther),
              QFile::Permissions());
    EXPECT_EQ(FilesIn(pictures), QStringList({"..%2F2%2F3_large.png", "..%2F2%2F3_medium.png", "..%2F2%2F3_small.png",
                                              "1_large.png", "1_medium.png", "1_small.png"}));
    EXPECT_EQ(FilesIn(QDir::tempPath()), everybodys);
}

TEST_F(CloudSessionPreviewTest, PicturesOfOldContentAreShownNoLonger)
{
    Refresh({EntryOf("1")});
    Show({"1"});
    session->FetchPreviews("1");
    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 3));
    Events();

    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(), QUrl());
    EXPECT_EQ(StoredPictures("1"), QStringList());
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~1, -)"));

    ASSERT_TRUE(WaitForCalls("retrievePreview", static_cast<std::size_t>(seen) + 6));
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
    EXPECT_EQ(session->Documents().GetPreviewsSet(0)["small"].toUrl(), QUrl::fromLocalFile(pictures + "/1_small.png"));
}

TEST_F(CloudSessionPreviewTest, PicturesOfOldContentThatComeLateAreFetchedAnew)
{
    Refresh({EntryOf("1")});
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    const auto late = TakePreviewCalls();
    Refresh({EntryOf("1", "second edition")});
    AnswerAll(late);
    EXPECT_EQ(StoredPictures("1"), QStringList());
    ASSERT_TRUE(WaitForCalls("retrievePreview", 6));
    EXPECT_EQ(CountOf("PreviewStored"), 0);
    AnswerAll(TakePreviewCalls());
    ASSERT_TRUE(WaitForEvent("PreviewStored(1, large"));
}

TEST_F(CloudSessionPreviewTest, UploadOfOtherContentDropsThePicturesAndOfTheSameKeepsThem)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    Refresh({EntryOf("1", "text")});
    Show({"1"});

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
    Show({"removed", "departed", "kept"});
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
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
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
    session->ShowPreviews({"1"});
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    const auto ofView = TakePreviewCalls();
    session->FetchPreviews("1");
    ASSERT_TRUE(WaitForCalls("retrievePreview", 6));
    const auto fetched = TakePreviewCalls();
    Refresh({});
    Events();
    AnswerAll(ofView);
    LetWorkFinish();
    EXPECT_THAT(Events(), IsEmpty());

    protocol->Answer(fetched.front().id, Social::Success, Picture());
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_THAT(Events(),
                ElementsAre("Failed(Preview, 1, The preview was not fetched, The document is no longer in the list)"));
    EXPECT_EQ(session->Documents().FilesCount(), 0);
}

} // namespace

} // namespace Norlis::Test
