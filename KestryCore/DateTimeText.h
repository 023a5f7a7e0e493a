#pragma once

#include <memory>
#include <string>

#include "ZoneCalendar.h"

namespace KestryCore {

/// Moments in the words of the locale and by the clocks of one calendar. Copies share what they
/// have loaded; make one and keep it, for making one is slow.
class DateTimeText {
public:
    explicit DateTimeText(const ZoneCalendar& calendar);

    /// The abbreviated date and the time without seconds: "Mar 14, 2026, 9:26 AM".
    [[nodiscard]] std::string dateAndTime(Date date) const;

private:
    struct Format;
    ZoneCalendar calendar_;
    std::shared_ptr<const Format> format_;
};

} // namespace KestryCore
