#pragma once

#include <cstddef>
#include <vector>

#include "Uuid.h"

namespace KestryCore {

/// A set of identifiers in one piece of memory, for up to as many as it was made for. The place of
/// each depends on a secret of this process, so that no file can be made to slow it down.
class UuidSet {
public:
    explicit UuidSet(std::size_t capacity);

    /// False, and no change, when the identifier is in the set already.
    bool insert(const Uuid& uuid);
    [[nodiscard]] bool contains(const Uuid& uuid) const;

private:
    [[nodiscard]] std::size_t slotOf(const Uuid& uuid) const;

    std::vector<Uuid> slots_;  // the nil identifier where nothing is
    bool containsNil_ = false; // which therefore needs a place of its own
};

} // namespace KestryCore
