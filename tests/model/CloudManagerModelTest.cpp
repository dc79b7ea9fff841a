#include "CloudManagerStage.h"

#include <QFile>
#include <QTemporaryDir>

namespace Norlis::Test {

namespace {

TEST(CloudManagerModelTest, AnyHistoryGoesAsTheModelSays)
{
    const QTemporaryDir folder;
    qputenv("TMPDIR", QFile::encodeName(folder.path())); // previews go to the same folder
    CompareRandomly(
        AnyCloudDeed(), [&] { return CloudManagerStageOfLibrary(folder.path()); },
        [&] { return CloudManagerStageOfModel(folder.path()); });
}

} // namespace

} // namespace Norlis::Test
