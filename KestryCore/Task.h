#pragma once

#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

namespace KestryCore {

template <class Value>
class Task;

/// What the promises of all tasks share. `Task` uses it; nobody else has to.
class TaskPromiseBase {
public:
    /// Ends by going on with whoever waits for the task, if anybody does by then.
    struct End {
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        template <class Promise>
        [[nodiscard]] std::coroutine_handle<> await_suspend(
            std::coroutine_handle<Promise> ended) const noexcept
        {
            const std::coroutine_handle<> waiting = ended.promise().waiting_;
            return waiting ? waiting : std::noop_coroutine();
        }
        void await_resume() const noexcept { }
    };

    [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
    [[nodiscard]] End final_suspend() const noexcept { return {}; }
    void unhandled_exception() noexcept { failure_ = std::current_exception(); }

    void goOnWith(std::coroutine_handle<> waiting) { waiting_ = waiting; }

protected:
    void rethrow() const
    {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

private:
    std::coroutine_handle<> waiting_;
    std::exception_ptr failure_;
};

template <class Value>
class TaskPromise : public TaskPromiseBase {
public:
    [[nodiscard]] Task<Value> get_return_object();
    void return_value(Value value) { value_.emplace(std::move(value)); }
    [[nodiscard]] Value take()
    {
        rethrow();
        return *std::move(value_);
    }

private:
    std::optional<Value> value_;
};

template <>
class TaskPromise<void> : public TaskPromiseBase {
public:
    [[nodiscard]] Task<void> get_return_object();
    void return_void() const { }
    void take() const { rethrow(); }
};

/// Work that waits in between, written as a coroutine. It ends with a value or an exception, which
/// is what awaiting it gives.
///
/// A task is lazy: it begins when it is awaited, or when a `TaskOwner` starts it. So nothing runs
/// before its result has somewhere to go, and a task that nobody takes does nothing. Who has the
/// task has its frame: destroying a task that waits cancels it, together with all tasks that it is
/// waiting for, and what they hold is let go in the usual order.
///
/// A task must not be destroyed by what itself is doing at the moment, only while it waits. The
/// parameters of a task are values, or outlive it.
///
/// Not thread-safe.
template <class Value>
class [[nodiscard]] Task {
public:
    using promise_type = TaskPromise<Value>;
    using Handle = std::coroutine_handle<promise_type>;

    Task() = default;
    explicit Task(Handle frame) : frame_(frame) { }
    Task(Task&& other) noexcept : frame_(std::exchange(other.frame_, {})) { }
    Task& operator=(Task&& other) noexcept
    {
        std::swap(frame_, other.frame_);
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task()
    {
        if (frame_) {
            frame_.destroy();
        }
    }

    /// Runs up to the first wait, in this call. For owners: once, and never for a task that is
    /// awaited.
    void begin() { frame_.resume(); }
    [[nodiscard]] bool hasEnded() const { return frame_.done(); }

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    /// Goes on at once when the task needs no wait, so that a loop over such tasks needs no deeper
    /// and deeper stack.
    [[nodiscard]] bool await_suspend(std::coroutine_handle<> waiting)
    {
        frame_.resume();
        if (frame_.done()) {
            return false;
        }
        frame_.promise().goOnWith(waiting);
        return true;
    }
    Value await_resume() { return frame_.promise().take(); }

private:
    Handle frame_;
};

template <class Value>
Task<Value> TaskPromise<Value>::get_return_object()
{
    return Task<Value>(Task<Value>::Handle::from_promise(*this));
}

inline Task<void> TaskPromise<void>::get_return_object()
{
    return Task<void>(Task<void>::Handle::from_promise(*this));
}

} // namespace KestryCore
