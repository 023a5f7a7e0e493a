#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Date.h"
#include "DurableFiles.h"
#include "FileSystem.h"
#include "Ledger.h"
#include "LedgerBytes.h"
#include "LedgerError.h"
#include "UpdateHandoff.h"
#include "Uuid.h"
#include "WriterLock.h"

namespace KestryCore {

/// A save found `ledger.json` damaged or unreadable. Nothing was written, and from now on no save
/// is possible until `restore`.
class UnreadablePrimary : public LedgerError {
public:
    UnreadablePrimary();
};

/// Whether a ledger that is to be saved has passed `validate`.
enum class Soundness { validated, unchecked };

/// The files of one ledger in its data directory: `ledger.json` (the primary), its backup, the
/// handoff of an update, and this process's claim on the directory. Knows bytes and rules of a
/// sound ledger, but neither sessions nor users.
///
/// A primary that could not be read is never written over. A save keeps the previous primary as
/// the backup. Each write happens completely or not at all, see `DurableFiles`.
///
/// All failures are thrown as `LedgerError`, those of system calls as its `FileError`. Unless a
/// function says otherwise, files and this object are then as they were.
class LedgerFiles {
public:
    /// `files` must outlive this object. Nothing is read or written yet. `lock` is the claim on
    /// `directory`; null where there can be no second writer. A ledger of more than
    /// `mostLedgerBytes` is not saved.
    LedgerFiles(FileSystem& files, std::string directory, std::shared_ptr<WriterLock> lock,
        std::uint64_t mostLedgerBytes);

    // The directory.

    /// The data directory by the name that it was given.
    [[nodiscard]] const std::string& directory() const { return directory_; }
    /// A path to the claimed directory itself, even when another has taken its name since; the
    /// given name while nothing is claimed.
    [[nodiscard]] std::string place() const;
    /// Creates the directory where it is missing, and claims it for writing. Fails when another
    /// process has claimed it, or when its name no longer leads to the claimed directory.
    void claimDirectory();
    /// Whether the directory's name no longer leads to the claimed directory, so that no save is
    /// possible. False when that cannot be found out.
    [[nodiscard]] bool isAstray() const;

    // The ledger.

    /// Whether a primary or a backup exists. One that cannot be looked for counts as existing.
    [[nodiscard]] bool exist() const;
    /// Reads, decodes and validates the primary.
    [[nodiscard]] LedgerData readPrimary();
    /// The same for the backup.
    [[nodiscard]] LedgerData readBackup() const;
    /// Whether `readBackup` would succeed.
    [[nodiscard]] bool hasSoundBackup() const;

    /// Whether the primary has been read or written since the directory was claimed, and was sound.
    [[nodiscard]] bool hasSoundPrimary() const { return primaryIsValid_; }
    /// Whether the primary's very bytes are known, and are those of the ledger that was read or
    /// saved last. A change of that ledger may then be validated by itself.
    [[nodiscard]] bool knowsPrimary() const { return knownPrimary_.has_value(); }

    /// Writes the ledger, and makes the previous primary the backup. Fails without effect when
    /// saving is blocked; with `UnreadablePrimary` when the primary has been damaged; when another
    /// process has saved a ledger since; and when the ledger would be too large to be read again.
    void save(const LedgerData& ledger, Soundness soundness);
    /// Copies the primary, whatever it contains, to a new name made from `now` and a new UUID, and
    /// writes this validated ledger in its place. The backup stays unchanged. Saving is possible
    /// from then on. On failure only the copy may remain.
    void restore(const LedgerData& ledger, Date now, const UuidSource& newUuid);

    /// Refuses all saving until `restore` or `forget`.
    void block() { blocked_ = true; }
    [[nodiscard]] bool blocked() const { return blocked_; }
    /// Fails with the sentence for people when saving is blocked.
    void requireUnblocked() const;
    /// Forgets all that is known of the files, and unblocks saving: as after construction, except
    /// that the claim is kept.
    void forget();

    // The handoff of an update.

    [[nodiscard]] bool hasHandoff() const;
    /// Removes what a crash left of a write to the handoff.
    void clearHandoffLeftOver() { durableFiles_.clear(handoffPath()); }
    [[nodiscard]] UpdateHandoff readHandoff() const;
    void removeHandoff();
    void writeHandoff(const UpdateHandoff& handoff);

private:
    /// Whether a file is known to be on the disk, rather than in the system's memory alone.
    enum class Durability { synced, unknown };

    /// The primary as this process wrote it, or as it read it in the form in which it would write
    /// it.
    struct KnownPrimary {
        LedgerBytes bytes;
        FileIdentity identity;
        Durability durability = Durability::synced;
    };

    [[nodiscard]] std::string primaryPath() const;
    [[nodiscard]] std::string backupPath() const;
    [[nodiscard]] std::string handoffPath() const;
    [[nodiscard]] std::optional<FileIdentity> replaceKnownPrimary(const LedgerBytes& bytes);
    [[nodiscard]] FileIdentity replaceReadPrimary(const LedgerBytes& bytes);
    [[noreturn]] void refuseUnreadablePrimary(const std::exception& failure);
    void requireNoLedger();
    void requireReplaceable(const std::string& path);
    void preservePrimary(Date now, const UuidSource& newUuid);

    FileSystem& files_;
    DurableFiles durableFiles_;
    std::string directory_;
    std::shared_ptr<WriterLock> lock_;
    std::uint64_t mostLedgerBytes_;
    bool blocked_ = false;
    bool primaryIsValid_ = false;
    std::optional<KnownPrimary> knownPrimary_;
};

} // namespace KestryCore
