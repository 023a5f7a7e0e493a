#pragma once

#include <QTest>

#include <exception>
#include <optional>
#include <utility>

#include "Scheduler.h"
#include "Task.h"
#include "TaskOwner.h"

namespace Kestry {

/// Runs a task on the event loop to its end and gives its result, or throws what it throws.
template <class Value>
class Awaited {
public:
    explicit Awaited(KestryCore::Scheduler& scheduler)
        : owner_(scheduler, [this](std::exception_ptr failure) { failure_ = std::move(failure); })
    {
    }

    Value result(KestryCore::Task<Value> task)
    {
        start(std::move(task));
        if (!QTest::qWaitFor([this] { return isOver(); }, 20'000)) {
            throw std::runtime_error("The task does not end.");
        }
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return *std::move(value_);
    }
    void start(KestryCore::Task<Value> task) { owner_.start(keep(std::move(task))); }
    [[nodiscard]] bool isOver() const { return value_.has_value() || failure_; }

private:
    KestryCore::Task<void> keep(KestryCore::Task<Value> task)
    {
        Value value = co_await task;
        value_.emplace(std::move(value));
    }

    std::optional<Value> value_;
    std::exception_ptr failure_;
    KestryCore::TaskOwner owner_;
};

/// The result of a task.
template <class Value>
Value await(KestryCore::Scheduler& scheduler, KestryCore::Task<Value> task)
{
    Awaited<Value> awaited(scheduler);
    return awaited.result(std::move(task));
}

/// Runs a task that has no result.
inline void await(KestryCore::Scheduler& scheduler, KestryCore::Task<void> task)
{
    const auto giveTrue = [](KestryCore::Task<void> work) -> KestryCore::Task<bool> {
        co_await work;
        co_return true;
    };
    Awaited<bool> awaited(scheduler);
    (void)awaited.result(giveTrue(std::move(task)));
}

} // namespace Kestry
