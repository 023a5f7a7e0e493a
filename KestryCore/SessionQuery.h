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

/// What a list of sessions is made from, beside what it is asked for. All of it must outlive the
/// call that it is handed to.
struct SessionSource {
    const LedgerData& ledger;
    const Calendar& calendar;
    const LocalizedOrder& order;
    std::optional<Date> sessionsMonth; ///< Any date inside the month to look at.
};

/// Where a list of sessions stands: on a page of its own, or inside a client's dashboard. Only the
/// page looks at one month, only the dashboard shows a few sessions first.
enum class SessionListPlace { page, dashboard };

/// What a list of sessions is asked for, and how the parts of that depend on each other.
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

    /// Another client's list begins with an empty search.
    void setClientID(std::optional<Uuid> clientID);
    void setSearch(std::string search);
    void setSort(const SessionSort& sort);

    /// Shows ten more.
    void showMore() { visibleCount_ += pageLength; }

    /// All saved sessions that match, in order, shown or not. Good until the ledger changes.
    [[nodiscard]] std::vector<const TimeEntry*> sessions(const SessionSource& source) const;

    /// How many of so many matching sessions are shown, from the first.
    [[nodiscard]] std::size_t shownCount(std::size_t found) const;
    /// Whether "Show more sessions" is to be had.
    [[nodiscard]] bool offersMore(std::size_t found) const;

    /// Whether a saved session passes the filters, or would if it were saved.
    [[nodiscard]] bool matches(const TimeEntry& entry, const SessionSource& source) const;
    /// Whether the session in progress, which is in no list, is shown above this one.
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
