#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

TimeStore::TimeStore(StorePlatform platform, StoreOptions options)
    : platform_(std::move(platform)), durableFiles_(platform_.files),
      lock_(std::move(options.lock)), isDemo_(options.demoLedger.has_value())
{
    directory_ = options.directory
        ? *options.directory
        : joinPath(platform_.files.applicationSupportDirectory(), "Kestry");
    open(options);
}

void TimeStore::open(const StoreOptions& options)
{
    if (isDemo_) {
        data_.assign(*options.demoLedger);
        return;
    }
    if (!exists(platform_.files, primaryPath()) && !exists(platform_.files, backupPath())) {
        return;
    }
    try {
        data_.assign(load(primaryPath()));
        primaryIsValid_ = true;
    } catch (const std::exception& failure) {
        openBackup(failure.what());
        if (!*recoveryAvailable_) {
            return;
        }
    }
    if (options.runningSession == RunningSessionPolicy::recover
        && !consumeUpdateHandoff(options.updateToken)) {
        recoverRunningSession();
    }
}

void TimeStore::openBackup(const std::string& primaryFailure)
{
    blocked_ = true;
    try {
        data_.assign(load(backupPath()));
        recoveryAvailable_.assign(true);
        errorMessage_.assign("The ledger could not be read. Your backup is available here in "
                             "read-only mode. Restore it in Settings; the original file will be "
                             "preserved. "
            + primaryFailure);
    } catch (const std::exception& failure) {
        errorMessage_.assign(
            std::string("Your ledger and backup could not be read. Files have been preserved. ")
            + failure.what());
    }
}

void TimeStore::recoverRunningSession()
{
    const LedgerData before = *data_;
    LedgerData recovered = before;
    if (!recoverSession(recovered)) {
        return;
    }
    data_.assign(recovered);
    recoveredSession_.assign(true);
    if (blocked_) {
        return;
    }
    try {
        recordChange(before, recovered, ChangeTracking{.trackDeletions = true, .forceAll = false});
        save(recovered, Soundness::unchecked);
        data_.assign(recovered);
    } catch (const std::exception& failure) {
        block();
        errorMessage_.assign(
            std::string("Recovered session paused, but could not save: ") + failure.what());
    }
}

} // namespace KestryCore
