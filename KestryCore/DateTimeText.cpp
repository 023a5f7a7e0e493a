#include "DateTimeText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <new>
#include <utility>

namespace KestryCore {

namespace {

/// A format without its own rules of time zones, which may be old: it gets what the clocks show.
std::unique_ptr<icu::DateFormat> withoutZone(icu::DateFormat* format)
{
    std::unique_ptr<icu::DateFormat> result(format);
    if (!result) {
        throw std::bad_alloc();
    }
    result->setTimeZone(*icu::TimeZone::getGMT());
    return result;
}

std::string formatted(const icu::DateFormat& format, const ZoneCalendar& calendar, Date date)
{
    constexpr double millisecondsPerSecond = 1000.0;
    const Date shown = dateInUtc(calendar.wallTime(date));
    icu::UnicodeString text;
    format.format((shown.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond, text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace

struct DateTimeText::Formats {
    std::unique_ptr<icu::DateFormat> dateAndTime;
    std::unique_ptr<icu::DateFormat> timeOfDay;
};

DateTimeText::DateTimeText(const ZoneCalendar& calendar) : calendar_(calendar)
{
    const auto locale = icu::Locale::createCanonical(calendar.locale().c_str());
    auto formats = std::make_shared<Formats>();
    formats->dateAndTime = withoutZone(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kShort, locale));
    formats->timeOfDay =
        withoutZone(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
    formats_ = std::move(formats);
}

std::string DateTimeText::dateAndTime(Date date) const
{
    return formatted(*formats_->dateAndTime, calendar_, date);
}

std::string DateTimeText::timeOfDay(Date date) const
{
    return formatted(*formats_->timeOfDay, calendar_, date);
}

} // namespace KestryCore
