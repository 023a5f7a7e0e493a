#pragma once

#include <string>
#include <vector>

#include "Date.h"

namespace KestryCore {

/// A time zone of the system's zone files and the moments at which its clocks are set.
struct ZoneTransitions {
    struct Transition {
        Date date;
        double offsetBefore = 0.0; ///< Seconds ahead of UTC.
        double offsetAfter = 0.0;
    };

    std::string zone;
    std::vector<Transition> transitions;
};

/// Every zone that has a file, each under one of its names, with what happens to its clocks after
/// `from` and before `to`.
[[nodiscard]] std::vector<ZoneTransitions> allZoneTransitions(Date from, Date to);

} // namespace KestryCore
