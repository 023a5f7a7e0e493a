#include "LedgerCoding.h"
#include "LedgerError.h"
#include "LedgerValidation.h"
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
        openPrimary();
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

void TimeStore::openPrimary()
{
    const OpenFile file(platform_.files, primaryPath());
    const FileIdentity identity = platform_.files.identity(file.handle());
    const std::optional<FileStatus> status = platform_.files.status(primaryPath());
    LedgerDocument document = readLedgerDocument(readToEnd(platform_.files, file.handle()));
    validate(document.ledger);
    data_.assign(std::move(document.ledger));
    primaryIsValid_ = true;
    // A link's target stays where it is when the primary is replaced, and may go on changing
    // there: it must never become the backup.
    if (document.bytes && status && status->isRegular) {
        knownPrimary_ = KnownPrimary{std::move(*document.bytes), identity, Durability::unknown};
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
