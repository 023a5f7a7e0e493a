// What replication costs: one edit of a ledger that is connected beside one of a ledger that is
// not, whose file is made as long, and one fetched batch of records beside one edit.

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "LedgerValidation.h"
#include "Measurement.h"
#include "PosixFileSystem.h"
#include "SyncStates.h"
#include "TimeStore.h"

namespace KestryCore {
namespace {

constexpr double editLimit = 1.15;
constexpr double batchLimit = 3.0;
constexpr std::size_t recordsInBatch = 100;
constexpr std::size_t mostTurns = 41;
constexpr double secondsForEach = 20.0;

/// A store on real files, and somebody who edits one saved session after another.
class Desk {
public:
    explicit Desk(const LedgerData& ledger)
    {
        std::ofstream(directory_.file("ledger.json")) << encodeLedger(ledger);
        StoreOptions options;
        options.directory = directory_.path();
        options.lock = std::make_shared<WriterLock>(files_, directory_.path());
        require(options.lock->acquire(), "lock");
        // A made-up ledger may reach beyond today.
        store_ = std::make_unique<TimeStore>(
            StorePlatform{files_, [] { return latestDate; }}, std::move(options));
        require(!*store_->errorMessage(), "open");
        for (const TimeEntry& entry : store_->data()->entries) {
            sessions_.push_back(entry.id);
        }
        edit(); // The first change makes the first backup.
    }

    double edit()
    {
        const TimeEntry entry = anySession();
        EntryChange change;
        change.title = "Edit " + std::to_string(++edits_);
        change.start = entry.startedAt();
        change.duration = entry.duration();
        return secondsOf([&] { store_->updateEntry(entry.id, change); });
    }

    double apply(const std::vector<SyncRecord>& records)
    {
        std::map<std::string, std::string> systemFields;
        for (const SyncRecord& record : records) {
            systemFields[record.recordID] = "{\"_rev\":\"2-" + record.revision + "\"}";
        }
        return secondsOf([&] {
            store_->applyRemoteSync(records, systemFields, "cursor " + std::to_string(++edits_));
        });
    }

    /// Saved sessions as another device has changed them.
    [[nodiscard]] std::vector<SyncRecord> changedSessions()
    {
        std::map<std::string, SyncRecord> records;
        while (records.size() < recordsInBatch) {
            TimeEntry entry = anySession();
            entry.title = "Changed elsewhere";
            const SyncRecord record = remoteVersion(entry);
            if (!store_->data()->replication->outbox.contains(record.recordID)) {
                records[record.recordID] = record;
            }
        }
        return values(records);
    }

    /// Sessions that another device has saved; of a project that is not here if it is named.
    [[nodiscard]] std::vector<SyncRecord> newSessions(const std::optional<Uuid>& project = {})
    {
        std::map<std::string, SyncRecord> records;
        while (records.size() < recordsInBatch) {
            TimeEntry entry = anySession();
            entry.id = Uuid::random();
            entry.sourceID.reset();
            entry.projectID = project.value_or(entry.projectID);
            const SyncRecord record = remoteVersion(entry);
            records[record.recordID] = record;
        }
        return values(records);
    }

    /// What a delivery sent here comes back with the next fetch.
    [[nodiscard]] std::vector<SyncRecord> echoes() const
    {
        return store_->pendingSyncRecords(recordsInBatch);
    }

    [[nodiscard]] std::size_t fileBytes() const
    {
        return std::filesystem::file_size(directory_.file("ledger.json"));
    }

private:
    [[nodiscard]] TimeEntry anySession()
    {
        return *store_->data()->entries.find(sessions_[random_() % sessions_.size()]);
    }

    [[nodiscard]] static std::vector<SyncRecord> values(
        const std::map<std::string, SyncRecord>& records)
    {
        std::vector<SyncRecord> result;
        for (const auto& [key, record] : records) {
            result.push_back(record);
        }
        return result;
    }

    ScratchDirectory directory_;
    PosixFileSystem files_;
    std::unique_ptr<TimeStore> store_;
    std::vector<Uuid> sessions_;
    std::mt19937_64 random_{1};
    int edits_ = 0;
};

void print(const std::string& what, const Turns& turns, double limit, Limits& limits)
{
    fmt::print("{:<52}{:>9.2f}{:>9.2f}{:>7.2f} {}\n", what, median(turns.ours) * 1e3,
        median(turns.theirs) * 1e3, turns.ratio(), limits.judge(turns, limit));
    std::fflush(stdout);
}

/// The ledger without replication, in a file of as many bytes: one client has a very long name.
LedgerData asLongWithoutReplication(const LedgerData& ledger)
{
    LedgerData plain = ledger;
    plain.replication = {};
    const std::size_t missing = ledgerBytes(ledger).size() - ledgerBytes(plain).size();
    plain.clients.modify(plain.clients.front().id,
        [&](Client& client) { client.name += std::string(missing, 'x'); });
    return plain;
}

/// One edit, connected and not.
void measureEdits(const std::string& what, const LedgerData& ledger, Limits& limits)
{
    Desk connected(ledger);
    Desk plain(asLongWithoutReplication(ledger));
    const std::string megabytes =
        fmt::format(" ({:.1f} MB)", static_cast<double>(connected.fileBytes()) / 1e6);
    print("edit, " + what + megabytes,
        takeTurns([&] { return connected.edit(); }, [&] { return plain.edit(); }, mostTurns,
            secondsForEach),
        editLimit, limits);
}

template <class Records>
void measureBatches(const std::string& what, Desk& desk, Records records, Limits& limits)
{
    const auto apply = [&] {
        const std::vector<SyncRecord> batch = records();
        return desk.apply(batch);
    };
    print("batch, " + what,
        takeTurns(
            apply, [&] { return desk.edit(); }, mostTurns, secondsForEach),
        batchLimit, limits);
}

void measure(std::size_t sessions, Limits& limits)
{
    LedgerData ledger = generateLedger({.sessions = sessions});
    ledger.replication = connectedState();
    measureEdits("nothing known of the cloud", ledger, limits);
    ledger.replication = allWaiting(ledger);
    measureEdits("all waiting", ledger, limits);
    {
        Desk desk(ledger);
        measureBatches(
            "echoes, all waiting", desk, [&] { return desk.echoes(); }, limits);
    }
    ledger.replication = inStep(ledger);
    measureEdits("in step", ledger, limits);
    Desk desk(ledger);
    measureBatches(
        "new sessions", desk, [&] { return desk.newSessions(); }, limits);
    measureBatches(
        "sessions changed", desk, [&] { return desk.changedSessions(); }, limits);

    const Uuid missing = Uuid::random();
    for (const TimeEntry& entry : ledger.entries) {
        TimeEntry waiting = entry;
        waiting.id = Uuid::random();
        waiting.sourceID.reset();
        waiting.projectID = missing;
        const SyncRecord record = remoteVersion(waiting);
        ledger.replication.edit().staged[record.recordID] = record;
    }
    Desk waiting(ledger);
    measureBatches(
        "new sessions beside as many waiting for a project", waiting,
        [&] { return waiting.newSessions(missing); }, limits);
}

} // namespace
} // namespace KestryCore

/// Takes the number of sessions, which is else the one that the limits are meant for.
int main(int argc, char** argv)
{
    using namespace KestryCore;
    const std::size_t sessions = argc > 1 ? std::stoul(argv[1]) : 100'000;
    fmt::print(
        "{} sessions; medians in milliseconds, in turns. An edit of a connected ledger beside "
        "one of\nas long a file that is not: limit {}. A batch of {} records beside an edit: "
        "limit {}.\n{:<52}{:>9}{:>9}{:>7}\n",
        sessions, editLimit, recordsInBatch, batchLimit, "", "ms", "beside", "ratio");
    Limits limits;
    measure(sessions, limits);
    return limits.exitStatus();
}
