#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "CloudRecord.h"

namespace KestryCore {

/// A place in the order of the changes of a zone. The tag is random, and was drawn when the change
/// was written: in a zone made anew, and in a file that was restored from a backup and written to
/// since, the same number has another tag.
struct SqlitePosition {
    std::int64_t change = 0;
    std::string tag;

    /// As a record's server version.
    [[nodiscard]] std::string text() const { return std::to_string(change) + '-' + tag; }

    friend bool operator==(const SqlitePosition&, const SqlitePosition&) = default;
};

/// How far the changes of a zone were read.
struct SqliteReading {
    SqlitePosition position;
    /// While a first reading is under way, the newest change at its beginning: a removal up to it
    /// is no news to this reader. 0 otherwise.
    std::int64_t start = 0;
    /// A later place that this reader knows of, from a delivery of its own. The store must know it
    /// too, or it has lost that delivery.
    std::optional<SqlitePosition> delivered{};

    [[nodiscard]] CloudCursor cursor() const;
    /// Nullopt when the bytes are none that `cursor` gives.
    [[nodiscard]] static std::optional<SqliteReading> of(const CloudCursor& cursor);

    friend bool operator==(const SqliteReading&, const SqliteReading&) = default;
};

} // namespace KestryCore
