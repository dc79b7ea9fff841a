#include "Files.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::TestKit {

void WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(content), content.size()) << qPrintable(path);
}

void MakeFolder(const QString& path)
{
    ASSERT_TRUE(QDir().mkpath(path)) << qPrintable(path);
}

void WriteSparseFile(const QString& path, qint64 size)
{
    WriteFile(path, {});
    ASSERT_TRUE(QFile::resize(path, size)) << qPrintable(path);
}

void MakeLink(const QString& target, const QString& path)
{
    ASSERT_EQ(symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()), 0);
}

void MakeNamedPipe(const QString& path)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
}

std::optional<QByteArray> ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

QString Md5Of(const QByteArray& content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex());
}

QStringList FilesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator iterator(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString path = iterator.next();
        if (!iterator.fileInfo().isDir() || iterator.fileInfo().isSymLink()) {
            files << QDir(folder).relativeFilePath(path);
        }
    }
    files.sort();
    return files;
}

} // namespace Norlis::TestKit
