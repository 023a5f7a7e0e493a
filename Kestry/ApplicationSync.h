#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "CloudAccount.h"
#include "CloudSyncController.h"
#include "LiveSync.h"
#include "Scheduler.h"
#include "Task.h"
#include "TaskOwner.h"
#include "TimeStore.h"

namespace Kestry {

/// Replication for the commands of other processes. Nothing here blocks: a command that has to wait
/// for a record store is told when that is over, and others are carried out meanwhile.
///
/// Not thread-safe.
class ApplicationSync final : public LiveSync {
public:
    /// Callers that may wait at a time. One more is refused.
    static constexpr std::size_t mostWaiting = 8;

    /// All of it must outlive this object.
    struct World {
        KestryCore::TimeStore& store;
        KestryCore::CloudSyncController& controller;
        CloudAccount& account;
        KestryCore::Scheduler& scheduler;
    };

    explicit ApplicationSync(World world);

    [[nodiscard]] SyncCondition condition() const override;
    [[nodiscard]] bool canTry(const SyncSignInCommand& command) const override;
    void signIn(const SyncSignInCommand& command, Done done) override;
    void signOut(Done done) override;
    void turnOn(Done done) override;
    void turnOff() override;
    void exchange(Done done) override;
    void uploadAgain(Done done) override;

    /// Tells all who wait, in this call, that the program ends. What they wanted may go on.
    void end();

private:
    enum class Wish { turnOn, exchange, uploadAgain };
    using Place = std::size_t; ///< Of somebody who waits.

    [[nodiscard]] Place admit(Done done);
    void tell(Place place, const std::optional<std::string>& failure);
    [[nodiscard]] KestryCore::Task<void> checkAccount(CloudCredentials credentials, Place place);
    [[nodiscard]] KestryCore::Task<void> forgetAccount(Place place);
    void begin(Wish wish, Done done);
    void requireOn() const;
    [[nodiscard]] KestryCore::Task<void> carryOut(Wish wish, Place place);
    [[nodiscard]] KestryCore::Task<void> untilIdle();
    [[nodiscard]] KestryCore::Task<bool> exchangeOnce(Wish wish);
    [[nodiscard]] std::string failureText() const;

    World world_;
    std::map<Place, Done> waiting_;
    Place lastPlace_ = 0;
    std::unique_ptr<KestryCore::TaskOwner> tasks_; // its frames use all others; null once ended
};

} // namespace Kestry
