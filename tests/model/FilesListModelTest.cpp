#include "FilesListStage.h"

#include <QFile>
#include <QTemporaryDir>

namespace Norlis::Test {

namespace {

TEST(FilesListModelTest, AnyHistoryGoesAsTheModelSays)
{
    const QTemporaryDir folder;
    QFile local(folder.filePath("a.pdf"));
    ASSERT_TRUE(local.open(QIODevice::WriteOnly));
    local.write("content");
    local.close();
    CheckRandomly(
        [&] {
            const auto history = *AnyHistory(AnyFilesListDeed());
            const auto actual = FilesListStageOfLibrary(folder.path())->Play(history);
            const auto expected = FilesListStageOfModel(folder.path())->Play(history);
            const std::string difference = Difference(expected, actual);
            if (!difference.empty()) {
                RC_FAIL(difference);
            }
        },
        1000);
}

} // namespace

} // namespace Norlis::Test
