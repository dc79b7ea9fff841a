#include <tests/support/Files.h>

#include <files/FileFlush.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace Norlis::Files {

using namespace Norlis::Test;

class FileFlushTest : public testing::Test {
protected:
    std::vector<int> Open(int count)
    {
        std::vector<int> descriptors;
        for (int number = 0; number < count; ++number) {
            files.push_back(std::make_unique<QFile>(folder.filePath(QString::number(number))));
            EXPECT_TRUE(files.back()->open(QFile::WriteOnly));
            files.back()->write("content");
            descriptors.push_back(files.back()->handle());
        }
        return descriptors;
    }

    QTemporaryDir folder;
    std::vector<std::unique_ptr<QFile>> files;
};

TEST_F(FileFlushTest, FewAndManyAreFlushed)
{
    for (const int count : {0, 1, 3, 50}) {
        const auto errors = FlushFiles(Open(count));
        EXPECT_EQ(errors, std::vector<std::error_code>(static_cast<std::size_t>(count)));
    }
}

TEST_F(FileFlushTest, TheErrorIsThatOfTheFileThatHasIt)
{
    for (const int count : {2, 50}) {
        auto descriptors = Open(count);
        int ends[2] = {};
        ASSERT_EQ(pipe(ends), 0); // which cannot be flushed
        descriptors.insert(descriptors.begin() + 1, ends[1]);
        const auto errors = FlushFiles(descriptors);
        ASSERT_EQ(errors.size(), descriptors.size());
        for (std::size_t place = 0; place < errors.size(); ++place) {
            EXPECT_EQ(bool(errors[place]), place == 1) << place;
        }
        close(ends[0]);
        close(ends[1]);
    }
}

} // namespace Norlis::Files
