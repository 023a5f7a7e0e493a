#pragma once

#include <optional>
#include <string>

#include "CloudError.h"

namespace Kestry {

/// The failure of the store with which an action ends; nullopt when it ends well.
template <class Action>
[[nodiscard]] std::optional<KestryCore::CloudError> cloudFailureOf(Action action)
{
    try {
        action();
    } catch (const KestryCore::CloudError& failure) {
        return failure;
    }
    return std::nullopt;
}

/// Its words; "(accepted)" when it ends well.
template <class Action>
[[nodiscard]] std::string cloudWordsOf(Action action)
{
    const auto failure = cloudFailureOf(action);
    return failure ? failure->what() : "(accepted)";
}

} // namespace Kestry
