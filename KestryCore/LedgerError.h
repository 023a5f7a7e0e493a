#pragma once

#include <new>
#include <stdexcept>

namespace KestryCore {

/// A refusal or failure of the logic. `what()` is one sentence fit to show a person, and is
/// shown unchanged.
class LedgerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs an action on a file of any size; where memory does not suffice, that is told in words.
template <class Action>
decltype(auto) withinMemory(Action action)
{
    try {
        return action();
    } catch (const std::bad_alloc&) {
        throw LedgerError("The file is too large to be read into memory.");
    }
}

} // namespace KestryCore
