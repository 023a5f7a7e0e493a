#pragma once

#include <memory>
#include <string>

#include "Date.h"

namespace KestryCore {

/// A period in which the clocks of a zone are never set: from `start` to just before `end`, either
/// of which may be infinite.
struct ZoneStretch {
    Date start;
    Date end;
    double offset = 0.0; ///< Seconds by which the clocks are ahead of UTC.

    [[nodiscard]] bool contains(Date date) const { return !(date < start) && date < end; }
};

/// When and to what the clocks of one time zone are set.
class ZoneRules {
public:
    ZoneRules() = default;
    ZoneRules(const ZoneRules&) = delete;
    ZoneRules& operator=(const ZoneRules&) = delete;
    virtual ~ZoneRules() = default;

    /// The period of a date. The date must be within some ten thousand years.
    [[nodiscard]] virtual ZoneStretch stretchAround(Date date) const = 0;
};

/// The rules in the content of a zone file; null when it is not a zone file. They stay in memory
/// until the process ends.
[[nodiscard]] std::unique_ptr<const ZoneRules> zoneFileRules(const std::string& content);

/// The rules of a zone by its name, from the data of the Unicode library, which may be years old:
/// for systems without zone files. Null for an unknown zone.
[[nodiscard]] std::unique_ptr<const ZoneRules> builtInZoneRules(const std::string& name);

} // namespace KestryCore
