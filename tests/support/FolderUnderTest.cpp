#include "FolderUnderTest.h"

#include <testkit/contract/Waiting.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace Norlis::Test {

FolderUnderTest::FolderUnderTest()
{
    MakeFolder(Folder());
}

Social::OAuth2::AuthInfo FolderUnderTest::Settings()
{
    Social::OAuth2::AuthInfo settings;
    settings.serviceUrl = QUrl::fromLocalFile(Folder());
    return settings;
}

void FolderUnderTest::Put(const QString& name, const QByteArray& content)
{
    WriteFile(PathOf(name), content);
}

void FolderUnderTest::PutLarge(const QString& name, qint64 size)
{
    WriteSparseFile(PathOf(name), size);
}

std::optional<QByteArray> FolderUnderTest::Get(const QString& name)
{
    return ReadFile(PathOf(name));
}

void FolderUnderTest::Take(const QString& name)
{
    ASSERT_TRUE(QFile::remove(PathOf(name)));
}

QStringList FolderUnderTest::Content()
{
    // It replaces them at any moment; what stays of that is a leftover.
    constexpr int longestReplacement = 500; // milliseconds
    QStringList files;
    TestKit::BlockUntil(
        [&] {
            files = FilesBelow(Folder());
            return files.filter(QRegularExpression("^\\.norlis-cloud/\\.?norlis-.*\\.part$")).isEmpty();
        },
        longestReplacement);
    for (const char* own : {"hashes.json", "journal", "mark"}) { // what the service keeps there is no leftover
        files.removeAll(QStringLiteral(".norlis-cloud/") + own);
    }
    return files;
}

void FolderUnderTest::Withdraw()
{
    ASSERT_TRUE(QDir().rename(Folder(), Folder() + ".away"));
}

void FolderUnderTest::Restore()
{
    ASSERT_TRUE(QDir().rename(Folder() + ".away", Folder()));
}

QString FolderUnderTest::Folder() const
{
    return temporary.filePath("cloud");
}

QString FolderUnderTest::PathOf(const QString& name) const
{
    return Folder() + '/' + name;
}

} // namespace Norlis::Test
