#include "UuidSet.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>

namespace KestryCore {

namespace {

using Words = std::array<std::uint64_t, 2>;

// Two words each, for which the general comparison of bytes calls a function of the C library:
// a tenth of the time that opening a ledger took.

bool isNil(const Uuid& uuid)
{
    const auto words = std::bit_cast<Words>(uuid.bytes);
    return (words[0] | words[1]) == 0;
}

bool areEqual(const Uuid& left, const Uuid& right)
{
    const auto leftWords = std::bit_cast<Words>(left.bytes);
    const auto rightWords = std::bit_cast<Words>(right.bytes);
    return leftWords[0] == rightWords[0] && leftWords[1] == rightWords[1];
}

} // namespace

UuidSet::UuidSet(std::size_t capacity)
    : slots_(std::bit_ceil(std::max<std::size_t>(capacity, 1) * 2))
{
}

bool UuidSet::insert(const Uuid& uuid)
{
    if (isNil(uuid)) {
        return !std::exchange(containsNil_, true);
    }
    Uuid& slot = slots_[slotOf(uuid)];
    const bool isNew = isNil(slot);
    slot = uuid;
    return isNew;
}

bool UuidSet::contains(const Uuid& uuid) const
{
    return isNil(uuid) ? containsNil_ : !isNil(slots_[slotOf(uuid)]);
}

/// Where the identifier is, or else the free slot that it would take. At least half of the slots
/// are free, so one is always near.
std::size_t UuidSet::slotOf(const Uuid& uuid) const
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = std::hash<Uuid>{}(uuid)&mask;
    while (!isNil(slots_[slot]) && !areEqual(slots_[slot], uuid)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

} // namespace KestryCore
