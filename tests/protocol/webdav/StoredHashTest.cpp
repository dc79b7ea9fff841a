#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

namespace Norlis::Test {

namespace {

/// Whether it stands for a version whose hash is not known.
bool IsVersion(const QString& hash)
{
    return hash.startsWith("version:");
}

const PropertyName storedHash = {"http://norlis.org/ns/", "content-md5"};
const PropertyName checksums = {"http://owncloud.org/ns", "checksums"};

/// Sets a property as another client would.
void SetProperty(FaultServer& server, const QString& name, const PropertyName& property, const QByteArray& text)
{
    server.With([&](MemoryTree& tree) {
        tree.Find(DecodedPath(server.CollectionPath() + EncodedPath(name.toUtf8())))->properties[property] = text;
    });
}

class StoredHashTest : public SignedInServiceTest<> {
protected:
    /// Uploads a document and waits until its hash is stored.
    QString Upload(const QString& name, const QByteArray& content)
    {
        const auto upload = client.Upload(LocalFile(name, content));
        EXPECT_TRUE(upload->Succeeds());
        EXPECT_TRUE(WaitUntil([&] {
            bool isStored = false;
            server.With([&](MemoryTree& tree) {
                const MemoryNode* node = tree.Find("/documents/" + name.toUtf8());
                isStored = node != nullptr && node->properties.count(storedHash) != 0;
            });
            return isStored;
        }));
        return upload->payload.id;
    }

    /// What somebody else is told, who knows only what the server does.
    QString HashForOthers(const QString& name)
    {
        Client other(settings, server.Password());
        EXPECT_TRUE(other.SignIn());
        const CloudFile file = other.Entry(name);
        const auto info = other.Info(file.id);
        EXPECT_TRUE(info->Succeeds());
        EXPECT_EQ(info->payload.md5Hash, file.md5Hash);
        return file.md5Hash;
    }
};

TEST_F(StoredHashTest, HashOfAnUploadIsThereForEverybody)
{
    Upload("a.pdf", "content");
    EXPECT_EQ(client.Entry("a.pdf").md5Hash, Md5Of("content"));
    EXPECT_EQ(HashForOthers("a.pdf"), Md5Of("content"));
}

TEST_F(StoredHashTest, HashOfContentThatWasReplacedCountsNoMore)
{
    const QString id = Upload("a.pdf", "content");
    server.Put("a.pdf", "CONTENT"); // as long as before, and the property stays
    EXPECT_TRUE(IsVersion(HashForOthers("a.pdf")));
    EXPECT_EQ(client.Info(id)->Succeeds(), true);
    EXPECT_TRUE(IsVersion(client.Entry("a.pdf").md5Hash));
}

TEST_F(StoredHashTest, HashThatDoesNotNameItsVersionCountsNothing)
{
    server.Put("a.pdf", "content");
    const QByteArray md5 = Md5Of("content").toLatin1();
    for (const QByteArray& text : {md5, md5 + ' ', md5 + " \"another\"", QByteArray("short \"e2\""), QByteArray(" ")}) {
        SetProperty(server, "a.pdf", storedHash, text);
        EXPECT_TRUE(IsVersion(HashForOthers("a.pdf"))) << text.constData();
    }
    QByteArray etag;
    server.With([&](MemoryTree& tree) { etag = tree.Find("/documents/a.pdf")->etag; });
    SetProperty(server, "a.pdf", storedHash, md5.toUpper() + ' ' + etag);
    EXPECT_EQ(HashForOthers("a.pdf"), Md5Of("content"));
}

TEST_F(StoredHashTest, HashIsRememberedWhereTheServerKeepsNone)
{
    QString name = "a.pdf";
    for (const Misbehaviour& refusal : {AnswersWith(405), HasInnerStatus(403)}) {
        name.prepend('a');
        server.BehaveAgain();
        server.Misbehave(When("PROPPATCH").Always(), refusal);
        Client user(settings, server.Password());
        ASSERT_TRUE(user.SignIn());
        const auto upload = user.Upload(LocalFile(name, "content"));
        ASSERT_TRUE(upload->Succeeds());
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(user.Entry(name).md5Hash, Md5Of("content"));
            const auto info = user.Info(upload->payload.id);
            ASSERT_TRUE(info->Succeeds());
            EXPECT_EQ(info->payload.md5Hash, Md5Of("content"));
        }
        server.Put(name, "other content");
        EXPECT_TRUE(IsVersion(user.Entry(name).md5Hash));
    }
}

class NextcloudHashTest : public SignedInServiceTest<NextcloudLikeServer> {};

TEST_F(NextcloudHashTest, ChecksumOfTheServerIsTakenWhateverElseItNames)
{
    server.Put("a.pdf", "content");
    const QByteArray md5 = Md5Of("content").toLatin1();
    for (const QByteArray& text : {"MD5:" + md5, "SHA1:0123 MD5:" + md5 + " ADLER32:1", "md5:" + md5.toUpper()}) {
        SetProperty(server, "a.pdf", checksums, text);
        EXPECT_EQ(client.Entry("a.pdf").md5Hash, Md5Of("content")) << text.constData();
    }
    for (const QByteArray& text : {QByteArray("SHA1:0123"), QByteArray("MD5:12"), "SHA1:" + md5, QByteArray()}) {
        Client other(settings, server.Password());
        ASSERT_TRUE(other.SignIn());
        SetProperty(server, "a.pdf", checksums, text);
        EXPECT_TRUE(IsVersion(other.Entry("a.pdf").md5Hash)) << text.constData();
    }
}

} // namespace

} // namespace Norlis::Test
