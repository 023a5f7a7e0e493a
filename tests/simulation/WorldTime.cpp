#include <algorithm>

#include "World.h"

namespace KestryCore {

Date World::atSeconds(double seconds)
{
    constexpr double firstDay = 816'393'600.0; // 2026-11-15T00:00:00Z
    return Date{firstDay} + seconds;
}

Member* World::nextToRun(double until)
{
    Member* next = nullptr;
    double first = network.nextDue().value_or(until + 1.0);
    for (const auto& member : members) {
        if (!member->device.isRunning()) {
            member->loop.clear(); // An answer for a program that has ended.
        }
        const auto due = member->loop.nextDue();
        if (due && *due < first) {
            first = *due;
            next = member.get();
        }
    }
    if (first <= until) {
        seconds = std::max(seconds, first);
        now = atSeconds(seconds);
    }
    return next;
}

void World::pass(double duration)
{
    constexpr std::uint64_t mostTurns = 3'000'000;
    const double until = seconds + duration;
    while (true) {
        const double before = seconds;
        Member* const member = nextToRun(until);
        const bool isNetwork =
            member == nullptr && network.nextDue().value_or(until + 1.0) <= until;
        const bool isMember = member != nullptr && member->loop.nextDue().value() <= until;
        if (!isNetwork && !isMember) {
            break;
        }
        require(++turns_ < mostTurns && seconds >= before, "the programs never come to rest");
        if (isNetwork) {
            network.runNext();
        } else {
            run(*member, "", [member] { member->loop.runNext(); });
        }
    }
    seconds = until;
    now = atSeconds(seconds);
}

void World::sleep(Member& member, double duration)
{
    member.loop.sleep();
    member.alarm = network.after(duration, [this, &member] { wake(member); });
}

void World::wake(Member& member)
{
    if (!member.loop.isAsleep()) {
        return;
    }
    constexpr double betweenPolls = 60.0;
    const double slept = member.loop.wake();
    member.alarm.cancel();
    if (!member.device.isRunning()) {
        return;
    }
    const bool isDue = slept > betweenPolls && !member.replication.isSyncing();
    run(member, "wakes", [&] { member.replication.controller().machineWoke(); });
    if (isDue && member.replication.isRunning()) {
        requireExchangeSoon(member);
    }
}

void World::requireExchangeSoon(Member& member)
{
    constexpr double soon = 1.0;
    const int starts = member.replication.starts();
    const int questions = member.line.accountQuestions();
    network.later(soon, [this, &member, starts, questions] {
        const bool isSame = member.replication.isRunning() && !member.loop.isAsleep()
            && member.replication.starts() == starts;
        const bool isOver = !isSame || !member.replication.controller().isEnabled();
        require(isOver || member.line.accountQuestions() > questions,
            member.device.name() + " has woken, and does not ask what happened");
    });
}

} // namespace KestryCore
