#include "ContractTest.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>

namespace Norlis::TestKit {

using testing::IsEmpty;

class ListTest : public SignedInContractTest {};
NORLIS_FOR_EVERY_CLOUD(ListTest);

TEST_P(ListTest, AnEmptyCloudHasAnEmptyList)
{
    const auto list = client.List();
    EXPECT_TRUE(list->Succeeds());
    EXPECT_THAT(list->payload, IsEmpty());
}

TEST_P(ListTest, AnEntrySaysWhatTheDocumentIs)
{
    const QByteArray content(100'000, 'x');
    const auto before = QDateTime::currentDateTimeUtc().addSecs(-2);
    cloud->Put("report.pdf", content);
    const CloudFile entry = client.Entry("report.pdf");
    EXPECT_EQ(entry.size, content.size());
    EXPECT_FALSE(entry.isFolder);
    EXPECT_FALSE(entry.isShared);
    EXPECT_EQ(entry.mimeType, "application/pdf");
    EXPECT_THAT(entry.md5Hash, IsForeignHash(content));
    EXPECT_EQ(entry.createdAt.isEmpty(), !cloud->ReportsCreationTime());
    for (const QString& text : {entry.createdAt.isEmpty() ? entry.modifiedAt : entry.createdAt, entry.modifiedAt}) {
        const auto time = QDateTime::fromString(text, Qt::ISODate);
        EXPECT_TRUE(time.isValid()) << text.toStdString();
        EXPECT_EQ(time.timeSpec(), Qt::UTC) << text.toStdString();
        EXPECT_GE(time, before);
        EXPECT_LE(time, QDateTime::currentDateTimeUtc().addSecs(2));
    }
}

TEST_P(ListTest, AnEmptyDocumentIsListedWithTheHashOfNothing)
{
    cloud->Put("empty.pdf", {});
    const CloudFile entry = client.Entry("empty.pdf");
    EXPECT_EQ(entry.size, 0);
    EXPECT_THAT(entry.md5Hash, IsForeignHash({}));
}

TEST_P(ListTest, IdsAreStableOpaqueAndSafeAsFileNames)
{
    QStringList names = {"a.pdf", "A.pdf", "b c.pdf", "\u00e9.pdf", "e\u0301.pdf", "100%.pdf"};
    if (!cloud->ListsPercentSignsAndAmpersands()) {
        names.removeLast();
    }
    for (const QString& name : qAsConst(names)) {
        cloud->Put(name, name.toUtf8());
    }
    QSet<QString> ids;
    for (const QString& name : qAsConst(names)) {
        const QString id = client.Entry(name).id;
        EXPECT_TRUE(QRegularExpression("^[^/]{1,200}$").match(id).hasMatch()) << id.toStdString();
        EXPECT_FALSE(id == "." || id == "..");
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), names.size());

    const auto other = Another();
    ASSERT_TRUE(other->SignIn());
    for (const QString& name : names) {
        EXPECT_EQ(other->Entry(name).id, client.Entry(name).id);
    }
    cloud->Put("a.pdf", "changed");
    EXPECT_EQ(client.Entry("a.pdf").id, other->Entry("a.pdf").id);
}

TEST_P(ListTest, ChangesBehindItsBackAreSeen)
{
    // Of one size, and so quickly one after the other that some have the same time stamp.
    QString previousDate;
    for (int number = 100; number < 200; ++number) {
        cloud->Put("a.pdf", QByteArray::number(number));
        const CloudFile entry = client.Entry("a.pdf");
        ASSERT_THAT(entry.md5Hash, IsForeignHash(QByteArray::number(number)));
        ASSERT_TRUE(cloud->HashesForeignDocuments() || entry.modifiedAt != previousDate);
        previousDate = entry.modifiedAt;
    }
    cloud->Take("a.pdf");
    EXPECT_EQ(client.Entry("a.pdf").id, QString());
}

TEST_P(ListTest, ListsAreAnsweredInTheOrderOfAsking)
{
    cloud->Put("a.pdf", QByteArray(3 * 1024 * 1024, 'a')); // several steps, the first time
    const auto first = client.List();
    const auto second = client.List();
    const auto third = client.List();
    ASSERT_TRUE(third->Succeeds());
    EXPECT_TRUE(first->Came());
    EXPECT_TRUE(second->Came());
}

TEST_P(ListTest, TransfersInProgressAreNotListed)
{
    WriteSparseFile(Local("large.pdf"), Large(256 * 1024 * 1024));
    const auto upload = client.Upload(Local("large.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return upload->percents.size() > 1; }));
    const auto list = client.List();
    EXPECT_TRUE(list->Succeeds());
    EXPECT_FALSE(upload->Came());
    for (const CloudFile& file : qAsConst(list->payload)) {
        EXPECT_TRUE(file.name != "large.pdf" && cloud->MayListWhileUploading(file.name)) << file.name.toStdString();
    }
    client.Cancel(upload->operation);
}

TEST_P(ListTest, NamesThatAreUnsafeElsewhereAreNotListed)
{
    if (!cloud->RefusesUnsafeNames()) {
        GTEST_SKIP() << "The cloud has such names";
    }
    for (const char* name : {"back\\slash.pdf", "CON.pdf", "lpt1", "good.pdf"}) {
        cloud->Put(name, "content");
    }
    if (cloud->ListsControlCharacters()) {
        cloud->Put("new\nline.pdf", "content");
        cloud->Put("bell\a.pdf", "content");
    }
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    ASSERT_EQ(list->payload.size(), 1);
    EXPECT_EQ(list->payload[0].name, "good.pdf");
}

TEST_P(ListTest, ThousandsOfDocumentsAreListed)
{
    const int count = cloud->ManyDocuments();
    for (int number = 0; number < count; ++number) {
        cloud->Put(QString::number(number) + ".pdf", QByteArray::number(number));
    }
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    ASSERT_EQ(list->payload.size(), count);
    QSet<QString> ids;
    for (const CloudFile& file : qAsConst(list->payload)) {
        ids.insert(file.id);
        EXPECT_THAT(file.md5Hash, IsForeignHash(file.name.section('.', 0, 0).toUtf8()));
    }
    EXPECT_EQ(ids.size(), count);
}

TEST_P(ListTest, AnUnreachableCloudIsAnErrorAndNoEmptyList)
{
    cloud->Put("a.pdf", "content");
    ASSERT_TRUE(client.List()->Succeeds());
    cloud->Withdraw();
    const auto list = client.List();
    EXPECT_TRUE(list->Fails());
    EXPECT_THAT(list->payload, IsEmpty());
    cloud->Restore();
    EXPECT_TRUE(client.List()->Succeeds());
}

TEST_P(ListTest, TheEntryOfOneDocumentIsFetchedByItsId)
{
    cloud->Put("a.pdf", "content");
    const CloudFile listed = client.Entry("a.pdf");
    const auto info = client.Info(listed.id);
    ASSERT_TRUE(info->Succeeds());
    EXPECT_EQ(info->payload.id, listed.id);
    EXPECT_EQ(info->payload.name, "a.pdf");
    EXPECT_EQ(info->payload.size, 7);
    EXPECT_EQ(info->payload.modifiedAt, listed.modifiedAt);
    EXPECT_THAT(info->payload.md5Hash, testing::AnyOf(Md5Of("content"), IsForeignHash("content")));
}

TEST_P(ListTest, TheEntryOfAnUnknownDocumentIsAnError)
{
    cloud->Put("a.pdf", "content");
    const QString id = client.Entry("a.pdf").id;
    cloud->Take("a.pdf");
    for (const QString& unknown : {QString(), QString("unknown"), QString("../a.pdf"), QString("a.pdf"), id}) {
        const auto info = client.Info(unknown);
        EXPECT_TRUE(info->Fails()) << unknown.toStdString();
        EXPECT_EQ(info->payload.id, QString());
    }
}

TEST_P(ListTest, RemovalTakesTheDocumentAway)
{
    cloud->Put("a.pdf", "content");
    cloud->Put("b.pdf", "content");
    EXPECT_TRUE(client.Remove(client.Entry("a.pdf").id)->Succeeds());
    EXPECT_EQ(cloud->Content(), QStringList("b.pdf"));
}

TEST_P(ListTest, RemovalOfAnUnknownDocumentIsAnErrorAndRemovesNothing)
{
    cloud->Put("a.pdf", "content");
    cloud->Put("gone.pdf", "content");
    const QString id = client.Entry("gone.pdf").id;
    cloud->Take("gone.pdf");
    EXPECT_EQ(client.Remove(id)->Succeeds(), cloud->AcceptsRepeatedRemoval());
    for (const QString& unknown : {QString(), QString("unknown"), QString("."), QString("../a.pdf")}) {
        EXPECT_TRUE(client.Remove(unknown)->Fails()) << unknown.toStdString();
    }
    EXPECT_EQ(cloud->Content(), QStringList("a.pdf"));
}

TEST_P(ListTest, TheQuotaIsOfTheApplicationInMebibytes)
{
    cloud->Put("a.pdf", QByteArray(3 * 1024 * 1024 + 1, 'x'));
    const auto quota = client.Quota();
    ASSERT_TRUE(quota->Succeeds());
    ASSERT_EQ(quota->payload.keys(), QStringList("pdf"));
    const auto value = quota->payload["pdf"];
    switch (cloud->CountsInQuota()) {
    case CloudUnderTest::QuotaOf::Documents:
        EXPECT_EQ(value.used, 4);
        EXPECT_GE(value.total, 4);
        break;
    case CloudUnderTest::QuotaOf::Disk:
        EXPECT_GE(value.used, 4);
        EXPECT_GE(value.total, value.used);
        break;
    case CloudUnderTest::QuotaOf::Nothing:
        EXPECT_EQ(value.used, Social::NorlisCloudProtocol::unknownQuota);
        EXPECT_EQ(value.total, Social::NorlisCloudProtocol::unknownQuota);
        break;
    }
}

} // namespace Norlis::TestKit
