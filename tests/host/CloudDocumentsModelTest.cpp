#include <host/CloudDocumentsModel.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>
#include <tests/support/Rounds.h>

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTemporaryFile>
#include <QUrl>

#include <gmock/gmock.h>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using Host::CloudDocumentsModel;
using PDF::FileInfo;
using testing::ElementsAre;

FileInfo::CloudInfo CloudInfoOfSize(const std::string& id, quint64 size)
{
    return {id, id + ".pdf", size, false, {}, {}, {}, 0, {}};
}

class CloudDocumentsModelTest : public testing::Test {
protected:
    void Add(const std::string& id)
    {
        list->Add(RecordOf(id));
    }

    void Remove(const std::string& id)
    {
        list->Remove(RecordOf(id));
    }

    void Update(const std::string& id)
    {
        list->Update(RecordOf(id));
    }

    /// Ids that a view sees.
    static std::vector<std::string> Seen(const QAbstractItemModel& rows)
    {
        std::vector<std::string> ids;
        for (int row = 0; row < rows.rowCount(); ++row) {
            ids.push_back(rows.index(row, 0).data(CloudDocumentsModel::IdRole).toString().toStdString());
        }
        return ids;
    }

    std::vector<std::string> Held() const
    {
        std::vector<std::string> ids;
        for (int index = 0; index < list->FilesCount(); ++index) {
            ids.push_back(list->GetDocumentId(index).toStdString());
        }
        return ids;
    }

    QVariant Value(const std::string& id, int role) const
    {
        return model.index(model.RowOf(QString::fromStdString(id))).data(role);
    }

    std::shared_ptr<FakeFileSystem> files = std::make_shared<FakeFileSystem>();
    std::shared_ptr<RecordingStore> store = std::make_shared<RecordingStore>();
    std::unique_ptr<PDF::Cloud::NorlisCloudFilesManager> list =
        std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(store, files, std::make_shared<CountingHashCalculator>());
    CloudDocumentsModel model{*list};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(CloudDocumentsModelTest, EachValueOfADocumentHasItsRole)
{
    auto record = RecordOf("a");
    record->SetPath(ioPath("/local/a.pdf"), "hash");
    record->GetRedactableCloudInfo()->SetPreviewPathBySize(ioPath("/p/a small.png"), FileInfo::PreviewSize::Small);
    record->GetRedactableCloudInfo()->SetPreviewPathBySize({}, FileInfo::PreviewSize::Large); // of older content
    list->Add(record);
    EXPECT_EQ(Value("a", CloudDocumentsModel::NameRole).toString(), "a.pdf");
    EXPECT_EQ(Value("a", Qt::DisplayRole).toString(), "a.pdf");
    EXPECT_EQ(Value("a", CloudDocumentsModel::IdRole).toString(), "a");
    EXPECT_EQ(Value("a", CloudDocumentsModel::PathRole).toString(), "/local/a.pdf");
    EXPECT_EQ(Value("a", CloudDocumentsModel::StateRole).toInt(), list->GetDocumentState(0));
    EXPECT_EQ(Value("a", CloudDocumentsModel::SizeRole).toLongLong(), 1234);
    EXPECT_EQ(Value("a", CloudDocumentsModel::ModifiedRole).toDateTime(), QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC));
    EXPECT_EQ(Value("a", CloudDocumentsModel::PreviewsRole).toMap().value("small"),
              QVariant(QUrl::fromLocalFile("/p/a small.png")));
    EXPECT_FALSE(Value("a", CloudDocumentsModel::PreviewsRole).toMap().contains("large"));
    EXPECT_FALSE(Value("a", Qt::DecorationRole).isValid());
    EXPECT_EQ(model.roleNames().value(CloudDocumentsModel::StateRole), "state");
}

TEST_F(CloudDocumentsModelTest, SizeIsThatOfTheCloudCopyAsTheDateIs)
{
    QTemporaryFile copy;
    ASSERT_TRUE(copy.open() && copy.write("changed") > 0 && copy.flush());
    auto record = RecordOf("a");
    record->SetPath(ioPath(copy.fileName().toStdString()), "hash");
    list->Add(record);
    EXPECT_EQ(Value("a", CloudDocumentsModel::SizeRole).toLongLong(), 1234);
    EXPECT_EQ(CloudDocumentsModel(*list, {{"a", 1234}}).index(0).data(CloudDocumentsModel::SizeRole).toLongLong(),
              1234);
}

TEST_F(CloudDocumentsModelTest, DocumentsThatWereThereBeforeAreRows)
{
    Add("a");
    Add("b");
    const CloudDocumentsModel later(*list);
    EXPECT_THAT(Seen(later), ElementsAre("b", "a"));
    EXPECT_EQ(later.index(0).data(CloudDocumentsModel::SizeRole).toLongLong(), 1234);
    EXPECT_EQ(later.RowOf("a"), 1);
    EXPECT_EQ(later.RowOf("c"), -1);
}

TEST_F(CloudDocumentsModelTest, OneChangeIsToldAsOneRow)
{
    Add("a");
    Add("b");
    Add("c");
    const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    const QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    Add("d");
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 0);
    EXPECT_EQ(inserted[0][2].toInt(), 0);
    Remove("b");
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 2);
    EXPECT_EQ(removed[0][2].toInt(), 2);
    Update("a");
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 2);
    EXPECT_EQ(inserted.size() + removed.size() + reset.size(), 2);
    EXPECT_THAT(Seen(model), ElementsAre("d", "c", "a"));
}

TEST_F(CloudDocumentsModelTest, LargeDocumentsHaveTheirWholeSize)
{
    constexpr quint64 size = 5'000'000'000;
    list->Add(std::make_shared<FileInfo>(CloudInfoOfSize("a", size)));
    EXPECT_EQ(Value("a", CloudDocumentsModel::SizeRole).toULongLong(), size);
    list->Update(std::make_shared<FileInfo>(CloudInfoOfSize("a", size + 1)));
    EXPECT_EQ(Value("a", CloudDocumentsModel::SizeRole).toULongLong(), size + 1);
    list->Add(std::make_shared<FileInfo>(CloudInfoOfSize("b", 3'000'000'000)));
    EXPECT_EQ(CloudDocumentsModel(*list).index(0).data(CloudDocumentsModel::SizeRole).toLongLong(), 3'000'000'000);
    const CloudDocumentsModel later(*list, {{"a", size + 1}});
    EXPECT_EQ(later.index(later.RowOf("a")).data(CloudDocumentsModel::SizeRole).toULongLong(), size + 1);
}

TEST_F(CloudDocumentsModelTest, SeveralDocumentsOfOneIdAreSeveralRows)
{
    Add("a");
    Add("b");
    Add("a");
    Remove("a");
    EXPECT_THAT(Seen(model), ElementsAre("b", "a"));
}

TEST_F(CloudDocumentsModelTest, WhatOthersChangeBeforeTheModelHearsOfItIsCaughtUpWith)
{
    // This one hears of everything first.
    const auto other =
        std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(store, files, std::make_shared<CountingHashCalculator>());
    int depth = 0;
    QObject::connect(other.get(), qOverload<const std::shared_ptr<FileInfo>&>(&PDF::AbstractFileManager::FileAdded),
                     [&](const auto& added) {
                         if (depth++ == 0) {
                             other->Add(RecordOf("b"));
                             other->Remove(added);
                             other->Add(RecordOf("c"));
                         }
                     });
    CloudDocumentsModel late(*other);
    const QAbstractItemModelTester lateTester(&late, QAbstractItemModelTester::FailureReportingMode::Fatal);
    other->Add(RecordOf("a"));
    EXPECT_THAT(Seen(late), ElementsAre("c", "b"));
}

TEST_F(CloudDocumentsModelTest, AListThatGoesFirstLeavesAnEmptyModel)
{
    Add("a");
    const QPersistentModelIndex index(model.index(0));
    list.reset();
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(index.isValid());
    EXPECT_EQ(model.RowOf("a"), -1);
}

TEST_F(CloudDocumentsModelTest, RowsHaveNoChildrenAndForeignIndexesNoValues)
{
    Add("a");
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
    EXPECT_FALSE(model.data(QModelIndex(), CloudDocumentsModel::NameRole).isValid());
}

TEST_F(CloudDocumentsModelTest, HoldsThroughRandomHistoriesWithSlotsThatChangeTheList)
{
    for (quint32 seed = 0; seed < 200; seed += Norlis::Test::Stride(5)) {
        SCOPED_TRACE(seed);
        QRandomGenerator random(seed);
        const auto someId = [&] { return std::string(1, static_cast<char>('a' + random.bounded(8))); };
        const auto own = std::make_shared<RecordingStore>();
        PDF::Cloud::NorlisCloudFilesManager documents(own, files, std::make_shared<CountingHashCalculator>());
        int nested = 0;
        const auto change = [&] {
            const auto record = RecordOf(someId());
            switch (random.bounded(4)) {
            case 0:
            case 1:
                documents.Add(record);
                break;
            case 2:
                documents.Remove(record);
                break;
            default:
                documents.Update(record);
            }
        };
        const auto interfere = [&] {
            if (nested < 3 && random.bounded(4) == 0) {
                ++nested;
                change();
                --nested;
            }
        };
        const auto watch = [&] {
            QObject::connect(&documents,
                             qOverload<const std::shared_ptr<FileInfo>&>(&PDF::AbstractFileManager::FileAdded),
                             interfere);
            QObject::connect(&documents,
                             qOverload<const std::shared_ptr<const FileInfo>&>(&PDF::AbstractFileManager::FileRemoved),
                             interfere);
            QObject::connect(&documents, qOverload<int>(&PDF::AbstractFileManager::FileUpdated), interfere);
        };
        watch();
        CloudDocumentsModel rows(documents);
        QSortFilterProxyModel sorted;
        sorted.setSourceModel(&rows);
        sorted.sort(0);
        const QAbstractItemModelTester rowsTester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
        const QAbstractItemModelTester sortedTester(&sorted, QAbstractItemModelTester::FailureReportingMode::Fatal);
        watch();
        for (int step = 0; step < 60; ++step) {
            change();
            std::vector<std::string> held;
            for (int index = 0; index < documents.FilesCount(); ++index) {
                held.push_back(documents.GetDocumentId(index).toStdString());
            }
            ASSERT_EQ(Seen(rows), held) << "step " << step;
            std::sort(held.begin(), held.end());
            ASSERT_EQ(Seen(sorted), held) << "step " << step;
        }
    }
}

} // namespace

} // namespace Norlis::Test
