#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "LedgerValidation.h"
#include "RestoreMerge.h"
#include "TimeStore.h"

namespace KestryCore {

namespace {

/// The moment in UTC, whole seconds, fit for a file name: 2026-11-15T19-05-33Z.
std::string fileNameStamp(Date date)
{
    using namespace std::chrono;
    const auto seconds =
        static_cast<std::int64_t>(std::floor(date.seconds + referenceDateSecondsSince1970));
    const sys_seconds time{std::chrono::seconds(seconds)};
    const auto day = floor<days>(time);
    const year_month_day calendarDay(day);
    const hh_mm_ss clock(time - day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d-%02d-%02dZ",
        static_cast<int>(calendarDay.year()), static_cast<unsigned>(calendarDay.month()),
        static_cast<unsigned>(calendarDay.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return text.data();
}

} // namespace

void TimeStore::restoreBackup()
{
    try {
        restore();
    } catch (const std::exception& failure) {
        const std::string text = failureText(failure);
        tell("Backup restoration failed. Your existing files were preserved. " + text);
        if (text == failure.what()) {
            throw;
        }
        throw LedgerError(text);
    }
}

void TimeStore::restore()
{
    const bool wasUnread = canOpenAgain();
    openAgain();
    if (unopened_ == Unopened::forTheMoment) {
        throw LedgerError(openingFailure_);
    }
    if (wasUnread && !blocked_) {
        throw LedgerError("The ledger can be read again, and there is nothing to restore.");
    }
    if (!*recoveryAvailable() || isDemo_) {
        throw LedgerError("No valid backup is available to restore.");
    }
    LedgerData restored = load(backupPath());
    restored.replication = data_->replication;
    mergePendingIntoRestored(*data_, restored);
    const bool foundRunning = recoverSession(restored);
    recordChange(*data_, restored, ChangeTracking{.trackDeletions = false, .forceAll = true});
    validate(restored);
    LedgerBytes bytes = ledgerBytes(restored);
    claimDirectory();
    requireReplaceable(primaryPath());
    preservePrimary();
    // Where there is no ledger to take the access from, the backup has what it had.
    const std::string like = exists(platform_.files, primaryPath()) ? primaryPath() : backupPath();
    const FileIdentity identity = durableFiles_.writeLike(like, primaryPath(), bytes.views());
    knownPrimary_ = KnownPrimary{std::move(bytes), identity, Durability::synced};
    blocked_ = false;
    primaryIsValid_ = true;
    data_.assign(std::move(restored));
    recoveredSession_.assign(foundRunning);
    recoveryAvailable_.assign(false);
    errorMessage_.assign(std::nullopt);
}

void TimeStore::preservePrimary()
{
    if (!exists(platform_.files, primaryPath())) {
        return;
    }
    const std::string name = "ledger.corrupt-" + fileNameStamp(platform_.now()) + "-"
        + platform_.newUuid().text() + ".json";
    durableFiles_.copy(primaryPath(), joinPath(place(), name));
}

} // namespace KestryCore
