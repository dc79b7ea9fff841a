#include <tests/support/SessionTest.h>
#include <tests/support/Waiting.h>

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace Norlis::Test {

namespace {

/// What was fetched to be looked at only.
class CloudSessionViewingTest : public SessionTest {
protected:
    /// A copy of the document in its folder, written and read that many days ago.
    QString View(const QString& id, int days)
    {
        const QString path = session->ViewingFolder(id) + '/' + id + ".pdf";
        QDir().mkpath(session->ViewingFolder(id));
        Save(path, "content of " + id.toUtf8(), days);
        Upload(path, id);
        return path;
    }

    static void Save(const QString& path, const QByteArray& content, int days)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
        file.flush();
        Age(file, days);
    }

    static void Age(QFile& file, int days)
    {
        const auto time = QDateTime::currentDateTime().addDays(-days);
        EXPECT_TRUE(file.setFileTime(time, QFile::FileModificationTime));
        EXPECT_TRUE(file.setFileTime(time, QFile::FileAccessTime));
    }
};

TEST_F(CloudSessionViewingTest, WhatNobodyHasLookedAtForAMonthIsDeleted)
{
    const QString old = View("1", 31);
    const QString recent = View("2", 29);
    const QString changed = View("3", 31);
    Save(changed, "changes that are nowhere else", 31);
    Write("4.pdf", "elsewhere");
    Upload(PathOf("4.pdf"), "4");
    QFile elsewhere(PathOf("4.pdf"));
    ASSERT_TRUE(elsewhere.open(QFile::ReadWrite));
    Age(elsewhere, 31);
    session.reset();
    for (const auto& path : {old, recent, changed}) { // it has read them
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::ReadWrite));
        Age(file, path == recent ? 29 : 31);
    }
    Reopen();
    EXPECT_TRUE(WaitUntil([&] { return !QFile::exists(old); }));
    EXPECT_FALSE(QDir(session->ViewingFolder("1")).exists());
    EXPECT_TRUE(WaitUntil([&] { return StatusOf("1") == Status::OnlyInCloud; }));
    LetWorkFinish();
    EXPECT_TRUE(QFile::exists(recent));
    EXPECT_TRUE(QFile::exists(changed));
    EXPECT_TRUE(elsewhere.exists());
}

} // namespace

} // namespace Norlis::Test
