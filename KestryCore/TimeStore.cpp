#include "TimeStore.h"

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "LedgerValidation.h"

namespace KestryCore {

std::string TimeStore::place() const
{
    return lock_ ? lock_->place() : directory_;
}

std::string TimeStore::primaryPath() const
{
    return joinPath(place(), "ledger.json");
}

std::string TimeStore::backupPath() const
{
    return joinPath(place(), "ledger.backup.json");
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

void TimeStore::report(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::exception& failure) {
        tell(failure.what());
        throw;
    }
}

void TimeStore::tell(const std::string& failure)
{
    if (tellsCaller_) {
        callersFailure_ = failure;
    } else {
        errorMessage_.assign(failure);
    }
}

void TimeStore::performForCaller(const std::function<void()>& operations)
{
    const bool wasBlocked = blocked_;
    tellsCaller_ = true;
    callersFailure_.reset();
    try {
        operations();
        tellsCaller_ = false;
    } catch (const std::exception&) {
        tellsCaller_ = false;
        if (!callersFailure_) {
            throw;
        }
        if (blocked_ && !wasBlocked) {
            errorMessage_.assign(*callersFailure_);
        }
        throw LedgerError(*callersFailure_);
    }
}

void TimeStore::applyChange(const Change& change)
{
    report([&] {
        LedgerData working = *data_;
        change(working);
        recordChange(*data_, working, ChangeTracking{.trackDeletions = true, .forceAll = false});
        commit(std::move(working));
    });
}

void TimeStore::commit(LedgerData changed)
{
    if (knownPrimary_) {
        validateChange(*data_, changed);
    } else {
        validate(changed);
    }
    save(changed, Soundness::validated);
    data_.assign(std::move(changed));
}

void TimeStore::save(const LedgerData& ledger, Soundness soundness)
{
    if (blocked_) {
        throw LedgerError("Saving is disabled to protect your unreadable ledger. Restore the data "
                          "file before continuing.");
    }
    if (isDemo_) {
        return;
    }
    LedgerBytes bytes = ledgerBytes(ledger);
    claimDirectory();
    std::optional<FileIdentity> identity = replaceKnownPrimary(bytes);
    if (!identity) {
        if (primaryIsValid_) {
            backUpPrimary();
        } else {
            requireNoLedger();
        }
        identity = durableFiles_.write(primaryPath(), bytes.views());
    }
    primaryIsValid_ = true;
    knownPrimary_.reset();
    if (soundness == Soundness::validated) {
        knownPrimary_ = KnownPrimary{std::move(bytes), *identity, Durability::synced};
    }
}

std::optional<FileIdentity> TimeStore::replaceKnownPrimary(const LedgerBytes& bytes)
{
    if (!knownPrimary_) {
        return std::nullopt;
    }
    std::optional<OpenFile> primary;
    const std::vector<std::string_view> known = knownPrimary_->bytes.views();
    try {
        primary.emplace(platform_.files, primaryPath());
        if (platform_.files.identity(primary->handle()) != knownPrimary_->identity
            || !holdsExactly(platform_.files, primary->handle(), known)) {
            return std::nullopt;
        }
    } catch (const FileError&) {
        refuseUnreadablePrimary();
    }
    if (knownPrimary_->durability == Durability::unknown) {
        // Whoever wrote it need not have waited for the disk, as a backup must.
        platform_.files.sync(primary->handle());
    }
    // What this process wrote from a sound ledger or found to be one, and finds again byte for
    // byte, needs no decoding to be known as readable, and its own file can serve as the backup.
    return durableFiles_.writeKeepingPrevious(primaryPath(), bytes.views(),
        DurableFiles::Previous{primary->handle(), known, backupPath()});
}

bool TimeStore::isAstray() const
{
    return lock_ && lock_->isAstray();
}

void TimeStore::claimDirectory()
{
    // Nothing is made in the place of a directory that is claimed and has gone from there.
    if (!lock_ || !lock_->isHeld()) {
        durableFiles_.createDirectories(directory_);
    }
    if (lock_ && lock_->acquireForWrite() == ClaimAge::takenNow) {
        // What was read before the claim may have been written over since.
        primaryIsValid_ = false;
        knownPrimary_.reset();
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

void TimeStore::refuseUnreadablePrimary()
{
    block();
    throw LedgerError("The ledger on disk could not be read. It has been preserved. Restore "
                      "the last backup in Settings if available.");
}

void TimeStore::backUpPrimary()
{
    std::string bytes;
    try {
        bytes = readFile(platform_.files, primaryPath());
        validate(decodeLedger(bytes));
    } catch (const std::exception&) {
        refuseUnreadablePrimary();
    }
    durableFiles_.write(backupPath(), bytes);
}

} // namespace KestryCore
