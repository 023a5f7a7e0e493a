#pragma once

#include <string>

#include "Ledger.h"
#include "TextForms.h"

namespace KestryCore {

/// What a session is worth in lists: its money, "Nonbillable", or "Rate not set".
[[nodiscard]] std::string valueText(const TimeEntry& entry, const MoneyText& words);
/// The same for a session in progress that has lasted for `elapsedSeconds`.
[[nodiscard]] std::string valueText(
    const ActiveSession& session, double elapsedSeconds, const MoneyText& words);

} // namespace KestryCore
