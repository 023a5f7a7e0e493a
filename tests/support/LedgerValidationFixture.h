#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "LedgerValidation.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {

inline constexpr const char* sessionTooLong =
    "A session must contain between 0 and 744 hours (31 days) of work.";

/// A sound ledger of one record each and a running session, changed by verbs and then judged.
class LedgerValidation : public testing::Test {
protected:
    template <class Change>
    void changeClient(Change change)
    {
        ledger.clients.modify(Sample::clientID(), change);
    }
    template <class Change>
    void changeProject(Change change)
    {
        ledger.projects.modify(Sample::projectID(), change);
    }
    template <class Change>
    void changeEntry(Change change)
    {
        ledger.entries.modify(Sample::sessionID(), change);
    }
    void setEntrySpans(std::vector<TimeSpan> spans)
    {
        changeEntry([&](TimeEntry& entry) { entry.spans = spans; });
    }
    void setRecordedDuration(double seconds)
    {
        changeEntry([&](TimeEntry& entry) { entry.recordedDuration = seconds; });
    }
    void appendEntry(std::optional<std::string> sourceID)
    {
        TimeEntry another = Sample::entry(static_cast<unsigned>(ledger.entries.size()) + 1);
        another.sourceID = std::move(sourceID);
        ledger.entries.append(another);
    }
    [[nodiscard]] std::string verdict() const
    {
        return refusalOf([&] { validate(ledger); });
    }

    LedgerData ledger = Sample::runningLedger();
    ActiveSession& active = *ledger.active;
};

} // namespace KestryCore
