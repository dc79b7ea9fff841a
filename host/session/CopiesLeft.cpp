#include "CopiesLeft.h"

#include "Records.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Norlis::Host {

CopiesLeft::CopiesLeft(KeptCopies& copies, const std::shared_ptr<Md5HashCalculator>& hashes,
                       std::function<bool(const QString&)> hasReturned)
    : copies(copies),
      hashes(hashes),
      hasReturned(std::move(hasReturned))
{
    const auto paths = copies.Paths();
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(earlier),
                 [&copies](const QString& path) { return copies.At(path)->lostAt != 0; });
}

void CopiesLeft::Tell(std::function<void(const QString&)> newTell)
{
    tell = std::move(newTell);
}

void CopiesLeft::Look(const QString& path, const std::string& syncHash)
{
    if (!tell) {
        return;
    }
    const auto look = [this, path, syncHash] {
        const auto hash = hashes->CalculateHash(ToPath(path));
        if (!hash.empty() && hash != syncHash && !hasReturned(path)) {
            tell(path);
        }
    };
    hashes->Prepare({path}, this, look, Md5HashCalculator::Reading::Always);
}

void CopiesLeft::LookAtEarlier()
{
    const auto paths = std::exchange(earlier, {});
    for (const auto& path : paths) {
        if (const auto* copy = copies.At(path); copy && copy->lostAt != 0) {
            Look(path, copy->syncHash);
        }
    }
}

void CopiesLeft::Forget(const QString& path)
{
    if (const auto* copy = copies.At(path); copy && copy->lostAt != 0) {
        copies.Drop(path);
    }
}

} // namespace Norlis::Host
