#include "DayText.h"

#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <new>

namespace KestryCore {
namespace {

using Format = std::unique_ptr<icu::SimpleDateFormat>;

Format makeFormat(
    icu::DateTimePatternGenerator& patterns, const char* fields, const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString pattern = patterns.getBestPattern(fields, status);
    Format format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
    if (U_FAILURE(status)) {
        throw std::bad_alloc();
    }
    // It gets what the clocks show: its own rules of time zones may be old.
    format->setTimeZone(*icu::TimeZone::getGMT());
    return format;
}

std::string formatted(const Format& format, Date shown)
{
    constexpr double millisecondsPerSecond = 1000.0;
    icu::UnicodeString text;
    format->format((shown.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond, text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace

struct DayText::Formats {
    Format shortDay;
    Format longDay;
    Format shortMonth;
    Format month;
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
    auto formats = std::make_shared<Formats>();
    formats->shortDay = makeFormat(*patterns, "MMMd", locale);
    formats->longDay = makeFormat(*patterns, "MMMMd", locale);
    formats->shortMonth = makeFormat(*patterns, "LLL", locale);
    formats->month = makeFormat(*patterns, "yMMMM", locale);
    formats_ = std::move(formats);
}

std::string DayText::shortDay(Date date) const
{
    return formatted(formats_->shortDay, dateInUtc(calendar_.wallTime(date)));
}

std::string DayText::longDay(Date date) const
{
    return formatted(formats_->longDay, dateInUtc(calendar_.wallTime(date)));
}

std::string DayText::shortMonth(Date date) const
{
    return formatted(formats_->shortMonth, dateInUtc(calendar_.wallTime(date)));
}

std::string DayText::month(Date date) const
{
    return formatted(formats_->month, dateInUtc(calendar_.wallTime(date)));
}

} // namespace KestryCore
