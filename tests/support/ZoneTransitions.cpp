#include "ZoneTransitions.h"

#include <set>
#include <utility>

#include "ZoneFiles.h"
#include "ZoneRules.h"

namespace KestryCore {

namespace {

std::vector<ZoneTransitions::Transition> transitionsOf(const ZoneRules& rules, Date from, Date to)
{
    std::vector<ZoneTransitions::Transition> result;
    ZoneStretch stretch = rules.stretchAround(from);
    while (stretch.end < to) {
        const ZoneStretch next = rules.stretchAround(stretch.end);
        result.push_back({stretch.end, stretch.offset, next.offset});
        stretch = next;
    }
    return result;
}

} // namespace

std::vector<ZoneTransitions> allZoneTransitions(Date from, Date to)
{
    const ZoneFiles files = ZoneFiles::ofSystem(processEnvironment);
    std::vector<ZoneTransitions> zones;
    std::set<std::string> known;
    for (const std::string& name : files.names()) {
        const std::string content = files.read(name).value();
        if (known.insert(content).second) {
            zones.push_back({name, transitionsOf(*zoneFileRules(content), from, to)});
        }
    }
    return zones;
}

} // namespace KestryCore
