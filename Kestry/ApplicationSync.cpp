#include "ApplicationSync.h"

#include <exception>
#include <utility>

#include "LedgerError.h"
#include "Reply.h"
#include "SignOut.h"

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::Reply;
using KestryCore::Task;

ApplicationSync::ApplicationSync(World world)
    : world_(world), tasks_(std::make_unique<KestryCore::TaskOwner>(
                         world_.scheduler, [](const std::exception_ptr& /*none comes here*/) {}))
{
}

SyncCondition ApplicationSync::condition() const
{
    const KestryCore::CloudSyncFields& fields = world_.controller.fields();
    SyncCondition condition{.isConfigured = world_.controller.isConfigured(),
        .isEnabled = world_.controller.isEnabled(),
        .isSyncing = *fields.isSyncing,
        .status = *fields.status,
        .lastSync = *fields.lastSync,
        .errorMessage = *fields.errorMessage,
        .forgetsPassword = *world_.account.isForgotten()};
    if (const auto& name = *world_.account.name()) {
        condition.account = SyncCondition::Account{name->address, name->user};
    }
    return condition;
}

// Who waits.

ApplicationSync::Place ApplicationSync::admit(Done done)
{
    if (!tasks_ || waiting_.size() >= mostWaiting) {
        throw LedgerError("Too many commands are waiting for the record store. Nothing was "
                          "changed; try again later.");
    }
    waiting_.emplace(++lastPlace_, std::move(done));
    return lastPlace_;
}

void ApplicationSync::tell(Place place, const std::optional<std::string>& failure)
{
    if (const auto known = waiting_.extract(place)) {
        known.mapped()(failure);
    }
}

void ApplicationSync::end()
{
    tasks_.reset();
    for (const auto& [place, done] : std::exchange(waiting_, {})) {
        done("Kestry was quit before this was over.");
    }
}

// The account.

bool ApplicationSync::canTry(const SyncSignInCommand& command) const
{
    return world_.account.canTry({command.address, command.user});
}

void ApplicationSync::signIn(const SyncSignInCommand& command, Done done)
{
    const Place place = admit(std::move(done));
    CloudCredentials credentials{command.address, command.user, command.password.value_or("")};
    tasks_->start(checkAccount(std::move(credentials), place));
}

void ApplicationSync::signOut(Done done)
{
    if (!*world_.account.name()) {
        throw LedgerError("Nobody is signed in to a record store.");
    }
    const Place place = admit(std::move(done));
    tasks_->start(forgetAccount(place));
}

Task<void> ApplicationSync::forgetAccount(Place place)
{
    Reply<std::optional<std::string>> reply(world_.scheduler);
    const auto sender = reply.sender();
    Kestry::signOut(world_.controller, world_.account,
        [sender](std::optional<std::string> failure) { sender.give(std::move(failure)); });
    std::optional<std::string> failure = co_await reply;
    if (failure) {
        failure = "Signed out, and sync is off. " + *failure;
    }
    tell(place, failure);
}

Task<void> ApplicationSync::checkAccount(CloudCredentials credentials, Place place)
{
    Reply<std::optional<std::string>> reply(world_.scheduler);
    const auto sender = reply.sender();
    world_.account.signIn(std::move(credentials),
        [sender](std::optional<std::string> failure) { sender.give(std::move(failure)); });
    const std::optional<std::string> failure = co_await reply;
    tell(place, failure);
}

// The exchange of records.

void ApplicationSync::turnOn(Done done)
{
    begin(Wish::turnOn, std::move(done));
}

void ApplicationSync::turnOff()
{
    world_.controller.disable();
    const auto& state = world_.store.data()->replication;
    if (state && state->enabled) {
        throw LedgerError("Sync is off until Kestry ends, and could not be turned off for good: "
            + world_.store.errorMessage()->value_or("the ledger could not be saved."));
    }
}

void ApplicationSync::exchange(Done done)
{
    requireOn();
    begin(Wish::exchange, std::move(done));
}

void ApplicationSync::uploadAgain(Done done)
{
    requireOn();
    begin(Wish::uploadAgain, std::move(done));
}

void ApplicationSync::requireOn() const
{
    if (!world_.controller.isEnabled()) {
        throw LedgerError("Sync is off. Turn it on with \"kestryctl sync on\".");
    }
}

void ApplicationSync::begin(Wish wish, Done done)
{
    const Place place = admit(std::move(done));
    world_.account.askAgain();
    tasks_->start(carryOut(wish, place));
}

// What is asked for while an exchange is under way does nothing, and so does what that exchange has
// begun before anybody looked again. What was wished for with one account is not done with another.
Task<void> ApplicationSync::carryOut(Wish wish, Place place)
{
    constexpr int mostAttempts = 3;
    const auto account = *world_.account.name();
    bool isExchanged = false;
    for (int attempt = 0; attempt < mostAttempts && !isExchanged; ++attempt) {
        if (*world_.account.name() != account) {
            break;
        }
        Task<void> waiting = untilIdle();
        co_await waiting;
        Task<bool> exchanging = exchangeOnce(wish);
        const bool isOver = co_await exchanging;
        isExchanged = isOver;
    }
    tell(place, isExchanged ? *world_.controller.fields().errorMessage : failureText());
}

Task<void> ApplicationSync::untilIdle()
{
    const auto& isSyncing = world_.controller.fields().isSyncing;
    while (*isSyncing) {
        Reply<bool> reply(world_.scheduler);
        const auto sender = reply.sender();
        const KestryCore::Subscription subscription = isSyncing.observe([sender](bool isUnderWay) {
            if (!isUnderWay) {
                sender.give(true);
            }
        });
        (void)co_await reply;
    }
}

/// Whether an exchange came to an end, be it a failure.
Task<bool> ApplicationSync::exchangeOnce(Wish wish)
{
    const KestryCore::CloudSyncFields& fields = world_.controller.fields();
    bool isOver = false;
    const KestryCore::Subscription success =
        fields.lastSync.observe([&isOver](const auto&) { isOver = true; });
    const KestryCore::Subscription failure = fields.errorMessage.observe(
        [&isOver](const auto& message) { isOver = isOver || message.has_value(); });
    Reply<bool> reply(world_.scheduler);
    const auto sender = reply.sender();
    KestryCore::CloudSyncController::Done done = [sender] { sender.give(true); };
    switch (wish) {
    case Wish::turnOn:
        world_.controller.enable(std::move(done));
        break;
    case Wish::exchange:
        world_.controller.syncNow(std::move(done));
        break;
    case Wish::uploadAgain:
        world_.controller.uploadAgain(std::move(done));
        break;
    }
    (void)co_await reply;
    co_return isOver;
}

/// Why no exchange came to an end.
std::string ApplicationSync::failureText() const
{
    return world_.controller.isEnabled() ? "The exchange was interrupted. Try again."
                                         : "Sync was turned off before the exchange was over.";
}

} // namespace Kestry
