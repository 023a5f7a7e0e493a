#include "LedgerError.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

constexpr const char* damagedOnDisk = "The ledger on disk could not be read. It has been "
                                      "preserved. Restore the last backup in Settings if "
                                      "available.";

class TimeStoreCaller : public StoreFixture {
protected:
    /// Carries out operations for a caller, who has to be told this.
    void expectTold(const std::function<void()>& operations, const std::string& message)
    {
        try {
            store().performForCaller(operations);
            ADD_FAILURE() << "not refused";
        } catch (const LedgerError& failure) {
            EXPECT_EQ(failure.what(), message);
        }
    }
};

TEST_F(TimeStoreCaller, ARefusalIsToldToTheCallerAndToNobodyElse)
{
    open(pausedLedger());
    expectTold([&] { store().pause(now); }, "No running session to pause.");
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreCaller, ARefusalLeavesAnEarlierMessageAsItIs)
{
    open(pausedLedger());
    store().reportFailure("Earlier.");
    expectTold([&] { store().pause(now); }, "No running session to pause.");
    EXPECT_EQ(errorMessage(), "Earlier.");
}

TEST_F(TimeStoreCaller, ADiskThatFailsIsToldToTheCallerAlone)
{
    open(pausedLedger());
    files.failCallsFrom(1, ENOSPC);
    EXPECT_THROW(store().performForCaller([&] { addClient(); }), LedgerError);
    EXPECT_EQ(errorMessage(), "");
    EXPECT_EQ(ledger(), pausedLedger());
}

TEST_F(TimeStoreCaller, AFailureThatEndsAllSavingIsToldToEverybody)
{
    open(pausedLedger());
    truncatePrimary();
    expectTold([&] { addClient(); }, damagedOnDisk);
    EXPECT_EQ(errorMessage(), damagedOnDisk);
    expectTold([&] { addClient(); },
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
    EXPECT_EQ(errorMessage(), damagedOnDisk);
}

TEST_F(TimeStoreCaller, AFailedRestoreIsToldInTheWordsForPeople)
{
    open(pausedLedger());
    expectTold([&] { store().restoreBackup(); },
        "Backup restoration failed. Your existing files were preserved. No valid backup is "
        "available to restore.");
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreCaller, WhatTheStoreNeverHeardOfPassesThrough)
{
    open(pausedLedger());
    EXPECT_THROW(
        store().performForCaller([] { throw std::out_of_range("words"); }), std::out_of_range);
}

TEST_F(TimeStoreCaller, AFailureNamesThoseWhomItConcerns)
{
    open(pausedLedger());
    const auto audienceOf = [](const std::function<void()>& operation) {
        try {
            operation();
        } catch (const LedgerError& failure) {
            return std::optional(failure.audience());
        }
        return std::optional<Audience>();
    };
    EXPECT_EQ(audienceOf([&] { addClient(" "); }), Audience::caller);
    EXPECT_EQ(audienceOf([&] { store().pause(now); }), Audience::user);
    truncatePrimary();
    EXPECT_EQ(audienceOf([&] { addClient(); }), Audience::everybody);
}

TEST_F(TimeStoreCaller, AfterwardsFailuresAreShownAsEver)
{
    open(pausedLedger());
    EXPECT_ANY_THROW(store().performForCaller([&] { store().pause(now); }));
    expectRefused([&] { store().pause(now); }, "No running session to pause.");
    store().performForCaller([&] { store().resume(now); });
    EXPECT_TRUE(active().runningSince);
}

} // namespace
} // namespace KestryCore
