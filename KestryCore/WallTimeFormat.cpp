#include "WallTimeFormat.h"

#include <unicode/gregocal.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <limits>
#include <new>
#include <utility>

namespace KestryCore {
namespace {

/// The library's calendar is the Julian one before October 15, 1582.
void useGregorianThroughout(icu::DateFormat& format)
{
    std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
    if (auto* gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar.get())) {
        UErrorCode status = U_ZERO_ERROR;
        gregorian->setGregorianChange(-std::numeric_limits<double>::infinity(), status);
        if (U_SUCCESS(status)) {
            format.adoptCalendar(calendar.release());
        }
    }
}

} // namespace

WallTimeFormat::WallTimeFormat(std::unique_ptr<icu::DateFormat> format) : format_(std::move(format))
{
    if (!format_) {
        throw std::bad_alloc();
    }
    useGregorianThroughout(*format_);
    // It gets what the clocks show: its own rules of time zones may be old.
    format_->setTimeZone(*icu::TimeZone::getGMT());
}

std::string WallTimeFormat::text(const WallTime& time) const
{
    constexpr double millisecondsPerSecond = 1000.0;
    const Date shown = dateInUtc(time);
    icu::UnicodeString text;
    format_->format((shown.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond, text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace KestryCore
