#include "World.h"

#include <algorithm>
#include <array>

#include "RecordContents.h"
#include "SyncCloudRecord.h"

namespace KestryCore {

namespace {

/// What happens often in one run of so many, and seldom in all others.
constexpr std::array seldomEvents{Event::oldCopy, Event::damagedLedger, Event::exchangedDirectory,
    Event::expiredCursor, Event::expiredTwice, Event::failedFetch, Event::retryAfter,
    Event::twoWriters, Event::overruled, Event::zoneHidden, Event::storeInTrouble,
    Event::storeRestored, Event::storeWiped, Event::removedRecord, Event::signedOut,
    Event::accountChanged, Event::accountChangedBack, Event::accountUnnoticed,
    Event::asleepInExchange, Event::asleepForAWeek, Event::syncTurnedOff};

} // namespace

Member::Member(const std::string& name, World& world, double clockOffset)
    : device(
        name, world.choices, [&world] { return world.drawUuid(); }, world.now, clockOffset),
      loop(world.seconds), line(world.server, loop),
      judge(device, world.cloud, world.book, world.tally), replication(world, *this)
{
}

World::World(std::uint64_t seed, bool keepsHistory)
    : choices(seed), history(keepsHistory), now(atSeconds(0.0)),
      often_(seldomEvents.at(seed % seldomEvents.size()))
{
}

std::size_t World::timesOf(Event event, std::size_t times) const
{
    constexpr std::size_t often = 12;
    return event == often_ ? std::min(times, often) : times;
}

bool World::befalls(Event event, std::size_t times)
{
    const bool happens = faultOneIn(timesOf(event, times));
    if (happens) {
        tally.count(event);
    }
    return happens;
}

std::string World::refusalOf(Member& member)
{
    return member.device.store().errorMessage()->value_or("");
}

std::string World::ending(Member& member, Outcome outcome)
{
    switch (outcome) {
    case Outcome::refused:
        return ", refused: " + refusalOf(member);
    case Outcome::crashed:
        return ", and the power fails";
    default:
        return {};
    }
}

World::Outcome World::change(Member& member, const std::string& what,
    const std::function<void(TimeStore&)>& action, Refusal refusal)
{
    const auto primaryBefore = member.device.primary();
    const bool wasBlocked = member.device.store().blocked();
    const Outcome outcome = member.device.perform(action, drawFault());
    history.note([&] { return member.device.name() + " " + what + ending(member, outcome); });
    if (outcome == Outcome::done) {
        member.judge.sawSaved();
        if (*member.device.store().clockJump()) {
            tally.count(Event::clockJumpFound);
            member.device.store().dismissClockJump();
        }
    } else if (outcome == Outcome::crashed) {
        sawCrash(member);
    } else if (member.device.hadPassingFailure()) {
        tally.count(Event::passingFailure);
        const bool mayBeBlocked = wasBlocked || member.judge.isDamaged();
        require(mayBeBlocked || !member.device.store().blocked(),
            "a failure of the moment ends all saving");
    } else if (member.device.hadFailingCall()) {
        tally.count(Event::diskError);
    } else {
        require(refusal == Refusal::allowed || member.device.store().blocked(),
            member.device.name() + " cannot be in step any more: " + refusalOf(member));
        member.judge.sawRefused(primaryBefore);
    }
    return outcome;
}

World::Outcome World::restore(Member& member)
{
    const bool wasOpenedSo = member.judge.isOpenedOnBackup();
    const Outcome outcome =
        member.device.perform([](TimeStore& store) { store.restoreBackup(); }, drawFault());
    history.note([&] {
        return member.device.name()
            + (outcome == Outcome::done ? " restores its backup" : " fails to restore its backup");
    });
    if (outcome == Outcome::done) {
        tally.count(wasOpenedSo ? Event::restoreOnOpening : Event::restoreOfRunning);
    } else if (outcome == Outcome::crashed) {
        sawCrash(member);
    } else {
        require(member.device.hadFailingCall(), "a restore is refused: " + refusalOf(member));
        tally.count(Event::diskError);
    }
    return outcome;
}

void World::open(Member& member)
{
    while (!member.device.isRunning()) {
        if (member.device.open(drawFaultAtOpening()) == Outcome::crashed) {
            sawCrash(member);
            continue;
        }
        if (!member.device.isRunning()) {
            // The directory could not be claimed: the user starts it again.
            tally.count(Event::diskError);
            continue;
        }
        if (member.device.hadPassingFailure() && member.device.store().canOpenAgain()) {
            tally.count(Event::openedLater);
            (void)member.device.perform(
                [](TimeStore& store) { store.openAgain(); }, DiskFault::none);
            require(!member.device.store().canOpenAgain(), "what has passed is still in the way");
        }
        if (member.device.hadFailingCall()) {
            // Whatever it has read or not: the user starts it again.
            tally.count(Event::diskError);
            kill(member);
            continue;
        }
        history.note([&] {
            return member.device.name() + " starts"
                + (member.device.store().blocked() ? " on its backup" : "");
        });
        member.judge.sawOpened();
        member.replication.start();
    }
}

void World::kill(Member& member)
{
    member.replication.end();
    member.device.kill();
    member.judge.sawEnd();
}

void World::sawCrash(Member& member)
{
    tally.count(Event::powerCut);
    if (member.replication.isSyncing()) {
        tally.count(Event::powerCutInSync);
    }
    member.replication.end();
    member.judge.sawEnd();
}

CloudStore::SaveOutcome World::save(const CloudRecord& raw, CloudStore::Rival rival)
{
    const CloudStore::Stored* const held = cloud.find(raw.id.name);
    const std::string former = held != nullptr ? held->record.revision : std::string();
    CloudStore::SaveOutcome outcome = cloud.save(raw, rival);
    const SyncRecord record = syncRecordFrom(raw);
    history.note([&] {
        return "  the cloud " + std::string(outcome.isSaved ? "takes " : "refuses ")
            + shortName(record.recordID) + " in version " + shortName(record.revision)
            + (record.isDeleted ? ", deleted" : "");
    });
    if (!outcome.isSaved) {
        tally.count(Event::refusedDelivery);
        return outcome;
    }
    tally.count(Event::delivery);
    book.hold(record.revision);
    if (!former.empty() && rival == CloudStore::Rival::isRefused) {
        releaseInCloud(record.recordID, former);
    }
    return outcome;
}

void World::discard(const CloudRecord& overruled)
{
    if (!cloud.discard(overruled)) {
        return;
    }
    const SyncRecord record = syncRecordFrom(overruled);
    tally.count(Event::takenBack);
    history.note([&] {
        return "  the cloud lets " + shortName(record.recordID) + " in version "
            + shortName(record.revision) + " go";
    });
    releaseInCloud(record.recordID, record.revision);
}

void World::releaseInCloud(const std::string& recordID, const std::string& revision)
{
    book.release(revision);
    require(!book.isLost(revision),
        "the cloud's version " + shortName(revision) + " of " + recordID + " is nowhere any more");
}

void World::restoreStore(const CloudStore::Backup& backup)
{
    const std::vector<SyncRecord> before = versionsInCloud();
    cloud.restore(backup);
    server.sawRestored();
    for (const SyncRecord& version : versionsInCloud()) {
        book.hold(version.revision);
    }
    letGo(before);
}

void World::wipeStore()
{
    const std::vector<SyncRecord> before = versionsInCloud();
    cloud.wipe();
    server.sawRestored();
    letGo(before);
}

std::vector<SyncRecord> World::versionsInCloud() const
{
    std::vector<SyncRecord> versions;
    for (const auto& [key, stored] : cloud.records()) {
        versions.push_back(stored.record);
    }
    for (const auto& [key, stored] : cloud.overruled()) {
        versions.push_back(stored.record);
    }
    return versions;
}

/// What no device has is lost with the store, which no program can help; so is what was written by
/// none that could upload it again.
void World::letGo(const std::vector<SyncRecord>& versions)
{
    for (const SyncRecord& version : versions) {
        book.release(version.revision);
        if (book.isLost(version.revision) || !isOfMember(version)) {
            book.replace(version.revision);
        }
    }
}

bool World::isOfMember(const SyncRecord& version) const
{
    return std::ranges::any_of(members, [&](const auto& member) {
        const LedgerSyncState* const state = member->device.state();
        return state != nullptr && state->deviceID == version.deviceID;
    });
}

DiskFault World::drawFault()
{
    constexpr std::size_t seldom = 40;
    if (!faultOneIn(seldom)) {
        return DiskFault::none;
    }
    if (oneIn(2)) {
        return DiskFault::powerCut;
    }
    return oneIn(2) ? DiskFault::failingCall : DiskFault::passingFailure;
}

DiskFault World::drawFaultAtOpening()
{
    // A ledger is opened far less often than it is changed. What only an opening can meet has to
    // happen often all the same, or a few hundred runs may well pass without it.
    constexpr std::size_t often = 6;
    return faultOneIn(often) ? DiskFault::passingFailure : drawFault();
}

Uuid World::drawUuid()
{
    constexpr std::size_t byteValues = 256;
    Uuid id;
    for (std::uint8_t& byte : id.bytes) {
        byte = static_cast<std::uint8_t>(choices.below(byteValues));
    }
    return id;
}

} // namespace KestryCore
