#include "FolderUser.h"

#include <tests/support/FileMoments.h>
#include <tests/support/Rounds.h>

#include <files/DocumentNames.h>

#include <QDir>
#include <QRandomGenerator>
#include <QSet>

#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

const QStringList documentNames = {"a.pdf", "b.pdf"};

/// What three users of a folder, each with a service of their own, users who are killed, and somebody who knows nothing
/// of services do to two documents: mostly one in the middle of what another does. No two contents are the same.
///
/// Whatever happens, no content goes that was acknowledged or put there by that somebody, unless somebody replaced or
/// removed it who had seen it, or that somebody did.
class KeepingHistory {
public:
    explicit KeepingHistory(quint32 seed)
        : random(seed),
          areFilesOld(seed % 2 == 0),
          hasWholeSeconds(seed % 4 == 1),
          hasExchange(seed % 8 != 3)
    {
        for (int number = 0; number < 3; ++number) {
            users.push_back(std::make_unique<User>(cloud.Settings()));
        }
    }

    void Play()
    {
        std::optional<LaterClock> clock;
        if (areFilesOld) {
            clock.emplace(60);
        }
        std::optional<WholeSeconds> seconds;
        if (hasWholeSeconds) {
            seconds.emplace();
        }
        std::optional<WithoutExchange> noExchange;
        if (!hasExchange) {
            noExchange.emplace();
        }
        for (auto& user : users) {
            ASSERT_TRUE(user->SignIn());
        }
        ForeignWrite(documentNames[0]);
        const int actions = 3 + Any(8);
        for (int number = 0; number < actions && !testing::Test::HasFatalFailure(); ++number) {
            Act();
        }
        Check();
    }

    std::string Story() const
    {
        return story.join('\n').toStdString();
    }

    int kills = 0;
    int interruptions = 0;
    int conflicts = 0;

private:
    /// Who remembers what it has seen of each document.
    struct User : FolderUser {
        using FolderUser::FolderUser;
        QMap<QString, QByteArray> seen;                   ///< by name
        QMap<QPair<QString, QString>, QByteArray> passed; ///< by name and local file
    };

    struct Attempt {
        qint64 id = 0;
        User* user = nullptr;
        QString name;  ///< of the document; empty for a new one
        QString local; ///< name of the local file; empty for a removal
        QByteArray from;
        QByteArray content; ///< what is uploaded
    };

    int Any(int count)
    {
        return static_cast<int>(random.bounded(count));
    }

    QString AnyName()
    {
        return documentNames[Any(documentNames.size())];
    }

    User& AnyUser()
    {
        return *users[static_cast<std::size_t>(Any(static_cast<int>(users.size())))];
    }

    /// Of equal sizes where the time of the last change tells little, else of different ones.
    QByteArray NewContent()
    {
        const QByteArray text = "content " + QByteArray::number(1000 + ++contents);
        return areFilesOld ? text + QByteArray(contents, '.') : text;
    }

    void Tell(const QString& text)
    {
        story << text;
    }

    void Act()
    {
        if (Any(5) == 0) {
            return Kill();
        }
        User& user = AnyUser();
        const bool isInterrupted = Any(4) != 0;
        std::optional<FileMoment> moment;
        std::vector<Attempt> others;
        if (isInterrupted) {
            moment.emplace(Any(45), [&] { Interrupt(user, others); });
        }
        AnyRequest(user);
        if (moment && moment->HasCome()) {
            ++interruptions;
        }
        moment.reset();
        for (const Attempt& other : others) {
            End(other);
        }
    }

    void AnyRequest(User& user)
    {
        switch (Any(7)) {
        case 0:
            return List(user);
        case 1:
            return Download(user);
        case 2:
            return End(Begin(user, "remove"));
        case 3:
            return End(Begin(user, "new"));
        default:
            return End(Begin(user, "replace"));
        }
    }

    void Interrupt(const User& interrupted, std::vector<Attempt>& others)
    {
        Tell("  in the middle:");
        switch (hasExchange ? Any(7) : 4 + Any(3)) { // without it, nothing keeps what others do in the middle
        case 0:
            return ForeignWrite(AnyName());
        case 1:
            return ForeignReplace(AnyName());
        case 2:
            return ForeignRemove(AnyName());
        case 3:
            return ForeignRename();
        case 4:
            return Kill();
        default: {
            // The other one does as much as it can without its turn, and the rest afterwards.
            User& other = *users[users[0].get() == &interrupted ? 1 + Any(2) : 0];
            others.push_back(Begin(other, Any(3) == 0 ? "remove" : "replace"));
            for (int turn = Any(30); turn > 0; --turn) {
                QCoreApplication::processEvents();
            }
        }
        }
    }

    void List(User& user)
    {
        Tell("a list");
        for (const auto& entry : user.List()) {
            ASSERT_TRUE(entry.md5Hash.startsWith("version:") || contentOfHash.contains(entry.md5Hash)) << Story();
            user.seen[entry.name] = contentOfHash.value(entry.md5Hash, "gone before it could be read");
        }
    }

    void Download(User& user)
    {
        const QString name = AnyName();
        Tell("a download of " + name);
        if (user.Do(user.Download(Files::IdOfName(name), name)).result == Social::Success) {
            const QByteArray content = ReadFile(user.LocalPath(name)).value_or(QByteArray());
            ASSERT_TRUE(contentOfHash.contains(Md5Of(content))) << content.toStdString() << "\n" << Story();
            user.seen[name] = content;
            user.passed[{name, name}] = content;
        }
    }

    Attempt Begin(User& user, const QString& what)
    {
        Attempt attempt;
        attempt.user = &user;
        const QString name = AnyName();
        if (what == "new") {
            attempt.content = Know(NewContent());
            attempt.local = name;
            Tell("a new document " + attempt.content + " as " + name);
            attempt.id = user.Begin(user.Upload(name, attempt.content));
            return attempt;
        }
        if (!user.seen.contains(name)) {
            List(user);
        }
        if (!user.seen.contains(name)) {
            attempt.user = nullptr; // it would start from whatever it finds
            return attempt;
        }
        attempt.name = name;
        attempt.from = user.seen.value(name);
        if (what == "replace") {
            attempt.local = Any(2) == 0 ? name : "other.pdf";
            attempt.from = user.passed.value({name, attempt.local}, attempt.from);
            attempt.content = Know(NewContent());
        }
        ++mayGo[attempt.from];
        Tell(what + ' ' + name + ", from " + attempt.from + " to " + attempt.content);
        attempt.id = what == "replace" ? user.Begin(user.Upload(attempt.local, attempt.content, Files::IdOfName(name)))
                                       : user.Begin(Social::Request::Remove{Files::IdOfName(name)});
        return attempt;
    }

    void End(const Attempt& attempt)
    {
        if (!attempt.user) {
            return;
        }
        ASSERT_TRUE(WaitUntil([&] { return attempt.user->ReplyTo(attempt.id).has_value(); }));
        const auto reply = *attempt.user->ReplyTo(attempt.id);
        Tell(reply.result == Social::Success ? "  done" : "  refused: " + reply.failure.reason);
        if (reply.result != Social::Success) {
            --mayGo[attempt.from]; // it did not go by this attempt
            conflicts += reply.failure.reason.contains("has changed since") ? 1 : 0;
            return;
        }
        if (attempt.local.isEmpty()) {
            return;
        }
        const auto* sharing = std::get_if<Social::NorlisCloudSharingResult>(&reply.payload);
        ASSERT_NE(sharing, nullptr);
        acknowledged.insert(attempt.content);
        attempt.user->seen[sharing->fileName] = attempt.content;
        attempt.user->passed[{sharing->fileName, attempt.local}] = attempt.content;
    }

    /// In another process, which the system ends at some moment.
    void Kill()
    {
        const QString name = AnyName();
        const int moment = Any(60);
        const bool removes = Any(3) == 0;
        const QByteArray content = Know(NewContent());
        const QByteArray from = cloud.Get(name).value_or(QByteArray());
        if (from.isEmpty()) {
            return; // it would start from whatever it finds
        }
        const QByteArray foreign = hasExchange && Any(2) == 0 ? Know(NewContent()) : QByteArray();
        const int disturbance = Any(moment + 1);
        Tell(QString("somebody is killed, who %1 %2 from %3 to %4, at %5, disturbed at %6 by %7")
                 .arg(removes ? "removes" : "replaces", name, from, content)
                 .arg(moment)
                 .arg(disturbance)
                 .arg(QString::fromUtf8(foreign)));
        int report[2];
        ASSERT_EQ(pipe(report), 0);
        const pid_t child = fork();
        if (child == 0) {
            qputenv("TMPDIR", remains.path().toLocal8Bit());
            FolderUser killed(cloud.Settings());
            killed.SignIn();
            const auto say = [&](const QByteArray& text) {
                return write(report[1], text.constData(), static_cast<std::size_t>(text.size())) == text.size();
            };
            for (const auto& entry : killed.List()) { // which may end what somebody was killed in the middle of
                if (entry.name == name && !say('=' + contentOfHash.value(entry.md5Hash, from) + '\n')) {
                    _exit(1);
                }
            }
            const auto die = [] { _exit(0); };
            const auto disturb = [&] {
                const QByteArray gone = '!' + cloud.Get(name).value_or(QByteArray()) + '\n';
                cloud.Put(name, foreign);
                FileMoment::Next(moment - disturbance, die);
                if (!say(gone)) {
                    die();
                }
            };
            const FileMoment middle(foreign.isEmpty() ? moment : disturbance,
                                    foreign.isEmpty() ? std::function<void()>(die) : disturb);
            const QString id = Files::IdOfName(name);
            if (removes) {
                killed.Do(Social::Request::Remove{id});
            } else {
                killed.Do(killed.Upload("killed.pdf", content, id));
            }
            _exit(0);
        }
        close(report[1]);
        QFile said;
        ASSERT_TRUE(said.open(report[0], QFile::ReadOnly, QFile::AutoCloseHandle));
        const auto lines = said.readAll().split('\n');
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        for (const QByteArray& line : lines) {
            if (line.startsWith('=')) {
                ++mayGo[line.mid(1)];
            } else if (line.startsWith('!')) {
                ForeignGone(line.mid(1));
                acknowledged.insert(foreign);
            }
        }
        ++kills;
    }

    QByteArray Know(const QByteArray& content)
    {
        contentOfHash[Md5Of(content)] = content;
        return content;
    }

    void ForeignGone(const QByteArray& content)
    {
        ++mayGo[content];
    }

    void ForeignWrite(const QString& name)
    {
        const QByteArray content = Know(NewContent());
        Tell("somebody writes " + content + " to " + name + ", over " + cloud.Get(name).value_or("nothing"));
        ForeignGone(cloud.Get(name).value_or(QByteArray()));
        cloud.Put(name, content);
        acknowledged.insert(content);
    }

    void ForeignReplace(const QString& name)
    {
        const QByteArray content = Know(NewContent());
        Tell("somebody puts " + content + " in the place of " + name + ", over " + cloud.Get(name).value_or("nothing"));
        const QString path = users[0]->LocalPath("foreign.pdf");
        WriteFile(path, content);
        ForeignGone(cloud.Get(name).value_or(QByteArray()));
        ASSERT_EQ(std::rename(QFile::encodeName(path), QFile::encodeName(cloud.PathOf(name))), 0);
        acknowledged.insert(content);
    }

    void ForeignRemove(const QString& name)
    {
        Tell("somebody removes " + name + ", " + cloud.Get(name).value_or("nothing"));
        ForeignGone(cloud.Get(name).value_or(QByteArray()));
        QFile::remove(cloud.PathOf(name));
    }

    void ForeignRename()
    {
        Tell("somebody renames " + documentNames[0]);
        ForeignGone(cloud.Get(documentNames[1]).value_or(QByteArray()));
        std::rename(QFile::encodeName(cloud.PathOf(documentNames[0])),
                    QFile::encodeName(cloud.PathOf(documentNames[1])));
    }

    void Check()
    {
        FolderUser last(cloud.Settings());
        ASSERT_TRUE(last.SignIn());
        QSet<QByteArray> there;
        for (const auto& entry : last.List()) {
            const QByteArray content = cloud.Get(entry.name).value_or(QByteArray());
            EXPECT_EQ(entry.md5Hash, Md5Of(content)) << Story();
            there.insert(content);
        }
        for (const QByteArray& content : qAsConst(acknowledged)) {
            EXPECT_TRUE(there.contains(content) || mayGo.value(content) > 0)
                << content.toStdString() << " is lost:\n"
                << Story() << "\nthere is " << QByteArrayList(there.cbegin(), there.cend()).join(", ").toStdString()
                << "\nin " << cloud.Content().join(", ").toStdString();
        }
    }

    QRandomGenerator random;
    const bool areFilesOld;
    const bool hasWholeSeconds;
    const bool hasExchange;
    QTemporaryDir remains; ///< of those who are killed
    FolderUnderTest cloud;
    std::vector<std::unique_ptr<User>> users;
    int contents = 0;
    QMap<QString, QByteArray> contentOfHash;
    QSet<QByteArray> acknowledged; ///< and what somebody wrote
    QMap<QByteArray, int> mayGo;   ///< how many have replaced or removed it who had seen it, or were free to
    QStringList story;
};

TEST(FolderHistoryTest, NothingGoesThatNobodyMeantToReplaceOrRemove)
{
    const Histories histories(40, 1'000);
    const int rounds = histories.end - histories.first;
    int kills = 0;
    int interruptions = 0;
    int conflicts = 0;
    for (int seed = histories.first; seed < histories.end && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("history " + std::to_string(seed));
        KeepingHistory history(static_cast<quint32>(seed));
        history.Play();
        kills += history.kills;
        interruptions += history.interruptions;
        conflicts += history.conflicts;
    }
    EXPECT_GE(kills, rounds / 4);
    EXPECT_GE(interruptions, rounds / 2);
    EXPECT_GE(conflicts, rounds / 10);
    RecordProperty("kills", kills);
    RecordProperty("interruptions", interruptions);
    RecordProperty("conflicts", conflicts);
}

} // namespace

} // namespace Norlis::Test
