#pragma once

#include <string>
#include <vector>

#include "DateTimeText.h"
#include "SyncState.h"
#include "TextForms.h"

namespace KestryCore {

/// One property of a record in two versions, as people read it.
struct ComparedField {
    std::string name;
    std::string local;
    std::string remote;
    bool differs = false;

    friend bool operator==(const ComparedField&, const ComparedField&) = default;
};

/// Compares the two versions of a conflict, property by property, for people who choose one.
class SyncComparison {
public:
    /// In the language of the calendar's locale and the time of its zone.
    explicit SyncComparison(const ZoneCalendar& calendar)
        : money_(calendar.locale()), moments_(calendar)
    {
    }

    /// All properties that people know of the record, those of equal value too. Clients and
    /// projects are named as the ledger has them. A version that is deleted or cannot be read has
    /// no values: its first row says so. When nothing that is shown differs, the last row says that
    /// something else does. Never fails.
    [[nodiscard]] std::vector<ComparedField> fields(
        const SyncConflict& conflict, const LedgerData& ledger) const;

private:
    struct Version;

    [[nodiscard]] Version version(const SyncRecord& record, const LedgerData& ledger) const;
    void describe(const SyncRecord& record, const LedgerData& ledger, Version& version) const;
    void describeTimes(const SyncedSession& session, Version& version) const;
    [[nodiscard]] std::string rate(Cents cents, bool isKnown) const;
    template <class Work>
    [[nodiscard]] std::string value(const Work& work, double seconds) const;

    MoneyText money_;
    DateTimeText moments_;
};

} // namespace KestryCore
