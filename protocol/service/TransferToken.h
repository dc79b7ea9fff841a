#pragma once

#include <QString>

#include <mutex>

namespace Norlis::Social {

/// Settles the race between a cancellation and the last step of a transfer, which run on two threads: a transfer that
/// was cancelled never puts its result in place afterwards, and one that has is known to the canceller.
class TransferToken {
public:
    /// Runs publish(), which returns the id of the document that it has newly made in the cloud or an empty id, unless
    /// the transfer was cancelled. False when it was.
    template <typename Publish>
    bool Commit(Publish publish)
    {
        const std::lock_guard lock(mutex);
        if (!canceled) {
            newDocument = publish();
        }
        return !canceled;
    }

    /// Returns the id of the document that the transfer has newly made; empty when there is none.
    QString Cancel()
    {
        const std::lock_guard lock(mutex);
        canceled = true;
        return newDocument;
    }

private:
    std::mutex mutex;
    bool canceled = false;
    QString newDocument;
};

} // namespace Norlis::Social
