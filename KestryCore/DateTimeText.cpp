#include "DateTimeText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>

#include "WallTimeFormat.h"

namespace KestryCore {

namespace {

icu::Locale localeOf(const ZoneCalendar& calendar)
{
    return icu::Locale::createCanonical(calendar.locale().c_str());
}

} // namespace

struct DateTimeText::Formats {
    WallTimeFormat dateAndTime;
    WallTimeFormat timeOfDay;
};

DateTimeText::DateTimeText(const ZoneCalendar& calendar)
    : calendar_(calendar),
      formats_(std::make_shared<Formats>(Formats{
          WallTimeFormat(std::unique_ptr<icu::DateFormat>(icu::DateFormat::createDateTimeInstance(
              icu::DateFormat::kMedium, icu::DateFormat::kShort, localeOf(calendar)))),
          WallTimeFormat(std::unique_ptr<icu::DateFormat>(
              icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, localeOf(calendar))))}))
{
}

std::string DateTimeText::dateAndTime(Date date) const
{
    return formats_->dateAndTime.text(calendar_.wallTime(date));
}

std::string DateTimeText::timeOfDay(Date date) const
{
    return formats_->timeOfDay.text(calendar_.wallTime(date));
}

} // namespace KestryCore
