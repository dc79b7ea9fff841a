#include "TransferMeter.h"

#include <algorithm>
#include <cmath>

namespace Norlis::Apps {

namespace {

constexpr qint64 window = 10'000;  // milliseconds that the rate is taken from, or more when little comes
constexpr qint64 shortest = 1'000; // less tells nothing
constexpr qint64 longestPause = 5'000;
constexpr double milliseconds = 1000;

} // namespace

void TransferMeter::Note(qint64 transferred, qint64 time)
{
    if (!samples.empty() && transferred < samples.back().transferred) {
        samples.clear();
    }
    if (samples.empty() || transferred > samples.back().transferred) {
        if (HasHalted(time)) {
            samples.clear();
        }
        samples.push_back({time, transferred});
    }
    while (samples.size() > 2 && samples[1].time <= time - window) {
        samples.pop_front();
    }
}

qint64 TransferMeter::BytesAt(int percent, qint64 size)
{
    constexpr int whole = 100;
    return size / whole * percent + size % whole * percent / whole;
}

bool TransferMeter::HasHalted(qint64 time) const
{
    if (samples.size() < 2) {
        return false;
    }
    // Where little comes, it comes in large steps.
    const qint64 usual = (samples.back().time - samples.front().time) / static_cast<qint64>(samples.size() - 1);
    return time - samples.back().time > std::max(longestPause, 4 * usual);
}

qint64 TransferMeter::SecondsHalted(qint64 time) const
{
    constexpr qint64 second = 1'000;
    return HasHalted(time) ? (time - samples.back().time) / second : 0;
}

std::optional<double> TransferMeter::Rate(qint64 time) const
{
    if (samples.size() < 2 || time - samples.front().time < shortest || HasHalted(time)) {
        return std::nullopt;
    }
    const auto bytes = static_cast<double>(samples.back().transferred - samples.front().transferred);
    return bytes * milliseconds / static_cast<double>(time - samples.front().time);
}

std::optional<qint64> TransferMeter::TimeLeft(qint64 remaining, qint64 time) const
{
    const auto rate = Rate(time);
    return rate ? std::optional(static_cast<qint64>(std::ceil(static_cast<double>(remaining) / *rate))) : std::nullopt;
}

} // namespace Norlis::Apps
