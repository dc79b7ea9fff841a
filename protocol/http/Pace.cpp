#include "Pace.h"

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int firstInterval = 500;
constexpr int calm = 60'000; // after which the server may bear more again

} // namespace

void Pace::Slow(int asked, int most)
{
    // A request that was under way when another was refused says nothing new.
    const bool isKnown = IsLimited() && sinceRefusal.elapsed() < interval / 2;
    if (asked != 0 && !isKnown) {
        interval = IsLimited() ? std::max(interval, std::min(interval * 2, most)) : firstInterval;
    }
    pause = std::max(asked, 0);
    sinceRefusal.start();
}

bool Pace::IsLimited() const
{
    return interval > 0 && sinceRefusal.elapsed() < calm + pause;
}

void Pace::Started()
{
    sinceStart.start();
}

int Pace::Wait() const
{
    if (!IsLimited()) {
        return 0;
    }
    const qint64 untilNext = sinceStart.isValid() ? interval - sinceStart.elapsed() : 0;
    return static_cast<int>(std::max({untilNext, pause - sinceRefusal.elapsed(), qint64(0)}));
}

} // namespace Norlis::Social
