#include "SimulatedUser.h"

#include <iterator>

#include "RecordContents.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

constexpr double hour = 3600.0;

// Few of each, so that devices meet at the same records.
constexpr std::size_t mostClients = 4;
constexpr std::size_t mostProjects = 6;
constexpr std::size_t mostSessions = 12;

} // namespace

void SimulatedUser::act(Member& member)
{
    if (member.device.store().blocked()) {
        return recover(member);
    }
    if (member.device.state() == nullptr && world_.oneIn(3)) {
        return connect(member);
    }
    if (*member.replication.controller().fields().offersUpload && world_.oneIn(3)) {
        return uploadAgain(member);
    }
    switch (world_.choices.below(10)) {
    case 0:
    case 1:
    case 2:
        return track(member);
    case 3:
    case 4:
        return resolveSome(member);
    default:
        return editRecords(member);
    }
}

void SimulatedUser::editTogether(Member& one, Member& other)
{
    const Client* const client = any(one.device.ledger().clients);
    if (client == nullptr || other.device.ledger().clients.find(client->id) == nullptr) {
        return;
    }
    const Uuid id = client->id;
    for (Member* const member : {&one, &other}) {
        const Client known = *member->device.ledger().clients.find(id);
        const ClientChange values{words(), known.hourlyRateCents, known.colorHex};
        change(*member, "edits Client " + shortName(id.text()),
            [&](TimeStore& store) { store.updateClient(id, values); });
        if (member->device.isRunning()) {
            world_.run(
                *member, "becomes active", [&] { member->replication.controller().syncNow(); });
        }
    }
}

void SimulatedUser::track(Member& member)
{
    const std::optional<ActiveSession>& active = member.device.ledger().active;
    const Date at = member.device.now();
    if (!active) {
        return start(member);
    }
    switch (world_.choices.below(6)) {
    case 0:
        return change(member, "renames its session",
            [&](TimeStore& store) { store.renameActiveSession(active->id, words()); });
    case 1:
        return change(member, "pauses", [&](TimeStore& store) { store.pause(at); });
    case 2:
        return change(member, "resumes", [&](TimeStore& store) { store.resume(at); });
    case 3:
        return endSession(member);
    default:
        if (active->isPaused()) {
            return; // There is no checkpoint to make, and nothing would be saved.
        }
        return change(
            member, "makes a checkpoint", [&](TimeStore& store) { store.checkpoint(at); });
    }
}

void SimulatedUser::start(Member& member)
{
    const Project* const project = any(member.device.ledger().projects);
    if (project == nullptr) {
        return add(member);
    }
    change(member, "starts a session in " + shortName(project->id.text()),
        [&, id = project->id](TimeStore& store) { store.start(id, words(), member.device.now()); });
}

void SimulatedUser::endSession(Member& member)
{
    if (!member.device.ledger().active) {
        return;
    }
    const Uuid id = member.device.ledger().active->id;
    change(member, "stops " + shortName(id.text()),
        [&](TimeStore& store) { store.stop(member.device.now()); });
    if (member.device.isRunning() && !member.device.ledger().active) {
        member.judge.sawStopped(id);
    }
}

void SimulatedUser::editRecords(Member& member)
{
    switch (world_.choices.below(7)) {
    case 0:
    case 1:
        return add(member);
    case 2:
        return editClient(member);
    case 3:
        return editProject(member);
    case 4:
        return restoreGap(member);
    case 5:
        if (const TimeEntry* const entry = any(member.device.ledger().entries)) {
            remove(member, entry->id);
        }
        return;
    default:
        return editSession(member);
    }
}

void SimulatedUser::add(Member& member)
{
    const LedgerData& ledger = member.device.ledger();
    const Client* const client = any(ledger.clients);
    if (client == nullptr || (ledger.clients.size() < mostClients && world_.oneIn(6))) {
        const bool projectsEnabled = world_.oneIn(2);
        return change(member, "adds a client", [&](TimeStore& store) {
            store.addClient({words(), 9000, "4A90D9", true, std::nullopt, projectsEnabled});
        });
    }
    const Uuid clientID = client->id;
    if (ledger.projects.size() < mostProjects && world_.oneIn(3)) {
        return change(member, "adds a project", [&](TimeStore& store) {
            store.addProject(clientID, {words(), 8000, true});
        });
    }
    if (ledger.entries.size() >= mostSessions) {
        return remove(member, ledger.entries.front().id);
    }
    const Date from = member.device.now() + -hour;
    change(member, "adds a session", [&](TimeStore& store) {
        store.addEntry({clientID, std::nullopt, words(), from, hour / 2});
    });
}

void SimulatedUser::editClient(Member& member)
{
    const Client* const client = any(member.device.ledger().clients);
    if (client == nullptr) {
        return;
    }
    ClientChange values{words(), client->hourlyRateCents, client->colorHex};
    if (world_.oneIn(8)) {
        values.projectsEnabled = !client->projectsEnabled;
    }
    change(member, "edits Client " + shortName(client->id.text()),
        [&, id = client->id](TimeStore& store) { store.updateClient(id, values); });
}

void SimulatedUser::editProject(Member& member)
{
    const Project* const project = any(member.device.ledger().projects);
    if (project == nullptr) {
        return;
    }
    change(member, "edits Project " + shortName(project->id.text()),
        [&, id = project->id](TimeStore& store) {
            store.updateProject(id, {words(), 7000, true});
        });
}

void SimulatedUser::editSession(Member& member)
{
    const LedgerData& ledger = member.device.ledger();
    const TimeEntry* const entry = any(ledger.entries);
    if (entry == nullptr) {
        return;
    }
    EntryChange values{words(), entry->startedAt(), entry->duration()};
    if (world_.oneIn(2)) {
        values.projectID = any(ledger.projects)->id;
    }
    if (world_.oneIn(3)) {
        values.duration += hour / 4;
    }
    change(member, "edits Session " + shortName(entry->id.text()),
        [&, id = entry->id](TimeStore& store) { store.updateEntry(id, values); });
}

void SimulatedUser::restoreGap(Member& member)
{
    const TimeEntry* const entry = any(member.device.ledger().entries);
    if (entry == nullptr) {
        return;
    }
    const Date end = entry->startedAt() + -hour / 10;
    change(member, "puts time back into Session " + shortName(entry->id.text()),
        [&, id = entry->id](
            TimeStore& store) { store.restoreTrackingGap(id, end + -hour / 10, end); });
}

void SimulatedUser::remove(Member& member, const Uuid& sessionID)
{
    change(member, "removes Session " + shortName(sessionID.text()),
        [&](TimeStore& store) { store.deleteEntry(sessionID); });
}

void SimulatedUser::connect(Member& member)
{
    world_.switchOn(member);
}

void SimulatedUser::uploadAgain(Member& member)
{
    const auto isReady = [&member] {
        return member.device.isRunning() && !member.device.store().blocked()
            && member.device.state() != nullptr;
    };
    while (isReady() && !member.device.state()->conflicts.empty()) {
        resolve(member, std::string(member.device.state()->conflicts.front().id),
            world_.oneIn(2) ? ConflictChoice::keepLocal : ConflictChoice::useCloud);
    }
    if (!isReady()) {
        return;
    }
    world_.tally.count(Event::uploadedAgain);
    member.judge.sawUploadAgain();
    world_.run(member, "uploads all records again",
        [&] { member.replication.controller().uploadAgain(); });
}

void SimulatedUser::resolveSome(Member& member)
{
    const LedgerSyncState* const state = member.device.state();
    if (state == nullptr) {
        return;
    }
    if (state->enabled && world_.befalls(Event::syncTurnedOff, 40)) {
        return world_.switchOff(member);
    }
    if (!member.replication.controller().isEnabled() && world_.oneIn(2)) {
        return connect(member);
    }
    if (const SyncConflict* const conflict = any(state->conflicts)) {
        resolve(member, conflict->id,
            world_.oneIn(2) ? ConflictChoice::keepLocal : ConflictChoice::useCloud);
    }
}

void SimulatedUser::resolve(Member& member, const std::string& recordID, ConflictChoice choice)
{
    const bool keepsLocal = choice == ConflictChoice::keepLocal;
    const World::Outcome outcome = world_.change(
        member, std::string(keepsLocal ? "keeps its " : "uses the cloud's ") + shortName(recordID),
        [&, id = std::string(recordID)](
            TimeStore& store) { store.resolveSyncConflict(id, choice); },
        World::Refusal::never);
    if (outcome == World::Outcome::done) {
        world_.tally.count(keepsLocal ? Event::keptLocal : Event::usedCloud);
    }
}

void SimulatedUser::change(
    Member& member, const std::string& what, const std::function<void(TimeStore&)>& action)
{
    const World::Outcome outcome = world_.change(member, what, action, World::Refusal::allowed);
    if (outcome != World::Outcome::crashed) {
        world_.tally.count(
            outcome == World::Outcome::done ? Event::userChange : Event::refusedChange);
    }
}

void SimulatedUser::recover(Member& member)
{
    if (!*member.device.store().recoveryAvailable() || world_.oneIn(3)) {
        world_.kill(member);
        return world_.open(member);
    }
    restore(member);
}

void SimulatedUser::restore(Member& member)
{
    const LedgerData before = member.device.ledger();
    if (world_.restore(member) == World::Outcome::done) {
        member.judge.sawRestored(before);
    }
}

std::string SimulatedUser::words()
{
    return "Words " + std::to_string(++lastWord_);
}

template <class Record>
const Record* SimulatedUser::any(const RecordList<Record>& records)
{
    if (records.empty()) {
        return nullptr;
    }
    auto position = records.begin();
    std::advance(position, world_.choices.below(records.size()));
    return &*position;
}

} // namespace KestryCore
