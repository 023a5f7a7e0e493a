#include "Mishaps.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "RecordContents.h"

namespace KestryCore {

void Mishaps::perhaps(Member& member)
{
    if (world_.oneIn(40)) {
        makeCopy(member);
    }
    if (world_.faultOneIn(60)) {
        world_.history.note([&] { return member.device.name() + " is killed"; });
        world_.tally.count(Event::processKilled);
        world_.kill(member);
        world_.open(member);
    }
    if (world_.faultOneIn(150)) {
        goOffline(member);
    }
    if (world_.faultOneIn(50)) {
        setClock(member);
    }
    if (world_.faultOneIn(world_.timesOf(Event::damagedLedger, 200))) {
        damageLedger(member);
    }
    if (world_.faultOneIn(world_.timesOf(Event::oldCopy, 250))) {
        returnToCopy(member);
    }
    if (world_.faultOneIn(world_.timesOf(Event::exchangedDirectory, 250))) {
        exchangeDirectory(member);
    }
    if (!world_.hasFaults) {
        return;
    }
    perhapsToStore();
    perhapsToAccount(member);
    if (member.replication.isSyncing() && world_.befalls(Event::asleepInExchange, 15)) {
        world_.sleep(member, oneHour * static_cast<double>(1 + world_.choices.below(10)));
    } else if (world_.befalls(Event::asleepForAWeek, 250)) {
        world_.history.note([&] { return member.device.name() + " sleeps for a week"; });
        world_.sleep(member, oneWeek);
    }
}

void Mishaps::perhapsToStore()
{
    if (world_.befalls(Event::expiredCursor, 300)) {
        world_.history.note([] { return "all cursors expire"; });
        world_.cloud.expireCursors();
    }
    if (world_.cloud.hasZone() && world_.befalls(Event::zoneHidden, 300)) {
        hideZone();
    }
    if (world_.befalls(Event::storeInTrouble, 300)) {
        troubleStore();
    }
    perhapsReplaceStore();
    if (world_.cloud.removed().empty() && !world_.cloud.records().empty()
        && world_.befalls(Event::removedRecord, 250)) {
        removeRecord();
    }
}

void Mishaps::perhapsReplaceStore()
{
    if (world_.oneIn(30)) {
        storeBackup_ = world_.cloud.backup();
    }
    // A device that reads everything anew, because its cursor has expired, cannot tell that the
    // store is another one.
    const bool isReadAnew = std::ranges::any_of(
        world_.members, [](const auto& member) { return member->line.isReadingAnew(); });
    if (isReadAnew || !world_.cloud.hasZone()) {
        return;
    }
    if (storeBackup_ && world_.befalls(Event::storeRestored, 300)) {
        world_.history.note([] { return "the store is restored from a backup"; });
        world_.restoreStore(*storeBackup_);
    } else if (world_.befalls(Event::storeWiped, 400)) {
        world_.history.note([] { return "the store is wiped"; });
        world_.wipeStore();
        storeBackup_.reset();
    }
}

void Mishaps::perhapsToAccount(Member& member)
{
    if (member.line.isSignedIn && world_.befalls(Event::signedOut, 200)) {
        signOut(member);
    }
    if (member.line.account != CloudLine::ownAccount) {
        return;
    }
    if (world_.befalls(Event::accountChanged, 300)) {
        changeAccount(member, oneHour * static_cast<double>(1 + world_.choices.below(24)));
    } else if (member.replication.isSyncing() && world_.befalls(Event::accountChangedBack, 40)) {
        changeAccount(member, 1.0 + static_cast<double>(world_.choices.below(5)));
    } else if (world_.befalls(Event::accountUnnoticed, 300)) {
        world_.kill(member);
        changeAccount(member, oneHour * static_cast<double>(1 + world_.choices.below(24)));
        world_.open(member);
    }
}

/// Somebody makes the zone unreachable, and mends that within hours.
void Mishaps::hideZone()
{
    world_.history.note([] { return "the zone is missing"; });
    world_.cloud.hideZone();
    world_.network.later(oneHour * static_cast<double>(1 + world_.choices.below(10)), [this] {
        world_.history.note([] { return "the zone is back"; });
        world_.cloud.createZone();
    });
}

/// The store refuses all with words of its own, and gets right again within hours.
void Mishaps::troubleStore()
{
    world_.history.note([] { return "the store is in trouble"; });
    world_.weather.setTrouble("The record store is in trouble.");
    world_.network.later(oneHour * static_cast<double>(1 + world_.choices.below(10)), [this] {
        world_.history.note([] { return "the store is right again"; });
        world_.weather.setTrouble(std::nullopt);
    });
}

/// Somebody removes a record, and puts it back within hours.
void Mishaps::removeRecord()
{
    const auto& records = world_.cloud.records();
    auto place = records.begin();
    std::advance(place, world_.choices.below(records.size()));
    world_.history.note([&] { return "somebody removes " + shortName(place->first); });
    world_.cloud.remove(std::string(place->first));
    world_.network.later(oneHour * static_cast<double>(1 + world_.choices.below(10)), [this] {
        world_.history.note([] { return "what was removed is back"; });
        world_.cloud.putBackRemoved();
    });
}

void Mishaps::signOut(Member& member)
{
    world_.history.note([&] { return member.device.name() + " is signed out"; });
    member.line.isSignedIn = false;
    const double seconds = world_.oneIn(2) ? 2.0 : oneHour;
    world_.network.later(seconds * static_cast<double>(1 + world_.choices.below(10)),
        [&member] { member.line.isSignedIn = true; });
}

void Mishaps::changeAccount(Member& member, double secondsUntilBack)
{
    world_.signIn(member, "stranger");
    world_.network.later(
        secondsUntilBack, [this, &member] { world_.signIn(member, CloudLine::ownAccount); });
}

void Mishaps::goOffline(Member& member)
{
    member.offlineUntil = world_.now + oneWeek * static_cast<double>(1 + world_.choices.below(4));
    member.line.isOnline = false;
    world_.network.later(member.offlineUntil - world_.now,
        [this, &member] { member.line.isOnline = !(world_.now < member.offlineUntil); });
    world_.tally.count(Event::cutOff);
    world_.history.note([&] { return member.device.name() + " is cut off for weeks"; });
}

void Mishaps::setClock(Member& member)
{
    double seconds = 0.0;
    switch (world_.choices.below(3)) {
    case 0:
        seconds = static_cast<double>(1 + world_.choices.below(59));
        break;
    case 1:
        seconds = 61.0 + oneHour * static_cast<double>(world_.choices.below(200));
        break;
    default:
        seconds = -oneHour * static_cast<double>(1 + world_.choices.below(200));
    }
    member.device.setClockForward(seconds);
    world_.tally.count(seconds > 0.0 ? Event::clockForward : Event::clockBack);
    world_.history.note([&] {
        return member.device.name() + "'s clock is set by " + std::to_string(seconds) + " s";
    });
}

void Mishaps::makeCopy(Member& member)
{
    constexpr std::size_t mostCopies = 4;
    if (member.judge.isDamaged() || !member.device.primary()
        || member.copies.size() >= mostCopies) {
        return;
    }
    member.copies.push_back(member.device.copy());
}

void Mishaps::returnToCopy(Member& member)
{
    if (member.copies.empty()) {
        return;
    }
    world_.history.note([&] { return member.device.name() + " returns to an old copy"; });
    world_.tally.count(Event::oldCopy);
    world_.kill(member);
    member.device.putBack(member.copies.at(world_.choices.below(member.copies.size())));
    member.judge.sawPutBack();
    world_.open(member);
}

void Mishaps::exchangeDirectory(Member& member)
{
    if (member.judge.isDamaged() || !member.device.isRunning() || !member.device.primary()) {
        return;
    }
    const SimulatedDevice::Copy ours = member.device.copy();
    const bool isPutBack = world_.oneIn(2);
    const SimulatedDevice::Copy theirs = isPutBack && !member.copies.empty()
        ? member.copies.at(world_.choices.below(member.copies.size()))
        : ours;
    world_.history.note([&] { return member.device.name() + "'s directory is exchanged"; });
    world_.tally.count(Event::exchangedDirectory);
    member.device.exchangeDirectory(theirs);
    const auto outcome = member.device.perform(
        [](TimeStore& store) {
            store.addClient({"Astray", 100, "112233", true, std::nullopt, true});
        },
        DiskFault::none);
    require(outcome == World::Outcome::refused && member.device.store().isAstray(),
        member.device.name() + " saves although its directory is another");
    require(member.device.copy() == theirs && member.device.copyElsewhere() == ours,
        member.device.name() + " has written to a directory that was exchanged");
    if (isPutBack) {
        world_.history.note([] { return "  and is put back"; });
        member.device.moveDirectoryBack();
        return;
    }
    world_.kill(member);
    world_.open(member);
}

void Mishaps::damageLedger(Member& member)
{
    if (member.judge.isDamaged() || !member.device.primary() || !member.device.backup()) {
        return;
    }
    world_.history.note([&] { return member.device.name() + "'s ledger is damaged"; });
    world_.tally.count(Event::damagedLedger);
    const bool isRunning = world_.oneIn(2);
    if (!isRunning) {
        world_.kill(member);
    }
    if (!member.copies.empty() && world_.oneIn(3)) {
        world_.history.note([] { return "  and an old backup is put beside it"; });
        world_.tally.count(Event::oldBackup);
        member.device.putBackup(
            member.copies.at(world_.choices.below(member.copies.size())).primary);
    }
    member.device.damagePrimary();
    member.judge.sawDamage();
    world_.open(member);
}

} // namespace KestryCore
