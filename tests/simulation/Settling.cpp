#include "Settling.h"

#include <algorithm>
#include <map>

#include "LedgerCoding.h"
#include "RecordContents.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

/// More rounds than any run needs; a run that needs more never comes to rest.
constexpr int mostRounds = 40;

bool isAtRest(const LedgerSyncState& state)
{
    return state.outbox.empty() && state.conflicts.empty();
}

bool isReady(Member& member)
{
    const LedgerSyncState* const state = member.device.state();
    return !member.device.store().blocked() && state != nullptr
        && member.replication.controller().isEnabled()
        && !*member.replication.controller().fields().offersUpload;
}

/// Whether a saved session here meets the same session in progress elsewhere.
bool isReopening(const SyncConflict& conflict)
{
    return !conflict.local.isDeleted && !conflict.remote.isDeleted
        && contentOf(conflict.local).starts_with("{\"entry\"")
        && contentOf(conflict.remote).starts_with("{\"active\"");
}

/// What differs between a device and the store, by record identity.
std::vector<std::string> differences(const Member& member, const CloudStore& cloud)
{
    std::vector<std::string> differing;
    std::map<std::string, std::string> contents = contentsOf(member.device.ledger());
    for (const auto& [key, stored] : cloud.records()) {
        if (contents[key] != contentOf(stored.record)) {
            differing.push_back(key);
        }
    }
    for (const auto& [key, session] : member.device.state()->remoteSessions) {
        contents.erase(key); // Those are for their own devices to deliver.
    }
    for (const auto& [key, content] : contents) {
        require(cloud.find(key) != nullptr, member.device.name() + " never delivered " + key);
    }
    return differing;
}

} // namespace

void Settling::run()
{
    prepare();
    settle(false);
    checkEqual(true);
    for (int round = 0; round < mostRounds; ++round) {
        endSessions();
        settle(true);
        tidy();
        settle(true);
        if (!saveUnwrittenAnew()) {
            checkEqual(false);
            return checkOverruled();
        }
    }
    throw Violation("records saved anew do not make the devices equal");
}

void Settling::prepare()
{
    world_.hasFaults = false;
    world_.history.note([] { return "faults end"; });
    // While all machines sleep, what is still on its way arrives, and what was wrong is mended.
    for (const auto& member : world_.members) {
        member->offlineUntil = world_.now;
        world_.sleep(*member, 2 * SimulatedWeather::longestWay);
    }
    world_.pass(2 * SimulatedWeather::longestWay);
    for (const auto& member : world_.members) {
        member->line.isOnline = true;
        if (member->judge.isDamaged()) {
            world_.kill(*member); // Else it shows when something is saved, which may be never.
        }
        world_.open(*member);
        makeReady(*member);
    }
}

void Settling::settle(bool isFinal)
{
    constexpr int roundsOfMoods = 8;
    for (int round = 0; round < mostRounds; ++round) {
        const bool hasChanged = exchange();
        if (!hasChanged) {
            return checkTold();
        }
        for (const auto& member : world_.members) {
            decide(*member, isFinal || round >= roundsOfMoods);
        }
    }
    throw Violation("the devices do not come to rest");
}

/// Each device exchanges at least once, by itself. Whether anything has changed, or is to change.
bool Settling::exchange()
{
    constexpr double betweenPolls = 60.0;
    constexpr double longestExchange = 60.0;
    std::vector<LedgerData> before;
    for (const auto& member : world_.members) {
        makeReady(*member);
        before.push_back(member->device.ledger());
    }
    const std::uint64_t cloudBefore = world_.cloud.lastChange();
    world_.pass(betweenPolls + longestExchange);
    bool hasChanged = world_.cloud.lastChange() != cloudBefore;
    for (std::size_t index = 0; index < before.size(); ++index) {
        Member& member = *world_.members.at(index);
        makeReady(member);
        hasChanged = hasChanged || !(member.device.ledger() == before.at(index))
            || !isAtRest(*member.device.state());
    }
    return hasChanged;
}

void Settling::checkTold() const
{
    for (const auto& member : world_.members) {
        const CloudSyncFields& fields = member->replication.controller().fields();
        require(*fields.lastSync && !*fields.errorMessage,
            member->device.name() + " is at rest and says " + *fields.status + ", "
                + fields.errorMessage->value_or("no failure"));
    }
}

void Settling::makeReady(Member& member)
{
    // A backup may be older than the connection.
    constexpr double answerSeconds = 10.0;
    for (int attempt = 0; !isReady(member); ++attempt) {
        require(attempt < mostRounds, member.device.name() + " cannot be made ready");
        if (member.device.store().blocked()) {
            user_.recover(member);
        } else if (*member.replication.controller().fields().offersUpload) {
            user_.uploadAgain(member);
            world_.pass(answerSeconds);
        } else {
            user_.connect(member);
            world_.pass(answerSeconds);
        }
    }
}

void Settling::decide(Member& member, bool isFinal)
{
    while (!member.device.state()->conflicts.empty()) {
        const SyncConflict conflict = member.device.state()->conflicts.front();
        const bool keepsLocal = isFinal ? isReopening(conflict) : world_.oneIn(2);
        user_.resolve(
            member, conflict.id, keepsLocal ? ConflictChoice::keepLocal : ConflictChoice::useCloud);
    }
}

void Settling::endSessions()
{
    for (const auto& member : world_.members) {
        user_.endSession(*member);
        if (member->device.ledger().active) {
            // Too long to be saved whole, or its clock was set back: a new start pauses it at its
            // last checkpoint, and by then the clock is right again.
            const double behind =
                member->device.ledger().active->checkpointAt - member->device.now();
            world_.kill(*member);
            member->device.setClockForward(std::max(0.0, behind));
            world_.open(*member);
            user_.endSession(*member);
        }
        require(!member->device.ledger().active, "a session cannot be ended");
    }
}

void Settling::tidy()
{
    elsewhere_.deleteOrphans();
    for (const auto& member : world_.members) {
        const LedgerData ledger = member->device.ledger();
        for (const auto& [key, session] : ledger.replication->remoteSessions) {
            elsewhere_.endLost(key);
        }
        for (const TimeEntry& entry : ledger.entries) {
            const auto staged =
                ledger.replication->staged.find(recordID(SyncRecordKind::project, entry.projectID));
            if (staged != ledger.replication->staged.end() && staged->second.isDeleted) {
                user_.remove(*member, entry.id);
            }
        }
    }
}

bool Settling::saveUnwrittenAnew()
{
    std::map<std::string, SyncRecord> differing;
    for (const auto& member : world_.members) {
        for (const auto& [key, record] : member->device.state()->staged) {
            differing.try_emplace(key, record);
        }
        for (const std::string& key : differences(*member, world_.cloud)) {
            differing.try_emplace(key, world_.cloud.find(key)->record);
        }
    }
    for (const auto& [key, record] : differing) {
        world_.history.note([&, name = key] { return shortName(name) + " is saved anew"; });
        elsewhere_.saveAnew(record);
    }
    return !differing.empty();
}

void Settling::checkOverruled() const
{
    for (const auto& [key, version] : world_.cloud.overruled()) {
        const std::string& revision = version.record.revision;
        require(world_.book.find(revision)->isReplaced,
            "the overruled version " + shortName(revision) + " of " + key
                + " was never shown to its user");
    }
}

void Settling::checkEqual(bool allowsUnwritten) const
{
    for (const auto& member : world_.members) {
        const LedgerSyncState& state = *member->device.state();
        const std::string& name = member->device.name();
        require(isAtRest(state), name + " still has something to deliver or to decide");
        require(allowsUnwritten || state.staged.empty(), name + " still has records waiting");
        for (const std::string& key : differences(*member, world_.cloud)) {
            const std::string shown = shownRevision(state, key);
            const bool isExcused = allowsUnwritten
                && (member->judge.hasUnwritten(shown) || state.staged.contains(key));
            require(isExcused, name + " differs from the cloud in " + key);
            if (!state.staged.contains(key)) {
                world_.tally.count(Event::unwrittenChoice);
            }
        }
    }
}

} // namespace KestryCore
