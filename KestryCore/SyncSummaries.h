#pragma once

#include <string>

#include "DateTimeText.h"
#include "SyncState.h"
#include "TextForms.h"

namespace KestryCore {

/// Replicated records in one line each, for people who choose between two versions.
class SyncSummaries {
public:
    /// In the language of the calendar's locale and the time of its zone.
    explicit SyncSummaries(const ZoneCalendar& calendar)
        : money_(calendar.locale()), moments_(calendar)
    {
    }

    /// "Harbour Books · $150.00/hr"; "Deleted"; "Unavailable version" when it cannot be read. Never
    /// fails.
    [[nodiscard]] std::string summary(const SyncRecord& record) const;

private:
    template <class Record>
    [[nodiscard]] std::string rate(const Record& record) const;
    template <class Session>
    [[nodiscard]] std::string value(const Session& session, double seconds) const;
    [[nodiscard]] std::string summary(const SyncedSession& session) const;
    [[nodiscard]] std::string payloadSummary(const SyncRecord& record) const;

    MoneyText money_;
    DateTimeText moments_;
};

} // namespace KestryCore
