// The quick way of saving beside the plain one: encode everything, read and validate the ledger on
// disk, write it again as the backup, write the new one. Over random changes, and whatever others
// do to the files in between, both leave the same files, the same words and the same flags.

#include <rapidcheck.h>

#include <gtest/gtest.h>

#include <ostream>

#include "ArbitraryLedger.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

using World = StoreWorld;

bool isReadable(const std::string& bytes)
{
    try {
        validate(decodeLedger(bytes));
        return true;
    } catch (const LedgerError&) {
        return false;
    }
}

/// The plain way. The change itself is made by a store without files.
class PlainStore {
public:
    explicit PlainStore(const World& world) : world_(world) { open(world.primary()); }

    void open(const std::string& primary)
    {
        ledger = decodeLedger(primary);
        blocked = recoveryAvailable = false;
        message.clear();
    }

    void change(const std::function<void(TimeStore&)>& perform)
    {
        StoreOptions options;
        options.demoLedger = rebuilt(ledger);
        MemoryFileSystem none;
        TimeStore changing(
            {none, [this] { return world_.now; }, [this] { return World::uuid(++lastUuid_); }},
            options);
        refusal.clear();
        try {
            perform(changing);
        } catch (const LedgerError& failure) {
            // Some refusals are for the caller alone.
            message = changing.errorMessage()->value_or(message);
            refusal = failure.what();
            return;
        }
        try {
            save(*changing.data());
            ledger = *changing.data();
        } catch (const LedgerError& failure) {
            message = refusal = failure.what();
        }
    }

    LedgerData ledger;
    std::map<std::string, std::string> files;
    bool blocked = false;
    bool recoveryAvailable = false;
    std::string message; ///< What stays on the screen.
    std::string refusal; ///< Of the last change; empty when it was accepted.

private:
    void save(const LedgerData& changed)
    {
        if (blocked) {
            throw LedgerError("Saving is disabled to protect your unreadable ledger. Restore the "
                              "data file before continuing.");
        }
        const std::string bytes = encodeLedger(rebuilt(changed));
        const auto previous = files.find(World::primaryPath);
        if (previous == files.end() || !isReadable(previous->second)) {
            blocked = true;
            recoveryAvailable = isReadable(files[World::backupPath]);
            throw LedgerError("The ledger on disk could not be read. It has been preserved. "
                              "Restore the last backup in Settings if available.");
        }
        files[World::backupPath] = previous->second;
        files[World::primaryPath] = bytes;
    }

    const World& world_;
    unsigned lastUuid_ = 1000;
};

enum class Act {
    addClient,
    start,
    pause,
    resume,
    stop,
    addEntry,
    deleteEntry,
    replaceByAnother,
    replaceBySame,
    replaceByUnsound,
    truncate,
    editInPlace,
    breakInPlace,
    remove,
    breakBackup,
    count
};

std::ostream& operator<<(std::ostream& out, Act act)
{
    return out << "act " << static_cast<int>(act);
}

class BothWays {
public:
    explicit BothWays(int linkRefusal)
    {
        world_.files.refuseLinks(linkRefusal);
        world_.options.runningSession = RunningSessionPolicy::keep;
        world_.putBackup(World::sampleLedger());
        world_.open(World::connected(World::sampleLedger()));
        plain_.emplace(world_);
        plain_->files = world_.files.contents();
    }

    void act(Act act)
    {
        if (act < Act::replaceByAnother) {
            world_.now.seconds += 60.0;
            change([&](TimeStore& store) { perform(store, act); });
        } else {
            interfere(act);
            plain_->files = world_.files.contents();
        }
        compare();
        if (world_.blocked()) {
            reopen();
        }
    }

private:
    void perform(TimeStore& store, Act act)
    {
        const Date now = world_.now;
        switch (act) {
        case Act::addClient:
            store.addClient({"Client", 100, "112233", true, std::nullopt, true});
            return;
        case Act::start:
            store.start(World::solo, std::nullopt, "New", now);
            return;
        case Act::pause:
            store.pause(now);
            return;
        case Act::resume:
            store.resume(now);
            return;
        case Act::stop:
            store.stop(now);
            return;
        case Act::addEntry:
            store.addEntry({World::acme, World::design, "Call", World::clockTime(10), 60.0});
            return;
        default:
            store.deleteEntry(World::meeting);
        }
    }

    void change(const std::function<void(TimeStore&)>& perform)
    {
        plain_->change(perform);
        std::string refusal;
        try {
            perform(world_.store());
        } catch (const LedgerError& failure) {
            refusal = failure.what();
        }
        RC_ASSERT(refusal == plain_->refusal);
    }

    void interfere(Act act)
    {
        const std::string primary = encodeLedger(world_.ledger());
        if (!world_.files.content(World::primaryPath)) {
            world_.files.put(World::primaryPath, primary);
        }
        LedgerData unsound = world_.ledger();
        unsound.clients.modify(World::acme, [](Client& client) { client.name = " "; });
        switch (act) {
        case Act::replaceByAnother:
            world_.files.put(World::primaryPath, encodeLedger(World::pausedLedger()) + "\n");
            return;
        case Act::replaceBySame:
            world_.files.put(World::primaryPath, primary);
            return;
        case Act::replaceByUnsound:
            world_.files.put(World::primaryPath, encodeLedger(unsound));
            return;
        case Act::truncate:
            world_.files.overwrite(World::primaryPath, primary.substr(0, primary.size() / 2));
            return;
        case Act::editInPlace:
            world_.files.overwrite(World::primaryPath, primary + " ");
            return;
        case Act::breakInPlace:
            world_.files.overwrite(World::primaryPath, "!" + primary.substr(1));
            return;
        case Act::remove:
            world_.files.erase(World::primaryPath);
            return;
        default:
            world_.files.put(World::backupPath, "no backup");
        }
    }

    void compare()
    {
        RC_ASSERT(world_.files.contents() == plain_->files);
        RC_ASSERT(world_.errorMessage() == plain_->message);
        RC_ASSERT(world_.blocked() == plain_->blocked);
        RC_ASSERT(world_.recoveryAvailable() == plain_->recoveryAvailable);
        RC_ASSERT(world_.ledger() == plain_->ledger);
    }

    /// Somebody repairs the files by hand, and both start again.
    void reopen()
    {
        world_.putBackup(World::sampleLedger());
        world_.open(World::connected(World::sampleLedger()));
        plain_->files = world_.files.contents();
        plain_->open(world_.primary());
    }

    World world_;
    std::optional<PlainStore> plain_;
};

bool bothWaysAgree(int linkRefusal)
{
    const auto act = rc::gen::map(rc::gen::inRange(0, static_cast<int>(Act::count)),
        [](int number) { return static_cast<Act>(number); });
    return rc::check("the quick way saves as the plain way", [&] {
        BothWays both(linkRefusal);
        for (const Act next : *rc::gen::container<std::vector<Act>>(act)) {
            both.act(next);
        }
    });
}

TEST(TimeStorePlainSave, SavesAsTheQuickWay)
{
    EXPECT_TRUE(bothWaysAgree(0));
}

TEST(TimeStorePlainSave, SavesAsTheQuickWayWhereFilesCannotHaveTwoNames)
{
    EXPECT_TRUE(bothWaysAgree(EPERM));
}

} // namespace
} // namespace KestryCore
