#pragma once

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace Norlis::Social {

/// Runs tasks one after the other on the threads of a pool, and what they return on the own thread, from its event
/// loop. Destruction drops what has not begun and what has not come back; a task that runs by then is run to its end.
class Background {
public:
    using Continuation = std::function<void()>;
    using Task = std::function<Continuation()>;

    explicit Background(QThreadPool& pool);
    ~Background();

    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// The task must not touch what belongs to the own thread; its continuation may.
    void Run(Task task);

private:
    struct State;

    static void RunAll(const std::shared_ptr<State>& state);

    QThreadPool& pool;
    const std::shared_ptr<State> state;
};

} // namespace Norlis::Social
