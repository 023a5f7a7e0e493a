#pragma once

#include <optional>

#include "Calendar.h"
#include "Metrics.h"
#include "TimeStore.h"

namespace Kestry {

/// The figures of one client, with the session in progress. Those of the saved sessions are cached
/// until these change, so that asking every second does not walk through all that was ever saved.
class ClientTotals {
public:
    /// The store must outlive the totals.
    explicit ClientTotals(const KestryCore::TimeStore& store) : store_(store) { }

    /// To the last bit what `clientMetrics` gives.
    [[nodiscard]] KestryCore::ClientMetrics metrics(const KestryCore::Uuid& clientID,
        KestryCore::Date now, const KestryCore::Calendar& calendar);
    /// Whether the session in progress is of a client.
    [[nodiscard]] bool hasSession(const KestryCore::Uuid& clientID) const;
    /// Drops the cache; call it when the calendar changes.
    void forgetSaved() { saved_.reset(); }

private:
    struct Saved {
        KestryCore::Uuid clientID;
        KestryCore::RecordList<KestryCore::TimeEntry> entries;
        KestryCore::RecordList<KestryCore::Project> projects;
        KestryCore::MonthInterval month;
        KestryCore::ClientMetrics metrics;
        KestryCore::MonthMetrics monthMetrics;
    };

    [[nodiscard]] const Saved& saved(const KestryCore::Uuid& clientID, KestryCore::Date now,
        const KestryCore::Calendar& calendar);
    [[nodiscard]] bool isStillTrue(
        const Saved& saved, const KestryCore::Uuid& clientID, KestryCore::Date now) const;

    const KestryCore::TimeStore& store_;
    std::optional<Saved> saved_;
};

} // namespace Kestry
