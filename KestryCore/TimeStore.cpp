#include "TimeStore.h"

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "LedgerValidation.h"

namespace KestryCore {

std::string TimeStore::primaryPath() const
{
    return joinPath(directory_, "ledger.json");
}

std::string TimeStore::backupPath() const
{
    return joinPath(directory_, "ledger.backup.json");
}

LedgerData TimeStore::load(const std::string& path) const
{
    LedgerData ledger = decodeLedger(readFile(platform_.files, path));
    validate(ledger);
    return ledger;
}

bool TimeStore::isLoadable(const std::string& path) const
{
    try {
        (void)load(path);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void TimeStore::block()
{
    blocked_ = true;
    recoveryAvailable_.assign(isLoadable(backupPath()));
}

void TimeStore::recordChange(
    const LedgerData& before, LedgerData& after, ChangeTracking tracking) const
{
    recordLedgerChange(before, after, tracking, platform_.newUuid);
}

void TimeStore::applyChange(const std::function<void(LedgerData&)>& change)
{
    try {
        LedgerData working = *data_;
        change(working);
        recordChange(*data_, working, ChangeTracking{.trackDeletions = true, .forceAll = false});
        validate(working);
        save(working);
        data_.assign(std::move(working));
    } catch (const std::exception& failure) {
        errorMessage_.assign(failure.what());
        throw;
    }
}

void TimeStore::save(const LedgerData& ledger)
{
    if (blocked_) {
        throw LedgerError("Saving is disabled to protect your unreadable ledger. Restore the data "
                          "file before continuing.");
    }
    if (isDemo_) {
        return;
    }
    const std::string bytes = encodeLedger(ledger);
    durableFiles_.createDirectories(directory_);
    claimDirectory();
    if (primaryIsValid_) {
        backUpPrimary();
    } else {
        requireNoLedger();
    }
    durableFiles_.write(primaryPath(), bytes);
    primaryIsValid_ = true;
}

void TimeStore::claimDirectory()
{
    if (lock_ && lock_->acquireForWrite() == ClaimAge::takenNow) {
        // What was read before the claim may have been written over since.
        primaryIsValid_ = false;
    }
}

void TimeStore::requireNoLedger()
{
    // Neither file was there when the store looked, or they were read without a claim. What is
    // there now is another process's, has not been read, and must not be written over.
    if (platform_.files.status(primaryPath()) || platform_.files.status(backupPath())) {
        throw LedgerError("Another program has saved a ledger in this data directory meanwhile. "
                          "Start again to use it.");
    }
}

void TimeStore::backUpPrimary()
{
    std::string bytes;
    try {
        bytes = readFile(platform_.files, primaryPath());
        validate(decodeLedger(bytes));
    } catch (const std::exception&) {
        block();
        throw LedgerError("The ledger on disk could not be read. It has been preserved. Restore "
                          "the last backup in Settings if available.");
    }
    durableFiles_.write(backupPath(), bytes);
}

} // namespace KestryCore
