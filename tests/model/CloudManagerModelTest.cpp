#include "CloudManagerDriver.h"

#include <QFile>
#include <QTemporaryDir>

namespace Norlis::Test {

namespace {

TEST(CloudManagerModelTest, AnyHistoryGoesAsTheModelSays)
{
    const QTemporaryDir folder;
    qputenv("TMPDIR", QFile::encodeName(folder.path())); // previews go to the same folder
    CompareRandomly(
        AnyCloudAction(), [&] { return CloudManagerDriverOfLibrary(folder.path()); },
        [&] { return CloudManagerDriverOfModel(folder.path()); });
}

} // namespace

} // namespace Norlis::Test
