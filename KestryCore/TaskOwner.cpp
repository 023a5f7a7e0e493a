#include "TaskOwner.h"

#include <algorithm>
#include <utility>

namespace KestryCore {

TaskOwner::TaskOwner(Scheduler& scheduler, FailureHandler failed)
    : scheduler_(scheduler), failed_(std::move(failed))
{
}

void TaskOwner::start(Task<void> task)
{
    const auto place = running_.emplace(running_.end());
    place->task = run(std::move(task), place);
    place->task.begin();
}

std::size_t TaskOwner::size() const
{
    return static_cast<std::size_t>(std::ranges::count_if(
        running_, [](const Running& running) { return !running.task.hasEnded(); }));
}

Task<void> TaskOwner::run(Task<void> task, std::list<Running>::iterator place)
{
    std::exception_ptr failure;
    try {
        co_await task;
    } catch (...) {
        failure = std::current_exception();
    }
    // Not here: a task cannot remove its own frame.
    place->removal = scheduler_.after(0, [this, place] { running_.erase(place); });
    if (failure) {
        failed_(failure);
    }
}

} // namespace KestryCore
