#include "Files.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Test {

void RemoveFolder(const QString& path)
{
    ASSERT_TRUE(QDir(path).removeRecursively()) << qPrintable(path);
}

WithoutPrivileges::WithoutPrivileges(const QStringList& folders)
{
    for (const QString& folder : QStringList(QDir::tempPath()) + folders) {
        EXPECT_EQ(chmod(QFile::encodeName(folder).constData(), 0755), 0);
    }
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0) {
        EXPECT_EQ(setresuid(nobody, nobody, 0), 0);
        areDropped = true;
    }
}

WithoutPrivileges::~WithoutPrivileges()
{
    if (areDropped) {
        EXPECT_EQ(setresuid(0, 0, 0), 0);
    }
}

WithoutWriting::WithoutWriting(const QString& folder) : path(QFile::encodeName(folder))
{
    EXPECT_EQ(chmod(path.constData(), 0555), 0);
}

WithoutWriting::~WithoutWriting()
{
    EXPECT_EQ(chmod(path.constData(), 0755), 0);
}

} // namespace Norlis::Test
