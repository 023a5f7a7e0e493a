#pragma once

#include <cassert>
#include <memory>
#include <utility>

namespace KestryCore {

/// An optional value that copies share until one of them changes it. Equality compares the values.
template <class Value>
class Shared {
public:
    Shared() = default;
    Shared(Value value) : value_(std::make_shared<Value>(std::move(value))) { }

    explicit operator bool() const { return value_ != nullptr; }
    const Value& operator*() const { return *value_; }
    const Value* operator->() const { return value_.get(); }

    /// The value, for changing it. Other copies keep theirs. There must be a value.
    Value& edit()
    {
        assert(value_ != nullptr);
        if (value_.use_count() > 1) {
            value_ = std::make_shared<Value>(*value_);
        }
        return *value_;
    }

    /// Whether both are the same object, or both empty. Equal values may be different objects.
    [[nodiscard]] bool isSameAs(const Shared& other) const { return value_ == other.value_; }

    friend bool operator==(const Shared& left, const Shared& right)
    {
        if (left.value_ == right.value_) {
            return true;
        }
        return left && right && *left == *right;
    }

private:
    std::shared_ptr<Value> value_;
};

} // namespace KestryCore
