#include "ValueText.h"

namespace Kestry {

std::string valueText(
    bool isBillable, bool rateIsKnown, double earnedCents, const KestryCore::MoneyText& words)
{
    if (!isBillable) {
        return "Nonbillable";
    }
    return rateIsKnown ? words.money(earnedCents) : KestryCore::rateNotSet;
}

} // namespace Kestry
