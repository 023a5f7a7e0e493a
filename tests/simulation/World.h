#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Choices.h"
#include "CloudLine.h"
#include "CloudStore.h"
#include "DeviceJudge.h"
#include "History.h"
#include "MachineLoop.h"
#include "SimulatedCloud.h"
#include "SimulatedDevice.h"
#include "SimulatedReplication.h"
#include "SimulatedWeather.h"
#include "Tally.h"
#include "VersionBook.h"

namespace KestryCore {

inline constexpr double oneHour = 3600.0;
inline constexpr double oneWeek = 7 * 24 * oneHour;

/// One device with all that belongs to it in a simulation.
struct Member {
    Member(const std::string& name, World& world, double clockOffset);

    SimulatedDevice device;
    MachineLoop loop;
    CloudLine line;
    DeviceJudge judge;
    SimulatedReplication replication;
    Date offlineUntil{};
    Timer alarm;                               ///< Ends its sleep.
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
    double seconds = 0.0; ///< Since the beginning.
    Date now;
    bool hasFaults = true;
    MachineLoop network{seconds};
    SimulatedWeather weather{*this};
    SimulatedCloud server{cloud, network, weather};
    std::vector<std::unique_ptr<Member>> members;

    /// True once in so many times.
    [[nodiscard]] bool oneIn(std::size_t times) { return choices.below(times) == 0; }
    /// The same, and never while faults are off.
    [[nodiscard]] bool faultOneIn(std::size_t times) { return hasFaults && oneIn(times); }
    /// The same for something that happens seldom, counted when it does. Each run has one such
    /// event that happens often, in turn, so that none is missing in some hundred runs.
    [[nodiscard]] bool befalls(Event event, std::size_t times);
    /// `times`, or less in the run in which the event happens often.
    [[nodiscard]] std::size_t timesOf(Event event, std::size_t times) const;

    /// Whether a change may be refused without a fault.
    enum class Refusal { allowed, never };
    using Outcome = SimulatedDevice::Outcome;

    /// Lets time pass, in which programs and the network do what is due, one thing at a time.
    void pass(double seconds);

    /// Changes and saves something in the running program.
    Outcome change(Member& member, const std::string& what,
        const std::function<void(TimeStore&)>& action, Refusal refusal);
    /// Lets the running program do something that never fails, and judges what comes of it.
    void run(Member& member, const std::string& what, const std::function<void()>& action);
    /// Restores the backup; what is there then is for the caller to have judged.
    Outcome restore(Member& member);
    /// Starts the program, as often as faults end it.
    void open(Member& member);
    /// Ends the program without its doing.
    void kill(Member& member);

    /// The user turns replication on, or off.
    void switchOn(Member& member);
    void switchOff(Member& member);
    /// The machine sleeps for so many seconds, unless it is woken before.
    void sleep(Member& member, double seconds);
    void wake(Member& member);
    /// Another account is signed in, which the running program is told.
    void signIn(Member& member, const std::string& account);

    /// A device has asked the store something: the moment for things to happen.
    void sawQuestion(CloudLine& line, CloudQuestion question);
    /// The store takes a record, or refuses it.
    CloudStore::SaveOutcome save(
        const CloudRecord& record, CloudStore::Rival rival = CloudStore::Rival::isRefused);
    /// The store lets an overruled version go.
    void discard(const CloudRecord& overruled);
    /// The store is what it was when the backup was made; what only it has had since is lost.
    void restoreStore(const CloudStore::Backup& backup);
    /// The store is gone with all that it had.
    void wipeStore();

    /// Whether one of the devices has written a version, as the one that it is now.
    [[nodiscard]] bool isOfMember(const SyncRecord& version) const;
    [[nodiscard]] Uuid drawUuid();

private:
    [[nodiscard]] std::vector<SyncRecord> versionsInCloud() const;
    void letGo(const std::vector<SyncRecord>& versions);
    void releaseInCloud(const std::string& recordID, const std::string& revision);
    [[nodiscard]] static Date atSeconds(double seconds);
    [[nodiscard]] static std::string refusalOf(Member& member);
    /// How a line of the history ends.
    [[nodiscard]] static std::string ending(Member& member, Outcome outcome);
    [[nodiscard]] Member* nextToRun(double until);
    void judgeTurn(Member& member);
    void judgeRefusal(Member& member, bool wasBlocked);
    void strike(Member& member, CloudQuestion question);
    void requireExchangeSoon(Member& member);
    [[nodiscard]] DiskFault drawFault();
    [[nodiscard]] DiskFault drawFaultAtOpening();
    void sawCrash(Member& member);

    std::optional<std::string> accusation_; // found where nothing can be thrown
    std::uint64_t turns_ = 0;
    Event often_; // of this run
};

} // namespace KestryCore
