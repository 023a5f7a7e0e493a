#include "DayText.h"

#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include <new>
#include <utility>

#include "WallTimeFormat.h"

namespace KestryCore {
namespace {

WallTimeFormat makeFormat(
    icu::DateTimePatternGenerator& patterns, const char* fields, const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString pattern = patterns.getBestPattern(fields, status);
    auto format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
    if (U_FAILURE(status)) {
        throw std::bad_alloc();
    }
    return WallTimeFormat(std::move(format));
}

} // namespace

struct DayText::Formats {
    WallTimeFormat shortDay;
    WallTimeFormat longDay;
    WallTimeFormat shortMonth;
    WallTimeFormat month;
};

DayText::DayText(const ZoneCalendar& calendar) : calendar_(calendar)
{
    const icu::Locale locale = icu::Locale::createCanonical(calendar.locale().c_str());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status)) {
        throw std::bad_alloc();
    }
    formats_ = std::make_shared<Formats>(
        Formats{makeFormat(*patterns, "MMMd", locale), makeFormat(*patterns, "MMMMd", locale),
            makeFormat(*patterns, "LLL", locale), makeFormat(*patterns, "yMMMM", locale)});
}

std::string DayText::shortDay(Date date) const
{
    return formats_->shortDay.text(calendar_.wallTime(date));
}

std::string DayText::longDay(Date date) const
{
    return formats_->longDay.text(calendar_.wallTime(date));
}

std::string DayText::shortMonth(Date date) const
{
    return formats_->shortMonth.text(calendar_.wallTime(date));
}

std::string DayText::month(Date date) const
{
    return formats_->month.text(calendar_.wallTime(date));
}

} // namespace KestryCore
