#pragma once

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "Scheduler.h"

namespace KestryCore {

/// A result that comes from outside, such as from a server: one task awaits it, and whoever has its
/// sender gives it, before or after.
///
/// The task goes on in a later turn of the loop, never during the call of the sender. A sender may
/// outlive the reply: what it gives after the task has gone, or a second time, goes nowhere.
///
/// Not thread-safe.
template <class Value>
class Reply {
    struct State {
        std::optional<Value> value;
        std::exception_ptr failure;
        std::coroutine_handle<> waiting;
        [[nodiscard]] bool isGiven() const { return value.has_value() || failure; }
    };

public:
    class Sender {
    public:
        Sender(Scheduler& scheduler, std::shared_ptr<State> state)
            : scheduler_(&scheduler), state_(std::move(state))
        {
        }

        /// Whether a task still waits for it.
        [[nodiscard]] bool isAwaited() const { return state_->waiting && !state_->isGiven(); }
        void give(Value value) const
        {
            if (!state_->isGiven()) {
                state_->value.emplace(std::move(value));
                wake();
            }
        }
        void fail(std::exception_ptr failure) const
        {
            if (!state_->isGiven()) {
                state_->failure = std::move(failure);
                wake();
            }
        }

    private:
        void wake() const
        {
            scheduler_->post([state = state_] {
                if (const auto waiting = std::exchange(state->waiting, {})) {
                    waiting.resume();
                }
            });
        }

        Scheduler* scheduler_;
        std::shared_ptr<State> state_;
    };

    /// The scheduler must outlive the senders.
    explicit Reply(Scheduler& scheduler) : scheduler_(scheduler) { }
    Reply(const Reply&) = delete;
    Reply& operator=(const Reply&) = delete;
    ~Reply() { state_->waiting = {}; }

    [[nodiscard]] Sender sender() const { return Sender(scheduler_, state_); }

    [[nodiscard]] bool await_ready() const noexcept { return state_->isGiven(); }
    void await_suspend(std::coroutine_handle<> waiting) { state_->waiting = waiting; }
    Value await_resume()
    {
        if (state_->failure) {
            std::rethrow_exception(state_->failure);
        }
        return *std::move(state_->value);
    }

private:
    Scheduler& scheduler_;
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// A wait of some seconds on the scheduler's clock, to be awaited once.
class Delay {
public:
    Delay(Scheduler& scheduler, double seconds) : scheduler_(scheduler), seconds_(seconds) { }

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiting)
    {
        timer_ = scheduler_.after(seconds_, [waiting] { waiting.resume(); });
    }
    void await_resume() const noexcept { }

private:
    Scheduler& scheduler_;
    double seconds_;
    Timer timer_;
};

} // namespace KestryCore
