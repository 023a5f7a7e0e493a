#pragma once

#include <optional>
#include <string>

#include "Calendar.h"
#include "Metrics.h"
#include "TextForms.h"
#include "TimeStore.h"

namespace Kestry {

/// What the session in progress and this month come to, in words. What the saved sessions of the
/// month come to is remembered for as long as they stay the same, so that asking every second
/// costs no walk through all that was ever saved.
class SessionFacts {
public:
    /// The store must outlive the facts.
    SessionFacts(const KestryCore::TimeStore& store, KestryCore::MoneyText words);

    /// What the session has earned, or why that is nothing; empty without a session.
    [[nodiscard]] std::string sessionValue(KestryCore::Date now) const;

    struct Month {
        std::string earned;
        std::string explanation; ///< Tells what is counted, and whether some time has no rate.

        friend bool operator==(const Month&, const Month&) = default;
    };

    /// The billable earnings of the month over all clients, the session in progress included.
    [[nodiscard]] Month month(KestryCore::Date now, const KestryCore::Calendar& calendar);
    /// To be told when another calendar is to count the days.
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
