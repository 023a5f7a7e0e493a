#pragma once

#include <unicode/datefmt.h>

#include <memory>
#include <string>

#include "Calendar.h"

namespace KestryCore {

/// Puts what the clocks show into words. Days before 1582 have the names that the Gregorian
/// calendar gives them, by which all days are counted here.
class WallTimeFormat {
public:
    /// Throws std::bad_alloc for a null format, which the library gives when it has no memory.
    explicit WallTimeFormat(std::unique_ptr<icu::DateFormat> format);

    [[nodiscard]] std::string text(const WallTime& time) const;

private:
    std::unique_ptr<icu::DateFormat> format_;
};

} // namespace KestryCore
