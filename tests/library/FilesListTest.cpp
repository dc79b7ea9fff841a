#include "FilesManagerBench.h"

#include <QSignalSpy>

namespace Norlis::Test {

namespace {

class FilesListTest : public FilesManagerTest {
protected:
    void ExpectPlainException(const std::function<void()>& action)
    {
        try {
            action();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::exception& error) {
            EXPECT_EQ(typeid(error), typeid(std::exception));
        }
    }
};

TEST_F(FilesListTest, NewRecordsEnterAtTheFront)
{
    Add({"a", "b", "c"});
    EXPECT_THAT(Ids(), ElementsAre("c", "b", "a"));
}

TEST_F(FilesListTest, AddReportsTheRecordFirst)
{
    manager->Add(RecordOf("a"));
    EXPECT_THAT(Events(), ElementsAre("FileAdded(a)", "FileAdded()"));
}

TEST_F(FilesListTest, AddKeepsTheRecordItself)
{
    const auto record = RecordOf("a");
    QSignalSpy added(manager.get(), qOverload<const std::shared_ptr<FileInfo>&>(&NorlisCloudFilesManager::FileAdded));

    manager->Add(record);
    record->GetRedactableCloudInfo()->SetPreviewPathBySize(ioPath("/p.png"), FileInfo::PreviewSize::Small);

    EXPECT_EQ(added[0][0].value<std::shared_ptr<FileInfo>>(), record);
    EXPECT_EQ(manager->GetPreviewsSet(0).size(), 1);
}

TEST_F(FilesListTest, AddTouchesNoStoreAndHashesNothing)
{
    store->calls.clear();
    Add({"a"});
    EXPECT_THAT(store->calls, IsEmpty());
    EXPECT_THAT(hashes->asked, IsEmpty());
    EXPECT_THAT(fileSystem->calls, IsEmpty());
}

TEST_F(FilesListTest, SameIdTwiceGivesTwoRecords)
{
    const auto older = RecordOf("a");
    const auto newer = std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "newer.pdf", 1, true, {}, {}, {}, 0, ""));
    manager->Add(older);
    manager->Add(newer);

    EXPECT_EQ(manager->FilesCount(), 2);
    QString name = QString::fromStdString(manager->GetFileInfo("a")->GetRedactableCloudInfo()->GetFileName());
    EXPECT_EQ(name, "newer.pdf");

    manager->Remove(older);
    EXPECT_EQ(manager->FilesCount(), 1);
    EXPECT_EQ(manager->GetDocumentName(0), "a.pdf");
}

TEST_F(FilesListTest, NullRecordThrowsBeforeAnythingChanges)
{
    Add({"a"});
    store->calls.clear();
    ExpectPlainException([this] { manager->Add(nullptr); });
    ExpectPlainException([this] { manager->Remove(nullptr); });
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_THAT(Ids(), ElementsAre("a"));
    EXPECT_THAT(store->calls, IsEmpty());
}

TEST_F(FilesListTest, RemoveDeletesTheStoredRecordAndThenReports)
{
    Add({"a", "b", "c"});
    store->calls.clear();
    const auto record = RecordOf("b");
    QSignalSpy removed(manager.get(),
                       qOverload<const std::shared_ptr<const FileInfo>&>(&NorlisCloudFilesManager::FileRemoved));
    size_t storeCallsAtSignal = 0;
    QObject::connect(manager.get(), qOverload<>(&NorlisCloudFilesManager::FileRemoved), manager.get(),
                     [&] { storeCallsAtSignal = store->calls.size(); });

    manager->Remove(record);

    EXPECT_THAT(Events(), ElementsAre("FileRemoved(b)", "FileRemoved()"));
    EXPECT_THAT(store->calls, ElementsAre("RemoveRecord(b)"));
    EXPECT_EQ(storeCallsAtSignal, 1u);
    EXPECT_THAT(Ids(), ElementsAre("c", "a"));
    EXPECT_EQ(removed[0][0].value<std::shared_ptr<const FileInfo>>(), record);
}

TEST_F(FilesListTest, RemoveOfARecordThatIsNotHeldDeletesItsStoredRecordInSilence)
{
    Add({"a"});
    store->calls.clear();

    manager->Remove(RecordOf("x"));

    EXPECT_THAT(store->calls, ElementsAre("RemoveRecord(x)"));
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_THAT(Ids(), ElementsAre("a"));
    EXPECT_THAT(Close(), testing::Not(Contains("RemoveRecord(x)")));
}

TEST_F(FilesListTest, RemoveOfAHeldRecordWithoutCloudPartLeavesTheStoreAloneUntilSave)
{
    Add({"a"});
    const auto record = RecordOf("a");
    record->GetRedactableCloudInfo().reset();
    store->calls.clear();

    manager->Remove(record);

    EXPECT_THAT(store->calls, IsEmpty());
    EXPECT_THAT(Events(), ElementsAre("FileRemoved(a)", "FileRemoved()"));
    EXPECT_THAT(Close(), ElementsAre("RemoveRecord(a)"));
}

TEST_F(FilesListTest, RemoveOfARecordThatIsNeitherHeldNorInTheCloudDoesNothing)
{
    const auto record = RecordOf("x");
    record->GetRedactableCloudInfo().reset();
    store->calls.clear();
    manager->Remove(record);
    EXPECT_THAT(store->calls, IsEmpty());
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_THAT(Close(), IsEmpty());
}

TEST_F(FilesListTest, RemoveComparesIdsByteForByte)
{
    Add({"a", "A", "é"});
    manager->Remove(RecordOf("e\u0301"));
    EXPECT_EQ(manager->FilesCount(), 3);
    manager->Remove(RecordOf("A"));
    EXPECT_THAT(Ids(), ElementsAre("é", "a"));
}

TEST_F(FilesListTest, OperationsWithoutEffectChangeNothing)
{
    Add({"a", "b"});
    store->calls.clear();
    int imagesAsked = 0;

    manager->SetImageGetCallback([&](const QString&) {
        ++imagesAsked;
        return QImage();
    });
    manager->Rename({"a"}, "c");
    manager->Clear();
    manager->GetPreviewsSet(0);

    EXPECT_EQ(imagesAsked, 0);
    EXPECT_EQ(manager->Limit(), 0);
    EXPECT_THAT(Ids(), ElementsAre("b", "a"));
    EXPECT_EQ(manager->GetDocumentName(1), "a.pdf");
    EXPECT_THAT(store->calls, IsEmpty());
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListTest, ImageCallbackIsNotKept)
{
    const auto token = std::make_shared<int>(0);
    manager->SetImageGetCallback([token](const QString&) { return QImage(); });
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(FilesListTest, EmptyListHasNoFilesAndNoParent)
{
    EXPECT_EQ(manager->FilesCount(), 0);
    EXPECT_EQ(manager->parent(), nullptr);
}

} // namespace

} // namespace Norlis::Test
