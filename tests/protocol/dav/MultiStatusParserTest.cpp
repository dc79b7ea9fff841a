#include <protocol/dav/MultiStatusParser.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>

namespace Norlis::Social {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

namespace {

const DavPath collection = {"dav", "docs"};
const QByteArray md5 = "900150983cd24fb0d6963f7d28e17f72";

QByteArray Listing(const QByteArray& responses)
{
    return R"(<d:multistatus xmlns:d="DAV:" xmlns:oc="http://owncloud.org/ns" xmlns:nc="http://nextcloud.org/ns")"
           R"( xmlns:n="http://norlis.org/ns/">)" +
           responses + "</d:multistatus>";
}

QByteArray Response(const QByteArray& href, const QByteArray& inner)
{
    return "<d:response><d:href>" + href + "</d:href>" + inner + "</d:response>";
}

QByteArray Propstat(const QByteArray& properties, const QByteArray& status = "HTTP/1.1 200 OK")
{
    return "<d:propstat><d:prop>" + properties + "</d:prop><d:status>" + status + "</d:status></d:propstat>";
}

const QByteArray self = Response("/dav/docs/", Propstat("<d:resourcetype><d:collection/></d:resourcetype>"));

/// What a parser makes of an answer.
struct Reading {
    explicit Reading(const QByteArray& answer) : parser(collection)
    {
        parser.Add(answer);
        isListing = parser.Finish();
        entries = parser.TakeEntries();
    }

    std::vector<QByteArray> Names() const
    {
        std::vector<QByteArray> names;
        for (const DavEntry& entry : entries) {
            names.push_back(entry.name);
        }
        return names;
    }

    MultiStatusParser parser;
    bool isListing = false;
    std::vector<DavEntry> entries;
};

/// What is known of a document with these properties.
DavEntry EntryWith(const QByteArray& properties)
{
    const Reading reading(Listing(Response("/dav/docs/a.pdf", Propstat(properties))));
    EXPECT_EQ(reading.entries.size(), 1U) << reading.parser.ErrorText().toStdString();
    return reading.entries.empty() ? DavEntry() : reading.entries[0];
}

} // namespace

TEST(MultiStatusParserTest, TheCollectionAndItsMembersAreToldApart)
{
    const Reading reading(
        Listing(Response("/dav/docs/a%20b.pdf", Propstat("<d:resourcetype/>")) + self +
                Response("/dav/docs/sub/", Propstat("<d:resourcetype><d:collection/></d:resourcetype>"))));
    ASSERT_THAT(reading.Names(), ElementsAre("a b.pdf", "", "sub"));
    EXPECT_FALSE(reading.entries[0].isSelf || reading.entries[0].isCollection);
    EXPECT_TRUE(reading.entries[1].isSelf && reading.entries[1].isCollection);
    EXPECT_TRUE(!reading.entries[2].isSelf && reading.entries[2].isCollection);
    EXPECT_TRUE(reading.parser.SawSelf());
    EXPECT_TRUE(reading.parser.IsComplete());
}

TEST(MultiStatusParserTest, TheCollectionIsKnownWithAndWithoutASlash)
{
    EXPECT_TRUE(Reading(Listing(Response("/dav/docs", Propstat("")))).parser.SawSelf());
    EXPECT_TRUE(Reading(Listing(Response("http://elsewhere/d%61v/docs/", Propstat("")))).parser.SawSelf());
    EXPECT_FALSE(Reading(Listing(Response("/dav/", Propstat("")))).parser.SawSelf());
}

TEST(MultiStatusParserTest, AnEmptyListingIsAListingButShowsNothing)
{
    const Reading reading(Listing({}));
    EXPECT_TRUE(reading.isListing);
    EXPECT_THAT(reading.entries, IsEmpty());
    EXPECT_FALSE(reading.parser.IsComplete());
}

TEST(MultiStatusParserTest, WhatLiesDeeperOrElsewhereIsLeftOut)
{
    const Reading reading(Listing(self + Response("/dav/docs/sub/a.pdf", Propstat("")) +
                                  Response("/dav/", Propstat("")) + Response("/other/docs/a.pdf", Propstat("")) +
                                  Response("/dav/docs/a", Propstat(""))));
    EXPECT_THAT(reading.Names(), ElementsAre("", "a"));
    EXPECT_EQ(reading.parser.ForeignCount(), 3);
    EXPECT_TRUE(reading.parser.IsComplete());
}

TEST(MultiStatusParserTest, TheOriginOfAnHrefDoesNotMatter)
{
    const QByteArray listing = Listing(self + Response("http://inner:8080/dav/docs/a.pdf", Propstat("")));
    EXPECT_THAT(Reading(listing).Names(), ElementsAre("", "a.pdf"));
}

TEST(MultiStatusParserTest, UnreadableResponsesAreLeftOutAndCounted)
{
    for (const QByteArray& response :
         {Response("/dav/docs/..", Propstat("")), Response("/dav/docs/a%2Fb", Propstat("")),
          Response("a.pdf", Propstat("")), Response("", Propstat("")), Response("/dav/docs/a%ffb.pdf", Propstat("")),
          Response("/dav/docs/a.pdf", ""), Response("/dav/docs/a.pdf", Propstat("", "fine")),
          Response("/dav/docs/a.pdf", Propstat("", "200 OK")),
          Response("/dav/docs/" + QByteArray(MultiStatusParser::maximumTextLength, 'a'), Propstat("")), self}) {
        const Reading reading(Listing(self + response));
        EXPECT_TRUE(reading.isListing);
        EXPECT_THAT(reading.Names(), ElementsAre("")) << response.left(200).constData();
        EXPECT_EQ(reading.parser.MalformedCount(), 1) << response.left(200).constData();
        EXPECT_FALSE(reading.parser.IsComplete());
    }
}

TEST(MultiStatusParserTest, ResponsesWithAStatusOfTheirOwn)
{
    const Reading reading(Listing(self + Response("/dav/docs/gone", "<d:status>HTTP/1.1 404 Not Found</d:status>") +
                                  Response("/dav/docs/pending", "<d:status>HTTP/1.1 425 Too Early</d:status>") +
                                  Response("/dav/docs/there", "<d:status>HTTP/1.1 200 OK</d:status>")));
    ASSERT_THAT(reading.Names(), ElementsAre("", "pending", "there"));
    EXPECT_TRUE(reading.parser.IsComplete());
}

TEST(MultiStatusParserTest, ADocumentThatTheServerDoesNotDescribeMakesTheListingIncomplete)
{
    for (const char* status : {"401", "403", "500", "507"}) {
        const Reading reading(
            Listing(self + Response("/dav/docs/a", QByteArray("<d:status>HTTP/1.1 ") + status + "</d:status>")));
        EXPECT_THAT(reading.Names(), ElementsAre(""));
        EXPECT_EQ(reading.parser.RefusedCount(), 1);
        EXPECT_TRUE(reading.isListing);
        EXPECT_FALSE(reading.parser.IsComplete());
    }
}

TEST(MultiStatusParserTest, OnlyPropertiesThatTheServerVouchesForCount)
{
    const QByteArray good = "<d:getcontentlength>5</d:getcontentlength>";
    const QByteArray bad = "<d:getcontentlength>6</d:getcontentlength><d:resourcetype><d:collection/></d:resourcetype>";
    for (const QByteArray& propstats :
         {Propstat(good) + Propstat(bad, "HTTP/1.1 404 Not Found"),
          Propstat(bad, "HTTP/1.1 404 Not Found") + Propstat(good), Propstat(good) + Propstat(bad, "HTTP/1.1 403"),
          Propstat(good) + Propstat(bad, "no status"),
          Propstat(good) + "<d:propstat><d:prop>" + bad + "</d:prop></d:propstat>"}) {
        const Reading reading(Listing(Response("/dav/docs/a.pdf", propstats)));
        ASSERT_EQ(reading.entries.size(), 1U) << propstats.constData();
        EXPECT_THAT(reading.entries[0].size, Optional(5)) << propstats.constData();
        EXPECT_FALSE(reading.entries[0].isCollection) << propstats.constData();
    }
}

TEST(MultiStatusParserTest, PropertiesOfSeveralPropstatsCount)
{
    const Reading reading(
        Listing(Response("/dav/docs/a.pdf", Propstat("<d:getcontentlength>5</d:getcontentlength>") +
                                                Propstat("<d:getetag>\"e\"</d:getetag>", "HTTP/2 207"))));
    ASSERT_EQ(reading.entries.size(), 1U);
    EXPECT_THAT(reading.entries[0].size, Optional(5));
    EXPECT_EQ(reading.entries[0].etag, "\"e\"");
}

TEST(MultiStatusParserTest, OneResponseLeavesNothingToTheNext)
{
    const QByteArray everything = "<d:getcontentlength>5</d:getcontentlength><d:getetag>\"e\"</"
                                  "d:getetag><d:resourcetype><d:collection/></d:resourcetype>";
    const Reading reading(Listing(Response("/dav/docs/a", Propstat(everything, "HTTP/1.1 425 Too Early")) +
                                  Response("/dav/docs/b", Propstat(""))));
    ASSERT_THAT(reading.Names(), ElementsAre("a", "b"));
    EXPECT_THAT(reading.entries[0].size, Optional(5));
    EXPECT_FALSE(reading.entries[1].isCollection);
    EXPECT_EQ(reading.entries[1].size, std::nullopt);
    EXPECT_EQ(reading.entries[1].etag, "");
}

TEST(MultiStatusParserTest, AResponseWithoutAHrefIsNotTakenForTheOneBefore)
{
    const Reading reading(
        Listing(Response("/dav/docs/a", Propstat("")) + "<d:response>" + Propstat("") + "</d:response>"));
    EXPECT_THAT(reading.Names(), ElementsAre("a"));
    EXPECT_EQ(reading.parser.MalformedCount(), 1);
}

TEST(MultiStatusParserTest, OnlyTheRightTypeMakesACollection)
{
    EXPECT_TRUE(EntryWith("<d:resourcetype><n:x/><d:collection><n:y/></d:collection></d:resourcetype>").isCollection);
    for (const char* type :
         {"", "collection", "<d:x/>", "<n:collection/>", "<n:x><d:collection/></n:x>", "<d:collections/>"}) {
        EXPECT_FALSE(EntryWith(QByteArray("<d:resourcetype>") + type + "</d:resourcetype>").isCollection) << type;
    }
    EXPECT_FALSE(EntryWith("<n:resourcetype><d:collection/></n:resourcetype>").isCollection);
    EXPECT_FALSE(EntryWith("<d:getcontenttype><d:collection/></d:getcontenttype>").isCollection);
}

TEST(MultiStatusParserTest, ElementsStandInAnyOrder)
{
    const Reading reading(Listing("<d:response><d:propstat><d:status>HTTP/1.1 200</d:status><d:prop>"
                                  "<d:getcontentlength>5</d:getcontentlength></d:prop></d:propstat>"
                                  "<d:href>/dav/docs/a</d:href></d:response>"));
    ASSERT_THAT(reading.Names(), ElementsAre("a"));
    EXPECT_THAT(reading.entries[0].size, Optional(5));
}

TEST(MultiStatusParserTest, NamesOfElementsAreKnownByTheirNamespaceAlone)
{
    const Reading reading(
        R"(<multistatus xmlns="DAV:"><x:response xmlns:x="DAV:"><href>/dav/docs/a</href><propstat><prop>
           <y:getcontentlength xmlns:y="DAV:">5</y:getcontentlength>
           <d:getetag xmlns:d="urn:other">"no"</d:getetag><getetag xmlns="">"no"</getetag>
           <size xmlns="http://owncloud.org/ns">9</size></prop><status>HTTP/1.1 200 OK</status></propstat></x:response>
           </multistatus>)");
    ASSERT_THAT(reading.Names(), ElementsAre("a"));
    EXPECT_THAT(reading.entries[0].size, Optional(5));
    EXPECT_EQ(reading.entries[0].etag, "");
}

TEST(MultiStatusParserTest, UnknownElementsAreSkippedWithAllThatIsInThem)
{
    const QByteArray odd = "<d:future><d:response><d:href>/dav/docs/no</d:href></d:response><d:href>/no</d:href>"
                           "<d:getcontentlength>9</d:getcontentlength></d:future>text";
    const Reading reading(
        Listing(odd + self + odd +
                Response("/dav/docs/<d:x>no</d:x>a",
                         odd + Propstat(odd + "<d:getcontentlength>5</d:getcontentlength>" + odd) + odd)));
    ASSERT_THAT(reading.Names(), ElementsAre("", "a"));
    EXPECT_THAT(reading.entries[1].size, Optional(5));
}

TEST(MultiStatusParserTest, UsualPropertiesAreRead)
{
    const DavEntry entry =
        EntryWith("<d:getcontentlength> 1234567890123 "
                  "</d:getcontentlength><d:getetag>W/&quot;abc&quot;</d:getetag><d:getlastmodified>Sun, 06 Nov 1994 "
                  "08:49:37 GMT</d:getlastmodified>"
                  "<d:creationdate>1994-11-06T08:49:37Z</d:creationdate><d:quota-used-bytes>7</d:quota-used-bytes>"
                  "<d:quota-available-bytes>-3</d:quota-available-bytes>");
    EXPECT_THAT(entry.size, Optional(1'234'567'890'123));
    EXPECT_EQ(entry.etag, "W/\"abc\"");
    EXPECT_EQ(entry.modifiedAt, QDateTime(QDate(1994, 11, 6), QTime(8, 49, 37), Qt::UTC));
    EXPECT_EQ(entry.createdAt, entry.modifiedAt);
    EXPECT_THAT(entry.quotaUsed, Optional(7));
    EXPECT_THAT(entry.quotaAvailable, Optional(-3));
}

TEST(MultiStatusParserTest, WhatIsMissingOrUnreadableIsUnknown)
{
    for (const QByteArray& value : {QByteArray(), QByteArray("-"), QByteArray("1e3"), QByteArray("0x10"),
                                    QByteArray("5 6"), QByteArray("99999999999999999999"), QByteArray(20'000, '1')}) {
        const DavEntry entry = EntryWith("<d:getcontentlength>" + value + "</d:getcontentlength><d:quota-used-bytes>" +
                                         value + "</d:quota-used-bytes><d:getlastmodified>" + value +
                                         "</d:getlastmodified>" + "<nc:has-preview>" + value + "</nc:has-preview>");
        EXPECT_EQ(entry.size, std::nullopt) << value.left(50).constData();
        EXPECT_EQ(entry.quotaUsed, std::nullopt);
        EXPECT_FALSE(entry.modifiedAt.isValid());
        EXPECT_EQ(entry.hasPreview, std::nullopt);
    }
    EXPECT_EQ(EntryWith("<d:getcontentlength>-1</d:getcontentlength>").size, std::nullopt);
    EXPECT_EQ(EntryWith("").size, std::nullopt);
    EXPECT_THAT(EntryWith("<d:getcontentlength>0</d:getcontentlength>").size, Optional(0));
}

TEST(MultiStatusParserTest, ATagThatCouldNotStandInARequestIsUnknown)
{
    EXPECT_EQ(EntryWith("<d:getetag>\"a&#10;Evil: b\"</d:getetag>").etag, "");
    EXPECT_EQ(EntryWith("<d:getetag>\n\"a\"\n</d:getetag>").etag, "\"a\"");
    EXPECT_EQ(EntryWith("<d:getetag>-1a</d:getetag>").etag, "\"-1a\"");
    EXPECT_EQ(EntryWith("<d:getetag/>").etag, "");
}

TEST(MultiStatusParserTest, PropertiesOfSyncServersAreRead)
{
    const DavEntry entry = EntryWith(
        "<oc:fileid>12</oc:fileid><nc:has-preview>true</nc:has-preview><oc:checksums><oc:checksum>SHA1:0 md5:" +
        md5.toUpper() + " ADLER32:1</oc:checksum></oc:checksums>");
    EXPECT_EQ(entry.fileId, "12");
    EXPECT_THAT(entry.hasPreview, Optional(true));
    EXPECT_EQ(entry.md5, md5);
    EXPECT_THAT(EntryWith("<nc:has-preview>false</nc:has-preview>").hasPreview, Optional(false));
}

TEST(MultiStatusParserTest, ChecksumsMayBeSpreadAndAreCheckedForTheirForm)
{
    EXPECT_EQ(EntryWith("<oc:checksums><oc:checksum>SHA1:0</oc:checksum><oc:checksum>MD5:" + md5 +
                        "</oc:checksum></oc:checksums>")
                  .md5,
              md5);
    for (const QByteArray& sum : {QByteArray("MD5:"), "MD5:" + md5.mid(1), "MD5:" + md5 + "0", "MD5:g" + md5.mid(1),
                                  md5, "SHA1:" + md5, "XMD5:" + md5}) {
        EXPECT_EQ(EntryWith("<oc:checksums><oc:checksum>" + sum + "</oc:checksum></oc:checksums>").md5, "")
            << sum.constData();
    }
}

TEST(MultiStatusParserTest, ManySmallPartsOfAValueAreTooLongToo)
{
    const auto sums = [](int count) {
        return "<oc:checksums>" + QByteArray("<oc:checksum/>").repeated(count) + "<oc:checksum>MD5:" + md5 +
               "</oc:checksum></oc:checksums>";
    };
    EXPECT_EQ(EntryWith(sums(1000)).md5, md5);
    EXPECT_EQ(EntryWith(sums(MultiStatusParser::maximumTextLength)).md5, "");
    EXPECT_EQ(EntryWith("<d:getetag>" + QByteArray("a<!-- -->").repeated(MultiStatusParser::maximumTextLength + 1) +
                        "</d:getetag>")
                  .etag,
              "");
}

TEST(MultiStatusParserTest, OurOwnHashCountsOnlyTogetherWithItsTag)
{
    const DavEntry entry = EntryWith("<n:content-md5>" + md5.toUpper() + " W/\"a\"</n:content-md5>");
    EXPECT_EQ(entry.storedMd5, md5);
    EXPECT_EQ(entry.storedEtag, "W/\"a\"");
    for (const QByteArray& text : {QByteArray(), md5, QByteArray(md5 + " "), QByteArray("abc \"a\""),
                                   QByteArray(md5 + " \"a\n\""), QByteArray(" \"a\"")}) {
        const DavEntry unknown = EntryWith("<n:content-md5>" + text + "</n:content-md5>");
        EXPECT_EQ(unknown.storedMd5, "");
        EXPECT_EQ(unknown.storedEtag, "");
    }
}

TEST(MultiStatusParserTest, BlanksAndABomBeforeTheDeclarationAreNoHarm)
{
    const QByteArray declared = R"(<?xml version="1.0" encoding="utf-8"?>)" + Listing(self);
    for (const QByteArray& before :
         {QByteArray(""), QByteArray("\n"), QByteArray("\r\n \t\n"), QByteArray("\xef\xbb\xbf"),
          QByteArray("\xef\xbb\xbf\n\n"), QByteArray(200'000, '\n')}) {
        const Reading reading(before + declared);
        EXPECT_TRUE(reading.parser.IsComplete()) << before.left(10).toHex().constData();
    }
}

TEST(MultiStatusParserTest, OtherEncodingsAreRead)
{
    const Reading reading(R"(<?xml version="1.0" encoding="windows-1252"?>)" +
                          Listing(Response("/dav/docs/r\xe9sum\xe9.pdf", Propstat(""))));
    EXPECT_THAT(reading.Names(), ElementsAre("r\xc3\xa9sum\xc3\xa9.pdf"));
}

TEST(MultiStatusParserTest, SixteenBitsPerCharacterAreReadInPiecesOfAnySize)
{
    const QString text = QString::fromUtf8(Listing(self + Response("/dav/docs/\xe6\xbc\xa2.pdf", Propstat(""))));
    const QByteArray answer = "\xff\xfe" + QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    for (int pieceSize = 1; pieceSize < 10; ++pieceSize) {
        MultiStatusParser parser(collection);
        for (int begin = 0; begin < answer.size(); begin += pieceSize) {
            EXPECT_TRUE(parser.Add(answer.mid(begin, pieceSize)));
        }
        EXPECT_TRUE(parser.Finish());
        EXPECT_EQ(parser.TakeEntries().back().name, "\xe6\xbc\xa2.pdf");
    }
}

TEST(MultiStatusParserTest, WhatFollowsTheListingIsIgnored)
{
    for (const char* after : {"\n", "\nWarning: something in line 3", "<html>", "\x01", "<!--"}) {
        EXPECT_TRUE(Reading(Listing(self) + after).parser.IsComplete()) << after;
    }
}

TEST(MultiStatusParserTest, OtherAnswersAreNoListing)
{
    for (const char* answer :
         {"", "\n\n", "a", "<", "OK", "{\"a\": 1}", "<html><body/></html>", "<!DOCTYPE html><html></html>",
          "<multistatus><response/></multistatus>", R"(<multistatus xmlns="urn:x"/>)", R"(<d:error xmlns:d="DAV:"/>)",
          "<a><b></a>", R"(<?xml version="1.0" encoding="klingon"?><a/>)", "<?xml version=\"1.0\"?>",
          "\x89PNG\r\n\x1a\n"}) {
        const Reading reading{QByteArray(answer)};
        EXPECT_FALSE(reading.isListing) << answer;
        EXPECT_EQ(reading.parser.ErrorText(), "The answer is not a WebDAV listing") << answer;
    }
}

TEST(MultiStatusParserTest, ABrokenListingKeepsWhatCameBeforeAndIsIncomplete)
{
    const QByteArray begin =
        Listing(self + Response("/dav/docs/a.pdf", Propstat(""))).chopped(qstrlen("</d:multistatus>"));
    const Reading cut(begin + "<d:response><d:href>/dav");
    EXPECT_EQ(cut.parser.ErrorText(), "The listing is cut off");
    EXPECT_THAT(cut.Names(), ElementsAre("", "a.pdf"));
    EXPECT_FALSE(cut.parser.IsComplete());

    for (const char* rest : {"</d:response>", "\x01", "text \xff\xff", "<d:response><d:href>&nbsp;", "<x:y/>"}) {
        const Reading damaged(begin + rest);
        EXPECT_EQ(damaged.parser.ErrorText(), "The listing is damaged") << rest;
        EXPECT_THAT(damaged.Names(), ElementsAre("", "a.pdf")) << rest;
        EXPECT_FALSE(damaged.parser.IsComplete());
    }
}

TEST(MultiStatusParserTest, WronglyEncodedTextIsNeverPassedOver)
{
    const QByteArray begin = Listing(self).chopped(qstrlen("</d:multistatus>"));
    for (const char* text : {"\xff", "\xff\xff", "\xc3", "\xc3\xa9\xff", "\xed\xa0\x80"}) {
        for (const QByteArray& rest :
             {QByteArray(text), "<d:x>" + QByteArray(text) + "</d:x>", "<d:x>a" + QByteArray(text) + "b</d:x>"}) {
            const Reading reading(begin + rest + self + "</d:multistatus>" + QByteArray(1'000'000, ' '));
            EXPECT_EQ(reading.parser.ErrorText(), "The listing is damaged") << rest.toHex().constData();
            EXPECT_THAT(reading.Names(), ElementsAre("")) << rest.toHex().constData();
        }
    }
}

TEST(MultiStatusParserTest, AFailedParserStaysFailed)
{
    MultiStatusParser parser(collection);
    EXPECT_FALSE(parser.Add("<html>"));
    EXPECT_FALSE(parser.Add(Listing(self)));
    EXPECT_FALSE(parser.Finish());
    EXPECT_THAT(parser.TakeEntries(), IsEmpty());
}

TEST(MultiStatusParserTest, EntriesAreTakenWhileTheyArrive)
{
    MultiStatusParser parser(collection);
    const QByteArray listing = Listing(self + Response("/dav/docs/a.pdf", Propstat("")));
    EXPECT_TRUE(parser.Add(listing.chopped(40)));
    EXPECT_EQ(parser.TakeEntries().size(), 1U);
    EXPECT_THAT(parser.TakeEntries(), IsEmpty());
    EXPECT_TRUE(parser.Add(listing.right(40)));
    EXPECT_TRUE(parser.Finish());
    EXPECT_EQ(parser.TakeEntries().size(), 1U);
    EXPECT_TRUE(parser.IsComplete());
}

TEST(MultiStatusParserTest, BytesThatTheCallerKeepsAreNotNeededLater)
{
    QByteArray buffer = Listing(self);
    MultiStatusParser parser(collection);
    for (int begin = 0; begin < buffer.size(); begin += 10) {
        QByteArray piece(buffer.constData() + begin, std::min(10, static_cast<int>(buffer.size()) - begin));
        EXPECT_TRUE(parser.Add(QByteArray::fromRawData(piece.constData(), piece.size())));
        piece.fill('x');
    }
    EXPECT_TRUE(parser.Finish());
    EXPECT_TRUE(parser.IsComplete());
}

TEST(MultiStatusParserTest, NestingIsLimited)
{
    const auto nested = [](int depth) {
        return Listing(self + QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth));
    };
    EXPECT_TRUE(Reading(nested(MultiStatusParser::maximumDepth - 1)).isListing);
    EXPECT_EQ(Reading(nested(MultiStatusParser::maximumDepth)).parser.ErrorText(), "The listing is nested too deeply");
}

TEST(MultiStatusParserTest, HugeTagsAndTextsAreRefusedBeforeTheyAreWhole)
{
    for (const char* begin : {"<d:response><d:href>", "<d:a b=\"", "<d:", "<!--", "<?a ", "<d:a ", "</d:"}) {
        MultiStatusParser parser(collection);
        parser.Add(Listing(self).chopped(qstrlen("</d:multistatus>")) + begin);
        qint64 added = 0;
        while (parser.Add(QByteArray(10'000, 'a')) && added < 10'000'000) {
            added += 10'000;
        }
        EXPECT_LT(added, 2 * MultiStatusParser::maximumTokenSize) << begin;
        EXPECT_FALSE(parser.Finish());
    }
}

TEST(MultiStatusParserTest, ManyAttributesTakeLittleTime)
{
    QByteArray tag = "<d:a";
    for (int number = 0; tag.size() < MultiStatusParser::maximumTokenSize; ++number) {
        tag += " a" + QByteArray::number(number) + "=''";
    }
    QElapsedTimer timer;
    timer.start();
    const Reading reading(Listing(tag + "/>"));
    EXPECT_LT(timer.elapsed(), 10'000);
}

TEST(MultiStatusParserTest, TheSizeOfAnAnswerIsLimited)
{
    MultiStatusParser parser(collection);
    EXPECT_TRUE(parser.Add(Listing(self)));
    const QByteArray blanks(64 * 1024 * 1024, ' ');
    const qint64 pieces = MultiStatusParser::maximumSize / blanks.size();
    for (qint64 piece = 1; piece < pieces; ++piece) {
        EXPECT_TRUE(parser.Add(blanks));
    }
    EXPECT_FALSE(parser.Add(blanks));
    EXPECT_EQ(parser.ErrorText(), "The listing is too long");
}

TEST(MultiStatusParserTest, TheNumberOfEntriesIsLimited)
{
    MultiStatusParser parser(collection);
    parser.Add(Listing({}).chopped(qstrlen("</d:multistatus>")));
    const QByteArray thousand = Response("/dav/docs/a", "<d:status>HTTP/1.1 200</d:status>").repeated(1000);
    size_t count = 0;
    for (int piece = 0; piece <= MultiStatusParser::maximumEntries / 1000; ++piece) {
        parser.Add(thousand);
        count += parser.TakeEntries().size();
    }
    EXPECT_EQ(count, static_cast<size_t>(MultiStatusParser::maximumEntries));
    EXPECT_EQ(parser.ErrorText(), "The listing is too long");
}

} // namespace Norlis::Social
