#include "Simulation.h"

#include <algorithm>
#include <exception>

#include "Elsewhere.h"
#include "Mishaps.h"
#include "Settling.h"
#include "SimulatedUser.h"
#include "World.h"

namespace KestryCore {

namespace {

class Simulation {
public:
    explicit Simulation(World& world)
        : world_(world), user_(world), mishaps_(world), elsewhere_(world)
    {
    }

    void run()
    {
        begin();
        const std::size_t steps = fewestSteps + world_.choices.below(moreSteps);
        for (std::size_t step = 0; step < steps; ++step) {
            passTime();
            takeStep();
        }
        Settling(world_, user_).run();
    }

private:
    static constexpr std::size_t fewestSteps = 100;
    static constexpr std::size_t moreSteps = 200;

    void begin()
    {
        constexpr double secondsPerHour = 3600.0;
        const std::size_t devices = 2 + world_.choices.below(4);
        for (std::size_t number = 0; number < devices; ++number) {
            const double clockOffset =
                secondsPerHour * static_cast<double>(world_.choices.below(48)) - 24.0;
            const std::string name = "Device " + std::to_string(number + 1);
            world_.members.push_back(std::make_unique<Member>(name, world_, clockOffset));
        }
        Member& first = *world_.members.front();
        world_.open(first);
        for (int change = 0; change < 4; ++change) {
            user_.act(first);
            world_.open(first);
        }
        // Some begin with a copy of the first one's ledger, some with nothing.
        for (const auto& member : world_.members) {
            if (member.get() != &first && first.device.primary() && !first.judge.isDamaged()
                && first.device.state() == nullptr && world_.oneIn(3)) {
                member->device.putBack(first.device.copy());
                member->judge.sawPutBack();
            }
            world_.open(*member);
        }
    }

    /// Mostly seconds, in which answers come; often the machines sleep for hours or days.
    void passTime()
    {
        constexpr double minute = 60.0;
        constexpr double day = 86'400.0;
        const double before = world_.seconds;
        const std::size_t kind = world_.choices.below(10);
        if (kind < 5) {
            world_.pass(0.5 * static_cast<double>(world_.choices.below(8)));
        } else if (kind < 8) {
            world_.pass(static_cast<double>(5 + world_.choices.below(80)));
        } else if (world_.oneIn(5)) {
            sleepAll(day * static_cast<double>(world_.choices.below(5)));
        } else {
            sleepAll(minute * static_cast<double>(1 + world_.choices.below(180)));
        }
        time_ += (world_.seconds - before) * static_cast<double>(world_.members.size());
        while (time_ >= day) {
            time_ -= day;
            world_.tally.count(Event::deviceDay);
        }
    }

    void sleepAll(double seconds)
    {
        for (const auto& member : world_.members) {
            if (!member->loop.isAsleep()) {
                world_.sleep(*member, seconds);
            }
        }
        world_.pass(seconds);
    }

    void takeStep()
    {
        Member& member = *world_.members[world_.choices.below(world_.members.size())];
        world_.wake(member);
        world_.open(member);
        if (world_.oneIn(30)) {
            elsewhere_.deleteSomething();
        }
        mishaps_.perhaps(member);
        world_.open(member);
        Member& other = *world_.members[world_.choices.below(world_.members.size())];
        const bool areBothAwake = &other != &member && !member.loop.isAsleep()
            && !other.loop.isAsleep() && other.device.isRunning();
        if (areBothAwake && world_.oneIn(8)) {
            user_.editTogether(member, other);
        } else if (!member.loop.isAsleep() && world_.oneIn(2)) {
            user_.act(member);
        } else if (!member.loop.isAsleep() && world_.oneIn(3)) {
            world_.run(
                member, "becomes active", [&] { member.replication.controller().syncNow(); });
        }
    }

    World& world_;
    SimulatedUser user_;
    Mishaps mishaps_;
    Elsewhere elsewhere_;
    double time_ = 0.0; // of all devices, not counted yet, in seconds
};

} // namespace

SimulationOutcome simulate(std::uint64_t seed, HistoryPolicy history)
{
    World world(seed, history == HistoryPolicy::keep);
    SimulationOutcome outcome;
    try {
        Simulation(world).run();
    } catch (const std::exception& failure) {
        outcome.violation = failure.what();
    }
    outcome.history = world.history.lines();
    outcome.tally = world.tally;
    return outcome;
}

} // namespace KestryCore
