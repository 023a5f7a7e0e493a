#include "Mishaps.h"

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
    if (world_.faultOneIn(250)) {
        damageLedger(member);
    }
    if (world_.faultOneIn(300)) {
        returnToCopy(member);
    }
    if (world_.faultOneIn(300)) {
        exchangeDirectory(member);
    }
    if (world_.faultOneIn(400)) {
        world_.history.note([] { return "all cursors expire"; });
        world_.cloud.expireCursors();
    }
}

void Mishaps::goOffline(Member& member)
{
    constexpr double week = 7 * 86'400.0;
    member.offlineUntil = world_.now + week * static_cast<double>(1 + world_.choices.below(4));
    member.cycle.abandon();
    world_.tally.count(Event::cutOff);
    world_.history.note([&] { return member.device.name() + " is cut off for weeks"; });
}

void Mishaps::setClock(Member& member)
{
    constexpr double hour = 3600.0;
    double seconds = 0.0;
    switch (world_.choices.below(3)) {
    case 0:
        seconds = static_cast<double>(1 + world_.choices.below(59));
        break;
    case 1:
        seconds = 61.0 + hour * static_cast<double>(world_.choices.below(200));
        break;
    default:
        seconds = -hour * static_cast<double>(1 + world_.choices.below(200));
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
