#include <tests/support/ProgramTest.h>

#include <QDir>
#include <QRegularExpression>

namespace Norlis::Test {

namespace {

class DoctorTest : public ProgramTest {};

TEST_F(DoctorTest, CapabilitiesStandInTwoColumns)
{
    SignIn();
    const Outcome outcome = Run({"doctor"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    const QStringList lines = outcome.output.split('\n', Qt::SkipEmptyParts);
    ASSERT_FALSE(lines.isEmpty());
    const int column = lines[0].indexOf(QRegularExpression("(?<=  )[^ ]"));
    ASSERT_GT(column, 0) << lines[0].toStdString();
    for (const QString& line : lines) {
        EXPECT_EQ(line.mid(column - 2, 2), "  ") << line.toStdString();
        EXPECT_NE(line[column], ' ') << line.toStdString();
    }
}

TEST_F(DoctorTest, CapabilitiesAreAvailableAsJson)
{
    SignIn();
    const auto results = Run({"doctor", "--json"}).JsonLines();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results[0]["service"].toString(), "folder");
}

TEST_F(DoctorTest, ResultCanBeShownToOthers)
{
    SignIn();
    MakeFile("Cloud/private-letter.pdf");
    for (const QStringList& words : {QStringList{"doctor"}, {"doctor", "--json"}}) {
        const QString output = Run(words).output;
        EXPECT_FALSE(output.isEmpty());
        for (const QString& secret : {Home(), QDir(Home()).dirName(), QString("private-letter"), QString("Cloud")}) {
            EXPECT_FALSE(output.contains(secret)) << output.toStdString();
        }
    }
}

TEST_F(DoctorTest, NothingIsLeftBehindInTheCloud)
{
    SignIn();
    MakeFile("Cloud/report.pdf");
    EXPECT_EQ(Run({"doctor"}).exitStatus, 0);
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
}

TEST_F(DoctorTest, ServiceThatCannotBeReachedIsAFailure)
{
    const Outcome outcome = Run({"doctor", "--service", Home() + "/nowhere"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.startsWith("norlis-cloud: Signing in failed: ")) << outcome.errors.toStdString();
}

TEST_F(DoctorTest, SignedOutItSaysHowToSignIn)
{
    const Outcome outcome = Run({"doctor"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "norlis-cloud: You are not signed in. Run: norlis-cloud login --service URL\n");
}

} // namespace

} // namespace Norlis::Test
