#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CloudConfiguration.h"
#include "CloudDatabase.h"
#include "CloudSyncFields.h"
#include "CloudSyncRun.h"
#include "CloudSyncSwitch.h"
#include "Date.h"
#include "Observable.h"
#include "Scheduler.h"
#include "SleepProofTimer.h"
#include "TaskOwner.h"
#include "TimeStore.h"
#include "Uuid.h"

namespace KestryCore {

/// What replication needs from its surroundings.
struct CloudPlatform {
    Scheduler& scheduler; ///< Must outlive the controller.
    /// Opens the store that a container identifier names. Never null: where there is no such
    /// store, its account is not available.
    std::function<std::unique_ptr<CloudContainer>(const std::string& identifier)> open;
    /// The name of this machine, for people who see its sessions on another one.
    std::function<std::string()> hostName;
    /// Calls an observer whenever the account on this machine changes. May be empty.
    std::function<Subscription(std::function<void()> observer)> observeAccount{};
    Clock now = currentDate;
    SteadyClock steady = secondsSinceStart; ///< Counts the time that the machine sleeps.
    UuidSource newUuid = Uuid::random;
};

/// Connects the ledger with the cloud: decides when to exchange records, and tells how it went.
///
/// Once started it exchanges them every minute, and two seconds after the last of a burst of local
/// changes; while replication is off nothing waits for a time. A failure never turns it off: the
/// next occasion tries again, and a success clears it. The wait that a store wishes for is told and
/// not enforced.
///
/// Replication runs in tasks of this object, on its scheduler: a controller that is destroyed takes
/// them with it, and nothing is applied afterwards. It must not be destroyed by an observer of the
/// fields or the ledger.
///
/// Not thread-safe.
class CloudSyncController {
public:
    /// Called when what was asked for is over, however it went; never when the controller goes
    /// before.
    using Done = std::function<void()>;

    /// The store must outlive the controller. A build that cannot replicate, or a ledger of another
    /// environment, shows in the fields.
    CloudSyncController(TimeStore& store, CloudConfiguration configuration, CloudPlatform platform);

    [[nodiscard]] const CloudSyncFields& fields() const { return fields_; }
    /// Whether the build may use a cloud store.
    [[nodiscard]] bool isConfigured() const { return configuration_.isConfigured; }
    /// Whether replication is on.
    [[nodiscard]] bool isEnabled() const { return switch_.isEnabled(); }

    /// Begins to watch the ledger, the account and the time. Does nothing when it does already.
    void start();
    /// Ends all of it. A cycle under way ends at its next check, silently.
    void stop();
    /// The machine was asleep: a cycle that fell due meanwhile begins.
    void machineWoke();

    /// One exchange with the cloud, unless one is under way or replication is off. Never fails: a
    /// failure is in the fields.
    void syncNow(Done done = {});
    /// The user turns replication on: connects the ledger when it never was, and verifies that the
    /// account is that of the ledger. A failure is in the fields.
    void enable(Done done = {});
    /// The user has all records of this device delivered anew, to a cloud that was restored from a
    /// backup or made anew. What the cloud has otherwise becomes conflicts. Does nothing while a
    /// cycle is under way, or unless replication is on. A failure is in the fields.
    void uploadAgain(Done done = {});
    /// The user turns replication off. All that is known of the cloud stays in the ledger.
    void disable() { switch_.turnOff(); }
    /// The account on this machine is gone, or another one for a ledger that was never connected:
    /// replication is off, and what went wrong with that account shows no more. Does nothing in a
    /// build that may not use a cloud store.
    void leaveAccount();

private:
    void checkBuild();
    void requireEnvironment() const;
    void fail(const std::exception& failure);

    [[nodiscard]] bool isStarted() const { return !subscriptions_.empty(); }
    void awaitAccountChange();
    void followSwitch(double secondsToFirstPoll);
    void followReview();
    void awaitQuiet();
    void lookAtOutbox();
    void poll();
    [[nodiscard]] Task<void> pollOnce(std::weak_ptr<SleepProofTimer> polling);

    [[nodiscard]] CloudContainer& container();
    [[nodiscard]] Task<void> syncThen(Done done);
    [[nodiscard]] Task<void> runCycle();
    [[nodiscard]] bool mayRun();
    [[nodiscard]] Task<void> exchange();
    [[nodiscard]] Task<void> uploadThen(Done done);
    [[nodiscard]] Task<void> enableThen(Done done);
    [[nodiscard]] Task<void> runEnable();
    [[nodiscard]] bool mayEnable();
    [[nodiscard]] Task<void> connect(Uuid generation);
    [[nodiscard]] Task<std::string> signedInAccount();
    void requireGeneration(const Uuid& generation) const;

    TimeStore& store_;
    CloudConfiguration configuration_;
    CloudPlatform platform_;
    CloudSyncFields fields_;
    CloudSyncSwitch switch_;
    std::unique_ptr<CloudContainer> container_; // once it was needed
    bool hasUnsaved_ = false;                   // see `CloudSyncRun::Parts`
    std::vector<CloudRecord> overruled_;        // the same

    std::vector<Subscription> subscriptions_;
    std::optional<Timer> accountChange_; // one that nothing was done about yet
    Timer quiet_;                        // until the ledger has not changed for a while
    Timer debounce_;                     // a cycle for a local change that has not begun
    std::shared_ptr<SleepProofTimer> polling_;
    std::map<std::string, std::string> observedRevisions_; // at the last look at the outbox

    TaskOwner tasks_; // the last member: its frames use all others
};

} // namespace KestryCore
