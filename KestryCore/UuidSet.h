#pragma once

#include <cstddef>
#include <vector>

#include "Uuid.h"

namespace KestryCore {

/// A set of identifiers in one piece of memory, with a fixed capacity. The place of each depends on
/// a secret of this process, so that no file can be made to slow it down.
class UuidSet {
public:
    explicit UuidSet(std::size_t capacity);

    /// Returns false, with nothing changed, when the set contains the identifier.
    bool insert(const Uuid& uuid);
    [[nodiscard]] bool contains(const Uuid& uuid) const;

private:
    [[nodiscard]] std::size_t slotOf(const Uuid& uuid) const;

    std::vector<Uuid> slots_;  // the nil identifier in a free slot
    bool containsNil_ = false; // which no slot can show
};

} // namespace KestryCore
