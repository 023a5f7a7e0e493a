#include "DateColumn.h"

#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

#include "DayText.h"
#include "Environment.h"
#include "SystemTimeZone.h"
#include "UserLocale.h"
#include "ZoneCalendar.h"

namespace Kestry {
namespace {

constexpr double secondsOfDay = 86'400.0;
constexpr int monthsOfYear = 12;
constexpr int daysOfLongMonth = 31;
// Of 2001, which began with the reference date of all others.
constexpr int firstDays[monthsOfYear] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
constexpr int twentieth = 19;

/// The width of the widest date: that of the widest month, and in it of the widest day.
double widestDate(const KestryCore::DayText& days, const QFontMetricsF& metrics)
{
    const auto widthOf = [&](int dayOfYear) {
        const KestryCore::Date noon{(dayOfYear + 0.5) * secondsOfDay};
        return metrics.horizontalAdvance(QString::fromStdString(days.shortDay(noon)));
    };
    const int* month = std::ranges::max_element(
        firstDays, {}, [&](int first) { return widthOf(first + twentieth); });
    double widest = 0.0;
    for (int day = 0; day < daysOfLongMonth; ++day) {
        widest = std::max(widest, widthOf(*month + day));
    }
    return widest;
}

} // namespace

DateColumn* DateColumn::create(QQmlEngine* engine, QJSEngine* /*scripts*/)
{
    return new DateColumn(KestryCore::userLocale(KestryCore::processEnvironment), engine);
}

int DateColumn::width(int fontSize)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(fontSize);
    if (!known_ || known_->first != font) {
        // By a rule: any zone's file, that of UTC too, may be missing.
        const KestryCore::DayText days(KestryCore::ZoneCalendar::withSystemTimeZone(
            locale_, KestryCore::ruleTimeZone(KestryCore::fixedRule(0.0))));
        known_.emplace(font, static_cast<int>(std::ceil(widestDate(days, QFontMetricsF(font)))));
    }
    return known_->second;
}

} // namespace Kestry
