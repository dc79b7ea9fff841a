#include "FilesListDriver.h"

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
    CompareRandomly(
        AnyFilesListAction(), [&] { return FilesListDriverOfLibrary(folder.path()); },
        [&] { return FilesListDriverOfModel(folder.path()); });
}

} // namespace

} // namespace Norlis::Test
