#pragma once

#include <QElapsedTimer>

namespace Norlis::Social {

/// How quickly requests may follow each other on a server that limits their rate, learned from what it refuses. Times
/// are in milliseconds.
class Pace {
public:
    static constexpr int slowest = 16'000;

    /// The server has refused a request.
    /// \param asked the pause that it wants; -1 when it does not say
    /// \param most  beyond which the interval does not grow
    void Slow(int asked, int most = slowest);

    /// While it limits, there should be one request at a time, and only after Wait.
    bool IsLimited() const;

    /// A request is being sent.
    void Started();

    /// Until the next one may be sent.
    int Wait() const;

private:
    int interval = 0; ///< between the starts of two requests
    int pause = 0;    ///< after the last refusal
    QElapsedTimer sinceRefusal;
    QElapsedTimer sinceStart;
};

} // namespace Norlis::Social
