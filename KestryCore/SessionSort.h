#pragma once

#include <array>
#include <functional>
#include <string_view>
#include <vector>

#include "Ledger.h"
#include "LocalizedOrder.h"

namespace KestryCore {

/// What a list of sessions can be sorted by.
enum class SessionSortField { title, date, duration, value };

inline constexpr std::array allSessionSortFields{SessionSortField::title, SessionSortField::date,
    SessionSortField::duration, SessionSortField::value};

/// The word for a field: "title", "date", "duration" or "value".
[[nodiscard]] std::string_view sessionSortFieldName(SessionSortField field);

/// The text that a session is sorted by when the field is its title. What it refers to must
/// outlive the sorting.
using SessionTitle = std::function<std::string_view(const TimeEntry&)>;

/// How a list of sessions is sorted; newest first unless told otherwise.
///
/// Whatever compares as the same, and whichever the direction, the session that began later goes
/// first, and of those that began together the one whose identifier is lower as text.
struct SessionSort {
    SessionSortField field = SessionSortField::date;
    bool ascending = false;

    /// What a click on the head of a column does: the same field again turns the direction round;
    /// another one begins with A to Z for titles, and with the highest for all else.
    void select(SessionSortField selected);

    /// Whether the first session goes before the second. By value, sessions without a price go
    /// last in either direction.
    [[nodiscard]] bool precedes(const TimeEntry& left, const TimeEntry& right,
        const SessionTitle& title, const LocalizedOrder& order) const;

    /// The sessions in this order: the same as sorting by `precedes`, and much quicker.
    [[nodiscard]] std::vector<const TimeEntry*> sorted(
        const std::vector<const TimeEntry*>& sessions, const SessionTitle& title,
        const LocalizedOrder& order) const;

    friend bool operator==(const SessionSort&, const SessionSort&) = default;
};

} // namespace KestryCore
