#include <apps/terminal/DocumentLookup.h>

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

namespace {

using Terminal::FindDocuments;
using Terminal::FoundDocuments;

class DocumentLookupTest : public testing::Test {
protected:
    void Add(const std::string& id, const std::string& name)
    {
        documents.Add(std::make_shared<PDF::FileInfo>(
            PDF::FileInfo::CloudInfo(id, name, 1, true, QUrl(), QDateTime(), QDateTime(), 0, "")));
    }

    QStringList IdsOf(const QStringList& words)
    {
        QStringList ids;
        for (const auto& document : FindDocuments(documents, words).documents) {
            ids << document.id;
        }
        return ids;
    }

    PDF::Cloud::NorlisCloudFilesManager documents{std::make_shared<RecordingStore>(),
                                                  std::make_shared<FakeFileSystem>(),
                                                  std::make_shared<CountingHashCalculator>()};
};

TEST_F(DocumentLookupTest, NamesAndIdsAreFoundInTheUsersOrder)
{
    Add("1", "a.pdf");
    Add("2", "b.pdf");
    Add("3", "c.pdf");
    EXPECT_EQ(IdsOf({"c.pdf", "1"}), QStringList({"3", "1"}));
}

TEST_F(DocumentLookupTest, DocumentNamedTwiceIsFoundOnce)
{
    Add("1", "a.pdf");
    EXPECT_EQ(IdsOf({"a.pdf", "1", "a.pdf"}), QStringList("1"));
}

TEST_F(DocumentLookupTest, AmbiguousNameIsRefusedWithTheIds)
{
    Add("2", "a.pdf");
    Add("1", "a.pdf");
    const FoundDocuments found = FindDocuments(documents, {"a.pdf"});
    EXPECT_TRUE(found.documents.empty());
    ASSERT_EQ(found.problems.size(), 1);
    EXPECT_TRUE(found.problems[0].contains("\"a.pdf\"") && found.problems[0].endsWith("1, 2"))
        << found.problems[0].toStdString();
    EXPECT_EQ(IdsOf({"2"}), QStringList("2"));
}

TEST_F(DocumentLookupTest, IdGoesBeforeName)
{
    Add("1", "2");
    Add("2", "a.pdf");
    EXPECT_EQ(IdsOf({"2"}), QStringList("2"));
}

TEST_F(DocumentLookupTest, UnknownWordIsRefused)
{
    Add("1", "a.pdf");
    const FoundDocuments found = FindDocuments(documents, {"A.pdf", "", "a.pdf"});
    EXPECT_EQ(found.documents.size(), 1U);
    EXPECT_EQ(found.problems.size(), 2);
}

} // namespace

} // namespace Norlis::Test
