#pragma once

#include <memory>
#include <string>

#include "ZoneCalendar.h"

namespace KestryCore {

/// Days and months as text in the language of the locale and the time of one calendar. Construction
/// is slow: make one and keep it. Copies share what they have loaded.
class DayText {
public:
    explicit DayText(const ZoneCalendar& calendar);

    /// "Mar 14"
    [[nodiscard]] std::string shortDay(Date date) const;
    /// "March 14"
    [[nodiscard]] std::string longDay(Date date) const;
    /// "Mar"
    [[nodiscard]] std::string shortMonth(Date date) const;
    /// "March 2026"
    [[nodiscard]] std::string month(Date date) const;

    /// Whether both are copies of one. Of two that were made apart the words may differ.
    friend bool operator==(const DayText& left, const DayText& right)
    {
        return left.formats_ == right.formats_;
    }

private:
    struct Formats;
    ZoneCalendar calendar_;
    std::shared_ptr<const Formats> formats_;
};

} // namespace KestryCore
