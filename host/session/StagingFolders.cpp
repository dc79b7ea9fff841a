#include "StagingFolders.h"

#include <QThreadPool>

#include <algorithm>
#include <utility>

namespace Norlis::Host {

namespace {

/// Equal for names that some file system takes for the same.
QString KeyOf(const QString& name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

} // namespace

StagingFolders::StagingFolders(const QString& list) : list(list)
{
    QThreadPool::globalInstance()->start([list] { StagingFolder::Sweep(list); });
}

std::shared_ptr<StagingFolder> StagingFolders::Open(const QString& target, const QString& name)
{
    auto& shared = byTarget[target];
    auto folder = shared.folder.lock();
    if (!folder) {
        folder = std::make_shared<StagingFolder>(target, list);
        shared = {folder, {}};
    } else if (shared.names.contains(KeyOf(name))) {
        return std::make_shared<StagingFolder>(target, list);
    }
    shared.names.insert(KeyOf(name));
    return folder;
}

void StagingFolders::Close(std::shared_ptr<StagingFolder> folder, const QString& target, const QString& name)
{
    const auto shared = byTarget.find(target);
    if (shared != byTarget.end() && shared->folder.lock() == folder) {
        shared->names.remove(KeyOf(name));
        if (shared->names.isEmpty()) {
            byTarget.erase(shared);
        }
    }
    if (folder.use_count() == 1) {
        closed.push_back(std::move(folder));
    }
    closed.erase(std::remove_if(closed.begin(), closed.end(), [](const auto& each) { return each->Remove(); }),
                 closed.end());
}

} // namespace Norlis::Host
