#include "SessionValue.h"

namespace KestryCore {
namespace {

template <class Session>
std::string textOf(const Session& session, double earnedCents, const MoneyText& words)
{
    if (!session.isBillable) {
        return "Nonbillable";
    }
    return session.rateIsKnown ? words.money(earnedCents) : rateNotSet;
}

} // namespace

std::string valueText(const TimeEntry& entry, const MoneyText& words)
{
    return textOf(entry, entry.earnedCents(), words);
}

std::string valueText(const ActiveSession& session, double elapsedSeconds, const MoneyText& words)
{
    return textOf(session, session.earnedCents(elapsedSeconds), words);
}

} // namespace KestryCore
