#include <cerrno>
#include <utility>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerError.h"
#include "LedgerValidation.h"
#include "TimeStore.h"

namespace KestryCore {

TimeStore::TimeStore(StorePlatform platform, StoreOptions options)
    : platform_(std::move(platform)), durableFiles_(platform_.files),
      lock_(std::move(options.lock)), runningSession_(options.runningSession),
      updateToken_(options.updateToken), mostLedgerBytes_(options.mostLedgerBytes),
      isDemo_(options.demoLedger.has_value()), clockWatch_(platform_.now, platform_.steady)
{
    directory_ = options.directory
        ? *options.directory
        : joinPath(platform_.files.applicationSupportDirectory(), "Kestry");
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
    blocked_ = primaryIsValid_ = false;
    knownPrimary_.reset();
    open();
    if (!blocked_ && *errorMessage_ == before) {
        errorMessage_.assign(std::nullopt);
    }
}

void TimeStore::open()
{
    if (!hasFiles()) {
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

bool TimeStore::hasFiles() const
{
    return exists(platform_.files, primaryPath()) || exists(platform_.files, backupPath());
}

std::optional<LedgerData> TimeStore::readFiles()
{
    try {
        return readPrimary();
    } catch (const std::exception& failure) {
        return readBackup(failure);
    }
}

LedgerData TimeStore::readPrimary()
{
    const OpenFile file(platform_.files, primaryPath());
    const FileIdentity identity = platform_.files.identity(file.handle());
    LedgerDocument document =
        readLedgerDocument(withinMemory([&] { return readToEnd(platform_.files, file.handle()); }));
    validate(document.ledger);
    primaryIsValid_ = true;
    if (document.bytes) {
        knownPrimary_ = KnownPrimary{std::move(*document.bytes), identity, Durability::unknown};
    }
    return std::move(document.ledger);
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
    blocked_ = true;
    if (isPassing(primaryFailure)) {
        // The backup is older, and whoever restored it would give up a sound ledger for it.
        unopened_ = Unopened::forTheMoment;
        tellOpening(
            "The ledger could not be read just now, and nothing was changed. Try again in a "
            "moment. "
            + failureText(primaryFailure));
        return std::nullopt;
    }
    try {
        LedgerData backup = load(backupPath());
        recoveryAvailable_.assign(true);
        tellOpening("The ledger could not be read. Your backup is available here in read-only "
                    "mode. Restore it in Settings; the original file will be preserved. "
            + failureText(primaryFailure));
        return backup;
    } catch (const std::exception& failure) {
        if (!hasFiles()) {
            // Only the look for them had failed: this is a first start.
            blocked_ = false;
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
    if (blocked_) {
        return;
    }
    try {
        recordChange(before, recovered, ChangeTracking{.trackDeletions = true, .forceAll = false});
        save(recovered, Soundness::unchecked);
        ledger = std::move(recovered);
    } catch (const std::exception& failure) {
        if (isPassing(failure)) {
            blocked_ = true;
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
