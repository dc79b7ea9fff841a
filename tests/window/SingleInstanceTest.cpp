#include <apps/window/SingleInstance.h>
#include <tests/support/Waiting.h>

#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace Norlis::Test {

namespace {

using Window::SingleInstance;

class SingleInstanceTest : public testing::Test {
protected:
    /// Whether another start, in a thread of its own, is the first one.
    bool StartsFirst(const QStringList& files) const
    {
        bool isFirst = false;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            SingleInstance other(folder.path());
            isFirst = other.IsFirst(files);
        }));
        thread->start();
        EXPECT_TRUE(WaitUntil([&] { return thread->isFinished(); }));
        return isFirst;
    }

    const QTemporaryDir folder;
};

TEST_F(SingleInstanceTest, TheSecondStartHandsItsFilesOverToTheFirst)
{
    SingleInstance first(folder.path());
    ASSERT_TRUE(first.IsFirst({"/is/opened/here.pdf"}));
    QList<QStringList> calls;
    QObject::connect(&first, &SingleInstance::Called, &first, [&](const QStringList& files) { calls.append(files); });
    const QStringList files = {"/a.pdf", "/Résumé – \n.pdf"};
    EXPECT_FALSE(StartsFirst(files));
    EXPECT_FALSE(StartsFirst({}));
    EXPECT_EQ(calls, QList<QStringList>({files, {}}));
}

TEST_F(SingleInstanceTest, WhoStartsAfterTheFirstHasEndedIsFirst)
{
    {
        SingleInstance first(folder.path());
        ASSERT_TRUE(first.IsFirst({}));
    }
    EXPECT_TRUE(StartsFirst({}));
}

TEST_F(SingleInstanceTest, OtherDataFoldersAreOthers)
{
    SingleInstance first(folder.path());
    ASSERT_TRUE(first.IsFirst({}));
    SingleInstance other(folder.filePath("other"));
    EXPECT_TRUE(other.IsFirst({}));
}

TEST_F(SingleInstanceTest, AFolderThatCannotBeCreatedIsAnError)
{
    EXPECT_THROW(SingleInstance("/proc/none"), std::runtime_error);
}

} // namespace

} // namespace Norlis::Test
