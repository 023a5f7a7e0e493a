#include "StoreFixture.h"

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"

namespace KestryCore {

namespace {

constexpr double midnight = 816'393'600.0; // 2026-11-15T00:00:00Z

Client sampleClient(const Uuid& id, const std::string& name, Cents rate, bool projectsEnabled)
{
    return Client{id, name, rate, "4A90D9", true, std::nullopt, projectsEnabled};
}

} // namespace

const Uuid StoreWorld::acme = uuid(1);
const Uuid StoreWorld::website = uuid(2);
const Uuid StoreWorld::design = uuid(3);
const Uuid StoreWorld::solo = uuid(4);
const Uuid StoreWorld::meeting = uuid(10);
const Uuid StoreWorld::writing = uuid(20);

const std::string StoreWorld::primaryPath = "/home/ledgers/ledger.json";
const std::string StoreWorld::backupPath = "/home/ledgers/ledger.backup.json";
const std::string StoreWorld::handoffPath = "/home/ledgers/update-handoff.json";

Uuid StoreWorld::uuid(unsigned number)
{
    constexpr std::size_t digits = 3;
    Uuid result;
    for (std::size_t index = 0; index < digits; ++index) {
        result.bytes[result.bytes.size() - 1 - index] = static_cast<std::uint8_t>(number % 256);
        number /= 256;
    }
    return result;
}

Date StoreWorld::clockTime(int hour, int minute, double second)
{
    return Date{midnight + hour * 3600.0 + minute * 60.0 + second};
}

LedgerData StoreWorld::sampleLedger()
{
    TimeEntry entry;
    entry.id = meeting;
    entry.projectID = website;
    entry.title = "Meeting";
    entry.hourlyRateCents = 12'000;
    entry.spans = {{clockTime(8), clockTime(8, 30)}, {clockTime(9), clockTime(9, 30)}};
    LedgerData ledger;
    ledger.clients = {
        sampleClient(acme, "Acme", 12'000, true), sampleClient(solo, "Solo", 8'000, false)};
    ledger.projects = {Project{website, acme, "Website", 12'000, true, false},
        Project{design, acme, "Design", 9'000, true, false}};
    ledger.entries = {entry};
    return ledger;
}

LedgerData StoreWorld::runningLedger()
{
    ActiveSession session;
    session.id = writing;
    session.projectID = website;
    session.title = "Writing";
    session.hourlyRateCents = 12'000;
    session.runningSince = clockTime(11);
    session.checkpointAt = clockTime(11, 30);
    LedgerData ledger = sampleLedger();
    ledger.active = session;
    return ledger;
}

LedgerData StoreWorld::pausedLedger()
{
    LedgerData ledger = runningLedger();
    ledger.active->spans = {{clockTime(10), clockTime(10, 30)}};
    ledger.active->runningSince.reset();
    ledger.active->checkpointAt = clockTime(10, 30);
    return ledger;
}

LedgerData StoreWorld::connected(LedgerData ledger)
{
    LedgerSyncState state;
    state.deviceID = uuid(900).text();
    state.deviceName = "Desk";
    state.accountID = "account";
    ledger.replication = state;
    return ledger;
}

StoreWorld::StoreWorld()
{
    options.directory = parentPath(primaryPath);
}

std::string StoreWorld::fileOf(LedgerData ledger) const
{
    constexpr unsigned firstUuid = 100'000;
    for (unsigned number = 0; number < sessionsBesides; ++number) {
        TimeEntry session = sampleLedger().entries.front();
        session.id = uuid(firstUuid + number);
        session.title = "Session " + std::to_string(number);
        ledger.entries.append(session);
    }
    return encodeLedger(ledger);
}

void StoreWorld::putPrimary(const LedgerData& ledger)
{
    files.putDirectory(*options.directory);
    files.put(primaryPath, fileOf(ledger));
}

void StoreWorld::putBackup(const LedgerData& ledger)
{
    files.putDirectory(*options.directory);
    files.put(backupPath, fileOf(ledger));
}

std::string StoreWorld::corruptPrimary()
{
    files.putDirectory(*options.directory);
    files.put(primaryPath, "no ledger");
    return primary();
}

std::string StoreWorld::corruptBackup()
{
    files.putDirectory(*options.directory);
    files.put(backupPath, "no backup");
    return backup();
}

std::string StoreWorld::truncatePrimary()
{
    files.put(primaryPath, primary().substr(0, primary().size() / 2));
    return primary();
}

TimeStore& StoreWorld::open()
{
    StorePlatform platform{files, [this] { return now; }, [this] { return uuid(++lastUuid_); }};
    if (steadySeconds) {
        platform.steady = [this] { return *steadySeconds; };
    }
    store_.reset();
    if (options.lock) {
        (void)options.lock->acquire();
    }
    return store_.emplace(platform, options);
}

TimeStore& StoreWorld::open(const LedgerData& primary)
{
    putPrimary(primary);
    return open();
}

Uuid StoreWorld::addClient(const std::string& name, Cents rate)
{
    return store().addClient(NewClient{name, rate, "112233", true, std::nullopt, true});
}

const TimeEntry& StoreWorld::entry(const Uuid& id) const
{
    const TimeEntry* found = ledger().entries.find(id);
    if (found == nullptr) {
        throw std::out_of_range("The ledger has no such entry.");
    }
    return *found;
}

LedgerData StoreWorld::readPrimary() const
{
    LedgerData ledger = decodeLedger(primary());
    validate(ledger);
    return ledger;
}

LedgerData StoreWorld::readBackup() const
{
    LedgerData ledger = decodeLedger(backup());
    validate(ledger);
    return ledger;
}

std::map<std::string, std::string> StoreWorld::corruptCopies() const
{
    std::map<std::string, std::string> copies = files.contents();
    std::erase_if(copies, [](const auto& file) {
        return file.first.find("/ledger.corrupt-") == std::string::npos
            || !file.first.ends_with(".json");
    });
    return copies;
}

void StoreWorld::expectRefused(
    const std::function<void()>& action, const std::string& message, const Location& location)
{
    expectUnchanged(action, message, message, location);
}

void StoreWorld::expectRefusedQuietly(
    const std::function<void()>& action, const std::string& message, const Location& location)
{
    expectUnchanged(action, message, "An earlier failure.", location);
}

void StoreWorld::expectUnchanged(const std::function<void()>& action, const std::string& message,
    const std::string& messageAfter, const Location& location)
{
    const testing::ScopedTrace trace(
        location.file_name(), static_cast<int>(location.line()), "refused here");
    store().reportFailure("An earlier failure.");
    const LedgerData ledgerBefore = ledger();
    const auto filesBefore = files.contents();
    int publications = 0;
    const Subscription subscription =
        store().data().observe([&](const LedgerData&) { ++publications; });
    try {
        action();
        ADD_FAILURE() << "was not refused";
    } catch (const LedgerError& refusal) {
        EXPECT_EQ(refusal.what(), message);
    }
    EXPECT_EQ(errorMessage(), messageAfter);
    EXPECT_TRUE(ledger() == ledgerBefore) << "the ledger changed";
    EXPECT_TRUE(files.contents() == filesBefore) << "the files changed";
    EXPECT_EQ(publications, 0);
}

} // namespace KestryCore
