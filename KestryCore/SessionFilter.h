#pragma once

#include <optional>
#include <string>

#include "Calendar.h"
#include "Ledger.h"
#include "LocalizedSearch.h"

namespace KestryCore {

class RecordIndex;

/// The criteria of a list of sessions. A missing one lets all sessions pass.
struct SessionCriteria {
    std::optional<MonthInterval> month; ///< With any time worked in it.
    std::optional<Uuid> clientID;
    std::string search; ///< Part of title, project and client, joined by blanks.
};

/// Decides which sessions match the criteria. `index` must outlive it, and its ledger must stay
/// unchanged.
class SessionFilter {
public:
    /// The search ignores case by the rules of `locale`, a name such as "de_DE".
    SessionFilter(
        const RecordIndex& index, const SessionCriteria& criteria, const std::string& locale);

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
