#include "ProgramTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace Norlis::Test {

namespace {

constexpr int timeLimit = 60'000; // milliseconds; for a machine that does a lot else

} // namespace

QStringList Outcome::ErrorLines() const
{
    QStringList lines = errors.split('\n');
    EXPECT_EQ(lines.takeLast(), "") << "the last line is not ended: " << errors.toStdString();
    return lines;
}

QJsonArray Outcome::Json() const
{
    const auto document = QJsonDocument::fromJson(output.toUtf8());
    EXPECT_TRUE(document.isArray()) << output.toStdString();
    return document.array();
}

QList<QJsonObject> Outcome::JsonLines() const
{
    QList<QJsonObject> objects;
    for (const QString& line : output.split('\n', Qt::SkipEmptyParts)) {
        const auto document = QJsonDocument::fromJson(line.toUtf8());
        EXPECT_TRUE(document.isObject()) << line.toStdString();
        objects << document.object();
    }
    return objects;
}

ProgramTest::ProgramTest() : environment(QProcessEnvironment::systemEnvironment())
{
    EXPECT_TRUE(home.isValid());
    environment.insert("HOME", Home());
    environment.remove("XDG_DATA_HOME");
    environment.remove("QT_QPA_PLATFORM");
    environment.insert("LC_ALL", "C.UTF-8");
    environment.insert("TERM", "xterm");
    // Read in builds that have the leak sanitizer. What it says of suppressions would stand among the errors.
    environment.insert("LSAN_OPTIONS", "print_suppressions=0:suppressions=" NORLIS_LEAK_SUPPRESSIONS);
    // Without the names of functions, which take longer to look up at the end of each process than all its work. Run
    // the program by hand to see where something comes from.
    environment.insert("ASAN_OPTIONS", qEnvironmentVariable("ASAN_OPTIONS") + ":symbolize=0");
}

Outcome ProgramTest::Run(const QStringList& words)
{
    const auto process = Start(words);
    process->closeWriteChannel();
    return WaitForEnd(*process);
}

std::unique_ptr<QProcess> ProgramTest::Start(const QStringList& words)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(Home());
    process->start(NORLIS_CLOUD_PROGRAM, words);
    EXPECT_TRUE(process->waitForStarted(timeLimit)) << process->errorString().toStdString();
    return process;
}

Outcome ProgramTest::WaitForEnd(QProcess& process)
{
    const bool hasEnded = process.state() == QProcess::NotRunning || process.waitForFinished(timeLimit);
    EXPECT_TRUE(hasEnded) << "the program does not end";
    Outcome outcome;
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    if (hasEnded && process.exitStatus() == QProcess::NormalExit) {
        outcome.exitStatus = process.exitCode();
    }
    return outcome;
}

void ProgramTest::SignIn()
{
    ASSERT_TRUE(QDir().mkpath(Cloud()));
    const Outcome outcome = Run({"login", "--service", Cloud()});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
}

QString ProgramTest::Home() const
{
    return home.path();
}

QString ProgramTest::Cloud() const
{
    return Home() + "/Cloud";
}

QString ProgramTest::Data() const
{
    return Home() + "/.local/share/norlis-cloud";
}

QString ProgramTest::Sample(const QString& name)
{
    return NORLIS_SAMPLES "/" + name;
}

QString ProgramTest::MakeFile(const QString& path, const QByteArray& content)
{
    const QString absolutePath = Home() + '/' + path;
    EXPECT_TRUE(QDir().mkpath(QFileInfo(absolutePath).path()));
    QFile file(absolutePath);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << absolutePath.toStdString();
    EXPECT_EQ(file.write(content), content.size());
    return absolutePath;
}

QStringList ProgramTest::CloudNames() const
{
    return QDir(Cloud()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QByteArray ContentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

} // namespace Norlis::Test
