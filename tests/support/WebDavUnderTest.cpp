#include "WebDavUnderTest.h"

#include "Files.h"
#include "Waiting.h"

#include <files/AtomicFile.h>

#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include <fcntl.h>
#include <sys/stat.h>

namespace Norlis::Test {

namespace {

/// Ends the servers with the tests, before the folder for temporary files goes.
class Servers : public testing::Environment {
public:
    WebDavServer& Get(ServerKind kind)
    {
        auto& server = servers[kind];
        if (!server) {
            server = std::make_unique<WebDavServer>(kind);
        } else if (!server->IsRunning()) {
            server->Start(); // a test that failed has stopped it
        }
        return *server;
    }

    void TearDown() override
    {
        servers.clear();
    }

private:
    std::map<ServerKind, std::unique_ptr<WebDavServer>> servers;
};

Servers& TheServers()
{
    static auto* const servers = static_cast<Servers*>(testing::AddGlobalTestEnvironment(new Servers));
    return *servers;
}

/// Known to GoogleTest before the tests begin.
const Servers& early = TheServers();

/// With blanks and more that an address has to escape.
QString NextCollection()
{
    static int count = 0;
    return QString("Zo\u00eb's documents #") + QString::number(++count);
}

} // namespace

WebDavServer& SharedServer(ServerKind kind)
{
    return TheServers().Get(kind);
}

WebDavUnderTest::WebDavUnderTest(WebDavServer& server)
    : server(server),
      collection(NextCollection()),
      folder(server.MakeCollection(collection))
{
    server.ForgetLog();
}

WebDavUnderTest::~WebDavUnderTest()
{
    QDir(folder).removeRecursively();
}

Social::OAuth2::AuthInfo WebDavUnderTest::Settings()
{
    Social::OAuth2::AuthInfo settings;
    settings.serviceUrl = server.Address(collection);
    return settings;
}

QString WebDavUnderTest::Token()
{
    return server.Password();
}

void WebDavUnderTest::Put(const QString& name, const QByteArray& content)
{
    const QByteArray path = QFile::encodeName(PathOf(name));
    struct stat before = {};
    const bool wasThere = stat(path.constData(), &before) == 0;
    WriteFile(PathOf(name), content);

    // Dates in whole seconds and lengths are all that some servers tell changes by, so this one comes a second later.
    struct stat after = {};
    ASSERT_EQ(stat(path.constData(), &after), 0);
    if (wasThere && after.st_mtim.tv_sec <= before.st_mtim.tv_sec) {
        const timespec later = {before.st_mtim.tv_sec + 1, after.st_mtim.tv_nsec};
        const std::array<timespec, 2> times = {later, later};
        ASSERT_EQ(utimensat(AT_FDCWD, path.constData(), times.data(), 0), 0);
    }
}

bool WebDavUnderTest::PutAsOthers(const QString& name, const QByteArray& content)
{
    QUrl address = server.Address(collection);
    address.setPath(address.path() + (address.path().endsWith('/') ? "" : "/") + name);
    address.setPassword(server.Password());
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> reply(network.put(QNetworkRequest(address), content));
    EXPECT_TRUE(WaitUntil([&] { return reply->isFinished(); }));
    const bool isTaken = reply->error() == QNetworkReply::NoError;
    // One server answers some milliseconds before the content is in place.
    constexpr int longest = 1000;
    if (isTaken) {
        WaitUntil([&] { return Get(name) == content; }, longest);
    }
    return isTaken;
}

void WebDavUnderTest::PutLarge(const QString& name, qint64 size)
{
    WriteSparseFile(PathOf(name), size);
}

std::optional<QByteArray> WebDavUnderTest::Get(const QString& name)
{
    return ReadFile(PathOf(name));
}

void WebDavUnderTest::Take(const QString& name)
{
    ASSERT_TRUE(QFile::remove(PathOf(name)));
}

QStringList WebDavUnderTest::Content()
{
    QStringList files = FilesBelow(folder);
    const auto isTheServers = [](const QString& path) {
        // Apache's, SabreDAV's and nephele's properties, and what Apache is about to receive.
        return path.startsWith(".DAV/") || path == ".sabredav" || path.endsWith(".nephelemeta") ||
               path.startsWith(".davfs.tmp");
    };
    files.erase(std::remove_if(files.begin(), files.end(), isTheServers), files.end());
    return files;
}

void WebDavUnderTest::Withdraw()
{
    server.Stop();
}

void WebDavUnderTest::Restore()
{
    server.Start();
}

bool WebDavUnderTest::HashesForeignDocuments() const
{
    return false;
}

bool WebDavUnderTest::KeepsHashes() const
{
    // Those keep no properties, or lose them with the temporary name.
    return !IsKind({ServerKind::Nginx, ServerKind::Rclone, ServerKind::Go, ServerKind::NpmWebdav});
}

bool WebDavUnderTest::ReportsCreationTime() const
{
    return IsKind({ServerKind::Apache, ServerKind::ApacheDigest, ServerKind::Tomcat, ServerKind::Nephele,
                   ServerKind::NpmWebdav, ServerKind::Chezdav});
}

TestKit::CloudUnderTest::QuotaOf WebDavUnderTest::CountsInQuota() const
{
    return IsKind({ServerKind::Sabre, ServerKind::Nephele, ServerKind::Chezdav}) ? QuotaOf::Disk : QuotaOf::Nothing;
}

bool WebDavUnderTest::ListsNamesThatBeginWithADot() const
{
    return !IsKind({ServerKind::Nginx});
}

int WebDavUnderTest::LongestName() const
{
    // nephele adds twelve bytes for the file with the properties.
    return IsKind({ServerKind::Nephele}) ? 239 : ServiceUnderTest::LongestName();
}

bool WebDavUnderTest::ListsPercentSignsAndAmpersands() const
{
    return !IsKind({ServerKind::Chezdav});
}

bool WebDavUnderTest::ListsControlCharacters() const
{
    // rclone shows other characters in their place, and the listings of the others are no XML then.
    return !IsKind({ServerKind::Nginx, ServerKind::Rclone, ServerKind::NpmWebdav, ServerKind::Chezdav});
}

bool WebDavUnderTest::MayListWhileUploading(const QString& name) const
{
    return !Files::AtomicFile::IsTemporaryName(name); // a server may list unfinished files of its own
}

bool WebDavUnderTest::AcceptsRepeatedRemoval() const
{
    return true; // an answer may have been lost, and the document be gone by the first request
}

bool WebDavUnderTest::RestartsDownloadOnChange() const
{
    return true;
}

bool WebDavUnderTest::NoticesChangesByItself() const
{
    return false; // a server is not asked for every picture
}

bool WebDavUnderTest::IsQuietAfterDestruction() const
{
    return false; // a server takes a moment to see that a connection is gone
}

bool WebDavUnderTest::TellsWritersApart() const
{
    // The first two have no locks, those of the third keep out only who asks for one.
    return !IsKind({ServerKind::Nginx, ServerKind::Sabre, ServerKind::NpmWebdav});
}

qint64 WebDavUnderTest::LargeSize() const
{
    return IsKind({ServerKind::Sabre}) ? 64 * MiB : 256 * MiB; // PHP's server holds all of an upload in memory
}

int WebDavUnderTest::ManyDocuments() const
{
    // Without its cache, rclone reads the folder for each entry, and the others read several files.
    return IsKind({ServerKind::Rclone, ServerKind::Nephele, ServerKind::NpmWebdav}) ? 300
                                                                                    : ServiceUnderTest::ManyDocuments();
}

QByteArray WebDavUnderTest::Log() const
{
    return server.Log();
}

WebDavServer& WebDavUnderTest::Server() const
{
    return server;
}

QString WebDavUnderTest::PathOf(const QString& name) const
{
    return folder + '/' + name;
}

bool WebDavUnderTest::IsKind(std::initializer_list<ServerKind> kinds) const
{
    return std::find(kinds.begin(), kinds.end(), server.Kind()) != kinds.end();
}

} // namespace Norlis::Test
