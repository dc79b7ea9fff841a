#include "DiskFlush.h"

#include <files/FileFlush.h>

#include <QSet>

#include <utility>

namespace Norlis::Social {

DiskFlush::DiskFlush(QThreadPool& pool) : work(pool) {}

void DiskFlush::AddFile(const std::shared_ptr<Files::AtomicFile>& file, Done done)
{
    Add({file, {}, std::move(done)});
}

void DiskFlush::AddFolder(const QString& folder, Done done)
{
    Add({nullptr, folder, std::move(done)});
}

void DiskFlush::Add(Item item)
{
    waiting.push_back(std::move(item));
    if (!isUnderWay) {
        StartNext();
    }
}

void DiskFlush::StartNext()
{
    isUnderWay = !waiting.empty();
    if (!isUnderWay) {
        return;
    }
    work.Run([this, items = std::make_shared<const Items>(std::exchange(waiting, {}))]() -> Background::Continuation {
        const auto errors = Flush(*items);
        return [this, items, errors] {
            StartNext(); // first: what is called may destroy this object
            for (std::size_t place = 0; place < items->size(); ++place) {
                (*items)[place].done(errors[place]);
            }
        };
    });
}

std::vector<QString> DiskFlush::Flush(const Items& items)
{
    std::vector<QString> errors(items.size());
    std::vector<int> descriptors;
    std::vector<std::size_t> places;
    QSet<QString> folders;
    for (std::size_t place = 0; place < items.size(); ++place) {
        if (items[place].file) {
            descriptors.push_back(items[place].file->Descriptor());
            places.push_back(place);
        } else {
            folders.insert(items[place].folder);
        }
    }
    const auto failures = Files::FlushFiles(descriptors);
    for (std::size_t index = 0; index < failures.size(); ++index) {
        errors[places[index]] = failures[index] ? QString::fromStdString(failures[index].message()) : QString();
    }
    for (const QString& folder : qAsConst(folders)) {
        Files::AtomicFile::SyncFolderOf(folder + "/.");
    }
    return errors;
}

} // namespace Norlis::Social
