#include "AppcastChoice.h"

namespace Kestry {

namespace {

bool suits(const AppcastItem& item, const UpdateTarget& target)
{
    const bool runsHere =
        !item.minimumSystem || (target.system && *target.system >= *item.minimumSystem);
    return runsHere && item.version > target.running && item.bytes <= maximumArchiveBytes;
}

} // namespace

std::optional<AppcastItem> newestSuitable(
    const std::vector<AppcastItem>& items, const UpdateTarget& target)
{
    const AppcastItem* newest = nullptr;
    for (const AppcastItem& item : items) {
        if (suits(item, target) && (newest == nullptr || item.version > newest->version)) {
            newest = &item;
        }
    }
    return newest != nullptr ? std::optional(*newest) : std::nullopt;
}

} // namespace Kestry
