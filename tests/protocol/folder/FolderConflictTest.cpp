#include "FolderUser.h"

#include <tests/support/FileMoments.h>
#include <tests/support/Rounds.h>

#include <files/DocumentNames.h>
#include <protocol/folder/FolderTurn.h>
#include <protocol/folder/SeenVersions.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

constexpr int mostMoments = 200;
const QString report = QStringLiteral("report.pdf");
const QString reportId = Files::IdOfName(report);

/// One that the user is in, if possible other than that which new files get.
gid_t OtherGroup()
{
    if (geteuid() == 0) {
        return 61100;
    }
    std::array<gid_t, 64> groups{};
    const int count = getgroups(static_cast<int>(groups.size()), groups.data());
    const auto end = groups.cbegin() + qMax(count, 0);
    const auto other = std::find_if(groups.cbegin(), end, [](gid_t group) { return group != getegid(); });
    return other == end ? getegid() : *other;
}

/// Group and mode.
std::pair<gid_t, mode_t> AccessTo(const QString& path)
{
    struct stat status = {};
    EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
    return {status.st_gid, status.st_mode & 07777};
}

/// Two users of a folder with one document.
class FolderConflictTest : public testing::Test {
protected:
    void SetUp() override
    {
        cloud.Put(report, "first");
        for (FolderUser* user : {&anna, &ben}) {
            ASSERT_TRUE(user->SignIn());
            user->List();
        }
    }

    static void ExpectConflict(const Social::Reply& reply)
    {
        EXPECT_EQ(reply.result, Social::Error);
        EXPECT_THAT(ReasonOf(reply), HasSubstr("has changed since you last saw it"));
        EXPECT_FALSE(reply.failure.advice.isEmpty());
    }

    /// Does something in the middle of a request, at every moment of it, each time with another cloud.
    /// \param disturb says whether it did something
    template <typename Request, typename Disturb, typename Check>
    static void AtEveryMoment(int first, Request request, Disturb disturb, Check check)
    {
        for (int number = IsThorough() ? 0 : first; number < mostMoments; number += Stride(2)) {
            SCOPED_TRACE("moment " + std::to_string(number));
            FolderUnderTest place;
            place.Put(report, "first");
            FolderUser user(place.Settings());
            ASSERT_TRUE(user.SignIn());
            user.List();
            bool hasCome = false;
            bool isDisturbed = false;
            Social::Reply reply;
            {
                const FileMoment moment(number, [&] { isDisturbed = disturb(place); });
                reply = request(user);
                hasCome = moment.HasCome();
            }
            if (!hasCome) {
                EXPECT_GT(number, 10);
                return;
            }
            check(place, isDisturbed, reply);
        }
        ADD_FAILURE() << "endless moments";
    }

    static QList<QByteArray> Contents(FolderUnderTest& place)
    {
        QList<QByteArray> contents;
        for (const QString& name : place.Content()) {
            contents << place.Get(name).value_or(QByteArray());
        }
        return contents;
    }

    FolderUnderTest cloud;
    FolderUser anna{cloud.Settings()};
    FolderUser ben{cloud.Settings()};
};

TEST_F(FolderConflictTest, AReplacementOfAnotherVersionThanTheOneSeenIsRefused)
{
    EXPECT_EQ(ben.Do(ben.Upload("b.pdf", "Ben's", reportId)).result, Social::Success);
    ExpectConflict(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)));
    EXPECT_EQ(cloud.Get(report), QByteArray("Ben's"));
    EXPECT_EQ(cloud.Content(), QStringList(report));
    anna.List();
    EXPECT_EQ(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)).result, Social::Success);
    EXPECT_EQ(cloud.Get(report), QByteArray("Anna's"));
}

TEST_F(FolderConflictTest, AChangeOfTheSameSizeIsSeenToo)
{
    cloud.Put(report, "FIRST");
    ExpectConflict(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)));
    EXPECT_EQ(cloud.Get(report), QByteArray("FIRST"));
}

TEST_F(FolderConflictTest, WhatALocalFileCameFromCountsWhateverAListHasShownSince)
{
    ASSERT_EQ(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)).result, Social::Success);
    cloud.Put(report, "somebody else's");
    anna.List();
    ExpectConflict(anna.Do(anna.Upload("a.pdf", "Anna's, edited", reportId)));
    ASSERT_EQ(anna.Do(anna.Download(reportId, "a.pdf")).result, Social::Success);
    EXPECT_EQ(anna.Do(anna.Upload("a.pdf", "edited again", reportId)).result, Social::Success);
    EXPECT_EQ(cloud.Get(report), QByteArray("edited again"));
}

TEST_F(FolderConflictTest, ARemovalOfAnotherVersionThanTheOneSeenIsRefused)
{
    ASSERT_EQ(ben.Do(ben.Upload("b.pdf", "Ben's", reportId)).result, Social::Success);
    ExpectConflict(anna.Do(Social::Request::Remove{reportId}));
    EXPECT_EQ(cloud.Get(report), QByteArray("Ben's"));
    anna.List();
    EXPECT_EQ(anna.Do(Social::Request::Remove{reportId}).result, Social::Success);
    EXPECT_EQ(cloud.Content(), QStringList());
}

TEST_F(FolderConflictTest, AVersionThatWasOnlyDeliveredIsNotRemoved)
{
    ASSERT_EQ(ben.Do(ben.Upload("b.pdf", "Ben's", reportId)).result, Social::Success);
    ASSERT_EQ(anna.Do(anna.Download(reportId, "a.pdf")).result, Social::Success); // and thrown away, for all we know
    ExpectConflict(anna.Do(Social::Request::Remove{reportId}));
    ExpectConflict(anna.Do(anna.Upload("other.pdf", "Anna's", reportId)));
    EXPECT_EQ(cloud.Get(report), QByteArray("Ben's"));
}

TEST(SeenVersionsTest, AListThatWasBegunBeforeAnUploadShowsNothingInItsPlace)
{
    Social::VersionMemory copies({});
    Social::SeenVersions seen(copies);
    const auto versionOf = [](const QString& md5Hash) {
        Social::SeenVersion version;
        version.identity.size = 1;
        version.md5Hash = md5Hash;
        return version;
    };
    const auto begin = seen.Now();
    seen.Upload("1", "a.pdf", versionOf("uploaded"));
    seen.ShowInList("1", versionOf("listed"), begin);
    seen.ShowInList("2", versionOf("listed"), begin);
    EXPECT_EQ(seen.ForRemoval("1"), versionOf("uploaded").ToText());
    EXPECT_EQ(seen.ForRemoval("2"), versionOf("listed").ToText());
    seen.ShowInList("1", versionOf("listed"), seen.Now());
    EXPECT_EQ(seen.ForRemoval("1"), versionOf("listed").ToText());
}

TEST_F(FolderConflictTest, ADocumentThatSomebodyIsAboutToWriteToStays)
{
    QFile editor(cloud.PathOf(report));
    ASSERT_TRUE(editor.open(QFile::ReadWrite));
    ExpectConflict(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)));
    ExpectConflict(ben.Do(Social::Request::Remove{reportId}));
    editor.write("an edit");
    editor.close();
    EXPECT_EQ(cloud.Get(report), QByteArray("an edit"));
}

TEST_F(FolderConflictTest, OtherPermissionsAreNoOtherVersion)
{
    ASSERT_TRUE(QFile::setPermissions(cloud.PathOf(report), QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)).result, Social::Success);
    EXPECT_EQ(cloud.Get(report), QByteArray("Anna's"));
}

TEST_F(FolderConflictTest, ARepetitionOfWhatIsThereIsNoConflict)
{
    ASSERT_EQ(ben.Do(ben.Upload("b.pdf", "the same", reportId)).result, Social::Success);
    EXPECT_EQ(anna.Do(anna.Upload("a.pdf", "the same", reportId)).result, Social::Success);
    EXPECT_EQ(cloud.Content(), QStringList(report));
}

TEST_F(FolderConflictTest, OfTwoReplacementsAtOnceOneIsRefused)
{
    for (int round = 0; round < 20; ++round) {
        anna.List();
        ben.List();
        const QByteArray number = QByteArray::number(round);
        const auto first = anna.Begin(anna.Upload("a" + number, "Anna's " + number, reportId));
        const auto second = ben.Begin(ben.Upload("b" + number, "Ben's " + number, reportId));
        ASSERT_TRUE(WaitUntil([&] { return anna.ReplyTo(first) && ben.ReplyTo(second); }));
        const bool isAnnas = anna.ReplyTo(first)->result == Social::Success;
        ExpectConflict(isAnnas ? *ben.ReplyTo(second) : *anna.ReplyTo(first));
        ASSERT_EQ(cloud.Get(report), (isAnnas ? "Anna's " : "Ben's ") + number);
    }
}

TEST_F(FolderConflictTest, WhatSomebodyWritesInTheMiddleOfAReplacementIsKept)
{
    for (const bool isWrittenOver : {true, false}) {
        AtEveryMoment(
            isWrittenOver ? 0 : 1, [](FolderUser& user) { return user.Do(user.Upload("a.pdf", "mine", reportId)); },
            [&](FolderUnderTest& place) {
                const bool isThere = place.Get(report) == QByteArray("first");
                if (isThere && isWrittenOver) {
                    place.Put(report, "hers!");
                } else if (isThere) {
                    place.Put(".other", "hers!");
                    std::rename(qPrintable(place.PathOf(".other")), qPrintable(place.PathOf(report)));
                }
                return isThere;
            },
            [](FolderUnderTest& place, bool isDisturbed, const Social::Reply& reply) {
                if (isDisturbed) {
                    ExpectConflict(reply);
                } else {
                    EXPECT_EQ(reply.result, Social::Success) << ReasonOf(reply);
                }
                EXPECT_EQ(place.Get(report), QByteArray(isDisturbed ? "hers!" : "mine"));
                EXPECT_EQ(place.Content(), QStringList(report));
            });
    }
}

TEST_F(FolderConflictTest, WhatSomebodyWritesInTheMiddleOfARemovalIsKept)
{
    for (const int first : {0, 1}) {
        AtEveryMoment(
            first, [](FolderUser& user) { return user.Do(Social::Request::Remove{reportId}); },
            [](FolderUnderTest& place) {
                const bool isThere = place.Get(report) == QByteArray("first");
                if (isThere) {
                    place.Put(report, "hers!");
                }
                return isThere;
            },
            [](FolderUnderTest& place, bool isDisturbed, const Social::Reply& reply) {
                if (isDisturbed) {
                    ExpectConflict(reply);
                    EXPECT_EQ(Contents(place), QList<QByteArray>{"hers!"});
                } else {
                    EXPECT_EQ(reply.result, Social::Success) << ReasonOf(reply);
                    EXPECT_EQ(place.Content(), QStringList());
                }
            });
    }
}

/// Changes the document in another process, in the middle of which somebody writes to it, and ends it some calls later.
class CrashTest : public FolderConflictTest {
protected:
    /// Returns whether somebody wrote, and whether it was killed.
    static std::pair<bool, bool> Crash(FolderUnderTest& place, bool removes, int disturbance, int end)
    {
        const pid_t child = fork();
        if (child == 0) {
            FolderUser user(place.Settings());
            user.SignIn();
            user.List();
            bool wasDisturbed = false;
            const FileMoment moment(disturbance, [&] {
                wasDisturbed = true;
                place.Put(report, "hers!");
                FileMoment::Next(end, [] { _exit(2); });
            });
            if (removes) {
                user.Do(Social::Request::Remove{reportId});
            } else {
                user.Do(user.Upload("a.pdf", "mine", reportId));
            }
            _exit(wasDisturbed ? 1 : 0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return {WEXITSTATUS(status) > 0, WEXITSTATUS(status) == 2};
    }
};

TEST_F(CrashTest, WhatSomebodyWroteBeforeACrashIsKeptByTheNextProgram)
{
    int finished = 0;
    for (const bool removes : {false, true}) {
        bool isDisturbed = true;
        for (int disturbance = 0; isDisturbed; disturbance += Stride(5)) {
            bool isKilled = true;
            for (int end = disturbance % Stride(3); isDisturbed && isKilled; end += Stride(3)) {
                SCOPED_TRACE(std::to_string(disturbance) + " and " + std::to_string(end));
                FolderUnderTest place;
                place.Put(report, "first");
                std::tie(isDisturbed, isKilled) = Crash(place, removes, disturbance, end);
                finished += Social::FolderTurn::IsChangePending(place.PathOf(".norlis-cloud")) ? 1 : 0;
                FolderUser next(place.Settings());
                ASSERT_TRUE(next.SignIn());
                QStringList hashes;
                for (const auto& entry : next.List()) {
                    hashes << entry.md5Hash;
                }
                if (isDisturbed) {
                    ASSERT_TRUE(hashes.contains(Md5Of("hers!"))) << place.Content().join(", ").toStdString();
                }
            }
        }
    }
    EXPECT_GT(finished, 0) << "no crash left anything to the next program";
}

TEST_F(FolderConflictTest, WhereFilesCannotBeExchangedADifferenceIsSeenBeforeTheReplacement)
{
    const WithoutExchange old;
    EXPECT_EQ(ben.Do(ben.Upload("b.pdf", "Ben's", reportId)).result, Social::Success);
    ExpectConflict(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)));
    ExpectConflict(anna.Do(Social::Request::Remove{reportId}));
    EXPECT_EQ(cloud.Get(report), QByteArray("Ben's"));
    EXPECT_EQ(cloud.Content(), QStringList(report));
    const auto reply = anna.Do(Social::Request::Capabilities{});
    EXPECT_TRUE(std::get<Social::ServiceCapabilities>(reply.payload).contains({"exchanges files", "no"}));
}

TEST_F(FolderConflictTest, WhereFilesCannotBeExchangedWhatSomebodySavesInTheMiddleOfARemovalIsKept)
{
    const WithoutExchange old;
    AtEveryMoment(
        0, [](FolderUser& user) { return user.Do(Social::Request::Remove{reportId}); },
        [](FolderUnderTest& place) {
            const bool isThere = place.Get(report) == QByteArray("first");
            if (isThere) {
                place.Put(".other", "hers!");
                std::rename(qPrintable(place.PathOf(".other")), qPrintable(place.PathOf(report)));
            }
            return isThere;
        },
        [](FolderUnderTest& place, bool isDisturbed, const Social::Reply& reply) {
            EXPECT_EQ(reply.result, isDisturbed ? Social::Error : Social::Success) << ReasonOf(reply);
            EXPECT_EQ(Contents(place), isDisturbed ? QList<QByteArray>{"hers!"} : QList<QByteArray>());
        });
}

TEST_F(FolderConflictTest, CapabilitiesTellWhetherFilesCanBeExchanged)
{
    const auto reply = anna.Do(Social::Request::Capabilities{});
    EXPECT_TRUE(std::get<Social::ServiceCapabilities>(reply.payload).contains({"exchanges files", "yes"}));
    EXPECT_EQ(cloud.Content(), QStringList(report));
}

TEST_F(FolderConflictTest, AProgramThatKeepsItsTurnHoldsNothingUpButChanges)
{
    const QByteArray journal = QFile::encodeName(cloud.PathOf(".norlis-cloud/journal"));
    const int descriptor = open(journal.constData(), O_RDWR | O_CREAT, 0644);
    ASSERT_EQ(flock(descriptor, LOCK_EX | LOCK_NB), 0);
    const auto upload = anna.Begin(anna.Upload("a.pdf", "Anna's", reportId));
    const auto removal = ben.Begin(Social::Request::Remove{reportId});
    EXPECT_EQ(anna.List().size(), 1);
    EXPECT_FALSE(anna.ReplyTo(upload));
    EXPECT_FALSE(ben.ReplyTo(removal));
    close(descriptor);
    ASSERT_TRUE(WaitUntil([&] { return anna.ReplyTo(upload) && ben.ReplyTo(removal); }));
    EXPECT_NE(anna.ReplyTo(upload)->result == Social::Success, ben.ReplyTo(removal)->result == Social::Success);
}

TEST_F(FolderConflictTest, AJournalNamesNothingOutsideTheFolder)
{
    const QString outside = anna.LocalPath("outside.pdf");
    WriteFile(outside, "private");
    const auto identity = Files::FileIdentity::OfPath(outside).ToString();
    for (const QString& aside : {outside, QStringLiteral("../../") + QDir(cloud.Folder()).relativeFilePath(outside)}) {
        const QJsonObject line{{"document", report}, {"aside", aside}, {"fresh", identity}, {"old", identity}};
        WriteFile(cloud.PathOf(".norlis-cloud/journal"), QJsonDocument(line).toJson(QJsonDocument::Compact));
        FolderUser next(cloud.Settings());
        ASSERT_TRUE(next.SignIn());
        EXPECT_EQ(next.Do(next.Upload("a.pdf", "new")).result, Social::Success);
        EXPECT_EQ(ReadFile(outside), QByteArray("private"));
    }
}

TEST_F(FolderConflictTest, AClockThatIsDaysAheadMakesNoLeftoverOfAnUploadInProgress)
{
    const QString inProgress = cloud.PathOf(".norlis-cloud/.norlis-0123456789abcdef.part");
    WriteFile(inProgress, "by another computer");
    const LaterClock later(2 * 24 * 60 * 60);
    FolderUser next(cloud.Settings());
    ASSERT_TRUE(next.SignIn());
    EXPECT_EQ(ReadFile(inProgress), QByteArray("by another computer"));
}

TEST_F(FolderConflictTest, ALinkInThePlaceOfTheOwnFolderIsNotFollowed)
{
    const QString elsewhere = anna.LocalPath("elsewhere");
    MakeFolder(elsewhere);
    WriteFile(elsewhere + "/hashes.json", "hers");
    WriteFile(elsewhere + "/.norlis-0123456789abcdef.part", "hers");
    QFile old(elsewhere + "/.norlis-0123456789abcdef.part");
    ASSERT_TRUE(old.open(QIODevice::ReadWrite));
    ASSERT_TRUE(old.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
    old.close();
    RemoveFolder(cloud.PathOf(".norlis-cloud"));
    MakeLink(elsewhere, cloud.PathOf(".norlis-cloud"));
    const QStringList before = FilesBelow(elsewhere);

    FolderUser next(cloud.Settings());
    ASSERT_TRUE(next.SignIn());
    EXPECT_EQ(next.List().size(), 1);
    for (const auto& reply : {next.Do(next.Upload("a.pdf", "new")), next.Do(next.Upload("a.pdf", "new", reportId)),
                              next.Do(Social::Request::Remove{reportId})}) {
        EXPECT_EQ(reply.result, Social::Error);
        EXPECT_THAT(ReasonOf(reply), HasSubstr(".norlis-cloud is in the place of a folder"));
    }
    EXPECT_EQ(FilesBelow(elsewhere), before);
    EXPECT_EQ(ReadFile(elsewhere + "/hashes.json"), QByteArray("hers"));
    EXPECT_EQ(cloud.Get(report), QByteArray("first"));
}

TEST_F(FolderConflictTest, ALinkThatTakesThePlaceOfTheOwnFolderInTheMiddleIsNotFollowed)
{
    const QTemporaryDir elsewhere;
    const auto reset = [&] {
        for (const QString& name : FilesBelow(elsewhere.path())) {
            QFile::remove(elsewhere.filePath(name));
        }
        for (const QString name : {"hashes.json", "journal", "mark"}) {
            WriteFile(elsewhere.filePath(name), "hers");
        }
    };
    const auto isReplaced = [&](const FolderUnderTest& place) {
        reset();
        const QByteArray own = QFile::encodeName(place.PathOf(".norlis-cloud"));
        std::rename(own.constData(), qPrintable(place.PathOf("away")));
        MakeLink(elsewhere.path(), place.PathOf(".norlis-cloud"));
        return true;
    };
    const auto expectUntouched = [&](FolderUnderTest& place, bool, const Social::Reply&) {
        QStringList expected{"hashes.json", "journal", "mark"};
        EXPECT_EQ(FilesBelow(elsewhere.path()), expected);
        for (const QString& name : qAsConst(expected)) {
            EXPECT_EQ(ReadFile(elsewhere.filePath(name)), QByteArray("hers")) << name.toStdString();
        }
        QFile::remove(place.PathOf(".norlis-cloud")); // or the temporary folder would not be removed
    };
    const auto list = [](FolderUser& user) {
        user.List();
        return Social::Reply();
    };
    AtEveryMoment(
        0, [](FolderUser& user) { return user.Do(user.Upload("a.pdf", "mine", reportId)); }, isReplaced,
        expectUntouched);
    AtEveryMoment(
        0, [](FolderUser& user) { return user.Do(user.Upload("a.pdf", "mine")); }, isReplaced, expectUntouched);
    AtEveryMoment(
        0, [](FolderUser& user) { return user.Do(Social::Request::Remove{reportId}); }, isReplaced, expectUntouched);
    AtEveryMoment(0, list, isReplaced, expectUntouched);
}

TEST_F(FolderConflictTest, WhoeverMayChangeAFolderOfAGroupMayChangeItsOwnFolderToo)
{
    for (const mode_t mode : {02770, 02775, 0770}) {
        SCOPED_TRACE(mode);
        FolderUnderTest place;
        place.Put(report, "first");
        const QTemporaryDir data;
        auto settings = place.Settings();
        settings.dataFolder = data.path();
        for (const auto& [name, permissions] : {std::pair<QString, mode_t>(".", mode), {report, 0660}}) {
            const QByteArray path = QFile::encodeName(place.PathOf(name));
            ASSERT_EQ(chown(path.constData(), static_cast<uid_t>(-1), OtherGroup()), 0);
            ASSERT_EQ(chmod(path.constData(), permissions), 0);
        }
        const mode_t before = umask(077);
        FolderUser user(settings);
        EXPECT_TRUE(user.SignIn());
        user.List();
        EXPECT_EQ(user.Do(user.Upload("a.pdf", "mine", reportId)).result, Social::Success);
        user.List();
        umask(before);
        EXPECT_EQ(AccessTo(place.PathOf(".norlis-cloud")), std::pair(OtherGroup(), mode));
        for (const QString name : {"journal", "hashes.json", "mark"}) {
            EXPECT_EQ(AccessTo(place.PathOf(".norlis-cloud/" + name)), std::pair(OtherGroup(), mode & 0666))
                << name.toStdString();
        }
        EXPECT_EQ(AccessTo(place.PathOf(report)), std::pair(OtherGroup(), mode_t(0660)));
    }
}

TEST_F(FolderConflictTest, ADocumentThatIsWrittenAgainInTheSameSecondGetsItsNewHash)
{
    const WholeSeconds old;
    ASSERT_EQ(anna.Do(anna.Upload("a.pdf", "Anna's", reportId)).result, Social::Success);
    cloud.Put(report, "Ben's!");
    EXPECT_EQ(anna.Entry(report).md5Hash, Md5Of("Ben's!"));
    cloud.Put(report, "BEN'S!");
    EXPECT_EQ(anna.Entry(report).md5Hash, Md5Of("BEN'S!")) << "it has been read in that second already";
    cloud.Put(report, "Ben's!");
    const LaterClock later(10);
    EXPECT_EQ(anna.Entry(report).md5Hash, Md5Of("Ben's!"));
    FolderUser other(cloud.Settings());
    ASSERT_TRUE(other.SignIn());
    EXPECT_EQ(other.Entry(report).md5Hash, Md5Of("Ben's!"));
    EXPECT_EQ(other.Do(other.Download(reportId, "b.pdf")).result, Social::Success);
    ExpectConflict(anna.Do(anna.Upload("a.pdf", "ANNA'S", reportId)));
}

} // namespace

} // namespace Norlis::Test
