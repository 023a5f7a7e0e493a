#pragma once

#include <string>

#include "Environment.h"

namespace KestryCore {

/// The time zone that the system or the user has chosen, as all programs of the user read it.
struct SystemTimeZone {
    /// The zone's name. For clocks that follow a rule of their own that rule, as in
    /// "CET-1CEST,M3.5.0,M10.5.0/3"; empty for a file that has neither.
    std::string name;
    /// The zone file that says when the clocks are set; empty where there are no such files.
    std::string content;
    /// Where the content was read from; empty for a rule.
    std::string path;

    friend bool operator==(const SystemTimeZone&, const SystemTimeZone&) = default;
};

/// The zone that `TZ` gives by name, path or rule, or where that is not set the file
/// `localTimePath`, which usually is a link to that of a zone. UTC for anything else. Read anew
/// each time.
[[nodiscard]] SystemTimeZone systemTimeZone(
    const EnvironmentLookup& environment, const std::string& localTimePath = "/etc/localtime");

/// A zone whose clocks always follow one rule, given in the form that `TZ` has for that. Whether
/// it is one turns out when its content is read.
[[nodiscard]] SystemTimeZone ruleTimeZone(const std::string& rule);

/// The rule of clocks that are never set, and are this many seconds ahead of UTC.
[[nodiscard]] std::string fixedRule(double offsetSeconds);

} // namespace KestryCore
