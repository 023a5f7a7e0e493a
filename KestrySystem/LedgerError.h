#pragma once

#include <new>
#include <stdexcept>
#include <string>

namespace KestryCore {

/// A refusal or failure of the logic. `what()` is one sentence fit to show a person, and is
/// shown unchanged.
class LedgerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The memory did not suffice.
class OutOfMemory : public LedgerError {
public:
    using LedgerError::LedgerError;
};

/// A failure of any kind in words fit to show. Those of the C++ library name its own functions,
/// which nobody knows.
[[nodiscard]] inline std::string failureText(const std::exception& failure)
{
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr
        || dynamic_cast<const std::length_error*>(&failure) != nullptr;
    return isMemory ? "There isn't enough memory for that. Close other programs and try again."
                    : failure.what();
}

/// Runs an action on a file of any size; where memory does not suffice, that is told in words.
template <class Action>
decltype(auto) withinMemory(Action action)
{
    try {
        return action();
    } catch (const std::bad_alloc&) {
        throw OutOfMemory("The file is too large to be read into memory.");
    }
}

} // namespace KestryCore
