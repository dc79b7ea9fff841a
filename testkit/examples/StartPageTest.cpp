// A host's start page over the file list: what the user sees when the record store fails.

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>

#include <QTest>

using namespace Norlis;
using List = PDF::Cloud::NorlisCloudFilesManager;

struct StartPage { // the host's
    explicit StartPage(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& store)
    {
        try {
            list = std::make_unique<List>(store, std::make_shared<TestKit::FakeFileSystem>(),
                                          std::make_shared<TestKit::CountingHashCalculator>());
            for (int row = 0; row < list->FilesCount(); ++row) {
                rows << list->GetDocumentName(row);
            }
        } catch (const std::exception&) {
            rows << "Your documents cannot be shown";
        }
    }
    std::unique_ptr<List> list;
    QStringList rows;
};

class StartPageTest : public QObject {
    Q_OBJECT
    std::shared_ptr<TestKit::RecordingStore> store;
private slots:
    void init() // the editor's last run left two documents
    {
        store = std::make_shared<TestKit::RecordingStore>();
        StartPage lastRun(store);
        lastRun.list->Add(TestKit::RecordOf("plan"));
        lastRun.list->Add(TestKit::RecordOf("bill"));
    }
    void SaysThatTheStoreCannotBeRead()
    {
        store->Misbehave("ReadAll", TestKit::StoreFault::Throws);
        QCOMPARE(StartPage(store).rows, QStringList("Your documents cannot be shown"));
        QCOMPARE(StartPage(store).rows.size(), 2); // nothing was lost
        store->records["plan"]["cloud_size"] = "no number";
        QCOMPARE(StartPage(store).rows, QStringList("Your documents cannot be shown"));
    }
    void KeepsWhatWasThereWhenTheDiskIsFull()
    {
        store->Misbehave(TestKit::When("SetValue").Always(), TestKit::StoreFault::Forgets);
        StartPage(store).list->Add(TestKit::RecordOf("letter"));
        QCOMPARE(StartPage(store).rows.size(), 2);
    }
};

QTEST_GUILESS_MAIN(StartPageTest)
#include "StartPageTest.moc"
