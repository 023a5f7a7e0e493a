#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Choices.h"
#include "CloudStore.h"
#include "DeviceJudge.h"
#include "History.h"
#include "SimulatedDevice.h"
#include "SyncCycle.h"
#include "Tally.h"
#include "VersionBook.h"

namespace KestryCore {

/// One device with all that belongs to it in a simulation.
struct Member {
    Member(const std::string& name, World& world, double clockOffset);

    SimulatedDevice device;
    DeviceJudge judge;
    SyncCycle cycle;
    Date offlineUntil{};
    std::vector<SimulatedDevice::Copy> copies; ///< Made of its files at one time or another.
};

/// Everything that devices share, and the verbs through which all that happens goes, so that
/// faults strike anywhere and the judges see everything.
class World {
public:
    World(std::uint64_t seed, bool keepsHistory);

    SeededChoices choices;
    History history;
    Tally tally;
    CloudStore cloud;
    VersionBook book;
    Date now;
    bool hasFaults = true;
    std::vector<std::unique_ptr<Member>> members;

    /// True once in so many times.
    [[nodiscard]] bool oneIn(std::size_t times) { return choices.below(times) == 0; }
    /// The same, and never while faults are off.
    [[nodiscard]] bool faultOneIn(std::size_t times) { return hasFaults && oneIn(times); }
    [[nodiscard]] bool isOnline(const Member& member) const { return !(now < member.offlineUntil); }

    /// Whether a change may be refused without a fault.
    enum class Refusal { allowed, never };
    using Outcome = SimulatedDevice::Outcome;

    /// Changes and saves something in the running program.
    Outcome change(Member& member, const std::string& what,
        const std::function<void(TimeStore&)>& action, Refusal refusal);
    /// Restores the backup; what is there then is for the caller to have judged.
    Outcome restore(Member& member);
    /// Starts the program, as often as faults end it.
    void open(Member& member);
    /// Ends the program without its doing.
    void kill(Member& member);

    /// The store takes a record, or refuses it.
    CloudStore::SaveOutcome save(
        const SyncRecord& record, const std::optional<std::string>& systemFields);

    [[nodiscard]] Uuid drawUuid();

private:
    [[nodiscard]] DiskFault drawFault();
    [[nodiscard]] DiskFault drawFaultAtOpening();
    void sawCrash(Member& member);
};

} // namespace KestryCore
