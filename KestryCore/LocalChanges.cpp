#include "LocalChanges.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

// Records that are equal have equal bytes and the other way round, and identifiers sort as their
// texts do. So only what differs has to be encoded, and nothing of a block that both ledgers hold
// needs to be looked at.

/// A session as it stands in one ledger: saved, or in progress.
struct SessionVersion {
    Uuid id;
    const TimeEntry* entry = nullptr;
    const ActiveSession* active = nullptr;
};

bool isSameVersion(const SessionVersion& left, const SessionVersion& right)
{
    if (left.active != nullptr && right.active != nullptr) {
        return *left.active == *right.active;
    }
    return left.entry != nullptr && right.entry != nullptr && *left.entry == *right.entry;
}

template <class Record>
bool isSameVersion(const Record* left, const Record* right)
{
    return *left == *right;
}

const Uuid& idOf(const SessionVersion& version)
{
    return version.id;
}

template <class Record>
const Uuid& idOf(const Record* record)
{
    return record->id;
}

/// The records of a list that may count as changed beside the other list: all of them where all
/// are to, else those that are not in a block which the other list holds too.
template <class Record>
std::vector<const Record*> ownRecords(
    const RecordList<Record>& list, const RecordList<Record>& other, ChangeTracking tracking)
{
    std::unordered_set<const void*> shared;
    for (std::size_t index = 0; !tracking.forceAll && index < other.blockCount(); ++index) {
        shared.insert(&other.block(index));
    }
    std::vector<const Record*> own;
    for (std::size_t index = 0; index < list.blockCount(); ++index) {
        if (!shared.contains(&list.block(index))) {
            for (const Record& record : list.block(index).records) {
                own.push_back(&record);
            }
        }
    }
    return own;
}

/// The same for all sessions of a ledger, the one in progress last.
std::vector<SessionVersion> ownSessions(
    const LedgerData& ledger, const LedgerData& other, ChangeTracking tracking)
{
    std::vector<SessionVersion> own;
    for (const TimeEntry* entry : ownRecords(ledger.entries, other.entries, tracking)) {
        own.push_back({entry->id, entry, nullptr});
    }
    if (ledger.active) {
        own.push_back({ledger.active->id, nullptr, &*ledger.active});
    }
    return own;
}

/// In ascending order. Of several versions of one thing the last counts.
template <class Version>
void sortByIdentifier(std::vector<Version>& versions)
{
    std::ranges::reverse(versions);
    std::ranges::stable_sort(versions, {}, [](const Version& version) { return idOf(version); });
    const auto isSame = [](const Version& left, const Version& right) {
        return idOf(left) == idOf(right);
    };
    versions.erase(std::unique(versions.begin(), versions.end(), isSame), versions.end());
}

/// Enters changes into the outbox of a ledger that has a state.
class ChangeEntry {
public:
    ChangeEntry(LedgerData& ledger, ChangeTracking tracking, const UuidSource& newUuid)
        : ledger_(ledger), tracking_(tracking), newUuid_(newUuid)
    {
    }

    /// Both versions of the things of one kind, where they may differ.
    template <class Version>
    void enter(SyncRecordKind kind, std::vector<Version> older, std::vector<Version> newer)
    {
        sortByIdentifier(older);
        sortByIdentifier(newer);
        auto before = older.begin();
        auto after = newer.begin();
        while (after != newer.end()) {
            const Uuid& id = idOf(*after);
            for (; before != older.end() && idOf(*before) < id; ++before) {
                enterDeletion(recordID(kind, idOf(*before)));
            }
            const bool wasThere = before != older.end() && idOf(*before) == id;
            if (tracking_.forceAll || !wasThere || !isSameVersion(*before, *after)) {
                enterVersion(recordID(kind, id), payloadOf(*after));
            }
            before = wasThere ? std::next(before) : before;
            ++after;
        }
        for (; before != older.end(); ++before) {
            enterDeletion(recordID(kind, idOf(*before)));
        }
    }

private:
    template <class Record>
    [[nodiscard]] std::string payloadOf(const Record* record) const
    {
        return canonicalJson(*record);
    }
    [[nodiscard]] std::string payloadOf(const SessionVersion& version) const
    {
        SyncedSession session;
        session.ownerDeviceID = ledger_.replication->deviceID;
        session.ownerName = ledger_.replication->deviceName;
        if (version.active != nullptr) {
            session.active = *version.active;
        } else {
            session.entry = *version.entry;
        }
        return canonicalJson(session);
    }

    void enterVersion(const std::string& key, std::string payload)
    {
        SyncRecord record{key, newUuid_().text(), ledger_.replication->deviceID, {}, false};
        record.payload = std::move(payload);
        ledger_.replication.edit().tombstones.erase(key);
        enterRecord(record);
    }

    void enterDeletion(const std::string& key)
    {
        if (!tracking_.trackDeletions) {
            return;
        }
        const SyncRecord record{key, newUuid_().text(), ledger_.replication->deviceID, {}, true};
        ledger_.replication.edit().tombstones[key] = record;
        enterRecord(record);
    }

    void enterRecord(const SyncRecord& record)
    {
        LedgerSyncState& state = ledger_.replication.edit();
        state.outbox[record.recordID] = record;
        state.conflicts.modify(
            record.recordID, [&](SyncConflict& conflict) { conflict.local = record; });
    }

    LedgerData& ledger_;
    ChangeTracking tracking_;
    const UuidSource& newUuid_;
};

} // namespace

void recordLedgerChange(
    const LedgerData& before, LedgerData& after, ChangeTracking tracking, const UuidSource& newUuid)
{
    if (!after.replication) {
        return;
    }
    ChangeEntry changes(after, tracking, newUuid);
    changes.enter(SyncRecordKind::client, ownRecords(before.clients, after.clients, tracking),
        ownRecords(after.clients, before.clients, tracking));
    changes.enter(SyncRecordKind::project, ownRecords(before.projects, after.projects, tracking),
        ownRecords(after.projects, before.projects, tracking));
    changes.enter(SyncRecordKind::session, ownSessions(before, after, tracking),
        ownSessions(after, before, tracking));
}

} // namespace KestryCore
