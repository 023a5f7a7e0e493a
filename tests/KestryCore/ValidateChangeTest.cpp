#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ArbitraryLedger.h"
#include "LedgerValidation.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

/// The message of the first rule broken; empty for a sound ledger.
std::string outcome(const std::function<void()>& check)
{
    try {
        check();
        return {};
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

/// One change that breaks a rule, or may.
void breakSomething(LedgerData& ledger)
{
    const auto firstEntry = [&](auto change) {
        if (!ledger.entries.empty()) {
            ledger.entries.modify(ledger.entries.front().id, change);
        }
    };
    switch (*rc::gen::inRange(0, 16)) {
    case 0:
        if (!ledger.entries.empty()) {
            ledger.entries.append(ledger.entries.front());
        }
        break;
    case 1:
        if (!ledger.clients.empty()) {
            ledger.clients.append(ledger.clients.front());
        }
        break;
    case 2:
        firstEntry([](TimeEntry& entry) { entry.sourceID = ""; });
        break;
    case 3:
        firstEntry([](TimeEntry& entry) { entry.spans.clear(); });
        break;
    case 4:
        if (!ledger.projects.empty()) {
            ledger.projects.remove(ledger.projects.front().id);
        }
        break;
    case 5:
        if (ledger.active && !ledger.entries.empty()) {
            ledger.active->id = ledger.entries.back().id;
        }
        break;
    case 6:
        if (ledger.active && !ledger.entries.empty()) {
            ledger.active->sourceID = ledger.entries.front().sourceID;
        }
        break;
    case 7:
        firstEntry([](TimeEntry& entry) { entry.hourlyRateCents = -1; });
        break;
    case 8:
        firstEntry([](TimeEntry& entry) { entry.spans = {{latestDate, earliestDate}}; });
        break;
    case 9:
        firstEntry([](TimeEntry& entry) {
            entry.spans.insert(entry.spans.begin(), {latestDate, latestDate});
        });
        break;
    case 10:
        firstEntry([](TimeEntry& entry) { entry.recordedDuration = maximumSessionDuration + 1.0; });
        break;
    case 11:
        if (!ledger.clients.empty()) {
            ledger.clients.modify(ledger.clients.back().id, [](Client& client) {
                client.hourlyRateCents = -client.hourlyRateCents;
                client.name = client.hourlyRateCents == 0 ? " " : client.name;
            });
        }
        break;
    case 12:
        if (!ledger.clients.empty()) {
            ledger.clients.remove(ledger.clients.front().id);
        }
        break;
    case 13:
        if (!ledger.projects.empty()) {
            ledger.projects.modify(
                ledger.projects.back().id, [](Project& project) { project.hourlyRateCents = -1; });
        }
        break;
    case 14:
        if (ledger.active) {
            ledger.active->runningSince = ledger.active->checkpointAt;
            ledger.active->runningSince->seconds += 1.0;
        }
        break;
    default:
        if (ledger.replication) {
            ledger.replication.edit().accountID.clear();
        }
    }
}

RC_GTEST_PROP(ValidateChange, GivesWhatTheFullValidationGives, ())
{
    const LedgerData sound = *arbitraryLedger();
    validate(sound);
    LedgerData changed = sound;
    editArbitrarily(changed);
    if (*rc::gen::inRange(0, 4) != 0) {
        breakSomething(changed);
    }
    const std::string fast = outcome([&] { validateChange(sound, changed); });
    const std::string full = outcome([&] { validate(rebuilt(changed)); });
    RC_TAG(full.empty() ? std::string("sound") : full);
    RC_ASSERT(fast == full);
}

TEST(ValidateChange, ASessionBegunOrExchangedForAnotherMayNotBeASavedOne)
{
    for (const LedgerData& sound : {Sample::ledger(), Sample::runningLedger()}) {
        LedgerData changed = sound;
        changed.active = Sample::pausedSession();
        changed.active->id = Sample::sessionID();
        EXPECT_EQ(outcome([&] { validateChange(sound, changed); }), "Invalid active session.");
    }
}

TEST(ValidateChange, ASessionThatTakesUpTheSourceOfASavedOneIsADuplicate)
{
    LedgerData sound = Sample::runningLedger();
    sound.entries.modify(Sample::sessionID(), [](TimeEntry& entry) { entry.sourceID = "taken"; });
    LedgerData changed = sound;
    changed.active->sourceID = "taken";
    EXPECT_EQ(outcome([&] { validateChange(sound, changed); }),
        "Duplicate or empty imported source identifiers.");
}

} // namespace
} // namespace KestryCore
