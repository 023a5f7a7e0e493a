#pragma once

#include <memory>
#include <string>

#include "ZoneCalendar.h"

namespace KestryCore {

/// Instants as text in the language of the locale and the time of one calendar. Construction is
/// slow: make one and keep it. Copies share what they have loaded.
class DateTimeText {
public:
    explicit DateTimeText(const ZoneCalendar& calendar);

    /// The abbreviated date and the time without seconds: "Mar 14, 2026, 9:26 AM".
    [[nodiscard]] std::string dateAndTime(Date date) const;
    /// The time alone, without seconds: "9:26 AM".
    [[nodiscard]] std::string timeOfDay(Date date) const;

private:
    struct Formats;
    ZoneCalendar calendar_;
    std::shared_ptr<const Formats> formats_;
};

} // namespace KestryCore
