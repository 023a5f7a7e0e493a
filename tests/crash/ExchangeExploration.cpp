#include <array>
#include <memory>
#include <optional>

#include "Exploration.h"
#include "StoreJudge.h"

namespace KestryCore {

namespace {

using World = StoreWorld;

/// What stands where the data directory stood.
enum class Successor { otherLedger, emptyDirectory, nothing };

constexpr std::array successors{
    Successor::otherLedger, Successor::emptyDirectory, Successor::nothing};

const std::string here = "/home/ledgers";
const std::string away = "/home/away";

/// The files in a directory, under the names that they have in the data directory.
Files filesIn(const Disk& disk, const std::string& directory)
{
    Files found;
    for (const auto& [path, content] : disk.contents()) {
        if (parentPath(path) == directory) {
            found[here + path.substr(directory.size())] = content;
        }
    }
    return found;
}

/// Another program that exchanges the data directory for something else.
class Exchange {
public:
    Exchange(World& world, Successor successor) : world_(world), successor_(successor) { }

    void perform()
    {
        wasClaimed_ = world_.options.lock->isHeld();
        wasThere_ = world_.files.isDirectory(here);
        if (wasThere_) {
            world_.files.moveDirectory(here, away);
        }
        if (successor_ != Successor::nothing) {
            world_.files.putDirectory(parentPath(here)); // the first save makes it too
        }
        if (successor_ == Successor::otherLedger) {
            world_.putPrimary(World::pausedLedger());
            world_.putBackup(World::sampleLedger());
        } else if (successor_ == Successor::emptyDirectory) {
            world_.files.putDirectory(here);
        }
        theirs_ = filesIn(world_.files.disk(), here);
    }

    void undo() const
    {
        world_.files.removeDirectory(here);
        world_.files.moveDirectory(away, here);
    }

    [[nodiscard]] bool wasClaimed() const { return wasClaimed_; }
    /// What the other program put there.
    [[nodiscard]] const Files& theirs() const { return theirs_; }

private:
    World& world_;
    Successor successor_;
    bool wasClaimed_ = false;
    bool wasThere_ = false;
    Files theirs_;
};

class ExchangeExplorer {
public:
    ExchangeExplorer(const StoreOperation& operation, std::uint64_t seed)
        : operation_(operation), random_(seed)
    {
        World world;
        prepare(world);
        course_.before = world.files.contents();
        operation_.perform(world);
        course_.after = world.files.contents();
    }

    ExplorationReport explore()
    {
        for (const Successor successor : successors) {
            for (int call = 1; tryExchange(call, successor); ++call) { }
        }
        return std::move(report_);
    }

private:
    void prepare(World& world) const
    {
        world.options.lock = std::make_shared<WriterLock>(world.files, here);
        prepareLong(world, operation_);
        require(world.options.lock->acquire(), "the directory cannot be claimed");
    }

    /// False when the operation does not make so many calls.
    bool tryExchange(int call, Successor successor)
    {
        World world;
        prepare(world);
        Exchange exchange(world, successor);
        const LedgerData before = isOpening(operation_) ? LedgerData{} : world.ledger();
        world.files.interfereAt(call, [&] { exchange.perform(); });
        std::optional<std::string> refusal;
        try {
            operation_.perform(world);
        } catch (const LedgerError& failure) {
            refusal = failure.what();
        }
        const std::string description = world.files.faultyCall();
        const bool happened = world.files.faultHappened();
        world.files.heal();
        if (!happened) {
            return false;
        }
        ++report_.exchanges;
        report_.judge(operation_.name + ", directory exchanged before " + description + " ("
                + std::to_string(call) + ", " + std::to_string(static_cast<int>(successor)) + ")",
            [&] {
                judge(world, exchange, before, refusal);
                if (exchange.wasClaimed()) {
                    goOn(world, exchange);
                }
            });
        return true;
    }

    void judge(const World& world, const Exchange& exchange, const LedgerData& before,
        const std::optional<std::string>& refusal)
    {
        require(world.files.openHandles() == 0, "a file was left open");
        require(isOpening(operation_) || savesTwice(operation_)
                || (world.ledger() == before) == refusal.has_value(),
            "the published ledger is not the one it should be");
        judgeDisk(world.files.disk(), exchange, refusal);
        Disk left = world.files.disk();
        left.cutPower(random_);
        judgeDisk(left, exchange, refusal);
    }

    void judgeDisk(
        const Disk& disk, const Exchange& exchange, const std::optional<std::string>& refusal)
    {
        const Files theirs = filesIn(disk, here);
        if (!exchange.wasClaimed() && exchange.theirs().empty()) {
            judge_.judgeFiles(theirs, course_); // the first save goes where there is nothing
            return;
        }
        require(theirs == exchange.theirs(), "the other directory was written to");
        const Files ours = filesIn(disk, away);
        judge_.judgeFiles(ours, course_);
        const auto primary = fileIn(ours, World::primaryPath);
        require(refusal || isOpening(operation_)
                || primary == fileIn(course_.after, World::primaryPath),
            "what was acknowledged is not where the directory went");
        require(!refusal || savesTwice(operation_)
                || primary == fileIn(course_.before, World::primaryPath),
            "what was refused was saved");
    }

    /// Nothing is saved until the directory is back, and then everything again.
    void goOn(World& world, const Exchange& exchange)
    {
        const Files exchanged = world.files.contents();
        try {
            world.addClient("Refused");
            throw Violation("a change was saved while the directory is another");
        } catch (const LedgerError& refusal) {
            require(world.blocked()
                    || std::string_view(refusal.what())
                           .starts_with("The data directory has been moved, replaced or removed"),
                std::string("the words are not those of an exchange: ") + refusal.what());
        }
        require(world.files.contents() == exchanged, "a refused change has left something");
        exchange.undo();
        if (isOpening(operation_)) {
            world.open();
        }
        if (world.blocked()) {
            world.store().restoreBackup();
        }
        judge_.saveNext(world, [](const auto& action) { action(); });
    }

    const StoreOperation& operation_;
    SeededChoices random_;
    StoreStep course_;
    StoreJudge judge_;
    ExplorationReport report_;
};

} // namespace

ExplorationReport exploreExchanges(const StoreOperation& operation, std::uint64_t seed)
{
    return ExchangeExplorer(operation, seed).explore();
}

} // namespace KestryCore
