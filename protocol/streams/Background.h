#pragma once

#include <QThreadPool>

#include <functional>
#include <memory>

namespace Norlis::Social {

/// Runs tasks one after the other on the threads of a pool, and what they return on the thread of this object, from
/// its event loop. Destruction drops the tasks that have not begun and the continuations that have not run; a task that
/// is running goes on to its end.
class Background {
public:
    using Continuation = std::function<void()>;
    using Task = std::function<Continuation()>;

    explicit Background(QThreadPool& pool);
    ~Background();

    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// The task must not touch what belongs to the thread of this object; its continuation may.
    void Run(Task task);

private:
    struct State;

    static void RunAll(const std::shared_ptr<State>& state);

    QThreadPool& pool;
    const std::shared_ptr<State> state;
};

} // namespace Norlis::Social
