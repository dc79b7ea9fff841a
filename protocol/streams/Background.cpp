#include "Background.h"

#include <QObject>

#include <deque>
#include <mutex>

namespace Norlis::Social {

struct Background::State {
    std::mutex mutex;
    std::deque<Task> tasks; ///< guarded, as are the others
    bool isRunning = false;
    std::unique_ptr<QObject> context; ///< receives the continuations; null after the end
};

Background::Background(QThreadPool& pool) : pool(pool), state(std::make_shared<State>())
{
    state->context = std::make_unique<QObject>();
}

Background::~Background()
{
    std::deque<Task> dropped; // destroyed without the lock: they may hold anything
    std::unique_ptr<QObject> context;
    const std::lock_guard lock(state->mutex);
    dropped.swap(state->tasks);
    context = std::move(state->context);
}

void Background::Run(Task task)
{
    const std::lock_guard lock(state->mutex);
    state->tasks.push_back(std::move(task));
    if (!state->isRunning) {
        state->isRunning = true;
        pool.start([state = state] { RunAll(state); });
    }
}

void Background::RunAll(const std::shared_ptr<State>& state)
{
    while (true) {
        Task task;
        {
            const std::lock_guard lock(state->mutex);
            if (state->tasks.empty()) {
                state->isRunning = false;
                return;
            }
            task = std::move(state->tasks.front());
            state->tasks.pop_front();
        }
        Continuation continuation = task();
        const std::lock_guard lock(state->mutex);
        if (continuation && state->context) {
            QMetaObject::invokeMethod(state->context.get(), std::move(continuation), Qt::QueuedConnection);
        }
    }
}

} // namespace Norlis::Social
