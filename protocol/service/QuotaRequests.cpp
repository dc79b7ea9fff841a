#include "QuotaRequests.h"

#include <algorithm>
#include <utility>

namespace Norlis::Social {

namespace {

constexpr int pauseWhileBusy = 1'000; // milliseconds
constexpr int lookInterval = 50;      // milliseconds

} // namespace

QuotaRequests::QuotaRequests(Find find, std::function<bool()> isBusy, Answer answer)
    : find(std::move(find)),
      isBusy(std::move(isBusy)),
      answer(std::move(answer))
{
    timer.setSingleShot(true);
    timer.setInterval(lookInterval);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { StartNext(); });
}

void QuotaRequests::Add(qint64 id)
{
    waiting.push_back(id);
    StartNext();
}

void QuotaRequests::Cancel(qint64 id)
{
    for (auto* ids : {&waiting, &asked}) {
        ids->erase(std::remove(ids->begin(), ids->end(), id), ids->end());
    }
}

void QuotaRequests::StartNext()
{
    if (waiting.empty() || isUnderWay) {
        return;
    }
    if (sinceLast.isValid() && !sinceLast.hasExpired(pauseWhileBusy) && isBusy()) {
        timer.start();
        return;
    }
    asked = std::exchange(waiting, {});
    isUnderWay = true;
    sinceLast.start();
    find([this, guard = lifetime.Watch()](const Reply& reply) {
        if (guard) {
            OnFound(reply);
        }
    });
}

void QuotaRequests::OnFound(const Reply& reply)
{
    isUnderWay = false;
    for (const qint64 id : std::exchange(asked, {})) {
        answer(id, reply);
    }
    StartNext();
}

} // namespace Norlis::Social
