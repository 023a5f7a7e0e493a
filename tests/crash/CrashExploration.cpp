#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Exploration.h"
#include "StoreJudge.h"

namespace KestryCore {

namespace {

using Moment = MemoryFileSystem::Moment;

/// A step with the moments in which the power can fail.
struct RecordedStep {
    StoreStep step;
    std::vector<Moment> moments;
};

/// Performs actions and records them; the last step recorded is the rest after them, in which
/// everything is as acknowledged.
class Recorder {
public:
    explicit Recorder(StoreWorld& world) : world_(world)
    {
        world.files.record([this](Moment moment) { moments_.push_back(std::move(moment)); });
    }

    void perform(const std::function<void()>& action)
    {
        RecordedStep recorded;
        recorded.step.before = world_.files.contents();
        action();
        recorded.step.after = world_.files.contents();
        recorded.moments = std::exchange(moments_, {});
        steps_.push_back(std::move(recorded));
    }

    [[nodiscard]] std::vector<RecordedStep> take()
    {
        const Files end = world_.files.contents();
        steps_.push_back({{end, end}, {Moment{"the end", world_.files.disk()}}});
        return std::move(steps_);
    }

private:
    StoreWorld& world_;
    std::vector<Moment> moments_;
    std::vector<RecordedStep> steps_;
};

/// A later process on what is left of the disk.
class LaterWorld {
public:
    LaterWorld(const StoreWorld& earlier, Disk disk, unsigned generation)
    {
        constexpr unsigned uuidsPerProcess = 1000;
        world.options = earlier.options;
        world.files.refuseLinks(earlier.files.linkRefusal());
        world.files.limitWrites(longWrite);
        world.files.mount(std::move(disk));
        world.drawUuidsAfter((generation + 1) * uuidsPerProcess);
    }

    /// Holds two pages, and less than any file that is written.
    static constexpr std::size_t longWrite = 9000;
    StoreWorld world;
};

class CrashExplorer {
public:
    CrashExplorer(
        const StoreOperation& operation, std::uint64_t seed, const ExplorationDepth& depth)
        : operation_(operation), random_(seed), depth_(depth)
    {
    }

    ExplorationReport explore()
    {
        StoreWorld world;
        prepareLong(world, operation_);
        earlier_ = &world;
        Recorder recorder(world);
        recorder.perform([&] { operation_.perform(world); });
        for (const RecordedStep& step : recorder.take()) {
            crashEverywhere(step);
        }
        std::ranges::shuffle(starts_, std::mt19937_64(random_.below(SIZE_MAX)));
        starts_.resize(std::min(starts_.size(), depth_.secondCrashStarts));
        for (const Start& start : starts_) {
            crashAgain(start);
        }
        return std::move(report_);
    }

private:
    struct Start {
        std::string description;
        Disk disk;
    };

    void crashEverywhere(const RecordedStep& step)
    {
        for (const Moment& moment : step.moments) {
            ++report_.moments;
            std::set<std::size_t> seen;
            EveryChoice choices;
            do {
                Disk left = moment.disk;
                std::set<std::size_t> tears = left.cutPower(choices);
                if (!seen.insert(left.digest()).second) {
                    continue;
                }
                ++report_.firstCrashes;
                if (moment.tornAt != 0) {
                    tears.insert(moment.tornAt);
                }
                for (const std::size_t unit : tears) {
                    ++report_.tears[unit];
                }
                firstCrash({moment.call, std::move(left)}, step.step);
            } while (choices.next());
        }
    }

    void firstCrash(Start start, const StoreStep& step)
    {
        judge(start.description, [&] { judge_.judgeFiles(start.disk.contents(), step); });
        // Coming back depends on nothing but the disk.
        if (!comeBackFrom_.insert(start.disk.digest()).second) {
            return;
        }
        judge(start.description, [&] { comeBack(start.disk, 1); });
        starts_.push_back(std::move(start));
    }

    void comeBack(const Disk& disk, unsigned generation)
    {
        LaterWorld later(*earlier_, disk, generation);
        judge_.openAndSave(later.world, [](const auto& action) { action(); });
    }

    void crashAgain(const Start& start)
    {
        LaterWorld later(*earlier_, start.disk, 1);
        Recorder recorder(later.world);
        judge(start.description, [&] {
            judge_.openAndSave(later.world, [&](const auto& action) { recorder.perform(action); });
        });
        for (const RecordedStep& step : recorder.take()) {
            for (const Moment& moment : step.moments) {
                const std::string description = start.description + ", then " + moment.call;
                for (const auto& [digest, left] : chosenFates(moment.disk)) {
                    ++report_.secondCrashes;
                    judge(description, [&] { judge_.judgeFiles(left.contents(), step.step); });
                    if (comeBackTwiceFrom_.insert(digest).second) {
                        judge(description, [&] { comeBack(left, 2); });
                    }
                }
            }
        }
    }

    /// What may be left of a disk, by its digest: all of it, or what differs in one point from
    /// nothing lost and nothing kept, and some besides.
    std::map<std::size_t, Disk> chosenFates(const Disk& disk)
    {
        ++report_.secondMoments;
        std::map<std::size_t, Disk> fates;
        EveryChoice all;
        if (addFates(disk, all, fates)) {
            return fates;
        }
        ++report_.cappedMoments;
        fates.clear();
        for (const std::size_t answer : {std::size_t{0}, std::size_t{1}}) {
            OneApart choices(answer);
            while (!addFates(disk, choices, fates)) { }
        }
        for (std::size_t drawn = 0; drawn < depth_.fatesPerMoment; ++drawn) {
            addFate(disk, random_, fates);
        }
        return fates;
    }

    /// Adds as many fates as are wanted; true when there are no more.
    template <class Series>
    bool addFates(const Disk& disk, Series& choices, std::map<std::size_t, Disk>& fates) const
    {
        for (std::size_t count = 0; count < depth_.fatesPerMoment; ++count) {
            addFate(disk, choices, fates);
            if (!choices.next()) {
                return true;
            }
        }
        return false;
    }

    static void addFate(const Disk& disk, Choices& choices, std::map<std::size_t, Disk>& fates)
    {
        Disk left = disk;
        left.cutPower(choices);
        const std::size_t digest = left.digest();
        fates.try_emplace(digest, std::move(left));
    }

    void judge(const std::string& description, const std::function<void()>& check)
    {
        report_.judge(operation_.name + ", crash at " + description, check);
    }

    const StoreOperation& operation_;
    SeededChoices random_;
    ExplorationDepth depth_;
    StoreWorld* earlier_ = nullptr;
    StoreJudge judge_;
    std::set<std::size_t> comeBackFrom_;
    std::set<std::size_t> comeBackTwiceFrom_;
    std::vector<Start> starts_;
    ExplorationReport report_;
};

} // namespace

void ExplorationReport::add(const ExplorationReport& other)
{
    moments += other.moments;
    firstCrashes += other.firstCrashes;
    secondMoments += other.secondMoments;
    cappedMoments += other.cappedMoments;
    secondCrashes += other.secondCrashes;
    faults += other.faults;
    exchanges += other.exchanges;
    for (const auto& [unit, count] : other.tears) {
        tears[unit] += count;
    }
    violations.insert(violations.end(), other.violations.begin(), other.violations.end());
}

void ExplorationReport::judge(const std::string& description, const std::function<void()>& check)
{
    if (violations.size() >= enoughViolations) {
        return;
    }
    try {
        check();
    } catch (const std::exception& violation) {
        violations.push_back(description + ": " + violation.what());
    }
}

std::vector<StoreOperation> exploredOperations()
{
    std::vector<StoreOperation> operations = savingOperations();
    for (const StoreOperation& operation :
        {firstSave(), restoring(), preparingForUpdate(), recovering(), takingOver()}) {
        operations.push_back(operation);
        operations.push_back(withoutLinks(operation));
    }
    return operations;
}

bool isOpening(const StoreOperation& operation)
{
    return operation.name.starts_with("Recover") || operation.name.starts_with("TakeOver");
}

bool savesTwice(const StoreOperation& operation)
{
    return operation.name.starts_with("PrepareForUpdate");
}

void prepareLong(StoreWorld& world, const StoreOperation& operation)
{
    constexpr unsigned sessions = 60;
    constexpr std::size_t letters = 10'000;
    world.sessionsBesides = sessions;
    world.filler = std::string(letters, 'x');
    world.files.limitWrites(LaterWorld::longWrite);
    operation.prepare(world);
}

ExplorationReport exploreCrashes(
    const StoreOperation& operation, std::uint64_t seed, const ExplorationDepth& depth)
{
    return CrashExplorer(operation, seed, depth).explore();
}

} // namespace KestryCore
