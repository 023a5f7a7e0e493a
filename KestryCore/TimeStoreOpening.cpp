#include <cerrno>
#include <utility>

#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

namespace {

std::string directoryOf(const StorePlatform& platform, const StoreOptions& options)
{
    return options.directory ? *options.directory
                             : joinPath(platform.files.applicationSupportDirectory(), "Kestry");
}

} // namespace

TimeStore::TimeStore(StorePlatform platform, StoreOptions options)
    : platform_(std::move(platform)), files_(platform_.files, directoryOf(platform_, options),
                                          std::move(options.lock), options.mostLedgerBytes),
      runningSession_(options.runningSession), updateToken_(options.updateToken),
      isDemo_(options.demoLedger.has_value()), clockWatch_(platform_.now, platform_.steady)
{
    if (isDemo_) {
        data_.assign(*std::move(options.demoLedger));
    } else {
        open();
    }
    watchClock(clockWatch_.read());
}

void TimeStore::openAgain()
{
    if (!canOpenAgain()) {
        return;
    }
    const std::string before = openingFailure_;
    unopened_ = Unopened::no;
    files_.forget();
    open();
    if (!blocked() && *errorMessage_ == before) {
        errorMessage_.assign(std::nullopt);
    }
}

void TimeStore::open()
{
    if (!files_.exist()) {
        return;
    }
    std::optional<LedgerData> ledger = readFiles();
    if (!ledger) {
        return;
    }
    if (runningSession_ == RunningSessionPolicy::recover && !consumeUpdateHandoff(*ledger)) {
        recoverRunningSession(*ledger);
    }
    data_.assign(*std::move(ledger));
}

std::optional<LedgerData> TimeStore::readFiles()
{
    try {
        return files_.readPrimary();
    } catch (const std::exception& failure) {
        return readBackup(failure);
    }
}

namespace {

/// Whether a file may be readable another time: nothing was found in it, and something was there.
bool mayBeReadable(const std::exception& failure)
{
    const auto* file = dynamic_cast<const FileError*>(&failure);
    return isPassing(failure) || (file != nullptr && file->code() == EIO);
}

} // namespace

std::optional<LedgerData> TimeStore::readBackup(const std::exception& primaryFailure)
{
    files_.block();
    if (isPassing(primaryFailure)) {
        // The backup is older. Restoring it would discard a ledger that is probably sound.
        unopened_ = Unopened::forTheMoment;
        tellOpening(
            "The ledger could not be read just now, and nothing was changed. Try again in a "
            "moment. "
            + failureText(primaryFailure));
        return std::nullopt;
    }
    try {
        LedgerData backup = files_.readBackup();
        recoveryAvailable_.assign(true);
        tellOpening("The ledger could not be read. Your backup is available here in read-only "
                    "mode. Restore it in Settings; the original file will be preserved. "
            + failureText(primaryFailure));
        return backup;
    } catch (const std::exception& failure) {
        if (!files_.exist()) {
            // Only the look for them had failed: this is a first start.
            files_.forget();
            return std::nullopt;
        }
        if (mayBeReadable(primaryFailure) || mayBeReadable(failure)) {
            unopened_ = Unopened::withoutABackup;
        }
        tellOpening("Your ledger and backup could not be read. Files have been preserved. "
            + failureText(failure));
        return std::nullopt;
    }
}

void TimeStore::recoverRunningSession(LedgerData& ledger)
{
    LedgerData recovered = ledger;
    if (!recoverSession(recovered)) {
        return;
    }
    const LedgerData before = std::exchange(ledger, recovered);
    recoveredSession_.assign(true);
    if (blocked()) {
        return;
    }
    try {
        recordChange(before, recovered, ChangeTracking{.trackDeletions = true, .forceAll = false});
        save(recovered, Soundness::unchecked);
        ledger = std::move(recovered);
    } catch (const std::exception& failure) {
        if (isPassing(failure)) {
            files_.block();
            unopened_ = Unopened::forTheMoment;
        } else {
            block();
        }
        tellOpening("Recovered session paused, but could not save: " + failureText(failure));
    }
}

void TimeStore::tellOpening(const std::string& failure)
{
    if (std::exchange(openingFailure_, failure) != failure) {
        errorMessage_.assign(failure);
    }
}

} // namespace KestryCore
