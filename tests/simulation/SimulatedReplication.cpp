#include "SimulatedReplication.h"

#include <utility>

#include "World.h"

namespace KestryCore {

void SimulatedReplication::start()
{
    CloudPlatform platform{member_.loop, [this](const std::string&) { return member_.line.open(); },
        [this] { return member_.device.name(); }};
    platform.observeAccount = [this](std::function<void()> observer) {
        return accountChanges_.observe([observer](int) { observer(); });
    };
    platform.now = [this] { return member_.device.now(); };
    platform.steady = [this] { return member_.device.steadySeconds(); };
    platform.newUuid = [this] { return world_.drawUuid(); };
    TimeStore& store = member_.device.store();
    const CloudConfiguration configuration{"simulated", true, CloudSyncEnvironment::development};
    controller_.emplace(store, configuration, std::move(platform));
    subscriptions_.push_back(store.data().observe([this](const LedgerData& ledger) {
        published_.push_back({ledger, member_.device.primary(), std::exchange(shown_, ledger)});
    }));
    const CloudSyncFields& fields = controller_->fields();
    subscriptions_.push_back(
        fields.isSyncing.observe([this](const bool& isSyncing) { sawSyncing(isSyncing); }));
    subscriptions_.push_back(
        fields.lastSync.observe([this](const auto&) { hasSucceeded_ = true; }));
    subscriptions_.push_back(fields.status.observe([this](const std::string& status) {
        isCancelled_ = isCancelled_ || status == "iCloud sync is off";
    }));
    shown_ = *store.data();
    beginTurn();
    ++starts_;
    isCancelled_ = wasSyncing_ = false;
    controller_->start();
}

void SimulatedReplication::end()
{
    subscriptions_.clear();
    controller_.reset();
    member_.loop.clear();
    beginTurn();
}

void SimulatedReplication::beginTurn()
{
    published_.clear();
    failures_.clear();
    hasEnded_ = hasSucceeded_ = false;
}

void SimulatedReplication::sawSyncing(bool isSyncing)
{
    if (isSyncing && !wasSyncing_) {
        isCancelled_ = false;
        member_.line.forgetFailures();
    } else if (!isSyncing && wasSyncing_) {
        hasEnded_ = true;
        failures_ = member_.line.failures();
    }
    wasSyncing_ = isSyncing;
}

bool SimulatedReplication::checkEnd()
{
    if (!hasEnded_ || isSyncing()) {
        return false; // What was turned on is followed by an exchange at once.
    }
    if (isCancelled_) {
        require(
            !hasSucceeded_, member_.device.name() + " tells of success after it was turned off");
        world_.tally.count(told().starts_with("This ledger belongs to") ? Event::foreignAccountFound
                                                                        : Event::cancelledExchange);
    } else if (hasSucceeded_) {
        checkSuccess();
    } else {
        checkFailure();
    }
    return true;
}

std::string SimulatedReplication::told() const
{
    return controller_->fields().errorMessage->value_or("");
}

void SimulatedReplication::checkSuccess()
{
    const std::string& name = member_.device.name();
    // An exchange goes on after the first cursor that has expired, and makes a zone for a ledger
    // that was never exchanged.
    bool mayExpire = true;
    for (const CloudLine::Failure& failure : failures_) {
        const bool isExpiry = failure.code == CloudErrorCode::changeTokenExpired;
        const bool isInOrder = failure.code == CloudErrorCode::zoneNotFound
            || (isExpiry && std::exchange(mayExpire, false));
        require(isInOrder, name + " does not tell of a failure: " + failure.words);
    }
    require(told().empty(), name + " still tells of a failure that is over: " + told());
    world_.tally.count(Event::exchange);
}

void SimulatedReplication::checkFailure()
{
    require(!told().empty(), member_.device.name() + " has ended an exchange and does not say why");
    world_.tally.count(Event::failedExchange);
    if (told().starts_with("Records were removed")) {
        world_.tally.count(Event::refusedDeletion);
    } else if (told().starts_with("The iCloud workspace is missing")) {
        world_.tally.count(Event::zoneMissing);
    }
}

} // namespace KestryCore
