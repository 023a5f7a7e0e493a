#pragma once

#include <optional>
#include <string>

#include "Calendar.h"
#include "Ledger.h"
#include "LocalizedSearch.h"

namespace KestryCore {

class RecordIndex;

/// Which sessions are wanted; what is left out lets all pass.
struct SessionWishes {
    std::optional<MonthInterval> month; ///< Worked in it, for any length of time.
    std::optional<Uuid> clientID;
    std::string search; ///< Stands in the title, project and client, joined by blanks.
};

/// Tells whether sessions are wanted. Made for one look at one ledger, whose index must outlive
/// it.
class SessionFilter {
public:
    /// `locale` is a name such as "de_DE", by which the search knows capitals.
    SessionFilter(const RecordIndex& index, const SessionWishes& wishes, const std::string& locale);

    [[nodiscard]] bool matches(const TimeEntry& entry);

private:
    [[nodiscard]] bool isOfClient(const TimeEntry& entry) const;
    [[nodiscard]] bool holdsSearch(const TimeEntry& entry);

    const RecordIndex& index_;
    std::optional<MonthInterval> month_;
    std::optional<Uuid> clientID_;
    std::optional<LocalizedSearch> search_;
    std::string searched_; // the text looked at, kept for its memory
};

} // namespace KestryCore
