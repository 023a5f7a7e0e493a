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

DateTimeText::DateTimeText(const std::string& locale, const std::string& timeZone)
{
    auto format = std::make_shared<Format>();
    format->text.reset(icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium,
        icu::DateFormat::kShort, icu::Locale::createCanonical(locale.c_str())));
    if (!format->text) {
        throw std::bad_alloc();
    }
    format->text->adoptTimeZone(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
    format_ = std::move(format);
}

std::string DateTimeText::dateAndTime(Date date) const
{
    constexpr double millisecondsPerSecond = 1000.0;
    icu::UnicodeString text;
    format_->text->format(
        (date.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond, text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace KestryCore
