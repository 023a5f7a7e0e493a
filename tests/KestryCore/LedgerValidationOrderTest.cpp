#include <gtest/gtest.h>

#include <functional>
#include <string_view>
#include <vector>

#include "LedgerValidation.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

/// One way to break a ledger, and the sentence it is refused with.
struct Breach {
    std::string_view message;
    std::function<void(LedgerData&)> commit;
};

template <class Change>
Breach clientBreach(std::string_view message, Change change)
{
    return {message, [=](LedgerData& ledger) { ledger.clients.modify(clientID(), change); }};
}

template <class Change>
Breach projectBreach(std::string_view message, Change change)
{
    return {message, [=](LedgerData& ledger) { ledger.projects.modify(projectID(), change); }};
}

template <class Change>
Breach entryBreach(std::string_view message, Change change)
{
    return {message, [=](LedgerData& ledger) { ledger.entries.modify(sessionID(), change); }};
}

template <class Change>
Breach activeBreach(std::string_view message, Change change)
{
    return {message, [=](LedgerData& ledger) { change(*ledger.active); }};
}

constexpr auto addReversedSpan = [](auto& session) {
    session.spans.insert(session.spans.begin(), span(noon - 5, noon - 9));
};
constexpr auto addEarlierSpanLast = [](auto& session) {
    session.spans.insert(session.spans.end() - 1, span(noon + hour - 1, noon + hour));
};

std::vector<Breach> ledgerBreaches()
{
    return {
        {"Invalid sync account or conflict metadata.",
            [](LedgerData& ledger) { ledger.replication.edit().accountID.clear(); }},
        {"Duplicate identifiers in ledger.",
            [](LedgerData& ledger) { ledger.entries.append(entry()); }},
        {"Duplicate or empty imported source identifiers.",
            [](LedgerData& ledger) { ledger.active->sourceID = ""; }},
    };
}

std::vector<Breach> parentBreaches()
{
    return {
        clientBreach("Client logos must be valid PNG images up to 256 pixels and 256 KB.",
            [](Client& client) { client.logoData = "no image"; }),
        clientBreach("Enter a name.", [](Client& client) { client.name = " "; }),
        clientBreach("Hourly rates cannot be negative.",
            [](Client& client) { client.hourlyRateCents = -1; }),
        projectBreach("Enter a name.", [](Project& project) { project.name = "\n"; }),
        projectBreach("Invalid project client or hourly rate.",
            [](Project& project) { project.hourlyRateCents = -1; }),
    };
}

std::vector<Breach> entryBreaches()
{
    return {
        entryBreach("Invalid entry project, rate, or intervals.",
            [](TimeEntry& entry) { entry.hourlyRateCents = -1; }),
        entryBreach(
            "Time intervals must be ordered, with dates between 1970 and 2200.", addReversedSpan),
        entryBreach("Time intervals overlap or are out of order.", addEarlierSpanLast),
        entryBreach("A session must contain between 0 and 744 hours (31 days) of work.",
            [](TimeEntry& entry) { entry.recordedDuration = maximumSessionDuration + 1; }),
        entryBreach("Recorded duration cannot exceed its work intervals.",
            [](TimeEntry& entry) { entry.recordedDuration = entry.duration() + 1; }),
    };
}

std::vector<Breach> activeBreaches()
{
    return {
        activeBreach("Invalid active session.",
            [](ActiveSession& session) { session.hourlyRateCents = -1; }),
        activeBreach(
            "Time intervals must be ordered, with dates between 1970 and 2200.", addReversedSpan),
        activeBreach("Time intervals overlap or are out of order.", addEarlierSpanLast),
        activeBreach("A session must contain between 0 and 744 hours (31 days) of work.",
            [](ActiveSession& session) {
                session.spans.insert(session.spans.begin(), span(noon - 800 * hour, noon - 10));
            }),
        activeBreach("Invalid session checkpoint.",
            [](ActiveSession& session) { session.checkpointAt = session.spans.back().end + -1; }),
        activeBreach("Invalid running session checkpoint.",
            [](ActiveSession& session) { session.runningSince = session.checkpointAt + 1; }),
        activeBreach("Running interval overlaps saved time.",
            [](ActiveSession& session) { session.runningSince = session.spans.back().end + -1; }),
    };
}

/// Every breach, in the order in which the rules are checked.
std::vector<Breach> allBreaches()
{
    std::vector<Breach> all;
    for (const auto& part :
        {ledgerBreaches(), parentBreaches(), entryBreaches(), activeBreaches()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::string verdict(const LedgerData& ledger)
{
    return refusalOf([&] { validate(ledger); });
}

TEST(LedgerValidationOrder, EachBreachAloneIsRefusedInItsOwnWords)
{
    for (const Breach& breach : allBreaches()) {
        LedgerData ledger = connectedLedger();
        ASSERT_EQ(verdict(ledger), accepted);
        breach.commit(ledger);
        EXPECT_EQ(verdict(ledger), breach.message);
    }
}

TEST(LedgerValidationOrder, OfAnyTwoBreachesTheEarlierRuleIsNamed)
{
    const std::vector<Breach> breaches = allBreaches();
    for (std::size_t later = 1; later < breaches.size(); ++later) {
        for (std::size_t earlier = 0; earlier < later; ++earlier) {
            LedgerData ledger = connectedLedger();
            breaches[later].commit(ledger);
            breaches[earlier].commit(ledger);
            EXPECT_EQ(verdict(ledger), breaches[earlier].message) << earlier << ' ' << later;
        }
    }
}

TEST(LedgerValidationOrder, AStartBefore1970IsNamedBeforeItsOverlap)
{
    LedgerData ledger = runningLedger();
    ledger.active->spans = {{earliestDate, earliestDate + 10}};
    ledger.active->runningSince = earliestDate + -1;
    ledger.active->checkpointAt = earliestDate + 10;
    EXPECT_EQ(verdict(ledger), "Invalid running session checkpoint.");
}

TEST(LedgerValidationOrder, AClientGoesThroughAllRulesBeforeTheNextOne)
{
    LedgerData ledger = runningLedger();
    ledger.clients.append(client(2));
    ledger.clients.modify(clientID(2), [](Client& client) { client.name = ""; });
    ledger.clients.modify(clientID(1), [](Client& client) { client.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(ledger), "Hourly rates cannot be negative.");
}

TEST(LedgerValidationOrder, AnEntryGoesThroughAllRulesBeforeTheNextOne)
{
    LedgerData ledger = runningLedger();
    ledger.entries.append(entry(2));
    ledger.entries.modify(sessionID(2), [](TimeEntry& entry) { entry.spans = {}; });
    ledger.entries.modify(
        sessionID(1), [](TimeEntry& entry) { entry.recordedDuration = hour + 1; });
    EXPECT_EQ(verdict(ledger), "Recorded duration cannot exceed its work intervals.");
}

TEST(LedgerValidationOrder, TheOrderHoldsAcrossRecordsAlreadyFoundSound)
{
    LedgerData ledger = runningLedger();
    for (unsigned number = 10; number < 600; ++number) {
        ledger.entries.append(entry(number));
    }
    ASSERT_EQ(verdict(ledger), accepted);
    ledger.entries.modify(sessionID(599), [](TimeEntry& entry) { entry.spans = {}; });
    ledger.entries.modify(sessionID(300), [](TimeEntry& entry) { entry.recordedDuration = -1; });
    EXPECT_EQ(verdict(ledger), "A session must contain between 0 and 744 hours (31 days) of work.");
}

} // namespace
} // namespace KestryCore
