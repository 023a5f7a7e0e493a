#include "MonthCards.h"

namespace KestryCore {

namespace {

constexpr const char* atDailyPace = "At your daily pace";

MonthCard billableEarnings(const MonthMetrics& metrics, const MoneyText& words)
{
    const bool hasUnpriced = metrics.unpricedSeconds > 0.0;
    return {
        hasUnpriced && metrics.earnedCents == 0.0 ? rateNotSet : words.money(metrics.earnedCents),
        hasUnpriced ? durationText(metrics.unpricedSeconds) + " still unpriced"
                    : "Recorded billable value",
        metrics.earnedCents};
}

MonthCard trackedTime(const MonthMetrics& metrics)
{
    const char* unit = metrics.sessionCount == 1 ? " session" : " sessions";
    return {durationText(metrics.seconds), "Across " + std::to_string(metrics.sessionCount) + unit,
        metrics.seconds};
}

MonthCard projectedEarnings(const MonthMetrics& metrics, ShownMonth month, const MoneyText& words)
{
    if (metrics.unpricedSeconds > 0.0) {
        return {rateNotSet, "Rate needed to estimate", metrics.earnedCents};
    }
    if (month == ShownMonth::current) {
        return {words.wholeMoney(metrics.projectedCents), atDailyPace, metrics.projectedCents};
    }
    return {words.money(metrics.earnedCents), "Final billable value", metrics.earnedCents};
}

MonthCard projectedTime(const MonthMetrics& metrics, ShownMonth month)
{
    if (month == ShownMonth::current) {
        return {durationText(metrics.projectedSeconds), atDailyPace, metrics.projectedSeconds};
    }
    return {durationText(metrics.seconds), "Final tracked time", metrics.seconds};
}

} // namespace

MonthCards monthCards(const MonthMetrics& metrics, ShownMonth month, const MoneyText& words)
{
    return {billableEarnings(metrics, words), trackedTime(metrics),
        projectedEarnings(metrics, month, words), projectedTime(metrics, month)};
}

} // namespace KestryCore
