// Several people with a computer each, and somebody with another program, who change the same documents. How many
// histories of each cloud are tried is in NORLIS_HISTORIES.

#include <tests/support/ContractTest.h>
#include <tests/support/ProgramTest.h>
#include <tests/support/Rounds.h>

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSet>

#include <map>

namespace Norlis::Test {

namespace {

int Histories()
{
    bool isNumber = false;
    const int histories = qEnvironmentVariableIntValue("NORLIS_HISTORIES", &isNumber);
    return isNumber ? histories : IsThorough() ? 20 : 1;
}

const QStringList names = {"a.pdf", "b.pdf"};

/// Somebody with a home folder, in which the local copies are.
struct Person {
    QTemporaryDir home;
    std::map<QString, QByteArray> base; ///< by name of the local copy: what it was made from
    QSet<QByteArray> seen;              ///< contents that were listed, sent or fetched
    QSet<QString> listed;               ///< names that were

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
    QByteArray content; ///< that is sent
    std::unique_ptr<QProcess> process;
};

} // namespace

class SeveralPeopleTest : public ProgramTest, public testing::WithParamInterface<KindOfCloud> {
protected:
    void SetUp() override
    {
        cloud = GetParam().make();
    }

    Outcome RunFor(const Person& person, const QStringList& words)
    {
        const auto process = StartFor(person, words);
        return WaitForEnd(*process);
    }

    std::unique_ptr<QProcess> StartFor(const Person& person, const QStringList& words)
    {
        auto process = std::make_unique<QProcess>();
        auto own = environment;
        own.insert("HOME", person.home.path());
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
        const Outcome outcome = RunFor(person, words);
        ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    }

    QByteArray NewContent()
    {
        // Of different lengths: some servers tell versions of the same second and length apart by nothing.
        const int length = ++contents;
        return "%PDF-1.4\n" + QByteArray::number(length) + ' ' + QByteArray(length, 'x') + '\n';
    }

    QSet<QByteArray> ContentsInTheCloud()
    {
        QSet<QByteArray> found;
        const QStringList present = cloud->Content();
        for (const QString& name : present) {
            if (const auto content = cloud->Get(name)) {
                found.insert(*content);
            }
        }
        return found;
    }

    /// Starts a command that makes sense for the person now.
    Command StartAny(Person& person, QRandomGenerator& random)
    {
        Command command{&person, {}, names[random.bounded(names.size())], {}, nullptr};
        const int choice = random.bounded(10);
        if (choice < 5) {
            command.verb = "upload";
            command.content = NewContent();
            QFile file(person.Path(command.name));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(command.content);
        } else {
            command.verb = choice < 7 ? "download" : choice < 9 ? "remove" : "list";
        }
        story << person.home.path().right(3) + ' ' + command.verb + ' ' + command.name + ' ' +
                     QString::fromUtf8(command.content.mid(9, 3));
        QStringList words{command.verb, "--json"};
        if (command.verb != "list") {
            words << command.name;
        }
        if (command.verb == "download") {
            words << "--to" << person.home.path();
        }
        command.process = StartFor(person, words);
        return command;
    }

    /// Notes what the command says that it has done.
    void Finish(Command& command, const QSet<QByteArray>& before)
    {
        Person& person = *command.person;
        const Outcome outcome = WaitForEnd(*command.process);
        ASSERT_TRUE(outcome.exitStatus == 0 || outcome.exitStatus == 1) << outcome.errors.toStdString();
        story << "  " + QString::number(outcome.exitStatus) + ' ' + outcome.output.left(60).simplified() + ' ' +
                     outcome.errors.simplified();
        if (command.verb == "remove") { // which may have happened though nothing proved it
            replacedKnowingly += person.seen;
            if (!person.listed.contains(command.name)) { // a document that was never seen has no other version
                replacedKnowingly += before;
            }
        }
        if (outcome.exitStatus != 0) {
            return;
        }
        if (command.verb == "upload") {
            acknowledged.insert(command.content);
            replacedKnowingly.insert(person.base[command.name]); // empty for a new document
            person.base[command.name] = command.content;
            person.seen.insert(command.content);
        } else if (command.verb == "download") {
            person.base[command.name] = ContentOf(person.Path(command.name));
            person.seen.insert(person.base[command.name]);
        }
    }

    void DoSomethingElse(QRandomGenerator& random)
    {
        const QString name = names[random.bounded(names.size())];
        if (const auto old = cloud->Get(name)) {
            replacedByOthers.insert(*old);
        }
        const QByteArray content = NewContent();
        story << "others put " + name + ' ' + QString::fromUtf8(content.mid(9, 3));
        cloud->Put(name, content);
        acknowledged.insert(content);
    }

    void LiveThrough(quint32 seed)
    {
        QRandomGenerator random(seed);
        Person people[2];
        for (const Person& person : people) {
            ASSERT_NO_FATAL_FAILURE(SignIn(person));
        }
        const QStringList old = cloud->Content();
        for (const QString& name : old) {
            cloud->Take(name);
        }
        acknowledged.clear();
        replacedKnowingly.clear();
        replacedByOthers.clear();
        story.clear();
        constexpr int steps = 7;
        for (int step = 0; step < steps && !HasFailure(); ++step) {
            const QSet<QByteArray> before = ContentsInTheCloud();
            if (random.bounded(6) == 0) {
                DoSomethingElse(random);
                continue;
            }
            std::vector<Command> commands;
            commands.push_back(StartAny(people[random.bounded(2)], random));
            if (random.bounded(2) == 0) { // both at once
                Person& other = commands[0].person == &people[0] ? people[1] : people[0];
                commands.push_back(StartAny(other, random));
            }
            for (Command& command : commands) {
                ASSERT_NO_FATAL_FAILURE(Finish(command, before));
            }
            const QStringList present = cloud->Content();
            for (const Command& command : commands) { // each of them lists
                command.person->seen += ContentsInTheCloud();
                for (const QString& name : present) {
                    command.person->listed.insert(name);
                }
            }
        }
        const QSet<QByteArray> left = ContentsInTheCloud();
        const QSet<QByteArray> lasting = acknowledged - replacedKnowingly - replacedByOthers;
        for (const QByteArray& content : lasting) {
            EXPECT_TRUE(left.contains(content))
                << "lost " << content.mid(9, 4).toStdString() << " in history " << seed << ":\n"
                << story.join('\n').toStdString();
        }
    }

    std::unique_ptr<CloudUnderTest> cloud;
    QSet<QByteArray> acknowledged;      ///< contents of which somebody was told that they are in the cloud
    QSet<QByteArray> replacedKnowingly; ///< or removed, by who had them or had seen them
    QSet<QByteArray> replacedByOthers;
    QStringList story;
    int contents = 0;
};

TEST_P(SeveralPeopleTest, NobodyLosesWhatNobodyHasSeen)
{
    for (int history = 1; history <= Histories() && !HasFailure(); ++history) {
        LiveThrough(static_cast<quint32>(history));
    }
}

NORLIS_FOR_EVERY_CLOUD(SeveralPeopleTest);

} // namespace Norlis::Test
