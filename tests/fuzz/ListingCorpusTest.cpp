// Answers as real servers give them, whole, cut off, and in pieces of every size.

#include <protocol/dav/EntityTag.h>
#include <protocol/dav/MultiStatusParser.h>
#include <tests/support/Rounds.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMap>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Social {

using testing::Optional;

namespace {

QByteArray Answer(const std::string& name)
{
    QFile file(QDir(NORLIS_CORPUS "/multistatus").filePath(QString::fromStdString(name) + ".xml"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

std::vector<std::string> AnswerNames()
{
    std::vector<std::string> names;
    for (const QString& file : QDir(NORLIS_CORPUS "/multistatus").entryList({"*.xml"}, QDir::Files)) {
        names.push_back(file.chopped(4).toStdString());
    }
    return names;
}

/// The path of the first href: all these servers name the collection first.
DavPath CollectionOf(const QByteArray& answer)
{
    const int begin = answer.indexOf("href>") + 5;
    return SegmentsOfHref(answer.mid(begin, answer.indexOf('<', begin) - begin)).value_or(DavPath{"papers"});
}

QByteArray TextOf(const DavEntry& entry)
{
    QString text;
    QDebug(&text).nospace() << entry.name << entry.isSelf << entry.isCollection << entry.size.value_or(-1) << entry.etag
                            << entry.modifiedAt << entry.createdAt << entry.fileId << entry.hasPreview.value_or(false)
                            << entry.md5 << entry.quotaUsed.value_or(-1) << entry.quotaAvailable.value_or(-1)
                            << entry.storedMd5 << entry.storedEtag;
    return text.toUtf8();
}

/// All that a parser says in the end.
struct Outcome {
    std::vector<DavEntry> entries;
    QString error;
    int foreignCount = 0;
    int malformedCount = 0;
    int refusedCount = 0;
    bool isComplete = false;

    QByteArray ToText() const
    {
        QByteArray text = error.toUtf8() + ' ' + QByteArray::number(foreignCount) + ' ' +
                          QByteArray::number(malformedCount) + ' ' + QByteArray::number(refusedCount) + ' ' +
                          QByteArray::number(int(isComplete));
        for (const DavEntry& entry : entries) {
            text += '\n' + TextOf(entry);
        }
        return text;
    }
};

Outcome Read(const QByteArray& answer, const DavPath& collection, int pieceSize)
{
    MultiStatusParser parser(collection);
    Outcome outcome;
    for (int begin = 0; begin < answer.size(); begin += pieceSize) {
        parser.Add(answer.mid(begin, pieceSize));
    }
    parser.Finish();
    outcome.entries = parser.TakeEntries();
    outcome.error = parser.ErrorText();
    outcome.foreignCount = parser.ForeignCount();
    outcome.malformedCount = parser.MalformedCount();
    outcome.refusedCount = parser.RefusedCount();
    outcome.isComplete = parser.IsComplete();
    return outcome;
}

Outcome Read(const std::string& name)
{
    const QByteArray answer = Answer(name);
    return Read(answer, CollectionOf(answer), answer.size());
}

} // namespace

/// The same eleven documents and folders, at servers of several kinds.
class ServerListingTest : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Servers, ServerListingTest,
                         testing::Values("apache", "apache-allprop", "nginx", "lighttpd", "rclone", "sabre",
                                         "absolute-urls"),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_P(ServerListingTest, EveryDocumentIsThereWithItsNameAndSize)
{
    const Outcome outcome = Read(GetParam());
    EXPECT_EQ(outcome.error, "");
    EXPECT_TRUE(outcome.isComplete);

    QMap<QByteArray, qint64> sizes;
    for (const DavEntry& entry : outcome.entries) {
        if (!entry.isCollection) {
            sizes.insert(entry.name, entry.size.value_or(-1));
            EXPECT_EQ(entry.modifiedAt, QDateTime(QDate(2023, 11, 14), QTime(22, 13, 20), Qt::UTC));
            EXPECT_TRUE(entry.etag.isEmpty() || EntityTag{entry.etag}.IsStrong()) << entry.etag.constData();
        }
    }
    const QMap<QByteArray, qint64> expected = {{"report.pdf", 1000},
                                               {"a b&c.pdf", 5},
                                               {"100%.pdf", 7},
                                               {"a%20b.pdf", 8},
                                               {"a#b.pdf", 1},
                                               {"a?b.pdf", 2},
                                               {"r\xc3\xa9sum\xc3\xa9.pdf", 3},
                                               {"empty.pdf", 0},
                                               {"\xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x93\x84.pdf", 4}};
    EXPECT_EQ(sizes, expected);
}

TEST_P(ServerListingTest, FoldersAreToldFromDocuments)
{
    std::vector<QByteArray> folders;
    for (const DavEntry& entry : Read(GetParam()).entries) {
        if (entry.isCollection) {
            EXPECT_EQ(entry.isSelf, entry.name.isEmpty());
            folders.push_back(entry.name);
        }
    }
    EXPECT_THAT(folders, testing::UnorderedElementsAre("", "sub"));
}

TEST(ListingCorpusTest, AServerThatKeepsOurHashGivesItBack)
{
    for (const char* name : {"apache", "sabre"}) {
        int count = 0;
        for (const DavEntry& entry : Read(name).entries) {
            count +=
                entry.storedMd5 == "d41d8cd98f00b204e9800998ecf8427e" && entry.storedEtag == "\"stored-etag\"" ? 1 : 0;
        }
        EXPECT_EQ(count, 1) << name;
    }
}

TEST(ListingCorpusTest, TheCollectionTellsTheRoomThereIs)
{
    const DavEntry self = Read("sabre").entries.at(0);
    EXPECT_THAT(self.quotaUsed, Optional(192'629'272'576));
    EXPECT_THAT(self.quotaAvailable, Optional(77'923'901'440));
    EXPECT_EQ(Read("apache").entries.at(0).quotaUsed, std::nullopt);
}

TEST(ListingCorpusTest, ASyncServersAnswerIsReadWhole)
{
    const Outcome outcome = Read("nextcloud");
    EXPECT_TRUE(outcome.isComplete);
    ASSERT_EQ(outcome.entries.size(), 3U);
    const DavEntry& self = outcome.entries[0];
    EXPECT_TRUE(self.isSelf);
    EXPECT_FALSE(self.createdAt.isValid());
    EXPECT_THAT(self.quotaAvailable, Optional(-3));
    const DavEntry& document = outcome.entries[1];
    EXPECT_EQ(document.name, "Offer #2.pdf");
    EXPECT_EQ(document.fileId, "1208");
    EXPECT_EQ(document.md5, "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_THAT(document.hasPreview, Optional(true));
    EXPECT_EQ(document.quotaUsed, std::nullopt);
    EXPECT_TRUE(outcome.entries[2].isCollection);
}

TEST(ListingCorpusTest, DocumentsThatAreNotReadyAreThere)
{
    const Outcome outcome = Read("processing");
    QSet<QByteArray> names;
    for (const DavEntry& entry : outcome.entries) {
        names.insert(entry.name);
    }
    EXPECT_EQ(names, (QSet<QByteArray>{"", "virus-check.pdf", "queue.pdf", "ready.pdf"}));
    EXPECT_EQ(outcome.refusedCount, 1);
}

TEST(ListingCorpusTest, AMemberUnderTheCollectionsNameIsNotTheCollection)
{
    const Outcome outcome = Read("second-self");
    ASSERT_EQ(outcome.entries.size(), 2U);
    EXPECT_TRUE(outcome.entries[0].isCollection);
    EXPECT_EQ(outcome.entries[0].size, std::nullopt);
    EXPECT_EQ(outcome.entries[1].name, "good.pdf");
    EXPECT_EQ(outcome.malformedCount, 2);
    EXPECT_FALSE(outcome.isComplete);
}

TEST(ListingCorpusTest, BadAnswersAreCalledByTheirNames)
{
    EXPECT_EQ(Read("control-character").error, "The listing is damaged");
    EXPECT_EQ(Read("control-character").entries.size(), 1U);
    EXPECT_EQ(Read("wrong-encoding").error, "The listing is damaged");
    EXPECT_EQ(Read("wrong-encoding").entries.size(), 2U);
    EXPECT_EQ(Read("login-page").error, "The answer is not a WebDAV listing");
    EXPECT_EQ(Read("entity-bomb").error, "The answer is not a WebDAV listing");
}

/// Every answer, good and bad.
class AnyListingTest : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Answers, AnyListingTest, testing::ValuesIn(AnswerNames()), [](const auto& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(AnyListingTest, PiecesOfAnySizeMakeNoDifference)
{
    const QByteArray answer = Answer(GetParam());
    const DavPath collection = CollectionOf(answer);
    const QByteArray whole = Read(answer, collection, answer.size()).ToText();
    for (int pieceSize = 1; pieceSize < answer.size(); pieceSize += pieceSize < 64 ? 1 : pieceSize / 3) {
        ASSERT_EQ(Read(answer, collection, pieceSize).ToText(), whole) << pieceSize;
    }
}

TEST_P(AnyListingTest, CutAnywhereItIsNeverTakenForComplete)
{
    const QByteArray answer = Answer(GetParam());
    const DavPath collection = CollectionOf(answer);
    const std::vector<DavEntry> all = Read(answer, collection, answer.size()).entries;
    const int end = answer.lastIndexOf('>');
    for (int size = 0; size < end; size += Norlis::Test::Stride(7)) {
        const Outcome outcome = Read(answer.left(size), collection, answer.size());
        ASSERT_FALSE(outcome.error.isEmpty()) << size;
        ASSERT_FALSE(outcome.isComplete) << size;
        ASSERT_LE(outcome.entries.size(), all.size()) << size;
        for (size_t index = 0; index < outcome.entries.size(); ++index) {
            ASSERT_EQ(TextOf(outcome.entries[index]), TextOf(all[index])) << size;
        }
    }
}

} // namespace Norlis::Social
