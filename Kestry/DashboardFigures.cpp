#include "DashboardFigures.h"

#include <string>
#include <string_view>

#include "SessionWords.h"

namespace Kestry {

namespace {

constexpr const char* averageHelp =
    "Total hours divided by calendar months from the first session through this month, including "
    "months with no time and the current partial month.";

QString figureText(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

DashboardFigure amount(const QString& title, const QString& value, const QString& line)
{
    return {title, value, line, {}, title + ", " + value + ", " + line};
}

DashboardFigure length(const QString& title, double seconds, const QString& line)
{
    const QString spoken = figureText(spokenHoursAndMinutes(seconds));
    return {title, figureText(KestryCore::durationText(seconds)), line, {},
        title + ", " + spoken + ", " + line};
}

QString monthsCounted(int count)
{
    if (count == 0) {
        return "No tracked time yet";
    }
    return "Across " + QString::number(count)
        + (count == 1 ? " calendar month" : " calendar months");
}

} // namespace

DashboardFigures dashboardFigures(const KestryCore::ClientMetrics& metrics, const QString& month,
    const KestryCore::MoneyText& money)
{
    const bool isUnpriced = metrics.unpricedSeconds > 0.0;
    const bool hasNoRate = isUnpriced && metrics.earnedCents == 0.0;
    DashboardFigures figures;
    figures.earnings = amount("Total earnings",
        hasNoRate ? KestryCore::rateNotSet : figureText(money.money(metrics.earnedCents)),
        "All-time billable value");
    figures.hours = length("Total hours", metrics.seconds, "All time");
    figures.monthHours = length("Hours this month", metrics.monthSeconds, month);
    figures.average = length(
        "Avg. hours / month", metrics.averageMonthlySeconds, monthsCounted(metrics.monthCount));
    figures.average.help = averageHelp;
    if (isUnpriced) {
        figures.unpriced = figureText(KestryCore::durationText(metrics.unpricedSeconds))
            + " of billable time has no rate and is excluded from earnings.";
    }
    return figures;
}

} // namespace Kestry
