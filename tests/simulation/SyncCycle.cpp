#include "SyncCycle.h"

#include <utility>

#include "RecordContents.h"
#include "World.h"

namespace KestryCore {

namespace {

std::optional<std::string> knownFields(const Member& member, const std::string& recordID)
{
    const LedgerSyncState& state = *member.device.state();
    const auto found = state.systemFields.find(recordID);
    return found != state.systemFields.end() ? std::optional(found->second) : std::nullopt;
}

void shuffle(std::vector<CloudStore::Stored>& records, Choices& choices)
{
    for (std::size_t left = records.size(); left > 1; --left) {
        std::swap(records[left - 1], records[choices.below(left)]);
    }
}

std::string wordsFor(const CloudStore::Changes& answer)
{
    std::string words = "applies up to " + answer.cursor + ":";
    for (const CloudStore::Stored& stored : answer.records) {
        const SyncRecord& record = stored.record;
        words += " " + shortName(record.recordID) + " in " + shortName(record.revision)
            + (record.isDeleted ? " deleted" : "");
    }
    return words;
}

} // namespace

void SyncCycle::abandon()
{
    stage_ = Stage::idle;
    lastAnswer_.reset();
}

void SyncCycle::step(World& world, Member& member)
{
    constexpr std::size_t seldom = 60;
    const LedgerSyncState* const state = member.device.state();
    if (state == nullptr || !state->enabled || !world.isOnline(member)) {
        return abandon();
    }
    if (lastAnswer_ && world.faultOneIn(seldom)) {
        world.tally.count(Event::repeatedAnswer);
        apply(world, member, CloudStore::Changes(*lastAnswer_));
        return;
    }
    switch (stage_) {
    case Stage::idle:
        hasStartedAnew_ = false;
        return fetch(world, member, state->changeToken);
    case Stage::fetching:
        return takeAnswer(world, member);
    case Stage::sending:
        return takeReply(world, member);
    }
}

void SyncCycle::fetch(World& world, Member& member, const std::optional<std::string>& cursor)
{
    constexpr std::size_t longestAnswer = 8;
    constexpr std::size_t seldom = 25;
    auto changes = world.cloud.changesSince(cursor, 1 + world.choices.below(longestAnswer));
    if (!changes) {
        world.tally.count(Event::expiredCursor);
        if (!std::exchange(hasStartedAnew_, true)) {
            return fetch(world, member, std::nullopt);
        }
        return abandon();
    }
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::lostAnswer);
        return abandon();
    }
    if (world.faultOneIn(4) && changes->records.size() > 1) {
        world.tally.count(Event::shuffledAnswer);
        shuffle(changes->records, world.choices);
    }
    answer_ = *std::move(changes);
    stage_ = Stage::fetching;
}

void SyncCycle::takeAnswer(World& world, Member& member)
{
    const CloudStore::Changes answer = answer_;
    if (!answer.hasMore && CloudStore::position(answer.cursor) < world.cloud.lastChange()) {
        world.tally.count(Event::lateAnswer);
    }
    if (!apply(world, member, answer)) {
        return;
    }
    lastAnswer_ = answer;
    if (answer.hasMore) {
        return fetch(world, member, answer.cursor);
    }
    startSending(world, member);
}

bool SyncCycle::apply(World& world, Member& member, const CloudStore::Changes& answer)
{
    std::vector<SyncRecord> records;
    std::map<std::string, std::string> systemFields;
    for (const CloudStore::Stored& stored : answer.records) {
        records.push_back(stored.record);
        systemFields[stored.record.recordID] = CloudStore::systemFields(stored);
    }
    const World::Outcome outcome = world.change(
        member, world.history.isKept() ? wordsFor(answer) : "",
        [&](TimeStore& store) { store.applyRemoteSync(records, systemFields, answer.cursor); },
        World::Refusal::never);
    if (outcome != World::Outcome::done) {
        abandon();
        return false;
    }
    member.judge.sawFetched();
    world.tally.count(Event::answer);
    return true;
}

void SyncCycle::startSending(World& world, Member& member)
{
    pending_ = member.device.store().pendingSyncRecords();
    next_ = 0;
    send(world, member);
}

void SyncCycle::send(World& world, Member& member)
{
    constexpr std::size_t longestBatch = 4;
    sent_.clear();
    stage_ = next_ < pending_.size() ? Stage::sending : Stage::idle;
    if (stage_ == Stage::idle) {
        return;
    }
    const std::size_t end =
        std::min(pending_.size(), next_ + 1 + world.choices.below(longestBatch));
    const Fate fate = drawFate(world);
    for (; next_ < end; ++next_) {
        const SyncRecord& record = pending_[next_];
        const auto fields = knownFields(member, record.recordID);
        if (fate == Fate::late) {
            late_.push_back({record, fields});
        } else if (fate != Fate::lost) {
            sent_.push_back({record, deliver(world, record, fields)});
        }
    }
    if (fate != Fate::arrives) {
        abandon();
    }
}

SyncCycle::Fate SyncCycle::drawFate(World& world)
{
    constexpr std::size_t seldom = 20;
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::lostDelivery);
        return Fate::lost;
    }
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::lateDelivery);
        return Fate::late;
    }
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::lostReply);
        return Fate::replyLost;
    }
    return Fate::arrives;
}

std::optional<CloudStore::SaveOutcome> SyncCycle::deliver(
    World& world, const SyncRecord& record, const std::optional<std::string>& systemFields)
{
    constexpr std::size_t seldom = 30;
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::failedDelivery);
        return std::nullopt;
    }
    CloudStore::SaveOutcome outcome = world.save(record, systemFields);
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::repeatedDelivery);
        outcome = world.save(record, systemFields);
    }
    if (world.faultOneIn(seldom)) {
        world.tally.count(Event::lostAcknowledgement);
        return std::nullopt;
    }
    return outcome;
}

void SyncCycle::takeReply(World& world, Member& member)
{
    bool hasFailed = false;
    for (const Sent& sent : std::exchange(sent_, {})) {
        if (!sent.outcome) {
            hasFailed = true;
        } else if (!takeOutcome(world, member, sent.record, *sent.outcome)) {
            return abandon();
        }
    }
    if (hasFailed) {
        return abandon();
    }
    send(world, member);
}

bool SyncCycle::takeOutcome(
    World& world, Member& member, const SyncRecord& record, const CloudStore::SaveOutcome& outcome)
{
    const std::string& key = record.recordID;
    const std::string fields = CloudStore::systemFields(outcome.server);
    if (outcome.isSaved) {
        member.device.store().acknowledgeDelivery(record, fields);
        member.judge.sawAcknowledged(record);
        return true;
    }
    const SyncRecord& server = outcome.server.record;
    return world.change(
               member, "learns of " + shortName(key) + " in " + shortName(server.revision),
               [&](TimeStore& store) {
                   store.applyRemoteSync(
                       {server}, {{key, fields}}, member.device.state()->changeToken);
               },
               World::Refusal::never)
        == World::Outcome::done;
}

bool SyncCycle::arriveLate(World& world)
{
    if (late_.empty()) {
        return false;
    }
    const LateDelivery arriving = late_.front();
    late_.erase(late_.begin());
    world.save(arriving.record, arriving.systemFields);
    return true;
}

} // namespace KestryCore
