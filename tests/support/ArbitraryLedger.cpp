#include "ArbitraryLedger.h"

#include <ostream>

#include "ArbitraryText.h"
#include "LedgerCoding.h"
#include "LogoImages.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

constexpr int shortTextSize = 12;

std::string anyText()
{
    return *rc::gen::resize(shortTextSize, arbitraryText());
}

std::string anyName()
{
    return anyText() + 'n';
}

/// A random identifier; the number makes it differ from the others of its kind.
Uuid anyIdentifier(unsigned number)
{
    Uuid id;
    for (std::uint8_t& byte : id.bytes) {
        byte = *rc::gen::arbitrary<std::uint8_t>();
    }
    id.bytes[0] = static_cast<std::uint8_t>(number);
    return id;
}

bool chance()
{
    return *rc::gen::arbitrary<bool>();
}

Cents anyRate()
{
    return *rc::gen::oneOf(
        rc::gen::inRange<Cents>(0, 30'000), rc::gen::positive<Cents>(), rc::gen::just<Cents>(0));
}

/// Seconds with any fraction, often none.
double anySeconds(int limit)
{
    const auto whole = static_cast<double>(*rc::gen::inRange(0, limit));
    return chance() ? whole : whole + *rc::gen::inRange(0, 1'000'000) / 1e6;
}

/// Intervals in order, some of them empty or touching.
std::vector<TimeSpan> anySpans(std::size_t atLeast)
{
    std::vector<TimeSpan> spans;
    const auto count = *rc::gen::inRange(atLeast, std::size_t{4});
    Date last{static_cast<double>(*rc::gen::inRange(-900'000'000, 2'000'000'000))};
    while (spans.size() < count) {
        const Date start = chance() ? last : last + anySeconds(86'400);
        const Date end = chance() ? start : start + anySeconds(86'400);
        spans.push_back({start, end});
        last = end;
    }
    return spans;
}

std::optional<std::string> anySourceID(unsigned number)
{
    return chance() ? std::optional(anyText() + std::to_string(number)) : std::nullopt;
}

std::string anyLogo()
{
    return LogoImages::png(
        {.width = *rc::gen::inRange(1U, 9U), .height = *rc::gen::inRange(1U, 9U)});
}

Client anyClient(unsigned number)
{
    Client client;
    client.id = anyIdentifier(number);
    client.name = anyName();
    client.hourlyRateCents = anyRate();
    client.colorHex = anyText();
    client.rateIsKnown = chance();
    if (chance()) {
        client.logoData = anyLogo();
    }
    client.projectsEnabled = chance();
    return client;
}

Project anyProject(unsigned number, const Uuid& clientID)
{
    Project project;
    project.id = anyIdentifier(number);
    project.clientID = clientID;
    project.name = anyName();
    project.hourlyRateCents = anyRate();
    project.rateIsKnown = chance();
    project.isClientDefault = chance();
    return project;
}

TimeEntry anyEntry(unsigned number, const Uuid& projectID)
{
    TimeEntry entry;
    entry.id = anyIdentifier(number);
    entry.projectID = projectID;
    entry.title = anyText();
    entry.hourlyRateCents = anyRate();
    entry.spans = anySpans(1);
    entry.isBillable = chance();
    entry.rateIsKnown = chance();
    entry.sourceID = anySourceID(number);
    if (chance()) {
        entry.recordedDuration = entry.duration() / *rc::gen::inRange(1, 5);
    }
    return entry;
}

ActiveSession anySession(unsigned number, const Uuid& projectID)
{
    ActiveSession session;
    session.id = anyIdentifier(number);
    session.projectID = projectID;
    session.title = anyText();
    session.hourlyRateCents = anyRate();
    session.spans = anySpans(0);
    session.checkpointAt = session.spans.empty() ? Date{Sample::noon} : session.spans.back().end;
    if (chance()) {
        session.runningSince = session.checkpointAt + anySeconds(1000);
        session.checkpointAt = *session.runningSince + anySeconds(1000);
    }
    session.isBillable = chance();
    session.rateIsKnown = chance();
    session.sourceID = anySourceID(number);
    return session;
}

SyncRecord anyLiveRecord(unsigned number)
{
    switch (*rc::gen::inRange(0, 4)) {
    case 0:
        return Sample::record(anyClient(number));
    case 1:
        return Sample::record(anyProject(number, anyIdentifier(0)));
    case 2:
        return Sample::record(Sample::synced(anyEntry(number, anyIdentifier(0))));
    default:
        return Sample::record(Sample::synced(anySession(number, anyIdentifier(0))));
    }
}

SyncRecord anyRecord(unsigned number)
{
    SyncRecord record = anyLiveRecord(number);
    record.revision = anyIdentifier(number).text();
    record.deviceID = anyName();
    record.isDeleted = chance();
    if (record.isDeleted) {
        record.payload.reset();
    }
    return record;
}

using Records = std::map<std::string, SyncRecord>;

Records anyRecords()
{
    Records records;
    const unsigned count = *rc::gen::inRange(0U, 3U);
    for (unsigned number = 0; number < count; ++number) {
        const SyncRecord record = anyRecord(number);
        records[record.recordID] = record;
    }
    return records;
}

LedgerSyncState anyState()
{
    LedgerSyncState state;
    state.deviceID = anyName();
    state.deviceName = anyName();
    state.accountID = anyName();
    state.environment =
        chance() ? CloudSyncEnvironment::production : CloudSyncEnvironment::development;
    state.enabled = chance();
    if (chance()) {
        state.changeToken = *rc::gen::arbitrary<std::string>();
    }
    state.systemFields[anyText()] = *rc::gen::arbitrary<std::string>();
    state.baseRevisions[anyText()] = anyText();
    state.outbox = anyRecords();
    state.staged = anyRecords();
    for (const auto& [key, record] : anyRecords()) {
        state.tombstones[key] = Sample::deletion(key);
        state.conflicts.append({key, record, Sample::deletion(key)});
    }
    if (chance()) {
        const SyncedSession session = Sample::synced(anySession(1, anyIdentifier(0)));
        state.remoteSessions[Sample::record(session).recordID] = session;
    }
    return state;
}

template <class Record>
const Record& anyOf(const RecordList<Record>& list)
{
    auto position = list.begin();
    std::advance(position, *rc::gen::inRange<std::size_t>(0, list.size()));
    return *position;
}

/// The numbers of records added by edits, beyond those of a generated ledger.
unsigned nextNumber(const LedgerData& ledger)
{
    return static_cast<unsigned>(
        100 + ledger.clients.size() + ledger.projects.size() + ledger.entries.size());
}

void editClients(LedgerData& ledger)
{
    if (ledger.clients.empty() || chance()) {
        ledger.clients.append(anyClient(nextNumber(ledger)));
        return;
    }
    const Uuid id = anyOf(ledger.clients).id;
    if (chance()) {
        ledger.clients.remove(id);
        return;
    }
    const std::string name = chance() ? anyName() : "";
    ledger.clients.modify(id, [&](Client& client) { client.name = name; });
}

void editEntries(LedgerData& ledger)
{
    if (!ledger.projects.empty() && (ledger.entries.empty() || chance())) {
        ledger.entries.append(anyEntry(nextNumber(ledger), anyOf(ledger.projects).id));
        return;
    }
    if (ledger.entries.empty()) {
        return;
    }
    const Uuid id = anyOf(ledger.entries).id;
    if (chance()) {
        ledger.entries.remove(id);
        return;
    }
    const std::vector<TimeSpan> spans = anySpans(0);
    ledger.entries.modify(id, [&](TimeEntry& entry) { entry.spans = spans; });
}

void editProjects(LedgerData& ledger)
{
    if (!ledger.projects.empty() && chance()) {
        ledger.projects.remove(anyOf(ledger.projects).id);
    } else if (!ledger.clients.empty()) {
        ledger.projects.append(anyProject(nextNumber(ledger), anyOf(ledger.clients).id));
    }
}

void editActive(LedgerData& ledger)
{
    if (!ledger.active) {
        ledger.active = anySession(nextNumber(ledger), anyIdentifier(0));
        return;
    }
    switch (*rc::gen::inRange(0, 3)) {
    case 0:
        ledger.active->checkpointAt = ledger.active->checkpointAt + anySeconds(60);
        return;
    case 1: {
        TimeEntry saved = anyEntry(0, ledger.active->projectID);
        saved.id = ledger.active->id;
        ledger.entries.append(saved);
        ledger.active.reset();
        return;
    }
    default:
        ledger.active.reset();
    }
}

template <class Record>
RecordList<Record> rebuilt(const RecordList<Record>& list)
{
    RecordList<Record> anew;
    for (const Record& record : list) {
        anew.append(record);
    }
    return anew;
}

template <class Value>
SharedMap<Value> rebuilt(const SharedMap<Value>& map)
{
    return typename SharedMap<Value>::Map(map.begin(), map.end());
}

LedgerSyncState rebuilt(const LedgerSyncState& state)
{
    LedgerSyncState anew = state;
    anew.systemFields = rebuilt(state.systemFields);
    anew.baseRevisions = rebuilt(state.baseRevisions);
    anew.outbox = rebuilt(state.outbox);
    anew.conflicts = rebuilt(state.conflicts);
    anew.remoteSessions = rebuilt(state.remoteSessions);
    anew.staged = rebuilt(state.staged);
    anew.tombstones = rebuilt(state.tombstones);
    return anew;
}

} // namespace

rc::Gen<LedgerData> arbitraryLedger()
{
    return rc::gen::exec([] {
        LedgerData ledger;
        unsigned number = *rc::gen::inRange(0U, 4U);
        while (number-- > 0) {
            ledger.clients.append(anyClient(number));
        }
        number = ledger.clients.empty() ? 0 : *rc::gen::inRange(0U, 4U);
        while (number-- > 0) {
            ledger.projects.append(anyProject(number, anyOf(ledger.clients).id));
        }
        number = ledger.projects.empty() ? 0 : *rc::gen::inRange(0U, 5U);
        while (number-- > 0) {
            ledger.entries.append(anyEntry(number, anyOf(ledger.projects).id));
        }
        if (!ledger.projects.empty() && chance()) {
            ledger.active = anySession(50, anyOf(ledger.projects).id);
        }
        if (chance()) {
            ledger.replication = anyState();
        }
        return ledger;
    });
}

void editArbitrarily(LedgerData& ledger)
{
    const int count = *rc::gen::inRange(0, 5);
    for (int edit = 0; edit < count; ++edit) {
        switch (*rc::gen::inRange(0, 4)) {
        case 0:
            editClients(ledger);
            break;
        case 1:
            editProjects(ledger);
            break;
        case 2:
            editEntries(ledger);
            break;
        default:
            editActive(ledger);
        }
    }
}

LedgerData rebuilt(const LedgerData& ledger)
{
    LedgerData anew = ledger;
    anew.clients = rebuilt(ledger.clients);
    anew.projects = rebuilt(ledger.projects);
    anew.entries = rebuilt(ledger.entries);
    if (ledger.replication) {
        anew.replication = rebuilt(*ledger.replication);
    }
    return anew;
}

void showValue(const LedgerData& ledger, std::ostream& stream)
{
    stream << encodeLedger(ledger);
}

} // namespace KestryCore
