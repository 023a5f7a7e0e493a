#include "DateTimeText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <new>

namespace KestryCore {

struct DateTimeText::Format {
    std::unique_ptr<icu::DateFormat> text;
};

DateTimeText::DateTimeText(const ZoneCalendar& calendar) : calendar_(calendar)
{
    auto format = std::make_shared<Format>();
    format->text.reset(icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium,
        icu::DateFormat::kShort, icu::Locale::createCanonical(calendar.locale().c_str())));
    if (!format->text) {
        throw std::bad_alloc();
    }
    // It gets what the clocks show: its own rules of time zones may be old.
    format->text->setTimeZone(*icu::TimeZone::getGMT());
    format_ = std::move(format);
}

std::string DateTimeText::dateAndTime(Date date) const
{
    constexpr double millisecondsPerSecond = 1000.0;
    const Date shown = dateInUtc(calendar_.wallTime(date));
    icu::UnicodeString text;
    format_->text->format(
        (shown.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond, text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace KestryCore
