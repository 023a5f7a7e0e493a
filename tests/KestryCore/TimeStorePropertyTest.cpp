// Random walks through the store's operations with random dates. RapidCheck prints the seed of
// each run and shrinks a failing walk; RC_PARAMS="seed=…" replays it.

#include <rapidcheck.h>

#include "LedgerCoding.h"
#include "LedgerValidation.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

enum class Action {
    start,
    pause,
    resume,
    stop,
    checkpoint,
    editSession,
    restoreGap,
    addClient,
    editClient,
    addProject,
    editProject,
    addEntry,
    editEntry,
    deleteEntry,
    prepareForUpdate,
    crash,
};

struct Step {
    Action action = Action::start;
    unsigned choice = 0;  ///< Which client, project or session.
    int secondsLater = 0; ///< How far the clock moves on before it.
    int offset = 0;       ///< Seconds from the clock to the date that is handed over.
    int length = 0;       ///< Seconds.

    friend std::ostream& operator<<(std::ostream& out, const Step& step)
    {
        return out << "{action " << static_cast<int>(step.action) << ", choice " << step.choice
                   << ", later " << step.secondsLater << ", offset " << step.offset << ", length "
                   << step.length << '}';
    }
};

rc::Gen<Step> anyStep()
{
    const int last = static_cast<int>(Action::crash) + 1;
    const auto action = rc::gen::map(
        rc::gen::inRange(0, last), [](int number) { return static_cast<Action>(number); });
    // Mostly the present, as the surfaces do; sometimes any date near it.
    const auto offset =
        rc::gen::weightedOneOf<int>({{3, rc::gen::just(0)}, {1, rc::gen::inRange(-7200, 600)}});
    return rc::gen::build<Step>(rc::gen::set(&Step::action, action),
        rc::gen::set(&Step::choice, rc::gen::inRange(0u, 6u)),
        rc::gen::set(&Step::secondsLater, rc::gen::inRange(0, 900)),
        rc::gen::set(&Step::offset, offset),
        rc::gen::set(&Step::length, rc::gen::inRange(-60, 5400)));
}

/// All the time in a ledger that its file vouches for. Whole seconds, so the sum is exact.
double totalTime(const LedgerData& ledger)
{
    double total = ledger.active ? ledger.active->elapsed(ledger.active->checkpointAt) : 0.0;
    for (const TimeEntry& entry : ledger.entries) {
        total += entry.duration();
    }
    return total;
}

class Walk {
public:
    explicit Walk(bool isConnected)
    {
        LedgerData ledger = StoreWorld::sampleLedger();
        ledger.entries.modify(
            StoreWorld::meeting, [](TimeEntry& entry) { entry.recordedDuration = 3000.0; });
        world_.open(isConnected ? StoreWorld::connected(ledger) : ledger);
    }

    void take(const Step& step)
    {
        world_.now = world_.now + step.secondsLater;
        const LedgerData ledgerBefore = world_.ledger();
        const auto filesBefore = world_.files.contents();
        const std::string primaryBefore = world_.primary();
        const auto backupBefore = world_.files.content(StoreWorld::backupPath);
        double gain = 0.0;
        try {
            gain = perform(step);
        } catch (const LedgerError&) {
            RC_ASSERT(world_.ledger() == ledgerBefore);
            RC_ASSERT(
                step.action == Action::prepareForUpdate || world_.files.contents() == filesBefore);
            return;
        }
        validate(world_.ledger());
        RC_ASSERT(world_.readPrimary() == world_.ledger());
        RC_ASSERT(!world_.store().blocked());
        RC_ASSERT(totalTime(world_.ledger()) == totalTime(ledgerBefore) + gain);
        // Preparing an update may save twice, an idle checkpoint or crash does not save.
        if (step.action == Action::prepareForUpdate) {
            RC_ASSERT(world_.backup() == world_.primary() || world_.backup() == primaryBefore);
        } else if (world_.primary() != primaryBefore
            || world_.files.content(StoreWorld::backupPath) != backupBefore) {
            RC_ASSERT(world_.backup() == primaryBefore);
        }
    }

private:
    /// Carries out a step; returns the seconds by which it must change the total.
    double perform(const Step& step)
    {
        switch (step.action) {
        case Action::start:
        case Action::pause:
        case Action::resume:
        case Action::stop:
        case Action::checkpoint:
        case Action::editSession:
            return performOnSession(step);
        case Action::restoreGap:
        case Action::addEntry:
        case Action::editEntry:
        case Action::deleteEntry:
            return performOnEntry(step);
        case Action::addClient:
        case Action::editClient:
        case Action::addProject:
        case Action::editProject:
            performOnNames(step);
            return 0.0;
        case Action::prepareForUpdate: {
            const double gain = openTime(at(step));
            world_.store().prepareForUpdate(StoreWorld::uuid(7), at(step));
            return gain;
        }
        case Action::crash:
            world_.open();
            return 0.0;
        }
        return 0.0;
    }

    double performOnSession(const Step& step)
    {
        TimeStore& store = world_.store();
        const double gain = openTime(at(step));
        const Uuid id = world_.ledger().active ? world_.active().id : Uuid{};
        switch (step.action) {
        case Action::start:
            store.start(chosen(world_.ledger().clients, step), std::nullopt, "Walk", at(step));
            return 0.0;
        case Action::pause:
            store.pause(at(step));
            return gain;
        case Action::resume:
            store.resume(at(step));
            return 0.0;
        case Action::stop:
            store.stop(at(step));
            return gain;
        case Action::checkpoint:
            store.checkpoint(at(step));
            return gain;
        default:
            store.updateActiveSession(id, "Edited", chosen(world_.ledger().projects, step));
            return 0.0;
        }
    }

    double performOnEntry(const Step& step)
    {
        TimeStore& store = world_.store();
        const Date end = at(step) + step.length;
        if (step.action == Action::addEntry) {
            const Uuid client = chosen(world_.ledger().clients, step);
            const double length = step.length;
            store.addEntry(NewEntry{client, std::nullopt, "Added", at(step) + -length, length});
            return length;
        }
        if (step.action == Action::restoreGap) {
            return restoreGap(step, at(step), end);
        }
        if (world_.ledger().entries.empty()) {
            return 0.0;
        }
        const Uuid id = chosen(world_.ledger().entries, step);
        const double before = world_.entry(id).duration();
        if (step.action == Action::deleteEntry) {
            store.deleteEntry(id);
            return -before;
        }
        // Every other edit keeps the length, which moves the intervals instead.
        const double length = step.choice % 2 == 0 ? before : step.length;
        store.updateEntry(id, {"Edited", at(step), length, std::nullopt, std::nullopt, {}});
        return length - before;
    }

    double restoreGap(const Step& step, Date start, Date end)
    {
        const bool isActive = world_.ledger().active && step.choice % 2 == 0;
        if (!isActive && world_.ledger().entries.empty()) {
            return 0.0;
        }
        const Uuid id = isActive ? world_.active().id : chosen(world_.ledger().entries, step);
        const auto& spans = isActive ? world_.active().spans : world_.entry(id).spans;
        const bool isRepeat = std::ranges::find(spans, TimeSpan{start, end}) != spans.end();
        world_.store().restoreTrackingGap(id, start, end);
        return isRepeat ? 0.0 : end - start;
    }

    void performOnNames(const Step& step)
    {
        TimeStore& store = world_.store();
        const Uuid client = chosen(world_.ledger().clients, step);
        const ProjectValues values{"Project", step.length, true};
        switch (step.action) {
        case Action::addClient:
            world_.addClient("Client", step.length);
            break;
        case Action::editClient:
            store.updateClient(client,
                {"Client", step.length, "", true, ClientLogoChange::unchanged(), step.offset == 0});
            break;
        case Action::addProject:
            store.addProject(client, values);
            break;
        default:
            store.updateProject(chosen(world_.ledger().projects, step), values);
        }
    }

    [[nodiscard]] Date at(const Step& step) const { return world_.now + step.offset; }

    /// What closing the open interval at a date adds to what is vouched for already.
    [[nodiscard]] double openTime(Date date) const
    {
        const auto& session = world_.ledger().active;
        return session && session->runningSince ? date - session->checkpointAt : 0.0;
    }

    template <class Record>
    [[nodiscard]] static Uuid chosen(const RecordList<Record>& records, const Step& step)
    {
        auto record = records.begin();
        for (std::size_t skipped = 0; skipped < step.choice % records.size(); ++skipped) {
            ++record;
        }
        return record->id;
    }

    StoreWorld world_;
};

void walk(bool isConnected)
{
    const auto steps = *rc::gen::container<std::vector<Step>>(anyStep());
    Walk walk(isConnected);
    for (const Step& step : steps) {
        walk.take(step);
    }
}

TEST(TimeStoreProperty, AnyWalkKeepsTheLedgerSoundSavedBackedUpAndItsTimeExact)
{
    EXPECT_TRUE(rc::check([] { walk(false); }));
}

TEST(TimeStoreProperty, TheSameHoldsForALedgerThatIsReplicated)
{
    EXPECT_TRUE(rc::check([] { walk(true); }));
}

} // namespace
} // namespace KestryCore
