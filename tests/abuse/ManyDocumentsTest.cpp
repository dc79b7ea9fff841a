#include <tests/support/Rounds.h>
#include <tests/support/SessionTest.h>
#include <tests/support/UsedHeap.h>

#include <QTest>

#include <algorithm>

namespace Norlis::Test {

namespace {

const int manyDocuments = IsThorough() ? 100'000 : 10'000;
constexpr int timeout = 100'000;             // milliseconds; only a failing test waits for so long
constexpr qint64 mostPerDocument = 2 * 1024; // bytes

QList<CloudEntry> ManyEntries()
{
    QList<CloudEntry> entries;
    CloudEntry entry = EntryOf("document");
    for (int number = 0; number < manyDocuments; ++number) {
        entry.id = QString::number(number);
        entry.name = entry.id + ".pdf";
        entry.size = number + 1;
        entries.append(entry);
    }
    return entries;
}

class ManyDocumentsTest : public SessionTest {
protected:
    /// Returns what the session says of it.
    std::string RefreshMany(const QList<CloudEntry>& entries)
    {
        Events();
        protocol->calls.clear();
        session->Refresh();
        EXPECT_TRUE(WaitForCalls("retriveFileList", 1));
        Answer("retriveFileList", Social::Success, entries);
        EXPECT_TRUE(QTest::qWaitFor([this] { return CountOf("ListRefreshed") == 1; }, timeout));
        for (const qint64 id : protocol->Running()) {
            session->Protocol().cancelOperation(id); // the previews that nobody will answer
        }
        return Events().back();
    }

    /// Each document once. A list that was loaded has an order of its own.
    void ExpectHeld(QList<CloudEntry> entries, bool isLoaded)
    {
        if (isLoaded) {
            std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.id > b.id; });
        }
        auto& documents = session->Documents();
        ASSERT_EQ(documents.FilesCount(), entries.size());
        for (int index = 0; index < entries.size(); ++index) {
            ASSERT_EQ(documents.GetDocumentId(index), entries[index].id);
            ASSERT_EQ(documents.GetDocumentName(index), entries[index].name);
            ASSERT_EQ(documents.GetFileSize(index), entries[index].size);
        }
    }
};

// A merge after a restart looks at every document, and the list finds each by walking from its front: with so many that
// takes minutes, in slices between which the event loop is free. Here it would only take time.
TEST_F(ManyDocumentsTest, AreListedMergedSavedAndLoadedInBoundedMemory)
{
    auto entries = ManyEntries();
    RefreshMany(entries);
    ExpectHeld(entries, false);

    for (const int number : {7, manyDocuments / 2, manyDocuments - 1}) {
        entries[number].size += 5;
        entries[number].md5Hash = QString::fromStdString(HashOf("other content"));
    }
    entries.removeAt(manyDocuments / 3);
    entries.prepend(EntryOf("new"));
    const auto middle = std::to_string(manyDocuments / 2);
    EXPECT_EQ(RefreshMany(entries), "ListRefreshed(+new, ~7 " + middle + ' ' + std::to_string(manyDocuments - 1) +
                                        ", -" + std::to_string(manyDocuments / 3) + ')');
    ExpectHeld(entries, false);
    ASSERT_TRUE(Held(QString::fromStdString(middle)));
    EXPECT_EQ(Held(QString::fromStdString(middle))->GetRedactableCloudInfo()->GetMd5Hash(), HashOf("other content"));

    session.reset();
    const qint64 before = UsedHeap();
    Open();
    const qint64 perDocument = (UsedHeap() - before) / manyDocuments;
    RecordProperty("bytesPerDocument", static_cast<int>(perDocument));
    EXPECT_GT(perDocument, 100) << "nothing was measured";
    EXPECT_LT(perDocument, mostPerDocument);
    ExpectHeld(entries, true);
}

} // namespace

} // namespace Norlis::Test
