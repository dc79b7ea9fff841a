#include <tests/support/Files.h>

#include <files/LocalTarget.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Norlis::Files {

namespace {

using namespace Norlis::Test;

class LocalTargetTest : public testing::Test {
protected:
    QString ReasonAgainst(const QString& path)
    {
        const auto problem = ValidateTarget(path);
        return problem ? problem->reason : QString();
    }

    const QTemporaryDir folder;
};

TEST_F(LocalTargetTest, NewNamesAndFilesMayBeWritten)
{
    WriteFile(folder.filePath("old.pdf"), "old");
    MakeLink(folder.filePath("old.pdf"), folder.filePath("link.pdf"));
    MakeLink("/nowhere", folder.filePath("dangling.pdf"));
    for (const char* name : {"new.pdf", "old.pdf", "link.pdf", "dangling.pdf", "missing/a.pdf"}) {
        EXPECT_FALSE(ValidateTarget(folder.filePath(name))) << name;
    }
}

TEST_F(LocalTargetTest, WhatIsNotAFileIsNotReplaced)
{
    MakeFolder(folder.filePath("folder"));
    MakeNamedPipe(folder.filePath("pipe"));
    for (const QString& path : {folder.filePath("folder"), folder.filePath("pipe"), QString("/dev/null")}) {
        const auto problem = ValidateTarget(path);
        ASSERT_TRUE(problem) << path.toStdString();
        EXPECT_EQ(problem->reason, path + " is not a file");
        EXPECT_EQ(problem->advice, "Choose another folder to download to.");
    }
}

TEST_F(LocalTargetTest, TheNameMustBeThatOfADocument)
{
    EXPECT_EQ(ReasonAgainst(folder.filePath("con.pdf")),
              "The name of the file to write is a device name on some systems");
    EXPECT_EQ(ReasonAgainst(folder.path() + '/'), "The name of the file to write is empty");
    EXPECT_EQ(ReasonAgainst({}), "The name of the file to write is empty");
}

TEST_F(LocalTargetTest, WhatMayBeReplacedIsTakenForWhatItWas)
{
    const QString path = folder.filePath("a.pdf");
    WriteFile(path, "old");
    const auto put = [&](const ReplaceableFile& replaceable) {
        AtomicFile file;
        EXPECT_TRUE(file.Open(folder.path()));
        EXPECT_TRUE(file.Write("new", 3));
        const auto problem = PutInPlace(file, path, replaceable);
        return problem ? problem->reason : QString();
    };
    const QString isThere = path + " is there already, and is not an unchanged copy of the document";
    const FileIdentity old = FileIdentity::OfPath(path);
    EXPECT_EQ(put({}), isThere);
    WriteFile(path, "longer");
    EXPECT_EQ(put({false, old}), isThere);
    EXPECT_EQ(ReadFile(path), QByteArray("longer"));
    EXPECT_EQ(put({false, FileIdentity::OfPath(path)}), QString());
    EXPECT_EQ(ReadFile(path), QByteArray("new"));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(put({false, old}), QString()); // nobody's file is in the way
    EXPECT_EQ(put({true, {}}), QString());
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("a.pdf"));
}

} // namespace

} // namespace Norlis::Files
