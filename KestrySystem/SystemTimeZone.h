#pragma once

#include <string>

#include "Environment.h"

namespace KestryCore {

/// The time zone that the system or the user has chosen, as all programs of the user read it.
struct SystemTimeZone {
    /// The zone's name; for clocks that follow a rule without a name that rule, as in
    /// "CET-1CEST,M3.5.0,M10.5.0/3"; empty for a file that has neither.
    std::string name;
    /// The content of the zone file; empty where there are no zone files.
    std::string content;
    /// Where the content was read from; empty for a rule.
    std::string path;

    friend bool operator==(const SystemTimeZone&, const SystemTimeZone&) = default;
};

/// The zone that `TZ` gives by name, path or rule; when it is not set, that of the file
/// `localTimePath`, which is usually a link to a zone file. UTC for anything else. Reads the files
/// on each call.
[[nodiscard]] SystemTimeZone systemTimeZone(
    const EnvironmentLookup& environment, const std::string& localTimePath = "/etc/localtime");

/// A zone whose clocks follow one rule, in the form that `TZ` has for it. The rule is not checked
/// here but when its content is read.
[[nodiscard]] SystemTimeZone ruleTimeZone(const std::string& rule);

/// The rule of clocks that are never set, and are this many seconds ahead of UTC.
[[nodiscard]] std::string fixedRule(double offsetSeconds);

} // namespace KestryCore
