#pragma once

#include <string>

#include "LedgerError.h"

namespace KestryCore {

/// The sentence with which an action was refused; "(accepted)" when it was not.
template <class Action>
[[nodiscard]] std::string refusalOf(Action action)
{
    try {
        action();
    } catch (const LedgerError& error) {
        return error.what();
    }
    return "(accepted)";
}

inline constexpr const char* accepted = "(accepted)";

} // namespace KestryCore
