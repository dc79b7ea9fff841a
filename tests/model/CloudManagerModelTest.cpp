#include "CloudManagerStage.h"

#include <QFile>
#include <QTemporaryDir>

namespace Norlis::Test {

namespace {

TEST(CloudManagerModelTest, AnyHistoryGoesAsTheModelSays)
{
    const QTemporaryDir folder;
    qputenv("TMPDIR", QFile::encodeName(folder.path())); // previews go to the same folder
    CheckRandomly(
        [&] {
            const auto history = *AnyHistory(AnyCloudDeed());
            const auto actual = CloudManagerStageOfLibrary(folder.path())->Play(history);
            const auto expected = CloudManagerStageOfModel(folder.path())->Play(history);
            const std::string difference = Difference(expected, actual);
            if (!difference.empty()) {
                RC_FAIL(difference);
            }
        },
        1000);
}

} // namespace

} // namespace Norlis::Test
