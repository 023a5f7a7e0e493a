#pragma once

#include <string>

#include "TextForms.h"

namespace Kestry {

/// What a session is worth, in words: its money, "Nonbillable", or "Rate not set".
[[nodiscard]] std::string valueText(
    bool isBillable, bool rateIsKnown, double earnedCents, const KestryCore::MoneyText& words);

} // namespace Kestry
