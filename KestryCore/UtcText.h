#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "Date.h"

namespace KestryCore {

// Dates as text for machines, in UTC; for dates of a ledger and `distantPast`.

/// "2026-03-14"
[[nodiscard]] std::string utcDayText(Date date);

/// Writes one timestamp after the other. Most are of the same day as the one before, so the text of
/// that day is kept.
class TimestampWriter {
public:
    /// Characters of a timestamp.
    static constexpr std::size_t size = 24;

    /// Writes "2026-03-14T09:26:53.589Z", rounded to the nearest millisecond, at `place`, and
    /// returns the end of it.
    char* write(char* place, Date date);

private:
    std::optional<std::chrono::sys_days> day_;
    std::array<char, 11> dayText_{};
};

} // namespace KestryCore
