// Every request of an operation goes wrong once, the first, the second ... until there are no more. Whatever comes of
// it, each document is the old one or the new one, and who looks afterwards sees what is there.

#include <tests/support/Client.h>
#include <tests/support/Files.h>
#include <tests/support/Waiting.h>

#include <NorlisTestKit/FaultServer.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using Social::OAuth2::AuthInfo;
using testing::AnyOf;

struct Fault {
    const char* name;
    Misbehaviour misbehaviour;
    int times; ///< for how many requests, one after the other
};

void PrintTo(const Fault& fault, std::ostream* stream)
{
    *stream << fault.name;
}

/// Empty when the list does not come.
QString ReportId(Client& client)
{
    const auto list = client.List();
    return list->Succeeds() && !list->payload.isEmpty() ? list->payload.first().id : QString();
}

class NetworkAccessTest : public testing::TestWithParam<Fault> {
protected:
    static constexpr int mostRequests = 100;

    const QByteArray before = QByteArray(3000, 'b');
    const QByteArray after = QByteArray(5000, 'a');

    /// A server with a document "report.pdf" (before), and a file of that name (after) in a folder of its own.
    struct Scene {
        explicit Scene(const NetworkAccessTest& test)
        {
            server.Put("report.pdf", test.before);
            WriteFile(file, test.after);
            settings.serviceUrl = server.Address();
            settings.replaceableFiles = Social::OAuth2::ReplaceableFiles::All;
        }

        FaultServer server;
        const QTemporaryDir folder;
        const QString file = folder.filePath("report.pdf");
        AuthInfo settings;
    };

    /// What stands under names that a user sees.
    static QStringList Documents(const FaultServer& server)
    {
        QStringList names = server.Names();
        names.erase(std::remove_if(names.begin(), names.end(), [](const auto& name) { return name.startsWith('.'); }),
                    names.end());
        return names;
    }

    static void ExpectTrueList(Scene& scene)
    {
        Client observer(scene.settings, scene.server.Password());
        ASSERT_TRUE(observer.SignIn());
        const auto list = observer.List();
        ASSERT_TRUE(list->Succeeds());
        QStringList names;
        for (const CloudFile& entry : list->payload) {
            names << entry.name;
            EXPECT_EQ(entry.size, scene.server.Get(entry.name).value_or(QByteArray()).size());
        }
        names.sort();
        EXPECT_EQ(names, Documents(scene.server));
    }

    /// \param operation does it and tells whether it succeeded
    /// \param check     is told that, and looks at what came of it
    void FailEveryRequest(const std::function<bool(Client&, Scene&)>& operation,
                          const std::function<void(Scene&, bool)>& check)
    {
        int failures = 0;
        for (int request = 1; request < mostRequests; ++request) {
            SCOPED_TRACE("request " + std::to_string(request));
            Scene scene(*this);
            Client client(scene.settings, scene.server.Password());
            ASSERT_TRUE(client.SignIn());
            scene.server.ForgetRequests();
            scene.server.Misbehave(When("*").From(request).Times(GetParam().times), GetParam().misbehaviour);
            const bool hasSucceeded = operation(client, scene);
            const auto requests = scene.server.Requests();
            const bool wasHit = static_cast<int>(requests.size()) >= request;
            scene.server.BehaveAgain();
            failures += hasSucceeded ? 0 : 1;
            check(scene, hasSucceeded);
            ExpectTrueList(scene);
            // Unless cleaning up is what went wrong.
            if (GetParam().times == 1 && !(wasHit && requests[request - 1].method == "DELETE")) {
                EXPECT_TRUE(WaitUntil([&] { return scene.server.Names() == Documents(scene.server); }))
                    << "left behind: " << scene.server.Names().join(' ').toStdString();
            }
            if (!wasHit) {
                EXPECT_TRUE(hasSucceeded);
                EXPECT_GT(request, 1);
                if (GetParam().times == When::always) {
                    EXPECT_GT(failures, 0);
                }
                return;
            }
        }
        ADD_FAILURE() << "an operation of endless requests";
    }
};

INSTANTIATE_TEST_SUITE_P(
    Faults, NetworkAccessTest,
    testing::Values(Fault{"Reset", ResetsTheConnection(), 1}, Fault{"HangUp", ClosesWithoutAnswer(), 1},
                    Fault{"Error", AnswersWith(500), 1}, Fault{"LostAnswer", DoesItAndCloses(), 1},
                    Fault{"CutOff", CutsAfterBytes(100), 1}, Fault{"CutOffWithoutLength", CutsWithoutLength(100), 1},
                    Fault{"KeptInPart", KeepsOnly(1000), 1}, Fault{"ErrorsFromThenOn", AnswersWith(500), When::always}),
    [](const auto& info) { return info.param.name; });

TEST_P(NetworkAccessTest, NewDocumentIsWholeOrNotThere)
{
    FailEveryRequest(
        [](Client& client, Scene& scene) {
            scene.server.Remove("report.pdf");
            return client.Upload(scene.file)->Succeeds();
        },
        [this](Scene& scene, bool hasSucceeded) {
            for (const QString& name : Documents(scene.server)) {
                EXPECT_EQ(name, "report.pdf");
                EXPECT_TRUE(scene.server.Get(name) == after);
            }
            EXPECT_TRUE(!hasSucceeded || scene.server.Get("report.pdf") == after);
            EXPECT_TRUE(ReadFile(scene.file) == after) << "the user's own file";
        });
}

TEST_P(NetworkAccessTest, ReplacedDocumentIsTheOldOneOrTheNewOne)
{
    FailEveryRequest(
        [](Client& client, const Scene& scene) {
            const QString id = ReportId(client);
            return !id.isEmpty() && client.Upload(scene.file, id)->Succeeds();
        },
        [this](Scene& scene, bool hasSucceeded) {
            EXPECT_EQ(Documents(scene.server), QStringList("report.pdf"));
            EXPECT_THAT(scene.server.Get("report.pdf").value_or(QByteArray()), AnyOf(before, after));
            EXPECT_TRUE(!hasSucceeded || scene.server.Get("report.pdf") == after);
        });
}

TEST_P(NetworkAccessTest, FetchedDocumentIsTheOldOneOrTheNewOne)
{
    FailEveryRequest(
        [](Client& client, const Scene& scene) {
            const QString id = ReportId(client);
            return !id.isEmpty() && client.Download(id, scene.file)->Succeeds();
        },
        [this](Scene& scene, bool hasSucceeded) {
            EXPECT_EQ(FilesBelow(scene.folder.path()), QStringList("report.pdf"));
            EXPECT_TRUE(ReadFile(scene.file) == (hasSucceeded ? before : after));
            EXPECT_TRUE(scene.server.Get("report.pdf") == before);
        });
}

TEST_P(NetworkAccessTest, RemovedDocumentIsGoneOrWhole)
{
    FailEveryRequest(
        [](Client& client, Scene&) {
            const QString id = ReportId(client);
            return !id.isEmpty() && client.Remove(id)->Succeeds();
        },
        [this](Scene& scene, bool hasSucceeded) {
            const auto found = scene.server.Get("report.pdf");
            EXPECT_TRUE(hasSucceeded ? !found : !found || found == before);
        });
}

} // namespace

} // namespace Norlis::Test
