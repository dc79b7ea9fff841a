// What bash completes after norlis-cloud.

#include <tests/support/Files.h>
#include <tests/support/ProgramTest.h>

#include <apps/terminal/CommandCatalogue.h>
#include <apps/terminal/Options.h>

#include <QFileInfo>

#include <gmock/gmock.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

class CompletionTest : public ProgramTest {
protected:
    /// What can be put in the place of the last word.
    QStringList Complete(const QStringList& words)
    {
        QProcess bash;
        auto ours = environment;
        ours.insert("PATH", QFileInfo(NORLIS_CLOUD_PROGRAM).path() + ':' + ours.value("PATH", "/usr/bin:/bin"));
        bash.setProcessEnvironment(ours);
        bash.setWorkingDirectory(Home());
        const QString script = "compopt() { :; }; . '" NORLIS_DESCRIBED "/norlis-cloud.bash'; COMP_WORDS=(norlis-cloud "
                               "\"$@\"); COMP_CWORD=$#; _norlis_cloud; printf '%s\\n' \"${COMPREPLY[@]}\"";
        bash.start("bash", QStringList({"-uc", script, "bash"}) + words);
        EXPECT_TRUE(bash.waitForFinished());
        EXPECT_EQ(bash.readAllStandardError(), "");
        QStringList found = QString::fromUtf8(bash.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        found.sort();
        return found;
    }
};

TEST_F(CompletionTest, OffersEveryCommandAndEveryOptionOfIt)
{
    QStringList commands;
    for (const auto& command : Terminal::CommandCatalogue()) {
        commands.append(command.name);
        QStringList options;
        const auto all = Terminal::OptionsOf(command);
        for (const auto& option : all) {
            options.append("--" + Terminal::NameOf(option));
        }
        options.sort();
        EXPECT_EQ(Complete({command.name, "--"}), options) << qPrintable(command.name);
    }
    commands.sort();
    EXPECT_EQ(Complete({""}), commands);
    EXPECT_EQ(Complete({"lo"}), QStringList({"login", "logout"}));
    EXPECT_EQ(Complete({"--"}), QStringList({"--help", "--version"}));
}

TEST_F(CompletionTest, OffersNamesOfDocumentsThatWereListedLast)
{
    SignIn();
    MakeFile("Cloud/report 2026.pdf");
    MakeFile("Cloud/Übersicht.pdf");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    EXPECT_EQ(Complete({"download", ""}), QStringList({"report 2026.pdf", "Übersicht.pdf"}));
    EXPECT_EQ(Complete({"remove", "--force", "rep"}), QStringList("report 2026.pdf"));
    EXPECT_EQ(Complete({"remove", "report\\ 2"}), QStringList("report 2026.pdf"));
    EXPECT_EQ(Complete({"remove", "\"report 2"}), QStringList("report 2026.pdf"));
    EXPECT_EQ(Complete({"download", "--data", "elsewhere", ""}), QStringList());
    EXPECT_EQ(Complete({"list", ""}), QStringList());
}

TEST_F(CompletionTest, OffersWhatAnOptionTakes)
{
    MakeFile("folder/file.pem");
    MakeFile("first.pdf");
    EXPECT_EQ(Complete({"upload", "fi"}), QStringList("first.pdf"));
    EXPECT_EQ(Complete({"upload", "--on-conflict", ""}), QStringList({"ask", "both", "fail", "mine", "theirs"}));
    EXPECT_EQ(Complete({"upload", "--on-conflict", "=", "m"}), QStringList("mine"));
    EXPECT_EQ(Complete({"download", "--to", "f"}), QStringList("folder"));
    EXPECT_EQ(Complete({"download", "--to", "="}).filter("folder"), QStringList("folder"));
    EXPECT_EQ(Complete({"login", "--ca-file", "folder/"}), QStringList("folder/file.pem"));
    EXPECT_EQ(Complete({"watch", "--interval", ""}), QStringList());
}

TEST_F(CompletionTest, ManualsNameEveryCommandAndOption)
{
    const QString manual = QString::fromUtf8(ReadFile(NORLIS_DESCRIBED "/norlis-cloud.1").value_or("")).remove('\\');
    for (const auto& command : Terminal::CommandCatalogue()) {
        EXPECT_THAT(manual.toStdString(), HasSubstr(".SS " + command.name.toStdString())) << qPrintable(command.name);
        const auto options = Terminal::OptionsOf(command);
        for (const auto& option : options) {
            EXPECT_THAT(manual.toStdString(), HasSubstr("fB--" + Terminal::NameOf(option).toStdString() + "fR"));
        }
    }
    EXPECT_THAT(manual.toStdString(), HasSubstr("(ti/.local/share/norlis-cloud")) << "whoever has built it";
    const auto window = ReadFile(NORLIS_DESCRIBED "/norlis-documents.1").value_or("");
    EXPECT_THAT(window.toStdString(), HasSubstr("\\-\\-service"));
}

} // namespace

} // namespace Norlis::Test
