#include "LedgerFiles.h"

#include <array>
#include <cassert>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"

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

[[maybe_unused]] bool isSound(const LedgerData& ledger)
{
    try {
        validate(ledger);
        return true;
    } catch (const LedgerError&) {
        return false;
    }
}

} // namespace

UnreadablePrimary::UnreadablePrimary()
    : LedgerError("The ledger on disk could not be read. It has been preserved. Restore the last "
                  "backup in Settings if available.",
        Audience::everybody)
{
}

LedgerFiles::LedgerFiles(FileSystem& files, std::string directory, std::shared_ptr<WriterLock> lock,
    std::uint64_t mostLedgerBytes)
    : files_(files), durableFiles_(files), directory_(std::move(directory)), lock_(std::move(lock)),
      mostLedgerBytes_(mostLedgerBytes)
{
}

// The directory.

std::string LedgerFiles::place() const
{
    return lock_ ? lock_->place() : directory_;
}

std::string LedgerFiles::primaryPath() const
{
    return joinPath(place(), "ledger.json");
}

std::string LedgerFiles::backupPath() const
{
    return joinPath(place(), "ledger.backup.json");
}

std::string LedgerFiles::handoffPath() const
{
    return joinPath(place(), "update-handoff.json");
}

bool LedgerFiles::isAstray() const
{
    return lock_ && lock_->isAstray();
}

void LedgerFiles::claimDirectory()
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

// Reading.

bool LedgerFiles::exist() const
{
    return exists(files_, primaryPath()) || exists(files_, backupPath());
}

LedgerData LedgerFiles::readPrimary()
{
    const OpenFile file(files_, primaryPath());
    const FileIdentity identity = files_.identity(file.handle());
    LedgerDocument document =
        readLedgerDocument(withinMemory([&] { return readToEnd(files_, file.handle()); }));
    validate(document.ledger);
    primaryIsValid_ = true;
    if (document.bytes) {
        knownPrimary_ = KnownPrimary{std::move(*document.bytes), identity, Durability::unknown};
    }
    return std::move(document.ledger);
}

LedgerData LedgerFiles::readBackup() const
{
    LedgerData ledger = decodeLedger(readFile(files_, backupPath()));
    validate(ledger);
    return ledger;
}

bool LedgerFiles::hasSoundBackup() const
{
    try {
        (void)readBackup();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void LedgerFiles::forget()
{
    blocked_ = false;
    primaryIsValid_ = false;
    knownPrimary_.reset();
}

// Writing.

void LedgerFiles::requireUnblocked() const
{
    if (blocked_) {
        throw LedgerError("Saving is disabled to protect your unreadable ledger. Restore the data "
                          "file before continuing.");
    }
}

void LedgerFiles::save(const LedgerData& ledger, Soundness soundness)
{
    requireUnblocked();
    // What is written must pass the check after reading, however it was validated.
    assert(soundness == Soundness::unchecked || isSound(ledger));
    LedgerBytes bytes = ledgerBytes(ledger);
    if (bytes.size() > mostLedgerBytes_) {
        throw LedgerError("The ledger would grow beyond 1 GB, more than can be read again, and was "
                          "not saved. Remove logos or sessions that you no longer need.");
    }
    claimDirectory();
    assert(!lock_ || lock_->isHeld());
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

std::optional<FileIdentity> LedgerFiles::replaceKnownPrimary(const LedgerBytes& bytes)
{
    if (!knownPrimary_) {
        return std::nullopt;
    }
    std::optional<OpenFile> primary;
    const std::vector<std::string_view> known = knownPrimary_->bytes.views();
    try {
        primary.emplace(files_, primaryPath());
        if (files_.identity(primary->handle()) != knownPrimary_->identity
            || !holdsExactly(files_, primary->handle(), known)) {
            return std::nullopt;
        }
    } catch (const FileError& failure) {
        refuseUnreadablePrimary(failure);
    }
    // What this process wrote from a sound ledger or found to be one, and finds again byte for
    // byte, needs no decoding to be known as readable, and its own file can serve as the backup.
    DurableFiles::Previous previous{std::nullopt, known, backupPath()};
    const std::optional<FileStatus> status = files_.status(primaryPath());
    // A file with a further name can be written to under that name.
    if (status && status->links == 1) {
        previous.handle = primary->handle();
        if (knownPrimary_->durability == Durability::unknown) {
            // Its writer may not have waited for the disk. A backup must be on it.
            files_.sync(primary->handle());
        }
    }
    return durableFiles_.writeKeepingPrevious(primaryPath(), bytes.views(), previous);
}

FileIdentity LedgerFiles::replaceReadPrimary(const LedgerBytes& bytes)
{
    std::string previous;
    try {
        previous = readFile(files_, primaryPath());
        validate(decodeLedger(previous));
    } catch (const std::exception& failure) {
        refuseUnreadablePrimary(failure);
    }
    const std::string_view view = previous;
    return durableFiles_.writeKeepingPrevious(primaryPath(), bytes.views(),
        DurableFiles::Previous{std::nullopt, DurableFiles::Pieces(&view, 1), backupPath()});
}

void LedgerFiles::refuseUnreadablePrimary(const std::exception& failure)
{
    if (isPassing(failure)) {
        throw; // The failure that is being handled: it says nothing about the file.
    }
    block();
    throw UnreadablePrimary();
}

void LedgerFiles::requireNoLedger()
{
    // Neither file was there when the store looked, or they were read without a claim. What is
    // there now is another process's, has not been read, and must not be written over.
    if (files_.status(primaryPath()) || files_.status(backupPath())) {
        throw LedgerError("Another program has saved a ledger in this data directory meanwhile. "
                          "Start again to use it.");
    }
}

void LedgerFiles::requireReplaceable(const std::string& path)
{
    const std::optional<FileStatus> status = files_.status(path);
    if (status && status->isLink) {
        throw LedgerError(path.substr(path.find_last_of('/') + 1)
            + " is a symbolic link, and saving would put a file in its place. Link the whole data "
              "directory instead.");
    }
}

void LedgerFiles::restore(const LedgerData& ledger, Date now, const UuidSource& newUuid)
{
    assert(isSound(ledger));
    LedgerBytes bytes = ledgerBytes(ledger);
    claimDirectory();
    requireReplaceable(primaryPath());
    preservePrimary(now, newUuid);
    // Where there is no ledger to take the access from, the backup has what it had.
    const std::string like = exists(files_, primaryPath()) ? primaryPath() : backupPath();
    const FileIdentity identity = durableFiles_.writeLike(like, primaryPath(), bytes.views());
    knownPrimary_ = KnownPrimary{std::move(bytes), identity, Durability::synced};
    blocked_ = false;
    primaryIsValid_ = true;
}

void LedgerFiles::preservePrimary(Date now, const UuidSource& newUuid)
{
    if (!exists(files_, primaryPath())) {
        return;
    }
    const std::string name =
        "ledger.corrupt-" + fileNameStamp(now) + "-" + newUuid().text() + ".json";
    durableFiles_.copy(primaryPath(), joinPath(place(), name));
}

// The handoff of an update.

bool LedgerFiles::hasHandoff() const
{
    return exists(files_, handoffPath());
}

UpdateHandoff LedgerFiles::readHandoff() const
{
    return decodeUpdateHandoff(readFile(files_, handoffPath()));
}

void LedgerFiles::removeHandoff()
{
    durableFiles_.remove(handoffPath());
}

void LedgerFiles::writeHandoff(const UpdateHandoff& handoff)
{
    durableFiles_.writePrivate(handoffPath(), encodeUpdateHandoff(handoff));
}

} // namespace KestryCore
