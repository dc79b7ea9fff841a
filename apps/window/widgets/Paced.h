#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <utility>

namespace Norlis::Window {

/// Does something at once, and while it is wanted again and again only a few times a second.
class Paced {
public:
    explicit Paced(std::function<void()> newAction) : action(std::move(newAction))
    {
        pause.setSingleShot(true);
        QObject::connect(&pause, &QTimer::timeout, &pause, [this] {
            if (std::exchange(isDue, false)) {
                Run();
            }
        });
    }

    void operator()()
    {
        if (pause.isActive()) {
            isDue = true;
        } else {
            Run();
        }
    }

private:
    static constexpr int interval = 100;  // milliseconds
    static constexpr int pauseOfTime = 4; // what takes long leaves most of the time to others

    void Run()
    {
        QElapsedTimer time;
        time.start();
        pause.start(interval); // for what the action itself asks for
        action();
        pause.start(qMax(interval, pauseOfTime * static_cast<int>(time.elapsed())));
    }

    std::function<void()> action;
    QTimer pause;
    bool isDue = false;
};

} // namespace Norlis::Window
