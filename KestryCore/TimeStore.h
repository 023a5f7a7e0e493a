#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ClockJump.h"
#include "FileSystem.h"
#include "Ledger.h"
#include "LedgerEditing.h"
#include "LedgerFiles.h"
#include "LocalChanges.h"
#include "Observable.h"
#include "SessionLifecycle.h"
#include "SyncConflicts.h"
#include "SyncState.h"
#include "WriterLock.h"

namespace KestryCore {

/// What a store needs of the world.
struct StorePlatform {
    FileSystem& files;
    Clock now = currentDate;
    UuidSource newUuid = Uuid::random;
    /// What tells whether `now` has jumped ahead; whoever opens a store for a moment has none.
    SteadyClock steady{};
};

/// Whether opening pauses a session that it finds running. The application does: nobody else
/// keeps its clock. A short-lived command takes the session as it stands and leaves an update
/// that is under way alone.
enum class RunningSessionPolicy { recover, keep };

struct StoreOptions {
    /// The data directory; the folder "Kestry" among the user's application data when absent.
    std::optional<std::string> directory;
    /// A made-up ledger to hold instead of the user's; no file is read or written then.
    std::optional<LedgerData> demoLedger;
    /// The token of the update that started this process.
    std::optional<Uuid> updateToken;
    RunningSessionPolicy runningSession = RunningSessionPolicy::recover;
    /// A ledger that would take more bytes is not saved: it could not be read again.
    std::uint64_t mostLedgerBytes = maximumFileBytes;
    /// The claim on the directory, taken before opening. Absent where no second writer can be.
    std::shared_ptr<WriterLock> lock;
};

/// The one owner of the ledger: reads it from the data directory, carries out every change and
/// guards the user's files.
///
/// Every change takes the same way: a working copy is changed, entered for replication, validated
/// and saved durably, and only then published. A failure at any step is thrown as a `LedgerError`
/// fit to show and leaves the published ledger and the screen as they were; unless an operation
/// says otherwise it is also put into `errorMessage`.
///
/// A file that could not be read is never written over: after a failed load, or when a save finds
/// the file on disk damaged, all saving is refused until a restore succeeds. A failure that may
/// pass, such as too few descriptors, is no damage: it refuses that one save, or leaves the opening
/// to `openAgain`.
class TimeStore {
public:
    /// Opens the data directory. Never fails: what goes wrong is found in the fields below.
    TimeStore(StorePlatform platform, StoreOptions options);

    /// The ledger as last saved.
    [[nodiscard]] const Observable<LedgerData>& data() const { return data_; }
    /// The latest failure in words. A later success does not clear it; only a restore does, and
    /// the user who has read it.
    [[nodiscard]] const Observable<std::optional<std::string>>& errorMessage() const
    {
        return errorMessage_;
    }
    /// Whether a session was found running and was paused, until `dismissRecovery`.
    [[nodiscard]] const Observable<bool>& recoveredSession() const { return recoveredSession_; }
    /// How the clock jumped ahead in the session that was running, until `dismissClockJump`.
    [[nodiscard]] const Observable<std::optional<ClockJump>>& clockJump() const
    {
        return clockJump_;
    }
    /// Whether a good backup stands ready for `restoreBackup` after a failure. Where none did, it
    /// is looked for again whenever this is asked: what was in its way may have passed.
    [[nodiscard]] const Observable<bool>& recoveryAvailable() const;
    [[nodiscard]] bool isDemo() const { return isDemo_; }
    /// The data directory as it was named.
    [[nodiscard]] const std::string& directory() const { return files_.directory(); }
    /// A path that leads to the data directory which this store has claimed, even when another has
    /// taken its place. Whoever writes there besides the store calls `claimDirectory` before.
    [[nodiscard]] std::string place() const { return files_.place(); }
    /// Makes the directory where it is missing, and claims it. Fails, and leaves everything as it
    /// is, when another process has it, or when it is not the one any more that was claimed.
    void claimDirectory() { files_.claimDirectory(); }
    /// Whether the directory is not the one any more that was claimed, so that nothing is saved.
    [[nodiscard]] bool isAstray() const { return files_.isAstray(); }
    /// Whether all saving is refused, to protect a file that could not be read.
    [[nodiscard]] bool blocked() const { return files_.blocked(); }
    /// Fails as saving does, before anything is tried, while all saving is refused.
    void requireSaving() const;

    /// Puts a failure that arose outside the store into `errorMessage`.
    void reportFailure(const std::string& message) { errorMessage_.assign(message); }
    /// The user has read the failure.
    void dismissFailure() { errorMessage_.assign(std::nullopt); }

    /// Carries out operations for somebody who is told of their failure at once, and elsewhere: a
    /// terminal, say. What would be put into `errorMessage` is thrown instead, and the field stays
    /// as it is. Only a failure that ends all saving concerns everybody, and is put there too.
    void performForCaller(const std::function<void()>& operations);

    // The files.

    /// Whether opening failed on something that may pass. Until `openAgain` succeeds the ledger is
    /// not known, and all saving is refused.
    [[nodiscard]] bool canOpenAgain() const { return unopened_ != Unopened::no; }
    /// Opens once more where that can help, and does nothing elsewhere. What goes wrong is found in
    /// the same fields; a message that is no news is not put into `errorMessage` a second time.
    void openAgain();
    /// Puts the backup in the place of the ledger, which is kept under a name of its own first.
    /// The replication state is never taken back. Failures carry the restore's own prefix in
    /// `errorMessage`.
    void restoreBackup();
    void dismissRecovery() { recoveredSession_.assign(false); }
    void dismissClockJump() { clockJump_.assign(std::nullopt); }

    // The session in progress. Dates are the caller's. While a session runs, the clock that they
    // are from must not run ahead of the time that passes: when it has, what ends the running
    // interval ends it at the last moment on which both clocks agree, and `clockJump` tells.

    /// Starts a session; returns its identifier.
    Uuid start(const Uuid& clientID, const std::optional<Uuid>& projectID, const std::string& title,
        Date at);
    /// Starts a session on a project. A project that is gone is not put into `errorMessage`.
    Uuid start(const Uuid& projectID, const std::string& title, Date at);
    void pause(Date at);
    /// A missing session or project is not put into `errorMessage`.
    void resume(Date at);
    /// Saves the session; returns its identifier.
    Uuid stop(Date at);
    void renameActiveSession(const Uuid& id, const std::string& title);
    void updateActiveSession(
        const Uuid& id, const std::string& title, const std::optional<Uuid>& projectID);
    /// Puts a missing interval back. An interval that is not a valid past one is not put into
    /// `errorMessage`.
    void restoreTrackingGap(const Uuid& sessionID, Date start, Date end);
    /// Seconds worked in the session in progress; 0 when there is none. Time by which the clock has
    /// jumped ahead is not counted.
    [[nodiscard]] double elapsed(Date at) const;
    /// Up to when a running session counts at a moment: until then, unless the clock has jumped.
    [[nodiscard]] Date countedUntil(Date at) const;
    /// Moves the checkpoint of a running session; does nothing while none runs. Pauses it where the
    /// clock has jumped ahead.
    void checkpoint(Date now);

    // Clients, projects and saved sessions. Unusable names, lengths and times in the future are
    // thrown only; everything else is put into `errorMessage` as well.

    Uuid addClient(const NewClient& client);
    void updateClient(const Uuid& id, const ClientChange& change);
    Uuid addProject(const Uuid& clientID, const ProjectValues& values);
    void updateProject(const Uuid& id, const ProjectValues& values);
    /// Returns the identifier of the new session.
    Uuid addEntry(const NewEntry& entry);
    /// Adds to a project, whatever `entry` says of client and project. A project that is gone is
    /// looked for before anything else, and is not put into `errorMessage`.
    Uuid addEntry(const Uuid& projectID, NewEntry entry);
    void updateEntry(const Uuid& id, const EntryChange& change);
    /// Removing a session that is not there succeeds, and saves.
    void deleteEntry(const Uuid& id);

    [[nodiscard]] std::optional<Project> project(const Uuid& id) const;
    [[nodiscard]] std::optional<Client> client(const Project& project) const;
    [[nodiscard]] std::optional<Project> unassignedProject(const Uuid& clientID) const;

    // Replication, for whoever talks to the cloud and for the user's decisions. What comes from
    // the cloud is validated and saved like any change, but is none to deliver.

    /// Fails, to the caller alone, when the ledger lives in another environment of the cloud.
    void validateSyncEnvironment(CloudSyncEnvironment environment) const;
    /// Connects the ledger to an account, or turns replication on again. No failure is put into
    /// `errorMessage`.
    void beginSync(const std::string& accountID, const std::string& deviceName,
        CloudSyncEnvironment environment);
    void setSyncEnabled(bool isEnabled);
    /// The records to deliver, parents first; no more than `most`.
    [[nodiscard]] std::vector<SyncRecord> pendingSyncRecords(
        std::size_t most = std::numeric_limits<std::size_t>::max()) const;
    /// Publishes, without saving, that the cloud holds a record: lost, it would merely be
    /// delivered once more.
    void acknowledgeDelivery(const SyncRecord& record, const std::string& systemFields);
    /// Takes in what a fetch brought, with the cloud's metadata by record identity and the cursor
    /// after it: all of it, or nothing.
    void applyRemoteSync(const std::vector<SyncRecord>& records,
        const std::map<std::string, std::string>& systemFields,
        const std::optional<std::string>& changeToken);
    void resolveSyncConflict(const std::string& recordID, ConflictChoice choice);

    // Replacing the program.

    /// Leaves the running session to the successor that is started with this token.
    void prepareForUpdate(const Uuid& token, Date now);

private:
    /// Whether opening is to be tried again: it failed on something that says nothing of the files,
    /// or on a disk that gave no bytes of theirs.
    enum class Unopened { no, forTheMoment, withoutABackup };

    void open();
    [[nodiscard]] std::optional<LedgerData> readFiles();
    [[nodiscard]] std::optional<LedgerData> readBackup(const std::exception& primaryFailure);
    void recoverRunningSession(LedgerData& ledger);
    bool consumeUpdateHandoff(const LedgerData& ledger);
    void tellOpening(const std::string& failure);

    using Change = std::function<void(LedgerData&)>;
    void applyChange(const Change& change);
    void changeReplication(const Change& change);
    void report(const std::function<void()>& action);
    void tell(const std::string& failure);
    void commit(LedgerData changed);
    void recordChange(const LedgerData& before, LedgerData& after, ChangeTracking tracking) const;
    void save(const LedgerData& ledger, Soundness soundness);
    void restore();
    void block();
    void watchClock(const ClockJumpWatch::Reading& reading);
    [[nodiscard]] std::optional<ClockJump> foundJump(const ClockJumpWatch::Reading& reading) const;
    void pauseAfter(const ClockJump& jump);

    StorePlatform platform_;
    LedgerFiles files_;
    RunningSessionPolicy runningSession_;
    std::optional<Uuid> updateToken_;
    bool isDemo_ = false;
    Unopened unopened_ = Unopened::no; // saving is blocked until then
    std::string openingFailure_;       // as it was put into `errorMessage_`
    Observable<LedgerData> data_;
    Observable<std::optional<std::string>> errorMessage_;
    bool tellsCaller_ = false;
    std::optional<std::string> callersFailure_; // instead of `errorMessage_`
    Observable<bool> recoveredSession_{false};
    ClockJumpWatch clockWatch_;
    Observable<std::optional<ClockJump>> clockJump_;
    mutable Observable<bool> recoveryAvailable_{false};
};

} // namespace KestryCore
