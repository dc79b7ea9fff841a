#include <tests/support/ServiceTest.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class ListingFaultTest : public SignedInServiceTest<> {
protected:
    /// Documents of a list fetched now, in its order.
    QList<CloudFile> List()
    {
        const auto list = client.List();
        EXPECT_TRUE(list->Succeeds()) << LastReason(client);
        return list->payload;
    }

    QStringList Listed()
    {
        QStringList names;
        for (const CloudFile& file : List()) {
            names << file.name;
        }
        return names;
    }

    /// Listing documents of these properties, given as XML.
    QList<CloudFile> ListedAs(const QByteArrayList& properties)
    {
        QByteArray xml = "<d:multistatus xmlns:d=\"DAV:\" xmlns:oc=\"http://owncloud.org/ns\">" +
                         Response("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>");
        for (int number = 0; number < properties.size(); ++number) {
            xml += Response("/documents/" + QByteArray::number(number) + ".pdf", properties[number]);
        }
        server.BehaveAgain();
        server.Misbehave(When("PROPFIND").Always(), SendsXml(xml + "</d:multistatus>"));
        return List();
    }

    static QByteArray Response(const QByteArray& href, const QByteArray& properties,
                               const QByteArray& status = "200 OK")
    {
        return "<d:response><d:href>" + href + "</d:href><d:propstat><d:prop>" + properties +
               "</d:prop><d:status>HTTP/1.1 " + status + "</d:status></d:propstat></d:response>";
    }
};

TEST_F(ListingFaultTest, ListThatGoesOnWithBlanksForEverIsGivenUp)
{
    settings.silenceTimeout = shortTimeout;
    Client impatient(settings, server.Password());
    ASSERT_TRUE(impatient.SignIn());
    const QByteArray list = "<d:multistatus xmlns:d=\"DAV:\">" +
                            Response("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                            Response("/documents/a.pdf", "<d:getetag>\"1\"</d:getetag>");
    for (const QByteArray& end : {QByteArray(), QByteArray("</d:multistatus>")}) {
        server.Misbehave("PROPFIND", {[&](Wire& wire) {
                             wire.Send("HTTP/1.1 207 Multi-Status\r\n\r\n" + list + end);
                             wire.SendSlowly(QByteArray(500, ' '), 1, shortTimeout / 10);
                         }});
        EXPECT_TRUE(impatient.List()->Fails());
        EXPECT_THAT(LastReason(impatient), HasSubstr("has not finished its answer in 3.6 seconds"));
        server.BehaveAgain();
    }
}

TEST_F(ListingFaultTest, WhatIsNoWholeListIsNeverAnEmptyOne)
{
    server.Put("a.pdf", "content");
    const QByteArray open = "<d:multistatus xmlns:d=\"DAV:\">";
    const std::vector<std::pair<Misbehaviour, std::string>> answers = {
        {CutsAfterBytes(300), "connection broke"},
        {CutsInChunks(300), "connection broke"},
        {CutsWithoutLength(300), "cut off"},
        {ClaimsLength(1'000'000), "connection broke"},
        {SendsXml(open), "cut off"},
        {SendsXml(open + "<d:response><d:href>/documents/</d:href></d:multistatus>"), "damaged"},
        {SendsXml(open + "\x01</d:multistatus>"), "damaged"},
        {SendsXml("<multistatus/>"), "not a WebDAV listing"},
        {SendsXml(open + "</d:multistatus>"), "for another folder"},
        {Lists({"/elsewhere/", "/elsewhere/a.pdf"}), "for another folder"},
        {Lists({"/documents/deeper/", "/documents/deeper/a.pdf"}), "for another folder"},
        {SendsAnXmlBomb(), "not a WebDAV listing"},
        {NestsElements(100'000), "nested too deeply"},
        {ShowsAPage(200), "not a WebDAV listing"},
        {ShowsAPage(207), "not a WebDAV listing"},
        {AnswersWith(207), "not a WebDAV listing"},
        {AnswersWith(204), "not a WebDAV listing"},
        {AnswersWith(403), "(403)"},
        {HasInnerStatus(403), "for another folder"},
        {SendsGzip(), "not a WebDAV listing"},
    };
    int number = 0;
    for (const auto& [answer, reason] : answers) {
        server.BehaveAgain();
        server.Misbehave(When("PROPFIND").Always(), answer);
        client.failures.clear();
        const auto list = client.List();
        EXPECT_TRUE(list->Fails()) << number;
        EXPECT_THAT(list->payload, IsEmpty());
        ASSERT_EQ(client.failures.size(), 1U) << number;
        EXPECT_THAT(LastReason(client), HasSubstr(reason)) << number;
        EXPECT_EQ(LastFailure(client).what, "Fetching the list of documents");
        EXPECT_NE(LastAdvice(client), "") << number;
        ++number;
    }
    server.BehaveAgain();
    EXPECT_EQ(Listed(), QStringList("a.pdf"));
}

TEST_F(ListingFaultTest, ListThatIsSentInUnusualWaysIsRead)
{
    server.Put("a.pdf", "content");
    for (const Misbehaviour& way : {SendsInChunks(7), SendsUntilClose(), Drips(200, 1), AnswersAfter(103)}) {
        server.BehaveAgain();
        server.Misbehave(When("PROPFIND").Always(), way);
        EXPECT_EQ(Listed(), QStringList("a.pdf"));
    }
}

TEST_F(ListingFaultTest, ListThatBreaksOffIsAskedForOnceMore)
{
    server.Put("a.pdf", "content");
    server.Put("b.pdf", "content");
    server.Misbehave("PROPFIND", CutsAfterBytes(1500));
    EXPECT_EQ(Listed(), QStringList({"a.pdf", "b.pdf"}));
    server.ForgetRequests();
    server.Misbehave(When("PROPFIND").Always(), CutsAfterBytes(1500));
    EXPECT_TRUE(client.List()->Fails());
    EXPECT_EQ(server.Count("PROPFIND"), 2);
}

TEST_F(ListingFaultTest, OneDocumentThatIsKeptBackMakesTheListIncomplete)
{
    server.Misbehave("PROPFIND", SendsXml("<d:multistatus xmlns:d=\"DAV:\">" +
                                          Response("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                                          "<d:response><d:href>/documents/a.pdf</d:href><d:status>HTTP/1.1 403 "
                                          "Forbidden</d:status></d:response></d:multistatus>"));
    EXPECT_TRUE(client.List()->Fails());
    EXPECT_THAT(LastReason(client), HasSubstr("withholds the details of 1"));
}

TEST_F(ListingFaultTest, OneDocumentThatIsNotDescribedMakesTheListIncomplete)
{
    for (const char* status : {"", "fine", "HTTP/1.1"}) {
        server.Misbehave("PROPFIND",
                         SendsXml("<d:multistatus xmlns:d=\"DAV:\">" +
                                  Response("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                                  "<d:response><d:href>/documents/a.pdf</d:href><d:propstat><d:prop/><d:status>" +
                                  status + "</d:status></d:propstat></d:response></d:multistatus>"));
        EXPECT_TRUE(client.List()->Fails()) << status;
        EXPECT_THAT(LastReason(client), HasSubstr("withholds the details of 1"));
    }
}

TEST_F(ListingFaultTest, AnEntryThatMayBeAnyDocumentTakesNoneAway)
{
    server.Put("a.pdf", "content");
    server.Put("b.pdf", "content");
    server.Put("c.pdf", "content");
    const CloudFile known = client.Entry("b.pdf");
    for (const QByteArray& href : {QByteArray(), QByteArray("b.pdf"), QByteArray("/documents/%2e%2e")}) {
        server.BehaveAgain();
        server.Misbehave(When("PROPFIND").Always(),
                         SendsXml("<d:multistatus xmlns:d=\"DAV:\">" +
                                  Response("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                                  Response("/documents/a.pdf", "<d:getetag>\"new\"</d:getetag>") +
                                  Response(href, "<d:resourcetype/>") + "</d:multistatus>"));
        QStringList names = Listed();
        names.sort();
        EXPECT_EQ(names, QStringList({"a.pdf", "b.pdf", "c.pdf"})) << href.constData();
    }
    server.BehaveAgain();
    server.Remove("c.pdf");
    EXPECT_EQ(Listed(), QStringList({"a.pdf", "b.pdf"}));
    EXPECT_EQ(client.Entry("b.pdf").id, known.id);
}

TEST_F(ListingFaultTest, DirectMembersWithSafeNamesAreListed)
{
    server.Misbehave(When("PROPFIND").Always(), Lists({"/documents/",
                                                       "/documents/r%c3%a9sum%C3%a9.pdf",
                                                       "/documents/a%2520b.pdf",
                                                       "/documents/a#b.pdf",
                                                       "/documents/a?b=c.pdf",
                                                       "/documents/a&amp;b;c=d.pdf",
                                                       "http://proxy.example:8080/documents/absolute.pdf",
                                                       "%2fdocuments/relative.pdf",
                                                       "/documents/..%2fabove.pdf",
                                                       "/documents/%2e%2e",
                                                       "/documents/../above.pdf",
                                                       "/documents/a%2fb.pdf",
                                                       "/documents/nul%00.pdf",
                                                       "/documents/line%0afeed.pdf",
                                                       "/documents/back%5cslash.pdf",
                                                       "/documents/CON.pdf",
                                                       "/documents/%ff.pdf",
                                                       "/documents/deeper/c.pdf",
                                                       "/documents2/other.pdf",
                                                       "/other.pdf",
                                                       "",
                                                       "/documents",
                                                       "/documents/last.pdf"}));
    EXPECT_EQ(Listed(), QStringList({"r\u00e9sum\u00e9.pdf", "a%20b.pdf", "a#b.pdf", "a?b=c.pdf", "a&b;c=d.pdf",
                                     "absolute.pdf", "last.pdf"}));
    for (const CloudFile& file : List()) {
        EXPECT_THAT(file.id.toStdString(), MatchesRegex("[a-z2-7]{15}"));
        EXPECT_EQ(List()[0].id, List()[0].id);
    }
    server.BehaveAgain();
    for (const QString& name : {QString("a#b.pdf"), QString("a?b=c.pdf"), QString("a%20b.pdf")}) {
        server.Put(name, name.toUtf8());
        ASSERT_TRUE(client.Download(client.Entry(name).id, Local("target"))->Succeeds());
        EXPECT_EQ(ReadFile(Local("target")), name.toUtf8());
        ASSERT_TRUE(QFile::remove(Local("target")));
    }
}

TEST_F(ListingFaultTest, CollectionsAndFilesInTheMakingAreNotListed)
{
    server.With([](MemoryTree& tree) { tree.MakeCollection("/documents/folder"); });
    server.Put("a.pdf", "content");
    server.Put(".norlis-0123456789abcdef.part", "content");
    EXPECT_EQ(Listed(), QStringList("a.pdf"));
}

TEST_F(ListingFaultTest, TwoPrefixesForOneNamespaceAreTheSame)
{
    server.Misbehave(
        "PROPFIND",
        SendsXml(R"(<D:multistatus xmlns:D="DAV:" xmlns:ns0="DAV:"><D:response xmlns:lp1="DAV:"><D:href>/documents/)"
                 R"(</D:href><D:propstat><D:prop><lp1:resourcetype><D:collection/></lp1:resourcetype></D:prop>)"
                 R"(<D:status>HTTP/1.1 200 OK</D:status></D:propstat></D:response><D:response xmlns:lp1="DAV:">)"
                 R"(<D:href>/documents/a.pdf</D:href><D:propstat><D:prop><lp1:resourcetype/><lp1:getcontentlength>7)"
                 R"(</lp1:getcontentlength></D:prop><D:status>HTTP/1.1 200 OK</D:status></D:propstat><D:propstat>)"
                 R"(<D:prop><ns0:getetag/></D:prop><D:status>HTTP/1.1 404 Not Found</D:status></D:propstat>)"
                 R"(</D:response></D:multistatus>)"));
    const QList<CloudFile> files = List();
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files[0].size, 7);
}

TEST_F(ListingFaultTest, IdOfTheServerIsTakenIfItIsANumber)
{
    const auto files =
        ListedAs({"<oc:fileid>4711</oc:fileid>", "<oc:fileid>../../4712</oc:fileid>", "<oc:fileid>4711</oc:fileid>",
                  "<oc:fileid>-1</oc:fileid>", "<oc:fileid>12345678901234567890</oc:fileid>", "<oc:fileid/>"});
    ASSERT_EQ(files.size(), 5) << "one id stands for one document";
    EXPECT_EQ(files[0].id, "4711");
    for (int index = 1; index < files.size(); ++index) {
        EXPECT_THAT(files[index].id.toStdString(), MatchesRegex("[a-z2-7]{15}"));
    }
}

TEST_F(ListingFaultTest, WhatIsNotToldIsUnknown)
{
    const auto date = [](const QByteArray& name, const QByteArray& text) {
        return "<d:" + name + '>' + text + "</d:" + name + '>';
    };
    for (const QByteArray& text : {QByteArray("Thu, 01 Jan 1970 00:00:00 GMT"), QByteArray("yesterday"), QByteArray(),
                                   QByteArray("1970-01-01T00:00:00Z"), QByteArray("99999-99-99T99:99:99Z")}) {
        const auto files = ListedAs({date("getlastmodified", text) + date("creationdate", text)});
        ASSERT_EQ(files.size(), 1);
        EXPECT_EQ(files[0].modifiedAt, QString()) << text.constData();
        EXPECT_EQ(files[0].createdAt, QString()) << text.constData();
    }
    for (const QByteArray& text : {QByteArray("-1"), QByteArray("many"), QByteArray("99999999999999999999")}) {
        const auto files = ListedAs({"<d:getcontentlength>" + text + "</d:getcontentlength>"});
        ASSERT_EQ(files.size(), 1);
        EXPECT_EQ(files[0].size, 0) << text.constData();
    }
    const auto files = ListedAs({date("getlastmodified", "Sunday, 06-Nov-94 08:49:37 GMT")});
    EXPECT_THAT(files[0].modifiedAt.toStdString(), MatchesRegex("1994-11-06T08:49:37.*Z"));
}

TEST_F(ListingFaultTest, DocumentThatIsStillBeingProcessedIsThere)
{
    server.Misbehave(When("PROPFIND").Always(),
                     SendsXml("<d:multistatus xmlns:d=\"DAV:\">" +
                              Response("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                              Response("/documents/a.pdf", "<d:resourcetype/>", "425 Too Early") + "</d:multistatus>"));
    EXPECT_EQ(Listed(), QStringList("a.pdf"));
}

TEST_F(ListingFaultTest, EveryListSaysHowDeep)
{
    List();
    client.Quota()->Succeeds();
    for (const SeenRequest& request : server.Requests("PROPFIND")) {
        EXPECT_THAT(request.headers.Value("Depth").toStdString(), MatchesRegex("[01]"));
    }
}

} // namespace

} // namespace Norlis::Test
