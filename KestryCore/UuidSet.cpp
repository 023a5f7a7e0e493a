#include "UuidSet.h"

#include <algorithm>
#include <bit>

namespace KestryCore {

UuidSet::UuidSet(std::size_t capacity)
    : slots_(std::bit_ceil(std::max<std::size_t>(capacity, 1) * 2))
{
}

bool UuidSet::insert(const Uuid& uuid)
{
    if (contains(uuid)) {
        return false;
    }
    if (uuid == Uuid{}) {
        containsNil_ = true;
    } else {
        slots_[slotOf(uuid)] = uuid;
    }
    return true;
}

bool UuidSet::contains(const Uuid& uuid) const
{
    return uuid == Uuid{} ? containsNil_ : slots_[slotOf(uuid)] == uuid;
}

/// Where the identifier is, or else the free slot that it would take. At least half of the slots
/// are free, so one is always near.
std::size_t UuidSet::slotOf(const Uuid& uuid) const
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = std::hash<Uuid>{}(uuid)&mask;
    while (slots_[slot] != Uuid{} && slots_[slot] != uuid) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

} // namespace KestryCore
