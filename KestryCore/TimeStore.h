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
#include "FetchedRecords.h"
#include "FileSystem.h"
#include "Ledger.h"
#include "LedgerEditing.h"
#include "LedgerFiles.h"
#include "LocalChanges.h"
#include "Observable.h"
#include "OutboxDelivery.h"
#include "SessionLifecycle.h"
#include "SyncBeginning.h"
#include "SyncConflicts.h"
#include "SyncState.h"
#include "WriterLock.h"

namespace KestryCore {

/// What a store needs from its surroundings.
struct StorePlatform {
    FileSystem& files; ///< Must outlive the store.
    Clock now = currentDate;
    UuidSource newUuid = Uuid::random;
    /// Shows whether `now` has jumped ahead. Empty for a store that is open only for a moment.
    SteadyClock steady{};
};

/// What opening does with a session that it finds running.
enum class RunningSessionPolicy {
    recover, ///< Pauses it at its last checkpoint, unless an update hands it over: the application.
    keep,    ///< Leaves it as it is, and a handoff too: a command of a few milliseconds.
};

struct StoreOptions {
    /// The data directory; by default the folder "Kestry" in the user's application data.
    std::optional<std::string> directory;
    /// A made-up ledger to use instead of the user's. No file is read or written then.
    std::optional<LedgerData> demoLedger;
    /// The token of the update that started this process.
    std::optional<Uuid> updateToken;
    RunningSessionPolicy runningSession = RunningSessionPolicy::recover;
    /// A larger ledger, in bytes as JSON, is not saved, because it could not be read again.
    std::uint64_t mostLedgerBytes = maximumFileBytes;
    /// The claim on the directory, acquired before opening. Null where there can be no second
    /// writer.
    std::shared_ptr<WriterLock> lock;
};

/// The one owner of the ledger: reads it from the data directory, carries out every change, and
/// protects the user's files.
///
/// Every change takes the same path: a working copy is changed, recorded for replication, validated
/// and saved durably, and only then published. A failure at any step is thrown as a `LedgerError`
/// and leaves the published ledger and its files as they were. Whom it concerns is part of it: one
/// for the `Audience::user` is put into `errorMessage` too, unless it occurs in `performForCaller`;
/// one for everybody always is.
///
/// A file that could not be read is never written over: after a failed opening, or when a save
/// finds the file damaged, no change can be saved until a restore succeeds. A failure that may
/// pass, such as too few descriptors, is no damage: it refuses that one save, or leaves the opening
/// to `openAgain`.
///
/// Not thread-safe.
class TimeStore {
public:
    /// Opens the data directory. Never fails: what goes wrong is in the fields below.
    TimeStore(StorePlatform platform, StoreOptions options);

    /// The ledger as last saved.
    [[nodiscard]] const Observable<LedgerData>& data() const { return data_; }
    /// The latest failure, as a sentence. A later success does not clear it; a successful restore
    /// and `dismissFailure` do.
    [[nodiscard]] const Observable<std::optional<std::string>>& errorMessage() const
    {
        return errorMessage_;
    }
    /// Whether a session was found running and was paused, until `dismissRecovery`.
    [[nodiscard]] const Observable<bool>& recoveredSession() const { return recoveredSession_; }
    /// How the clock jumped ahead during the running session, until `dismissClockJump`.
    [[nodiscard]] const Observable<std::optional<ClockJump>>& clockJump() const
    {
        return clockJump_;
    }
    /// Whether a sound backup is there for `restoreBackup` after a failure. Each call looks again
    /// where there was none, because what was in the way may have passed.
    [[nodiscard]] const Observable<bool>& recoveryAvailable() const;
    [[nodiscard]] bool isDemo() const { return isDemo_; }
    /// The data directory by the name that it was given.
    [[nodiscard]] const std::string& directory() const { return files_.directory(); }
    /// A path to the claimed data directory itself, even when another has taken its name since.
    /// Who writes there beside the store must call `claimDirectory` before.
    [[nodiscard]] std::string place() const { return files_.place(); }
    /// Creates the directory where it is missing, and claims it for writing. Throws LedgerError,
    /// and changes nothing, when another process has claimed it, or when its name no longer leads
    /// to the claimed directory.
    void claimDirectory() { files_.claimDirectory(); }
    /// Whether the directory's name no longer leads to the claimed directory, so that no change can
    /// be saved.
    [[nodiscard]] bool isAstray() const { return files_.isAstray(); }
    /// Whether saving is refused, to protect a file that could not be read.
    [[nodiscard]] bool blocked() const { return files_.blocked(); }
    /// Throws what a save would throw first while saving is refused. Changes nothing.
    void requireSaving() const;

    /// Puts a failure that occurred outside the store into `errorMessage`.
    void reportFailure(const std::string& message) { errorMessage_.assign(message); }
    /// The user has read the failure.
    void dismissFailure() { errorMessage_.assign(std::nullopt); }

    /// Carries out operations for a caller who shows their failures elsewhere, such as in a
    /// terminal. A failure for the user is then thrown only, in the words that `errorMessage` would
    /// get.
    void performForCaller(const std::function<void()>& operations);

    // The files.

    /// Whether opening failed on something that may pass. Until `openAgain` succeeds the ledger is
    /// not known, and saving is refused.
    [[nodiscard]] bool canOpenAgain() const { return unopened_ != Unopened::no; }
    /// Opens again when `canOpenAgain`, else does nothing. Never fails: what goes wrong is in the
    /// same fields as after opening. The same message is not assigned to `errorMessage` twice.
    void openAgain();
    /// Puts the backup in the place of the ledger, which is kept under another name. The
    /// replication state is not taken back. In `errorMessage`, a failure gets a prefix that says
    /// what failed.
    void restoreBackup();
    void dismissRecovery() { recoveredSession_.assign(false); }
    void dismissClockJump() { clockJump_.assign(std::nullopt); }

    // The session in progress. Dates are the caller's. While a session runs, the caller's clock
    // must not run ahead of the time that passes: where it has, the running interval ends at the
    // last moment on which both clocks agree, and `clockJump` is set.

    /// Starts a session on a client, by default on a project made for it; returns its identifier.
    Uuid start(const Uuid& clientID, const std::optional<Uuid>& projectID, const std::string& title,
        Date at);
    /// Starts a session on a project; returns its identifier.
    Uuid start(const Uuid& projectID, const std::string& title, Date at);
    void pause(Date at);
    void resume(Date at);
    /// Saves the session; returns its identifier.
    Uuid stop(Date at);
    void renameActiveSession(const Uuid& id, const std::string& title);
    void updateActiveSession(
        const Uuid& id, const std::string& title, const std::optional<Uuid>& projectID);
    /// Adds an interval that was not tracked to the active or a saved session. Adding it again
    /// changes nothing.
    void restoreTrackingGap(const Uuid& sessionID, Date start, Date end);
    /// Seconds worked in the session in progress; 0 when there is none. Time by which the clock has
    /// jumped ahead is not counted.
    [[nodiscard]] double elapsed(Date at) const;
    /// The moment up to which a running session is counted at `at`: `at`, or the last moment before
    /// the clock jumped ahead.
    [[nodiscard]] Date countedUntil(Date at) const;
    /// Moves the checkpoint of a running session; does nothing while none runs. Pauses the session
    /// where the clock has jumped ahead.
    void checkpoint(Date now);

    // Clients, projects and saved sessions. The functions that add return the new identifier.

    Uuid addClient(const NewClient& client);
    void updateClient(const Uuid& id, const ClientChange& change);
    Uuid addProject(const Uuid& clientID, const ProjectValues& values);
    void updateProject(const Uuid& id, const ProjectValues& values);
    Uuid addEntry(const NewEntry& entry);
    /// Adds to a project, whatever `entry` says of client and project.
    Uuid addEntry(const Uuid& projectID, NewEntry entry);
    void updateEntry(const Uuid& id, const EntryChange& change);
    /// Succeeds, and saves, also when there is no such session.
    void deleteEntry(const Uuid& id);

    /// Each returns nullopt when there is none.
    [[nodiscard]] std::optional<Project> project(const Uuid& id) const;
    [[nodiscard]] std::optional<Client> client(const Project& project) const;
    [[nodiscard]] std::optional<Project> unassignedProject(const Uuid& clientID) const;

    // Replication. What comes from the cloud is validated and saved like any change, but is not
    // delivered back.

    /// Throws LedgerError when the ledger belongs to another environment of the cloud.
    void validateSyncEnvironment(CloudSyncEnvironment environment) const;
    /// Connects the ledger to an account, or turns replication on again. The caller alone is told
    /// of a failure, whatever it is.
    void beginSync(const std::string& accountID, const std::string& deviceName,
        CloudSyncEnvironment environment);
    /// The same for a ledger that was never connected, in parts: what takes long is made first, and
    /// the store must outlive it. Throws LedgerError for blank names.
    [[nodiscard]] SyncBeginning prepareSync(const std::string& accountID,
        const std::string& deviceName, CloudSyncEnvironment environment) const;
    void beginSync(const SyncBeginning& beginning);
    void setSyncEnabled(bool isEnabled);
    /// The records to deliver, parents first; no more than `most`.
    [[nodiscard]] std::vector<SyncRecord> pendingSyncRecords(
        std::size_t most = std::numeric_limits<std::size_t>::max()) const;
    /// Publishes, without saving, that the cloud has a record. Were this lost, the record would be
    /// delivered once more, which does no harm.
    void acknowledgeDelivery(const SyncRecord& record, const std::string& systemFields);
    /// The same for several records, published once. When one is refused, those before it are
    /// published, and those after it are not.
    void acknowledgeDeliveries(const std::vector<AcknowledgedRecord>& deliveries);
    /// Publishes, without saving, a cursor that goes with acknowledgements. Does nothing when the
    /// ledger was never connected.
    void keepChangeToken(const std::string& changeToken);
    /// Saves that a delivered version, which the cloud has overruled, is undelivered again; see
    /// `takeBack` of `OverruledVersions.h`. False when it cannot be, and then nothing is saved.
    [[nodiscard]] bool takeBackVersion(const SyncRecord& version);
    /// Saves that undelivered versions are others than the cloud's with the same revision; see
    /// `separateRevisions` of `RevisionClash.h`. Saves nothing when there are none.
    void separateRevisions(const FetchedRecords& fetched);
    /// Saves that everything is to be delivered anew; see `deliverAllAgain` of `SyncConnection.h`.
    void deliverAllAgain();
    /// Applies what a fetch brought: records, the cloud's metadata by `recordID`, and the cursor
    /// after them. All of it, or nothing.
    void applyRemoteSync(const std::vector<SyncRecord>& records,
        const std::map<std::string, std::string>& systemFields,
        const std::optional<std::string>& changeToken);
    void applyRemoteSync(
        const FetchedRecords& fetched, const std::optional<std::string>& changeToken);
    void resolveSyncConflict(const std::string& recordID, ConflictChoice choice);

    // Replacing the program.

    /// Leaves the running session to the successor that is started with this token. Does nothing in
    /// a demo.
    void prepareForUpdate(const Uuid& token, Date now);

private:
    /// Whether opening is to be tried again.
    enum class Unopened {
        no,
        forTheMoment,   ///< It failed on something that says nothing about the files.
        withoutABackup, ///< The disk did not give the bytes of the primary or the backup.
    };

    void open();
    [[nodiscard]] std::optional<LedgerData> readFiles();
    [[nodiscard]] std::optional<LedgerData> readBackup(const std::exception& primaryFailure);
    void recoverRunningSession(LedgerData& ledger);
    bool consumeUpdateHandoff(const LedgerData& ledger);
    void tellOpening(const std::string& failure);

    using Change = std::function<void(LedgerData&)>;
    void applyChange(const Change& change);
    void changeReplication(const Change& change);
    void carryOut(const std::function<void()>& operation);
    void tell(const LedgerError& failure);
    void commit(LedgerData changed);
    void recordChange(const LedgerData& before, LedgerData& after, ChangeTracking tracking) const;
    void save(const LedgerData& ledger, Soundness soundness);
    [[nodiscard]] Uuid addPastEntry(LedgerData& working, const NewEntry& entry) const;
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
    bool isForCaller_ = false; // during `performForCaller`
    Observable<bool> recoveredSession_{false};
    ClockJumpWatch clockWatch_;
    Observable<std::optional<ClockJump>> clockJump_;
    mutable Observable<bool> recoveryAvailable_{false};
};

} // namespace KestryCore
