#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <numeric>

#include "Exploration.h"
#include "LedgerCoding.h"
#include "StoreJudge.h"

namespace KestryCore {

namespace {

using World = StoreWorld;

constexpr std::array errors{ENOSPC, EIO, EDQUOT, EROFS, EACCES, ENOENT, EMFILE, ENFILE, ENOMEM,
    EINTR, EAGAIN, ESTALE, ETIMEDOUT, ENOBUFS};
/// Those of them that say nothing of the files and go away.
constexpr std::array passing{EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, ESTALE, ETIMEDOUT, ENOBUFS};
constexpr std::array linkRefusals{EPERM, EOPNOTSUPP, EXDEV, EMLINK, ENOSYS};

enum class Lasting { no, yes };

struct Fault {
    int call = 0; ///< Its number, from 1.
    int code = 0;
    Lasting lasting = Lasting::no;
};

bool isPassingCode(int code)
{
    return std::ranges::find(passing, code) != passing.end();
}

bool readsPrimary(const std::string& call)
{
    const std::array kinds{" read", " measured", " identified", " read from"};
    return std::ranges::any_of(
        kinds, [&](const std::string& kind) { return call == World::primaryPath + kind; });
}

class FaultExplorer {
public:
    FaultExplorer(
        const StoreOperation& operation, std::uint64_t seed, const ExplorationDepth& depth)
        : operation_(operation), random_(seed), depth_(depth)
    {
        World world;
        prepareLong(world, operation_);
        course_.before = world.files.contents();
        operation_.perform(world);
        course_.after = world.files.contents();
        // A handoff that cannot be read is none, and the session is recovered.
        World withoutHandoff;
        prepareLong(withoutHandoff, operation_);
        withoutHandoff.files.erase(World::handoffPath);
        operation_.perform(withoutHandoff);
        recovered_ = {course_.before, withoutHandoff.files.contents()};
    }

    ExplorationReport explore()
    {
        bool reached = true;
        for (int call = 1; reached; ++call) {
            for (const std::size_t choice : chosen(2 * errors.size())) {
                const Lasting lasting = choice % 2 == 0 ? Lasting::no : Lasting::yes;
                reached = tryFault({call, errors.at(choice / 2), lasting});
            }
        }
        refuseLinks();
        for (const std::size_t most : {std::size_t{1}, std::size_t{511}, std::size_t{4097}}) {
            writeShort(most);
        }
        return std::move(report_);
    }

private:
    /// Some of the numbers below `count`, as many as are wanted, each once.
    std::vector<std::size_t> chosen(std::size_t count)
    {
        std::vector<std::size_t> left(count);
        std::iota(left.begin(), left.end(), std::size_t{0});
        std::vector<std::size_t> result;
        while (!left.empty() && result.size() < depth_.errorsPerCall) {
            const auto next =
                left.begin() + static_cast<std::ptrdiff_t>(random_.below(left.size()));
            result.push_back(*next);
            left.erase(next);
        }
        return result;
    }

    /// False when the operation does not make so many calls.
    bool tryFault(const Fault& fault)
    {
        World world;
        prepareLong(world, operation_);
        const LedgerData before = isOpening(operation_) ? LedgerData{} : world.ledger();
        if (fault.lasting == Lasting::yes) {
            world.files.failCallsFrom(fault.call, fault.code);
        } else {
            world.files.failCall(fault.call, fault.code);
        }
        std::string refusal;
        try {
            operation_.perform(world);
        } catch (const LedgerError& failure) {
            refusal = failure.what();
        }
        const std::string call = world.files.faultyCall();
        const bool happened = world.files.faultHappened();
        world.files.heal();
        if (!happened) {
            return false;
        }
        ++report_.faults;
        judge(describe(fault, call), [&] {
            judgeFaulty(world, before, refusal, fault, call);
            if (isOpening(operation_)) {
                openAgain(world, fault);
            }
            goOn(world);
        });
        return true;
    }

    void judgeFaulty(const World& world, const LedgerData& before, const std::string& refusal,
        const Fault& fault, const std::string& call)
    {
        const Files left = world.files.contents();
        const std::optional<ActiveSession>& active = world.ledger().active;
        const bool isRecovered =
            operation_.name.starts_with("TakeOver") && active && active->isPaused();
        judge_.judgeFiles(left, isRecovered ? recovered_ : course_);
        require(world.files.openHandles() == 0, "a file was left open");
        judgeWords(world, refusal, fault);
        if (isOpening(operation_)) {
            return;
        }
        const auto primary = fileIn(left, World::primaryPath);
        const bool wasBlocked = operation_.name.starts_with("Restore");
        require(!refusal.empty() || fileIn(course_.after, World::primaryPath) == primary,
            "what was acknowledged is not on the disk");
        require(savesTwice(operation_) || (world.ledger() == before) == !refusal.empty(),
            "the published ledger is not the one it should be");
        require(wasBlocked || !primary || encodeLedger(world.ledger()) == *primary,
            "what is published is not what is on the disk");
        require(wasBlocked || world.blocked() == (readsPrimary(call) && !isPassingCode(fault.code)),
            "saving is blocked, or is not, by the wrong call");
        judgePowerCut(world, refusal);
    }

    /// What has passed needs no new start of the program.
    static void openAgain(World& world, const Fault& fault)
    {
        if (!isPassingCode(fault.code)) {
            world.open();
            return;
        }
        world.store().openAgain();
        require(!world.blocked(), "an error of the moment blocks saving for good");
        require(!world.store().canOpenAgain(), "the ledger is still not read");
        require(fileIn(world.files.contents(), World::primaryPath) == encodeLedger(world.ledger()),
            "what is opened later is not what is on the disk");
    }

    /// A failure that was reported stays one, whatever the power does afterwards.
    void judgePowerCut(const World& world, const std::string& refusal)
    {
        StoreStep step = course_;
        if (!refusal.empty() && !savesTwice(operation_)) {
            step.after = world.files.contents();
        }
        Disk left = world.files.disk();
        left.cutPower(random_);
        judge_.judgeFiles(left.contents(), step);
    }

    static void judgeWords(const World& world, const std::string& refusal, const Fault& fault)
    {
        const std::string words = std::strerror(fault.code) + std::string(".");
        const std::string message = world.errorMessage();
        require(refusal.empty() || message.ends_with(refusal), "the message is not the refusal");
        const bool isBlocking = message.ends_with(
            "The ledger on disk could not be read. It has been preserved. Restore the last backup "
            "in Settings if available.");
        require(message.empty() || isBlocking || message.ends_with(words),
            "the words are not the system's: " + message);
    }

    /// The fault is gone: the next change succeeds without a restart, except where saving is
    /// blocked and nothing can be restored.
    void goOn(World& world)
    {
        if (world.blocked() && world.recoveryAvailable()) {
            world.store().restoreBackup();
        }
        if (world.blocked()) {
            const std::string before = world.files.content(World::primaryPath).value_or("");
            try {
                world.addClient("Refused");
                throw Violation("a blocked store has saved");
            } catch (const LedgerError&) {
                require(world.files.content(World::primaryPath).value_or("") == before,
                    "a blocked store has written");
            }
            world.open();
            goOn(world);
            return;
        }
        judge_.saveNext(world, [](const auto& action) { action(); });
        SameChoice everythingLost(0);
        Disk left = world.files.disk();
        left.cutPower(everythingLost);
        for (const std::string& path : {World::primaryPath, World::backupPath}) {
            require(fileIn(left.contents(), path) == world.files.content(path),
                "the next change is not durable");
        }
    }

    void refuseLinks()
    {
        for (const int code : linkRefusals) {
            World world;
            prepareLong(world, operation_);
            world.files.failCalls(World::backupPath + ".new linked", code);
            operation_.perform(world);
            report_.faults += world.files.faultHappened() ? 1 : 0;
            judge(std::string("links refused: ") + std::strerror(code),
                [&] { judgeUndisturbed(world); });
        }
    }

    void writeShort(std::size_t most)
    {
        World world;
        prepareLong(world, operation_);
        world.files.limitWrites(most);
        operation_.perform(world);
        ++report_.faults;
        judge("writes of at most " + std::to_string(most) + " bytes",
            [&] { judgeUndisturbed(world); });
    }

    void judgeUndisturbed(World& world)
    {
        world.files.heal();
        require(world.files.contents() == course_.after, "the files are not as they should be");
        goOn(world);
    }

    static std::string describe(const Fault& fault, const std::string& call)
    {
        return "call " + std::to_string(fault.call) + " (" + call + "): "
            + std::strerror(fault.code) + (fault.lasting == Lasting::yes ? " from then on" : "");
    }

    void judge(const std::string& description, const std::function<void()>& check)
    {
        report_.judge(operation_.name + ", " + description, check);
    }

    const StoreOperation& operation_;
    SeededChoices random_;
    ExplorationDepth depth_;
    StoreStep course_;
    StoreStep recovered_;
    StoreJudge judge_;
    ExplorationReport report_;
};

} // namespace

ExplorationReport exploreFaults(
    const StoreOperation& operation, std::uint64_t seed, const ExplorationDepth& depth)
{
    return FaultExplorer(operation, seed, depth).explore();
}

} // namespace KestryCore
