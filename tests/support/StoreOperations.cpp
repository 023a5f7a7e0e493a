#include "StoreOperations.h"

#include <cerrno>

#include "UpdateHandoff.h"

namespace KestryCore {

namespace {

using World = StoreWorld;

Date at(int hour, int minute = 0)
{
    return World::clockTime(hour, minute);
}

/// Opens a primary and a backup that an earlier process has saved, and that this one only reads.
void openOn(World& world, const LedgerData& ledger)
{
    world.open(ledger);
    world.addClient("Before");
    if (world.ledger().active) {
        world.store().resume(at(11));
    }
    // The running session goes on, which it would not after a crash.
    world.options.runningSession = RunningSessionPolicy::keep;
    world.open();
    world.options.runningSession = RunningSessionPolicy::recover;
}

void openIdle(World& world)
{
    openOn(world, World::sampleLedger());
}

void openRunning(World& world)
{
    openOn(world, World::connected(World::pausedLedger()));
}

void openPaused(World& world)
{
    openRunning(world);
    world.store().pause(at(11, 30));
}

EntryChange longerMeeting()
{
    return {"Meeting", at(8), 5400.0, false, 100, World::design};
}

} // namespace

const char* const damagedPrimary = "{\"clients\":[";

namespace {

const std::vector<StoreOperation>& changes()
{
    static const std::vector<StoreOperation> operations{
        {"Start", openIdle,
            [](World& world) { world.store().start(World::solo, std::nullopt, "New", at(11)); }},
        {"Pause", openRunning, [](World& world) { world.store().pause(at(12)); }},
        {"Resume", openPaused, [](World& world) { world.store().resume(at(12)); }},
        {"Stop", openRunning, [](World& world) { world.store().stop(at(12)); }},
        {"Checkpoint", openRunning, [](World& world) { world.store().checkpoint(at(12)); }},
        {"RenameActiveSession", openRunning,
            [](World& world) { world.store().renameActiveSession(World::writing, "Other"); }},
        {"UpdateActiveSession", openRunning,
            [](World& world) {
                world.store().updateActiveSession(World::writing, "Other", World::design);
            }},
        {"RestoreTrackingGap", openIdle,
            [](World& world) { world.store().restoreTrackingGap(World::meeting, at(10), at(11)); }},
        {"AddClient", openIdle, [](World& world) { world.addClient("After"); }},
        {"UpdateClient", openIdle,
            [](World& world) {
                world.store().updateClient(World::acme,
                    {"New", 1, "000000", true, ClientLogoChange::unchanged(), std::nullopt});
            }},
        {"AddProject", openIdle,
            [](World& world) {
                world.store().addProject(World::acme, {"New", 1, true});
            }},
        {"UpdateProject", openIdle,
            [](World& world) {
                world.store().updateProject(World::website, {"New", 1, true});
            }},
        {"AddEntry", openIdle,
            [](World& world) {
                world.store().addEntry({World::acme, World::design, "Call", at(10), 60.0});
            }},
        {"UpdateEntry", openIdle,
            [](World& world) { world.store().updateEntry(World::meeting, longerMeeting()); }},
        {"DeleteEntry", openIdle, [](World& world) { world.store().deleteEntry(World::meeting); }},
    };
    return operations;
}

/// The operation on a primary that this process has written itself, by a save that changes nothing.
StoreOperation afterASave(StoreOperation operation)
{
    operation.name += "AfterASave";
    operation.prepare = [prepare = operation.prepare](World& world) {
        prepare(world);
        world.store().deleteEntry(World::uuid(99));
    };
    return operation;
}

} // namespace

StoreOperation withoutLinks(StoreOperation operation)
{
    operation.name += "WithoutLinks";
    operation.prepare = [prepare = operation.prepare](World& world) {
        prepare(world);
        world.files.refuseLinks(EPERM);
    };
    return operation;
}

const std::vector<StoreOperation>& savingOperations()
{
    static const std::vector<StoreOperation> operations = [] {
        std::vector<StoreOperation> all;
        for (const StoreOperation& change : changes()) {
            all.push_back(change);
            all.push_back(afterASave(change));
            all.push_back(withoutLinks(afterASave(change)));
        }
        return all;
    }();
    return operations;
}

const StoreOperation& firstSave()
{
    static const StoreOperation operation{"FirstSave",
        [](World& world) {
            world.files.erase("/home");
            world.open();
        },
        [](World& world) { world.addClient("First" + world.filler); }};
    return operation;
}

const StoreOperation& restoring()
{
    static const StoreOperation operation{"Restore",
        [](World& world) {
            world.putBackup(World::connected(World::pausedLedger()));
            world.files.put(World::primaryPath, damagedPrimary + world.filler);
            world.open();
        },
        [](World& world) { world.store().restoreBackup(); }};
    return operation;
}

const StoreOperation& preparingForUpdate()
{
    static const StoreOperation operation{"PrepareForUpdate",
        [](World& world) {
            LedgerData ledger = World::connected(World::pausedLedger());
            ledger.active->title += world.filler;
            openOn(world, ledger);
            world.files.put(World::handoffPath, "left over");
        },
        [](World& world) { world.store().prepareForUpdate(World::uuid(7), at(12)); }};
    return operation;
}

const StoreOperation& recovering()
{
    static const StoreOperation operation{"Recover",
        [](World& world) {
            world.putPrimary(World::runningLedger());
            world.putBackup(World::sampleLedger());
            world.files.put(World::handoffPath, "{}");
        },
        [](World& world) { world.open(); }};
    return operation;
}

const StoreOperation& takingOver()
{
    static const StoreOperation operation{"TakeOver",
        [](World& world) {
            LedgerData ledger = World::runningLedger();
            ledger.active->title += world.filler;
            world.putPrimary(ledger);
            world.putBackup(World::sampleLedger());
            world.options.updateToken = World::uuid(7);
            world.files.put(
                World::handoffPath, encodeUpdateHandoff({World::uuid(7), ledger.active}));
        },
        [](World& world) { world.open(); }};
    return operation;
}

void expectNoTemporaryFiles(const StoreWorld& world)
{
    for (const auto& [path, content] : world.files.contents()) {
        EXPECT_FALSE(path.ends_with(".new")) << path;
    }
}

void expectNextChangeSucceeds(StoreWorld& world)
{
    const std::optional<std::string> previous = world.files.content(StoreWorld::primaryPath);
    EXPECT_NO_THROW(world.addClient("Next"));
    EXPECT_TRUE(world.readPrimary() == world.ledger());
    EXPECT_EQ(world.files.content(StoreWorld::backupPath), previous);
    expectNoTemporaryFiles(world);
}

std::string operationName(const testing::TestParamInfo<StoreOperation>& info)
{
    return info.param.name;
}

} // namespace KestryCore
