#include <array>

#include "LedgerCoding.h"
#include "World.h"

namespace KestryCore {

void World::run(Member& member, const std::string& what, const std::function<void()>& action)
{
    SimulatedDevice& device = member.device;
    const bool wasBlocked = device.store().blocked();
    const auto primaryBefore = wasBlocked ? device.primary() : std::nullopt;
    device.store().dismissFailure();
    member.replication.beginTurn();
    const Outcome outcome = device.perform([&](TimeStore&) { action(); }, drawFault());
    if (!what.empty() || outcome == Outcome::crashed) {
        history.note([&] { return device.name() + " " + what + ending(member, outcome); });
    }
    if (outcome == Outcome::crashed) {
        return sawCrash(member);
    }
    judgeTurn(member);
    if (*device.store().errorMessage()) {
        judgeRefusal(member, wasBlocked);
    }
    if (wasBlocked && member.replication.published().empty()) {
        member.judge.sawRefused(primaryBefore);
    }
}

void World::judgeTurn(Member& member)
{
    bool hasApplied = false;
    for (const SimulatedReplication::Publication& each : member.replication.published()) {
        const auto& state = each.ledger.replication;
        history.note([&] {
            return member.device.name() + " shows another ledger"
                + (state ? ", " + std::to_string(state->outbox.size()) + " to deliver" : "");
        });
        member.judge.sawPublished(each.ledger, each.primary);
        const auto& before = each.before.replication;
        const bool isFetched = state && before && state->changeToken
            && (state->changeToken != before->changeToken
                || !(state->systemFields == before->systemFields));
        hasApplied = isFetched && encodeLedger(each.ledger) == each.primary;
        if (hasApplied) {
            tally.count(Event::answer);
        }
    }
    if (hasApplied) {
        member.judge.sawFetched();
    }
    require(!member.line.hasAskedAtOnce(), member.device.name() + " exchanges twice at once");
    require(!accusation_, accusation_.value_or(""));
    if (member.replication.checkEnd()) {
        const CloudSyncFields& fields = member.replication.controller().fields();
        history.note([&] {
            return member.device.name() + " ends an exchange: " + *fields.status + " "
                + fields.errorMessage->value_or("");
        });
    }
}

void World::judgeRefusal(Member& member, bool wasBlocked)
{
    SimulatedDevice& device = member.device;
    if (device.hadPassingFailure()) {
        tally.count(Event::passingFailure);
        require(wasBlocked || member.judge.isDamaged() || !device.store().blocked(),
            "a failure of the moment ends all saving");
    } else if (device.hadFailingCall()) {
        tally.count(Event::diskError);
    } else {
        require(device.store().blocked(),
            device.name() + " cannot be in step any more: " + refusalOf(member));
    }
}

void World::switchOn(Member& member)
{
    if (member.device.state() == nullptr && member.line.account != CloudLine::ownAccount) {
        return; // Connected to a stranger's account, it would be a ledger of another group.
    }
    run(member, "turns replication on", [&] { member.replication.controller().enable(); });
}

void World::switchOff(Member& member)
{
    run(member, "turns replication off", [&] { member.replication.controller().disable(); });
    require(!member.replication.isRunning() || !member.replication.controller().isEnabled(),
        member.device.name() + " is not off");
}

void World::signIn(Member& member, const std::string& account)
{
    history.note([&] { return member.device.name() + " has the account " + account; });
    member.line.account = account;
    if (member.replication.isRunning()) {
        member.replication.tellAccountChange();
    }
}

void World::sawQuestion(CloudLine& line, CloudQuestion question)
{
    const std::size_t place = static_cast<std::size_t>(question);
    constexpr std::array<std::size_t, static_cast<std::size_t>(CloudQuestion::count)> times{
        300, 300, 100, 4, 100, 30, 2};
    Member* struck = nullptr;
    for (const auto& member : members) {
        struck = &member->line == &line ? member.get() : struck;
    }
    const LedgerSyncState* const state = struck->device.state();
    const bool wasExchanged =
        state != nullptr && (state->changeToken || !state->baseRevisions.empty());
    if (question == CloudQuestion::creation && wasExchanged) {
        accusation_ = struck->device.name() + " makes a new zone for a ledger that had one";
    }
    if (faultOneIn(times.at(place))) {
        // In the turn after that in which it asks, before any answer.
        network.post([this, struck, question] { strike(*struck, question); });
    }
}

void World::strike(Member& member, CloudQuestion question)
{
    if (member.line.waitingFor() != question) {
        return;
    }
    const auto place = static_cast<std::size_t>(question);
    if (oneIn(2)) {
        tally.count(
            static_cast<Event>(static_cast<std::size_t>(Event::killedWaitingForAccount) + place));
        history.note([&] { return member.device.name() + " is killed, waiting for an answer"; });
        kill(member);
        return open(member);
    }
    tally.count(
        static_cast<Event>(static_cast<std::size_t>(Event::switchedWaitingForAccount) + place));
    switchOff(member);
    if (member.replication.isRunning() && oneIn(2)) {
        switchOn(member);
    }
}

} // namespace KestryCore
