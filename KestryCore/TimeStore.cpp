#include "TimeStore.h"

#include "LedgerCoding.h"
#include "LedgerDocument.h"
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

const Observable<bool>& TimeStore::recoveryAvailable() const
{
    // With both files unreadable at the start nothing is known that a restore could keep.
    const bool wasBlockedLater = blocked_ && primaryIsValid_ && !canOpenAgain();
    if (wasBlockedLater && !*recoveryAvailable_ && isLoadable(backupPath())) {
        recoveryAvailable_.assign(true);
    }
    return recoveryAvailable_;
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
    } catch (const LedgerError& failure) {
        tell(failure.what());
        throw;
    } catch (const std::exception& failure) {
        const LedgerError inWords(failureText(failure));
        tell(inWords.what());
        throw inWords;
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

void TimeStore::requireSaving() const
{
    if (unopened_ == Unopened::forTheMoment) {
        throw LedgerError(openingFailure_);
    }
    if (blocked_) {
        throw LedgerError("Saving is disabled to protect your unreadable ledger. Restore the data "
                          "file before continuing.");
    }
}

void TimeStore::save(const LedgerData& ledger, Soundness soundness)
{
    requireSaving();
    if (isDemo_) {
        return;
    }
    LedgerBytes bytes = ledgerBytes(ledger);
    if (bytes.size() > mostLedgerBytes_) {
        throw LedgerError("The ledger would grow beyond 1 GB, more than can be read again, and was "
                          "not saved. Remove logos or sessions that you no longer need.");
    }
    claimDirectory();
    requireReplaceable(primaryPath());
    requireReplaceable(backupPath());
    std::optional<FileIdentity> identity = replaceKnownPrimary(bytes);
    if (!identity && primaryIsValid_) {
        identity = replaceReadPrimary(bytes);
    }
    if (!identity) {
        requireNoLedger();
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
    } catch (const FileError& failure) {
        refuseUnreadablePrimary(failure);
    }
    // What this process wrote from a sound ledger or found to be one, and finds again byte for
    // byte, needs no decoding to be known as readable, and its own file can serve as the backup.
    DurableFiles::Previous previous{std::nullopt, known, backupPath()};
    const std::optional<FileStatus> status = platform_.files.status(primaryPath());
    // A file with a further name can be written to under that name.
    if (status && status->links == 1) {
        previous.handle = primary->handle();
        if (knownPrimary_->durability == Durability::unknown) {
            // Whoever wrote it need not have waited for the disk, as a backup must.
            platform_.files.sync(primary->handle());
        }
    }
    return durableFiles_.writeKeepingPrevious(primaryPath(), bytes.views(), previous);
}

FileIdentity TimeStore::replaceReadPrimary(const LedgerBytes& bytes)
{
    std::string previous;
    try {
        previous = readFile(platform_.files, primaryPath());
        validate(decodeLedger(previous));
    } catch (const std::exception& failure) {
        refuseUnreadablePrimary(failure);
    }
    const std::string_view view = previous;
    return durableFiles_.writeKeepingPrevious(primaryPath(), bytes.views(),
        DurableFiles::Previous{std::nullopt, DurableFiles::Pieces(&view, 1), backupPath()});
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

void TimeStore::requireReplaceable(const std::string& path)
{
    const std::optional<FileStatus> status = platform_.files.status(path);
    if (status && status->isLink) {
        throw LedgerError(path.substr(path.find_last_of('/') + 1)
            + " is a symbolic link, and saving would put a file in its place. Link the whole data "
              "directory instead.");
    }
}

void TimeStore::refuseUnreadablePrimary(const std::exception& failure)
{
    if (isPassing(failure)) {
        throw; // The failure that is being handled: it says nothing about the file.
    }
    block();
    throw LedgerError("The ledger on disk could not be read. It has been preserved. Restore "
                      "the last backup in Settings if available.");
}

} // namespace KestryCore
