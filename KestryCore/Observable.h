#pragma once

#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace KestryCore {

/// Keeps an observer registered while this object exists. It may outlive the observable.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> registration)
        : registration_(std::move(registration))
    {
    }

private:
    std::shared_ptr<void> registration_;
};

/// A value that calls its observers after each assignment. Only its owner assigns; others have a
/// const reference to read and observe. Not thread-safe.
template <class Value>
class Observable {
public:
    using Observer = std::function<void(const Value&)>;

    Observable() = default;
    explicit Observable(Value value) : value_(std::move(value)) { }
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;
    ~Observable() = default;

    [[nodiscard]] const Value& operator*() const { return value_; }
    [[nodiscard]] const Value* operator->() const { return &value_; }

    /// Calls `observer` after each later assignment, also of an equal value, while the subscription
    /// exists. Observers may subscribe, unsubscribe and assign while they are called.
    [[nodiscard]] Subscription observe(Observer observer) const
    {
        auto registration = std::make_shared<Observer>(std::move(observer));
        std::erase_if(observers_, [](const auto& known) { return known.expired(); });
        observers_.push_back(registration);
        return Subscription(std::move(registration));
    }

    void assign(Value value)
    {
        value_ = std::move(value);
        const auto observers = observers_;
        for (const std::weak_ptr<Observer>& known : observers) {
            if (const auto observer = known.lock()) {
                (*observer)(value_);
            }
        }
    }

private:
    Value value_{};
    mutable std::list<std::weak_ptr<Observer>> observers_;
};

} // namespace KestryCore
