#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Calendar.h"
#include "Ledger.h"
#include "LocalizedOrder.h"
#include "SessionSort.h"

namespace KestryCore {

class RecordIndex;
class SessionFilter;

/// The inputs of a query besides its criteria. They must outlive the call.
struct SessionSource {
    const LedgerData& ledger;
    const Calendar& calendar;
    const LocalizedOrder& order;
    std::optional<Date> sessionsMonth; ///< Any date inside the month to show.
};

/// Where a list of sessions is: on its own page, or inside a client's dashboard. Only the page
/// shows a single month; only the dashboard shows a few sessions first.
enum class SessionListPlace { page, dashboard };

/// The criteria of a list of sessions, and how they depend on each other.
class SessionQuery {
public:
    /// How many sessions an embedded list shows first, and how many more each time.
    static constexpr std::size_t pageLength = 10;

    explicit SessionQuery(SessionListPlace place = SessionListPlace::page,
        std::optional<Uuid> clientID = std::nullopt);

    [[nodiscard]] bool embedded() const { return place_ == SessionListPlace::dashboard; }
    [[nodiscard]] const std::optional<Uuid>& clientID() const { return clientID_; }
    [[nodiscard]] const std::string& search() const { return search_; }
    [[nodiscard]] const SessionSort& sort() const { return sort_; }
    [[nodiscard]] std::size_t visibleCount() const { return visibleCount_; }

    /// Clears the search when the client changes.
    void setClientID(std::optional<Uuid> clientID);
    void setSearch(std::string search);
    void setSort(const SessionSort& sort);

    /// Shows ten more.
    void showMore() { visibleCount_ += pageLength; }

    /// All saved sessions that match, in order, whether shown or not. Valid until the ledger
    /// changes.
    [[nodiscard]] std::vector<const TimeEntry*> sessions(const SessionSource& source) const;

    /// How many of `found` matching sessions are shown, from the first.
    [[nodiscard]] std::size_t shownCount(std::size_t found) const;
    /// Whether the list has "Show more sessions".
    [[nodiscard]] bool offersMore(std::size_t found) const;

    /// Whether a session passes the filters, saved or not.
    [[nodiscard]] bool matches(const TimeEntry& entry, const SessionSource& source) const;
    /// Whether the session in progress, which is not in the list, is shown above it.
    [[nodiscard]] bool showsActive(const SessionSource& source, Date now) const;

private:
    [[nodiscard]] SessionFilter filter(const RecordIndex& index, const SessionSource& source) const;

    SessionListPlace place_;
    std::optional<Uuid> clientID_;
    std::string search_;
    SessionSort sort_;
    std::size_t visibleCount_ = pageLength;
};

} // namespace KestryCore
