#include "SampleLedger.h"

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore::Sample {

namespace {

constexpr unsigned clientNumbers = 0xC000;
constexpr unsigned projectNumbers = 0xA000;
constexpr unsigned sessionNumbers = 0x5000;

SyncRecord liveRecord(SyncRecordKind kind, const Uuid& thing, std::string payload)
{
    return {recordID(kind, thing), id(0xEE).text(), "device-a", std::move(payload), false};
}

} // namespace

Uuid id(unsigned number)
{
    Uuid uuid;
    for (std::size_t index = uuid.bytes.size(); index-- > 0 && number != 0; number >>= 8) {
        uuid.bytes[index] = static_cast<std::uint8_t>(number & 0xFF);
    }
    return uuid;
}

Uuid clientID(unsigned number)
{
    return id(clientNumbers + number);
}

Uuid projectID(unsigned number)
{
    return id(projectNumbers + number);
}

Uuid sessionID(unsigned number)
{
    return id(sessionNumbers + number);
}

TimeSpan span(double start, double end)
{
    return {Date{start}, Date{end}};
}

Client client(unsigned number)
{
    Client client;
    client.id = clientID(number);
    client.name = "Harbour Books";
    client.hourlyRateCents = 15'000;
    client.colorHex = "B7A5FF";
    return client;
}

Project project(unsigned number)
{
    Project project;
    project.id = projectID(number);
    project.clientID = clientID();
    project.name = "Catalogue";
    project.hourlyRateCents = 15'000;
    return project;
}

TimeEntry entry(unsigned number)
{
    TimeEntry entry;
    entry.id = sessionID(number);
    entry.projectID = projectID();
    entry.title = "Proofs";
    entry.hourlyRateCents = 15'000;
    entry.spans = {span(noon, noon + hour)};
    return entry;
}

ActiveSession runningSession()
{
    ActiveSession session = pausedSession();
    session.runningSince = Date{noon + 2 * hour};
    session.checkpointAt = Date{noon + 2 * hour + 600};
    return session;
}

ActiveSession pausedSession()
{
    ActiveSession session;
    session.id = sessionID(9);
    session.projectID = projectID();
    session.title = "Index";
    session.hourlyRateCents = 15'000;
    session.spans = {span(noon, noon + hour)};
    session.checkpointAt = Date{noon + hour};
    return session;
}

LedgerData ledger()
{
    LedgerData ledger;
    ledger.clients = {client()};
    ledger.projects = {project()};
    ledger.entries = {entry()};
    return ledger;
}

LedgerData runningLedger()
{
    LedgerData result = ledger();
    result.active = runningSession();
    return result;
}

LedgerSyncState state()
{
    LedgerSyncState state;
    state.deviceID = "device-a";
    state.deviceName = "studio";
    state.accountID = "account";
    return state;
}

LedgerData connectedLedger()
{
    LedgerData result = runningLedger();
    result.replication = state();
    return result;
}

SyncedSession synced(const ActiveSession& session)
{
    return {"device-a", "studio", session, std::nullopt};
}

SyncedSession synced(const TimeEntry& entry)
{
    return {"device-a", "studio", std::nullopt, entry};
}

SyncRecord record(const Client& client)
{
    return liveRecord(SyncRecordKind::client, client.id, canonicalJson(client));
}

SyncRecord record(const Project& project)
{
    return liveRecord(SyncRecordKind::project, project.id, canonicalJson(project));
}

SyncRecord record(const SyncedSession& session)
{
    const Uuid& thing = session.active ? session.active->id : session.entry->id;
    return liveRecord(SyncRecordKind::session, thing, canonicalJson(session));
}

SyncRecord deletion(const std::string& recordID)
{
    return {recordID, id(0xDD).text(), "device-a", std::nullopt, true};
}

LedgerSyncState fullState()
{
    LedgerSyncState result = state();
    const SyncRecord local = record(client(2));
    const SyncRecord gone = deletion(recordID(SyncRecordKind::project, projectID(7)));
    const SyncedSession remote = synced(runningSession());
    result.environment = CloudSyncEnvironment::production;
    result.enabled = false;
    result.changeToken = std::string("\x00\xFF/cursor", 9);
    result.systemFields = {{local.recordID, "etag 7"}};
    result.baseRevisions = {{local.recordID, id(0xBA).text()}};
    result.outbox = {{local.recordID, local}, {gone.recordID, gone}};
    result.conflicts = {{local.recordID, local, record(client(2))}};
    result.remoteSessions = {{record(remote).recordID, remote}};
    const SyncRecord waiting = record(project(3));
    result.staged = {{waiting.recordID, waiting}};
    result.tombstones = {{gone.recordID, gone}};
    return result;
}

} // namespace KestryCore::Sample
