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

/// Returns the UTF-8 text that a session is sorted by when the field is its title. The text must
/// outlive the sorting.
using SessionTitle = std::function<std::string_view(const TimeEntry&)>;

/// How a list of sessions is sorted; newest first by default.
///
/// In either direction, of sessions that are equal in the field the one that began later goes
/// first, and of those that began together the one whose identifier is lower as text. By value,
/// sessions without a price go last in either direction.
struct SessionSort {
    SessionSortField field = SessionSortField::date;
    bool ascending = false;

    /// What a click on the head of a column does: the same field again turns the direction round;
    /// another one begins with A to Z for titles, and with the highest for all else.
    void select(SessionSortField selected);

    /// The sessions in this order. All of them must outlive the result.
    [[nodiscard]] std::vector<const TimeEntry*> sorted(
        const std::vector<const TimeEntry*>& sessions, const SessionTitle& title,
        const LocalizedOrder& order) const;

    friend bool operator==(const SessionSort&, const SessionSort&) = default;
};

} // namespace KestryCore
