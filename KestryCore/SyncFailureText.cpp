#include "SyncFailureText.h"

#include <algorithm>
#include <cmath>

#include "CloudError.h"
#include "LedgerError.h"

namespace KestryCore {

namespace {

/// Nothing for a wish that makes no sense.
std::string retryText(double seconds)
{
    constexpr double most = 1e15; // beyond any wait, and still a whole number
    if (std::isnan(seconds) || seconds < 0.0) {
        return {};
    }
    const auto whole = static_cast<long long>(std::ceil(std::min(seconds, most)));
    return " Retry in " + std::to_string(whole) + " seconds.";
}

} // namespace

std::string syncFailureText(const std::exception& failure)
{
    const auto* const ofTheCloud = dynamic_cast<const CloudError*>(&failure);
    const bool hasWish = ofTheCloud != nullptr && ofTheCloud->retryAfterSeconds();
    return failureText(failure) + (hasWish ? retryText(*ofTheCloud->retryAfterSeconds()) : "");
}

} // namespace KestryCore
