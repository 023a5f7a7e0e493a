#pragma once

#include <string>

#include "Calendar.h"
#include "MonthTotals.h"
#include "TextForms.h"
#include "TimeStore.h"

namespace Kestry {

/// The figures of the session in progress and of this month, as text.
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
    /// Drops what is kept; call it when the calendar changes.
    void forgetSaved() { totals_.forget(); }

private:
    const KestryCore::TimeStore& store_;
    KestryCore::MoneyText words_;
    MonthTotals totals_;
};

} // namespace Kestry
