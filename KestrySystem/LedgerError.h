#pragma once

#include <new>
#include <stdexcept>
#include <string>

namespace KestryCore {

/// Who is told of a failure of the store besides the caller, to whom it is thrown.
enum class Audience {
    caller,    ///< Nobody else: the request was unusable, and the caller shows why.
    user,      ///< The user who made the request: on the screen, or in a terminal.
    everybody, ///< The screen in any case: from now on nothing can be saved.
};

/// A refusal or failure of the logic. `what()` is one sentence fit to show a person, and is shown
/// unchanged.
class LedgerError : public std::runtime_error {
public:
    explicit LedgerError(const std::string& message, Audience audience = Audience::user)
        : std::runtime_error(message), audience_(audience)
    {
    }

    [[nodiscard]] Audience audience() const { return audience_; }

private:
    Audience audience_;
};

/// There is not enough memory for a file.
class OutOfMemory : public LedgerError {
public:
    using LedgerError::LedgerError;
};

/// Throws LedgerError with the message unless `holds`.
inline void refuseUnless(bool holds, const char* message, Audience audience = Audience::user)
{
    if (!holds) {
        throw LedgerError(message, audience);
    }
}

/// A failure of any kind as a sentence for people. The texts of the C++ library name its own
/// functions, so those for too little memory are replaced.
[[nodiscard]] inline std::string failureText(const std::exception& failure)
{
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr
        || dynamic_cast<const std::length_error*>(&failure) != nullptr;
    return isMemory ? "There isn't enough memory for that. Close other programs and try again."
                    : failure.what();
}

/// Returns what `action` returns. Throws OutOfMemory when it runs out of memory while it reads a
/// file.
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
