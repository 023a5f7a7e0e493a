#pragma once

#include <optional>
#include <string>

#include "Calendar.h"
#include "Metrics.h"
#include "TextForms.h"
#include "TimeStore.h"

namespace Kestry {

/// The figures of the session in progress and of this month, as text. The total of the saved
/// sessions is cached until they change, so that asking every second does not walk through all
/// that was ever saved.
class SessionFacts {
public:
    /// The store must outlive the facts.
    SessionFacts(const KestryCore::TimeStore& store, KestryCore::MoneyText words);

    /// What the session has earned, or why it earns nothing; empty without a session.
    [[nodiscard]] std::string sessionValue(KestryCore::Date now) const;

    struct Month {
        std::string earned;
        std::string explanation; ///< What is counted, and whether some time has no rate.

        friend bool operator==(const Month&, const Month&) = default;
    };

    /// The billable earnings of the month of all clients, with the session in progress.
    [[nodiscard]] Month month(KestryCore::Date now, const KestryCore::Calendar& calendar);
    /// Drops the cache; call it when the calendar changes.
    void forgetSaved() { saved_.reset(); }

private:
    struct Saved {
        KestryCore::RecordList<KestryCore::TimeEntry> entries;
        KestryCore::MonthInterval month;
        KestryCore::MonthMetrics metrics;
    };

    [[nodiscard]] const KestryCore::MonthMetrics& savedMetrics(
        KestryCore::Date now, const KestryCore::Calendar& calendar);
    [[nodiscard]] bool isStillTrue(const Saved& saved, KestryCore::Date now) const;

    const KestryCore::TimeStore& store_;
    KestryCore::MoneyText words_;
    std::optional<Saved> saved_;
};

} // namespace Kestry
