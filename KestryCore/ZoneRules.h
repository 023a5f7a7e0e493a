#pragma once

#include <memory>
#include <string>

#include "Date.h"

namespace KestryCore {

/// A time in which the clocks of a zone are never set: from `start` to just before `end`, either
/// of which may be infinite.
struct ZoneStretch {
    Date start;
    Date end;
    double offset = 0.0; ///< Seconds by which the clocks are ahead of UTC.

    [[nodiscard]] bool contains(Date date) const { return !(date < start) && date < end; }
};

/// When the clocks of one time zone are set, and to what.
class ZoneRules {
public:
    ZoneRules() = default;
    ZoneRules(const ZoneRules&) = delete;
    ZoneRules& operator=(const ZoneRules&) = delete;
    virtual ~ZoneRules() = default;

    /// The stretch that holds a date within some ten thousand years.
    [[nodiscard]] virtual ZoneStretch stretchAround(Date date) const = 0;
};

/// The rules that a zone file's content tells; null when that makes no sense. What was once read
/// stays in memory until the process ends.
[[nodiscard]] std::unique_ptr<const ZoneRules> zoneFileRules(const std::string& content);

/// The rules of a zone by its name, from the data that the Unicode library brings along: for
/// systems that have no zone files, as it may be years old. Null for an unknown zone.
[[nodiscard]] std::unique_ptr<const ZoneRules> builtInZoneRules(const std::string& name);

} // namespace KestryCore
