#pragma once

#include "Reply.h"
#include <base/Lifetime.h>

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <vector>

namespace Norlis::Social {

/// Requests for the storage usage, of which a host makes one after every upload. Those that come while transfers run
/// are answered together, about once a second, each with what was found out after it had come.
class QuotaRequests {
public:
    /// Finds the usage out and calls what it is given once, at once or later.
    using Find = std::function<void(std::function<void(Reply)> found)>;
    using Answer = std::function<void(qint64 id, Reply)>;

    /// \param isBusy whether transfers run, which more requests would hold up
    QuotaRequests(Find find, std::function<bool()> isBusy, Answer answer);

    void Add(qint64 id);

    /// Unknown ids are ignored.
    void Cancel(qint64 id);

private:
    void StartNext();
    void OnFound(const Reply& reply);

    const Find find;
    const std::function<bool()> isBusy;
    const Answer answer;
    std::vector<qint64> waiting;
    std::vector<qint64> asked; ///< those that the one under way is for
    bool isUnderWay = false;
    QElapsedTimer sinceLast; ///< began
    QTimer timer;
    Lifetime lifetime;
};

} // namespace Norlis::Social
