// Every access to files goes wrong once, the first, the second ... until there are no more. Whatever comes of it, each
// file and the stored list are the old ones or the new ones, and what reports success has done it.

#include <tests/support/Client.h>
#include <tests/support/FailingFileAccess.h>
#include <tests/support/Files.h>

#include <host/store/SqliteCloudInfoStorage.h>

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using testing::AnyOf;
using Records = std::map<std::string, std::map<std::string, std::string>>;

constexpr int mostAccesses = 500;

/// Lets the n-th access to the files below a folder fail, n = 0, 1, 2 ... until there is none.
/// \param operation does it and tells whether it succeeded
/// \param check     is told that
void FailEveryAccess(const std::function<void(const QString& folder)>& prepare,
                     const std::function<bool(const QString& folder)>& operation,
                     const std::function<void(const QString& folder, bool hasSucceeded)>& check)
{
    int failures = 0;
    for (int number = 0; number < mostAccesses; ++number) {
        SCOPED_TRACE("access " + std::to_string(number));
        const QTemporaryDir folder;
        prepare(folder.path());
        bool hasSucceeded = false;
        bool hasHappened = false;
        {
            const FailingFileAccess failing(folder.path(), number);
            hasSucceeded = operation(folder.path());
            hasHappened = failing.HasHappened();
        }
        check(folder.path(), hasSucceeded);
        failures += hasSucceeded ? 0 : 1;
        if (!hasHappened) {
            testing::Test::RecordProperty("accesses", number);
            EXPECT_TRUE(hasSucceeded);
            EXPECT_GT(failures, 0);
            return;
        }
    }
    ADD_FAILURE() << "an operation of endless accesses";
}

/// A folder as the cloud, with a document "report.pdf" (before), and a file of that name (after) in another folder.
class FileAccessTest : public testing::Test {
protected:
    const QByteArray before = QByteArray(300'000, 'b');
    const QByteArray after = QByteArray(500'000, 'a');

    void Prepare(const QString& folder) const
    {
        MakeFolder(folder + "/cloud");
        MakeFolder(folder + "/local");
        WriteFile(folder + "/cloud/report.pdf", before);
        WriteFile(folder + "/local/report.pdf", after);
    }

    static Social::OAuth2::AuthInfo Settings(const QString& folder)
    {
        Social::OAuth2::AuthInfo settings;
        settings.serviceUrl = QUrl::fromLocalFile(folder + "/cloud");
        settings.replaceableFiles = Social::OAuth2::ReplaceableFiles::All;
        return settings;
    }

    /// Empty when the list does not come.
    static QString ReportId(Client& client)
    {
        const auto list = client.List();
        return list->Succeeds() && !list->payload.isEmpty() ? list->payload.first().id : QString();
    }

    static QStringList Documents(const QString& folder)
    {
        return QDir(folder + "/cloud").entryList(QDir::Files, QDir::Name);
    }

    static void ExpectTrueList(const QString& folder)
    {
        Client observer(Settings(folder));
        ASSERT_TRUE(observer.SignIn());
        const auto list = observer.List();
        ASSERT_TRUE(list->Succeeds());
        QStringList names;
        for (const CloudFile& entry : list->payload) {
            names << entry.name;
            const QByteArray content = ReadFile(folder + "/cloud/" + entry.name).value_or(QByteArray());
            EXPECT_EQ(entry.size, content.size());
            EXPECT_THAT(entry.md5Hash, AnyOf(QString(), Md5Of(content)));
        }
        names.sort();
        EXPECT_EQ(names, Documents(folder));
    }
};

TEST_F(FileAccessTest, NewDocumentIsWholeOrNotThere)
{
    FailEveryAccess(
        [this](const QString& folder) {
            Prepare(folder);
            QFile::remove(folder + "/cloud/report.pdf");
        },
        [](const QString& folder) {
            Client client(Settings(folder));
            return client.SignIn() && client.Upload(folder + "/local/report.pdf")->Succeeds();
        },
        [this](const QString& folder, bool hasSucceeded) {
            for (const QString& name : Documents(folder)) {
                EXPECT_EQ(name, "report.pdf");
                EXPECT_TRUE(ReadFile(folder + "/cloud/" + name) == after);
            }
            EXPECT_EQ(Documents(folder).size(), hasSucceeded ? 1 : 0);
            EXPECT_TRUE(ReadFile(folder + "/local/report.pdf") == after) << "the user's own file";
            ExpectTrueList(folder);
        });
}

TEST_F(FileAccessTest, ReplacedDocumentIsTheOldOneOrTheNewOne)
{
    FailEveryAccess([this](const QString& folder) { Prepare(folder); },
                    [](const QString& folder) {
                        Client client(Settings(folder));
                        const QString id = client.SignIn() ? ReportId(client) : QString();
                        return !id.isEmpty() && client.Upload(folder + "/local/report.pdf", id)->Succeeds();
                    },
                    [this](const QString& folder, bool hasSucceeded) {
                        EXPECT_EQ(Documents(folder), QStringList("report.pdf"));
                        EXPECT_TRUE(ReadFile(folder + "/cloud/report.pdf") == (hasSucceeded ? after : before));
                        ExpectTrueList(folder);
                    });
}

TEST_F(FileAccessTest, FetchedDocumentIsTheOldOneOrTheNewOne)
{
    FailEveryAccess([this](const QString& folder) { Prepare(folder); },
                    [](const QString& folder) {
                        Client client(Settings(folder));
                        const QString id = client.SignIn() ? ReportId(client) : QString();
                        return !id.isEmpty() && client.Download(id, folder + "/local/report.pdf")->Succeeds();
                    },
                    [this](const QString& folder, bool hasSucceeded) {
                        EXPECT_TRUE(ReadFile(folder + "/local/report.pdf") == (hasSucceeded ? before : after));
                        EXPECT_TRUE(ReadFile(folder + "/cloud/report.pdf") == before);
                        ExpectTrueList(folder);
                    });
}

Records AllWith(const std::string& text)
{
    Records records;
    for (int number = 0; number < 20; ++number) {
        records["document " + std::to_string(number)] = {{"name", text}, {"note", std::string(2000, text[0])}};
    }
    return records;
}

void Save(Host::SqliteCloudInfoStorage& storage, const Records& records)
{
    storage.RemoveRecord("gone");
    for (const auto& [id, fields] : records) {
        for (const auto& [key, value] : fields) {
            storage.SetValue(id, key, value);
        }
    }
    storage.Commit();
}

TEST(StoredListTest, IsTheOldOneOrTheNewOne)
{
    const Records before = AllWith("old");
    const Records after = AllWith("new");
    const auto file = [](const QString& folder) { return folder + "/documents.sqlite"; };
    FailEveryAccess(
        [&](const QString& folder) {
            Host::SqliteCloudInfoStorage storage(file(folder));
            Save(storage, before);
        },
        [&](const QString& folder) {
            try {
                Host::SqliteCloudInfoStorage storage(file(folder));
                Save(storage, after);
                return true;
            } catch (const std::runtime_error&) {
                return false;
            }
        },
        [&](const QString& folder, bool hasSucceeded) {
            const Records found = Host::SqliteCloudInfoStorage(file(folder)).ReadAll();
            EXPECT_TRUE(hasSucceeded ? found == after : found == before || found == after);
        });
}

} // namespace

} // namespace Norlis::Test
