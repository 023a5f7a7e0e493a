#pragma once

#include <memory>
#include <string>

#include "Date.h"

namespace KestryCore {

/// Moments in the words of one locale and time zone. Copies share what they have loaded; make one
/// and keep it, for making one is slow.
class DateTimeText {
public:
    /// `locale` is a name such as "de_DE", `timeZone` one of the IANA database.
    DateTimeText(const std::string& locale, const std::string& timeZone);

    /// The abbreviated date and the time without seconds: "Mar 14, 2026, 9:26 AM".
    [[nodiscard]] std::string dateAndTime(Date date) const;

private:
    struct Format;
    std::shared_ptr<const Format> format_;
};

} // namespace KestryCore
