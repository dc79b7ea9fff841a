// Several people with a computer each, and somebody with another program, who change the same documents.

#include <testkit/contract/ContractTest.h>
#include <tests/support/Files.h>
#include <tests/support/ProgramTest.h>
#include <tests/support/Rounds.h>
#include <tests/support/ServiceUnderTest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSet>

#include <csignal>
#include <map>

#include <sys/wait.h>

namespace Norlis::Test {

namespace {

const QStringList names = {"a.pdf", "b.pdf"};

using Contents = QSet<QByteArray>;
using ContentsByName = std::map<QString, Contents>;

/// Somebody with a home folder, in which the local copies are.
struct Person {
    QTemporaryDir home;
    ContentsByName bases; ///< by name of the local copy: what it may have been made from
    ContentsByName seen;  ///< by name of the document: what was listed, sent or fetched
    QSet<QString> listed; ///< names of documents that are certainly in the list that the program keeps

    QString Path(const QString& name) const
    {
        return home.filePath(name);
    }
};

/// One command of a person that is running.
struct Command {
    Person* person;
    QString verb;
    QString name;
    QByteArray content;      ///< that is sent
    std::size_t firstSample; ///< the last one before it began
    std::unique_ptr<QProcess> process;
    QElapsedTimer clock;
    bool isKilled = false;
};

} // namespace

class SeveralPeopleTest : public ProgramTest, public testing::WithParamInterface<KindOfCloud> {
protected:
    std::unique_ptr<QProcess> StartFor(const Person& person, const QStringList& words)
    {
        auto process = std::make_unique<QProcess>();
        auto own = environment;
        own.insert("HOME", person.home.path());
        // Where lines are counted, a program writes its counts at its end, to files that others wait for while it
        // stands still.
        own.insert("GCOV_PREFIX", person.home.filePath(".coverage"));
        process->setProcessEnvironment(own);
        process->setWorkingDirectory(person.home.path());
        process->start(NORLIS_CLOUD_PROGRAM, words);
        EXPECT_TRUE(process->waitForStarted(60'000));
        process->closeWriteChannel();
        return process;
    }

    void SignIn(const Person& person)
    {
        const auto settings = cloud->Settings();
        QStringList words{"login", "--service", settings.serviceUrl.toString(QUrl::FullyEncoded)};
        if (!settings.serviceUrl.isLocalFile()) {
            QFile password(person.Path("password"));
            ASSERT_TRUE(password.open(QIODevice::WriteOnly));
            password.write(cloud->Token().toUtf8());
            words << "--token-file" << password.fileName();
        }
        const auto process = StartFor(person, words);
        const Outcome outcome = WaitForEnd(*process);
        ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    }

    QByteArray NewContent()
    {
        // Of different lengths: some servers tell versions of the same second and length apart by nothing.
        const int length = ++contents;
        return "%PDF-1.4\n" + QByteArray::number(length) + ' ' + QByteArray(length, 'x') + '\n';
    }

    static QString ShortForm(const QByteArray& content)
    {
        return QString::fromUtf8(content.mid(9, 3));
    }

    /// The documents, without what only a service knows of.
    std::map<QString, QByteArray> Documents() const
    {
        std::map<QString, QByteArray> documents;
        const QStringList present = cloud->Content();
        for (const QString& name : present) {
            const auto content = cloud->Get(name);
            if (content && !name.contains('/') && name.endsWith(".pdf")) {
                documents[name] = *content;
            }
        }
        return documents;
    }

    void Sample()
    {
        samples.push_back(Documents());
    }

    /// Starts a command that makes sense for the person now.
    Command StartAny(Person& person)
    {
        Command command{&person, {}, names[Any(names.size())], {}, samples.size() - 1, nullptr, {}};
        const int choice = Any(10);
        if (choice < 5) {
            command.verb = "upload";
            command.content = NewContent();
            underWay[command.name].insert(command.content);
            WriteFile(person.Path(command.name), command.content);
        } else {
            command.verb = choice < 7 ? "download" : choice < 9 ? "remove" : "list";
        }
        Tell(person.home.path().right(3) + ' ' + command.verb + ' ' + command.name + ' ' + ShortForm(command.content));
        QStringList words{command.verb, "--json"};
        if (command.verb != "list") {
            words << command.name;
        }
        if (command.verb == "download") {
            words << "--to" << person.home.path();
        }
        command.clock.start();
        command.process = StartFor(person, words);
        return command;
    }

    /// Waits up to some moment of the time that a command takes. False when it has ended before.
    bool WaitForSomeMoment(Command& command)
    {
        return !command.process->waitForFinished(Any(usualTime));
    }

    void Kill(Command& command)
    {
        if (WaitForSomeMoment(command)) {
            Tell("  killed after " + QString::number(command.clock.elapsed()) + " ms");
            command.process->kill();
            command.isKilled = true;
            ++kills;
        }
    }

    /// Waits for the end and notes what the command says that it has done, and what it may have done.
    void Finish(Command& command)
    {
        const Outcome outcome = WaitForEnd(*command.process);
        if (!command.isKilled) {
            ASSERT_TRUE(outcome.exitStatus == 0 || outcome.exitStatus == 1) << outcome.errors.toStdString() << "\n"
                                                                            << story.join('\n').toStdString();
            usualTime = (3 * usualTime + static_cast<int>(qMin<qint64>(command.clock.elapsed(), 2000))) / 4;
        }
        Sample();
        Tell("  " + command.person->home.path().right(3) + " ended with " + QString::number(outcome.exitStatus) + ' ' +
             outcome.output.left(60).simplified() + ' ' + outcome.errors.simplified());
        if (command.verb == "upload") {
            NoteUpload(command, outcome);
        } else if (command.verb == "download") {
            NoteDownload(command, outcome);
        } else if (command.verb == "remove") {
            NoteRemoval(command);
        }
        if (!command.isKilled || !outcome.output.isEmpty() || !outcome.errors.isEmpty()) {
            NoteSeen(command);
        }
    }

    void NoteUpload(const Command& command, const Outcome& outcome)
    {
        Person& person = *command.person;
        const bool isAcknowledged = outcome.output.contains("\"uploaded\"") || outcome.output.contains("\"updated\"");
        EXPECT_TRUE(isAcknowledged || outcome.exitStatus != 0) << outcome.output.toStdString();
        if (isAcknowledged) {
            acknowledged.insert(command.content);
            const QString name = outcome.JsonLines().constLast()["name"].toString();
            person.seen[name].insert(command.content);
            person.listed.insert(name);
        }
        Contents& base = person.bases[command.name];
        if (isAcknowledged || command.isKilled || HasStood(command)) {
            mayBeGone += base; // nothing for a new document
        }
        if (isAcknowledged && !command.isKilled) {
            base.clear();
        }
        if (isAcknowledged || command.isKilled) {
            base.insert(command.content);
        }
    }

    void NoteDownload(const Command& command, const Outcome& outcome)
    {
        Person& person = *command.person;
        const auto results = outcome.JsonLines();
        const QString path = results.isEmpty() ? person.Path(command.name) : results.constLast()["path"].toString();
        if ((outcome.exitStatus != 0 && !command.isKilled) || !QFile::exists(path)) {
            return;
        }
        Contents& base = person.bases[QFileInfo(path).fileName()];
        if (!command.isKilled) {
            base.clear();
        }
        base.insert(ContentOf(path));
        person.seen[command.name].insert(ContentOf(path));
    }

    /// Whatever it says: it may have been the one that did it.
    void NoteRemoval(const Command& command)
    {
        Person& person = *command.person;
        mayBeGone += person.seen[command.name];
        if (!person.listed.contains(command.name)) { // no other version than the one that is found is known to it
            for (std::size_t index = command.firstSample; index < samples.size(); ++index) {
                mayBeGone.insert(ContentIn(samples[index], command.name));
            }
            mayBeGone += underWay[command.name];
        }
        person.listed.remove(command.name);
    }

    /// Other commands list at some moment while they run; a killed one does not always keep what it has listed.
    void NoteSeen(const Command& command)
    {
        Person& person = *command.person;
        QSet<QString> always;
        for (const auto& document : samples[command.firstSample]) {
            always.insert(document.first);
        }
        for (std::size_t index = command.firstSample; index < samples.size(); ++index) {
            QSet<QString> now;
            for (const auto& document : samples[index]) {
                person.seen[document.first].insert(document.second);
                now.insert(document.first);
            }
            always.intersect(now);
        }
        // What is sent as a new document needs no list.
        const bool mayNotHaveListed = command.isKilled || command.verb == "upload";
        person.listed = mayNotHaveListed ? person.listed.intersect(always) : always;
    }

    bool HasStood(const Command& command) const
    {
        for (std::size_t index = command.firstSample; index < samples.size(); ++index) {
            if (std::any_of(samples[index].begin(), samples[index].end(),
                            [&](const auto& document) { return document.second == command.content; })) {
                return true;
            }
        }
        return false;
    }

    static QByteArray ContentIn(const std::map<QString, QByteArray>& documents, const QString& name)
    {
        const auto found = documents.find(name);
        return found == documents.end() ? QByteArray() : found->second;
    }

    /// Somebody with another program, who looks at nothing, but keeps off what is locked.
    void DoSomethingElse()
    {
        const QString name = names[Any(names.size())];
        Sample();
        mayBeGone.insert(ContentIn(samples.back(), name));
        const QByteArray content = NewContent();
        const bool isTaken = cloud->PutAsOthers(name, content);
        Tell("others put " + name + ' ' + ShortForm(content) + (isTaken ? "" : ", which is refused"));
        if (isTaken) {
            acknowledged.insert(content);
        }
        Sample();
    }

    /// A command that stands still at some moment, and goes on after others have done something.
    void Stall(std::vector<Person>& people)
    {
        const int first = Any(static_cast<int>(people.size()));
        Command command = StartAny(people[static_cast<std::size_t>(first)]);
        if (WaitForSomeMoment(command)) {
            const auto process = static_cast<pid_t>(command.process->processId());
            siginfo_t change = {};
            ::kill(process, SIGSTOP);
            ASSERT_EQ(waitid(P_PID, static_cast<id_t>(process), &change, WSTOPPED | WEXITED | WNOWAIT), 0);
            Tell("  stands still after " + QString::number(command.clock.elapsed()) + " ms");
            ++stalls;
            for (int act = 1 + Any(2); act > 0; --act) {
                if (Any(3) == 0) {
                    DoSomethingElse();
                    continue;
                }
                const int next = first + 1 + Any(static_cast<int>(people.size()) - 1);
                Command other = StartAny(people[static_cast<std::size_t>(next) % people.size()]);
                Finish(other);
            }
            Tell("  goes on");
            ::kill(process, SIGCONT);
        }
        Finish(command);
    }

    /// Some people at once, of whom one may be killed.
    void WorkTogether(std::vector<Person>& people)
    {
        const int first = Any(static_cast<int>(people.size()));
        const int count = 1 + Any(static_cast<int>(people.size()));
        std::vector<Command> commands;
        commands.reserve(static_cast<std::size_t>(count));
        for (int number = 0; number < count; ++number) {
            commands.push_back(StartAny(people[static_cast<std::size_t>(first + number) % people.size()]));
        }
        if (Any(3) == 0) {
            Kill(commands[0]);
        }
        for (Command& command : commands) {
            ASSERT_NO_FATAL_FAILURE(Finish(command));
        }
    }

    void LiveThrough(quint32 seed)
    {
        random.seed(seed);
        cloud.reset(static_cast<ServiceUnderTest*>(
            GetParam().make().release())); // without the locks that somebody was killed with
        std::vector<Person> people(seed % 2 == 0 ? 2 : 3);
        for (const Person& person : people) {
            ASSERT_NO_FATAL_FAILURE(SignIn(person));
        }
        acknowledged.clear();
        mayBeGone.clear();
        story.clear();
        samples.clear();
        Sample();
        constexpr int steps = 7;
        for (int step = 0; step < steps && !HasFailure(); ++step) {
            const int choice = Any(6);
            underWay.clear();
            if (choice == 0) {
                DoSomethingElse();
            } else if (choice == 1 && IsThorough() && cloud->TellsWritersApart()) { // others may wait for it for long
                Stall(people);
            } else {
                WorkTogether(people);
            }
        }
        Check(seed, people[0]);
    }

    void Check(quint32 seed, const Person& person)
    {
        const auto list = StartFor(person, {"list"}); // finishes what somebody was killed in the middle of
        WaitForEnd(*list);
        Sample();
        Contents left;
        for (const auto& document : samples.back()) {
            left.insert(document.second);
        }
        const Contents lasting = acknowledged - mayBeGone;
        for (const QByteArray& content : lasting) {
            EXPECT_TRUE(left.contains(content))
                << "lost " << ShortForm(content).toStdString() << " in history " << seed << ":\n"
                << story.join('\n').toStdString();
        }
        acknowledgements += acknowledged.size();
    }

    int Any(int count)
    {
        return static_cast<int>(random.bounded(count));
    }

    void Tell(const QString& text)
    {
        story << text;
    }

    QRandomGenerator random;
    std::unique_ptr<ServiceUnderTest> cloud;
    std::vector<std::map<QString, QByteArray>> samples; ///< what was in the cloud, before and after each act
    Contents acknowledged;                              ///< of which somebody was told that they are in the cloud
    ContentsByName underWay;                            ///< what is sent at the moment
    Contents mayBeGone; ///< somebody who had seen them may have replaced or removed them, or others have
    QStringList story;
    int contents = 0;
    int usualTime = 200; ///< of a command, in milliseconds
    int kills = 0;
    int stalls = 0;
    int acknowledgements = 0;
};

TEST_P(SeveralPeopleTest, NobodyLosesWhatNobodyHasSeen)
{
    const Histories histories(1, 20);
    for (int history = histories.first; history < histories.end && !HasFailure(); ++history) {
        LiveThrough(static_cast<quint32>(history));
    }
    RecordProperty("kills", kills);
    RecordProperty("stalls", stalls);
    RecordProperty("acknowledgements", acknowledgements);
}

NORLIS_FOR_EVERY_CLOUD(SeveralPeopleTest);

} // namespace Norlis::Test
