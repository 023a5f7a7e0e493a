#pragma once

#include <set>
#include <string>
#include <vector>

#include "ClockJudge.h"
#include "CloudStore.h"
#include "GoneRecords.h"
#include "Ledger.h"
#include "SimulatedDevice.h"
#include "Tally.h"
#include "VersionBook.h"

namespace KestryCore {

/// Watches one device, and throws a `Violation` when what it does breaks the promise.
///
/// - What is on the disk can be read and is sound, and is what the program shows.
/// - The program shows of each record the version that its replication state speaks of, but for
///   a version of the cloud that the user chose and that is not written by that choice.
/// - Nothing that was deleted comes back by itself, whatever the replication state says of it.
/// - A conflict shows the version that would go out if it were kept, and what is known to be
///   delivered is what the next change is based on.
/// - A session in progress that the user gave up in a conflict has ended.
/// - After a fetch nothing waits that could be applied.
/// - A session that runs elsewhere does so in a project that is here.
/// - A restore brings all that the backup has, and drops nothing that was here.
/// - The cursor has passed no record whose version was not applied, staged or put into a conflict,
///   and no removal.
/// - What is published and not saved tells of deliveries, and of nothing else.
/// - No version is lost (see `VersionBook`), except with a disk.
/// - No session counts time that has not passed (see `ClockJudge`).
class DeviceJudge {
public:
    DeviceJudge(SimulatedDevice& device, const CloudStore& cloud, VersionBook& book, Tally& tally);

    /// A change was saved.
    void sawSaved();
    /// The program has published a ledger in an exchange with the store, while the file was this:
    /// what it was saved as, unless it only tells that versions are delivered.
    void sawPublished(const LedgerData& ledger, const std::optional<std::string>& primary);
    /// The last of some ledgers published in an exchange came from the store.
    void sawFetched() const;
    /// A change was refused, and no file call failed: nothing has changed.
    void sawRefused(const std::optional<std::string>& primaryBefore);
    /// The program has ended, by its own doing or not.
    void sawEnd();
    void sawOpened();
    /// Somebody damages the primary.
    void sawDamage() { isDamaged_ = true; }
    /// A restore went well, over a ledger that the program had open or only its backup of.
    void sawRestored(const LedgerData& before);
    /// The user uploads everything again: the store may ask about what was decided before. What
    /// runs elsewhere stays on the screen, in a version that only its own device can upload.
    void sawUploadAgain();
    /// The session was stopped, and is saved.
    void sawStopped(const Uuid& id) { clock_.sawStopped(device_.ledger(), id); }
    /// Other files were put in the place of the ledger's.
    void sawPutBack();

    /// Whether the device shows an older version than the cloud's because the user chose the
    /// cloud's in a conflict, which does not write it.
    [[nodiscard]] bool hasUnwritten(const std::string& revision) const
    {
        return unwritten_.contains(revision);
    }
    [[nodiscard]] bool isDamaged() const { return isDamaged_; }
    /// The last primary that was found to be sound.
    [[nodiscard]] const std::string& soundPrimary() const { return soundPrimary_; }
    [[nodiscard]] bool isOpenedOnBackup() const { return isOpenedOnBackup_; }

private:
    enum class Loss { none, allowed };

    void observe(const LedgerData& now, Loss loss);
    void checkAcknowledgement(const LedgerData& now) const;
    /// The device is back at an earlier state, by no change of its own.
    void startFrom(LedgerData ledger);
    void enterNewVersions(const LedgerSyncState& now);
    [[nodiscard]] bool isInCloud(const std::string& revision) const;
    void noteChoices(const LedgerData& ledger);
    void keep(const LedgerData& now, Loss loss);
    void checkDisk();
    void checkShown(const LedgerData& now) const;
    void checkConflicts(const LedgerSyncState& state) const;
    void checkCursor(const LedgerSyncState& state) const;
    void checkSound(const std::string& file, const std::string& bytes);
    [[noreturn]] void fail(const std::string& violation) const;

    SimulatedDevice& device_;
    const CloudStore& cloud_;
    VersionBook& book_;
    Tally& tally_;
    LedgerData seen_;
    std::set<std::string> kept_;      // the revisions that the device holds in any role
    std::set<std::string> noticed_;   // revisions that were applied, staged or put into a conflict
    std::set<std::string> unwritten_; // revisions of the cloud chosen in a conflict
    std::set<std::string> decided_;   // local revisions of conflicts that the user has settled
    GoneRecords gone_;
    ClockJudge clock_{device_};
    std::set<std::string> saved_; // the primaries of this device, one after another
    std::string soundPrimary_;
    std::string soundBackup_;
    /// The last change was saved while a file call failed, perhaps that which waits for the disk:
    /// only the next change does so again, and until then a power cut may undo both.
    bool mayBeUnsynced_ = false;
    bool isDamaged_ = false;
    bool isOpenedOnBackup_ = false;
};

} // namespace KestryCore
