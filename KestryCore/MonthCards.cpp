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
                    : "Recorded billable value"};
}

MonthCard trackedTime(const MonthMetrics& metrics)
{
    const char* unit = metrics.sessionCount == 1 ? " session" : " sessions";
    return {durationText(metrics.seconds), "Across " + std::to_string(metrics.sessionCount) + unit};
}

MonthCard projectedEarnings(const MonthMetrics& metrics, ShownMonth month, const MoneyText& words)
{
    if (metrics.unpricedSeconds > 0.0) {
        return {rateNotSet, "Rate needed to estimate"};
    }
    if (month == ShownMonth::current) {
        return {words.wholeMoney(metrics.projectedCents), atDailyPace};
    }
    return {words.money(metrics.earnedCents), "Final billable value"};
}

MonthCard projectedTime(const MonthMetrics& metrics, ShownMonth month)
{
    if (month == ShownMonth::current) {
        return {durationText(metrics.projectedSeconds), atDailyPace};
    }
    return {durationText(metrics.seconds), "Final tracked time"};
}

} // namespace

MonthCards monthCards(const MonthMetrics& metrics, ShownMonth month, const MoneyText& words)
{
    return {billableEarnings(metrics, words), trackedTime(metrics),
        projectedEarnings(metrics, month, words), projectedTime(metrics, month)};
}

} // namespace KestryCore
