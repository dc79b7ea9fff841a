#pragma once

#include <QString>

#include <deque>
#include <optional>

namespace Norlis::Apps {

/// How fast a transfer is, or several together, and how long it will take. Times are those of any clock that runs
/// evenly, in milliseconds.
class TransferMeter {
public:
    /// \param transferred bytes so far; less than before begins anew, and so does what comes after a halt
    void Note(qint64 transferred, qint64 time);

    /// How many of a number of bytes a percentage is.
    static qint64 BytesAt(int percent, qint64 size);

    /// Of the last seconds, in bytes per second; nothing until that can be told.
    std::optional<double> Rate(qint64 time) const;

    /// Seconds until as many bytes more have been transferred; nothing while that cannot be told.
    std::optional<qint64> TimeLeft(qint64 remaining, qint64 time) const;

    /// For how many seconds nothing has come, if that is unusual; otherwise 0.
    qint64 SecondsHalted(qint64 time) const;

private:
    struct Sample {
        qint64 time;
        qint64 transferred;
    };

    /// Whether so little has come lately that it says nothing of the speed.
    bool HasHalted(qint64 time) const;

    std::deque<Sample> samples;
};

} // namespace Norlis::Apps
