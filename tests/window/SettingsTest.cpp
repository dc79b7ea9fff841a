#include "OpenedFiles.h"
#include "WindowTest.h"

#include <apps/window/settings/SettingsDialog.h>
#include <apps/window/widgets/FolderField.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSpinBox>
#include <QTest>

namespace Norlis::Test {

namespace {

/// What the user changes in the settings.
class SettingsTest : public WindowTest {
protected:
    void OpenSettings()
    {
        Action("Settings…")->trigger();
        ASSERT_TRUE(WaitUntil([&] {
            const auto dialog = Find<Window::SettingsDialog>();
            return dialog && dialog->isActiveWindow();
        }));
    }

    QLineEdit* Field(const QString& name) const
    {
        return Find<Window::FolderField>(name)->findChild<QLineEdit*>();
    }

    void Accept()
    {
        QTest::keyClick(Find<Window::SettingsDialog>(), Qt::Key_Return);
    }

    bool AreClosed() const
    {
        return WaitUntil([&] { return !Find<Window::SettingsDialog>(); });
    }

    /// "a.pdf", whose changes are uploaded without asking.
    void OpenADocumentThatUploadsItself(const OpenedFiles& opened)
    {
        PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
        OpenCloud();
        ASSERT_TRUE(Shows({"a.pdf"}));
        OpenSettings();
        Click(Find<QCheckBox>("uploadsByItself"));
        Accept();
        ASSERT_TRUE(AreClosed());
        Select({"a.pdf"});
        Action("Open")->trigger();
        ASSERT_TRUE(WaitUntil([&] { return !opened.paths.isEmpty(); }));
    }
};

TEST_F(SettingsTest, FoldersDecideWhereDownloadsAndOpenedDocumentsGo)
{
    const OpenedFiles opened;
    PutIntoCloud("a.pdf", PdfOfColor(Qt::red));
    PutIntoCloud("b.pdf", PdfOfColor(Qt::blue));
    OpenCloud();
    ASSERT_TRUE(Shows({"a.pdf", "b.pdf"}));
    OpenSettings();
    EXPECT_EQ(Field("downloadFolder")->text(), Local("downloads"));
    EXPECT_EQ(Field("openedFolder")->text(), "");
    Type(Field("downloadFolder"), Local("new/kept"));
    Type(Field("openedFolder"), Local("looked at"));
    Accept();
    ASSERT_TRUE(AreClosed());
    Select({"a.pdf"});
    Action("Download")->trigger();
    ASSERT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_TRUE(QFile::exists(Local("new/kept/a.pdf")));
    Select({"b.pdf"});
    Action("Open")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return !opened.paths.isEmpty(); }));
    EXPECT_EQ(opened.paths, QStringList(Local("looked at/b.pdf")));
}

TEST_F(SettingsTest, AFolderThatTakesNoFilesIsToldAndNothingIsChanged)
{
    OpenCloud();
    OpenSettings();
    const QString bad = LocalFile("file", "no folder") + "/below";
    Type(Field("downloadFolder"), bad);
    Accept();
    EXPECT_EQ(Find<QLabel>("settingsProblem")->text(),
              QStringLiteral("Files cannot be put into “%1”. Choose another folder.").arg(bad));
    EXPECT_TRUE(Field("downloadFolder")->hasFocus());
    Type(Field("downloadFolder"), "relative");
    Accept();
    EXPECT_TRUE(Find<Window::SettingsDialog>());
    QTest::keyClick(Find<Window::SettingsDialog>(), Qt::Key_Escape);
    ASSERT_TRUE(AreClosed());
    OpenSettings();
    EXPECT_EQ(Field("downloadFolder")->text(), Local("downloads"));
}

TEST_F(SettingsTest, ChoicesAreKeptWhenTheyAreAcceptedOnly)
{
    Open();
    const auto change = [this](int minutes) {
        OpenSettings();
        Find<QSpinBox>("refreshMinutes")->setValue(minutes);
        Click(Find<QCheckBox>("tellsOfTransfers"));
        EXPECT_EQ(Find<QSpinBox>("noticeSeconds")->isEnabled(), Find<QCheckBox>("tellsOfTransfers")->isChecked());
    };
    change(7);
    QTest::keyClick(Find<Window::SettingsDialog>(), Qt::Key_Escape);
    ASSERT_TRUE(AreClosed());
    OpenSettings();
    EXPECT_EQ(Find<QSpinBox>("refreshMinutes")->value(), 1);
    EXPECT_TRUE(Find<QCheckBox>("tellsOfTransfers")->isChecked());
    QTest::keyClick(Find<Window::SettingsDialog>(), Qt::Key_Escape);
    ASSERT_TRUE(AreClosed());
    change(0);
    EXPECT_EQ(Find<QSpinBox>("refreshMinutes")->text(), "Only when asked");
    Accept();
    ASSERT_TRUE(AreClosed());
    Close();
    Open();
    OpenSettings();
    EXPECT_EQ(Find<QSpinBox>("refreshMinutes")->value(), 0);
    EXPECT_FALSE(Find<QCheckBox>("tellsOfTransfers")->isChecked());
}

TEST_F(SettingsTest, ChangesOfAnOpenedDocumentAreUploadedByThemselvesIfTheUserWantsThat)
{
    const OpenedFiles opened;
    ASSERT_NO_FATAL_FAILURE(OpenADocumentThatUploadsItself(opened));
    const QByteArray changed = PdfOfColor(Qt::blue);
    WriteFile(opened.paths.first(), changed);
    EXPECT_TRUE(WaitUntil([&] { return ReadFile(Cloud("a.pdf")) == changed; }));
    EXPECT_TRUE(WaitUntil([&] { return Transfers().value(0) == "a.pdf finished"; }));
    EXPECT_TRUE(IsUpToDate("a.pdf"));
    EXPECT_EQ(Message(), "");
}

TEST_F(SettingsTest, AConflictIsNotUploadedByItself)
{
    const OpenedFiles opened;
    ASSERT_NO_FATAL_FAILURE(OpenADocumentThatUploadsItself(opened));
    const QByteArray other = PdfOfColor(Qt::green);
    PutIntoCloud("a.pdf", other);
    ASSERT_TRUE(WaitUntil([&] { return StateOf("a.pdf") == static_cast<int>(State::ChangedInCloud); }));
    WriteFile(opened.paths.first(), PdfOfColor(Qt::blue));
    EXPECT_TRUE(WaitUntil([&] { return Message().contains("was changed both here and in the cloud"); }))
        << qPrintable(Message());
    EXPECT_EQ(ReadFile(Cloud("a.pdf")), other);
}

} // namespace

} // namespace Norlis::Test
