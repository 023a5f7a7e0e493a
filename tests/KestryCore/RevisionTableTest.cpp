#include "RemoteChanges.h"

#include <optional>
#include <set>

#include "LedgerCoding.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

const std::string entryKey = recordID(SyncRecordKind::session, sessionID());

SyncedSession ofLaptop(SyncedSession session)
{
    session.ownerDeviceID = "device-b";
    session.ownerName = "laptop";
    return session;
}

// Everything that revisions decide, as one table

enum class Outcome {
    delivered,
    ignored,
    conflictWithPending,
    remoteSideReplaced,
    conflictWithTombstone,
    deletionApplied,
    applied
};

struct Knowledge {
    enum class Pending { none, same, other } pending;
    enum class Base { none, same, other } base;
    bool conflict;
    bool tombstone;
    bool isLive;
};

/// What must hold for one outcome; an empty cell is for any value.
struct Row {
    Knowledge::Pending pending;
    std::optional<bool> isBase;
    std::optional<bool> conflict;
    std::optional<bool> tombstone;
    std::optional<bool> isLive;
    Outcome outcome;
};

/// The first row that fits decides.
const std::vector<Row>& rows()
{
    using Pending = Knowledge::Pending;
    static const std::vector<Row> rows{
        {Pending::same, {}, {}, {}, {}, Outcome::delivered},
        {Pending::other, true, {}, {}, {}, Outcome::ignored},
        {Pending::other, false, {}, {}, {}, Outcome::conflictWithPending},
        {Pending::none, {}, true, {}, {}, Outcome::remoteSideReplaced},
        {Pending::none, true, false, {}, {}, Outcome::ignored},
        {Pending::none, false, false, true, true, Outcome::conflictWithTombstone},
        {Pending::none, false, false, {}, false, Outcome::deletionApplied},
        {Pending::none, false, false, false, true, Outcome::applied},
    };
    return rows;
}

bool fits(std::optional<bool> cell, bool value)
{
    return !cell || *cell == value;
}

const Row& rowFor(const Knowledge& known)
{
    const auto fitting = std::ranges::find_if(rows(), [&](const Row& row) {
        return row.pending == known.pending && fits(row.isBase, known.base == Knowledge::Base::same)
            && fits(row.conflict, known.conflict) && fits(row.tombstone, known.tombstone)
            && fits(row.isLive, known.isLive);
    });
    return rows().at(static_cast<std::size_t>(fitting - rows().begin()));
}

std::vector<Knowledge> everyKnowledge()
{
    using Pending = Knowledge::Pending;
    using Base = Knowledge::Base;
    std::vector<Knowledge> all;
    for (const Pending pending : {Pending::none, Pending::same, Pending::other}) {
        for (const Base base : {Base::none, Base::same, Base::other}) {
            for (const unsigned flags : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
                all.push_back(
                    {pending, base, (flags & 1U) != 0, (flags & 2U) != 0, (flags & 4U) != 0});
            }
        }
    }
    return all;
}

void PrintTo(const Knowledge& known, std::ostream* out)
{
    *out << "pending " << static_cast<int>(known.pending) << ", base "
         << static_cast<int>(known.base) << ", conflict " << known.conflict << ", tombstone "
         << known.tombstone << ", live " << known.isLive;
}

class RevisionTable : public SyncFixture, public testing::WithParamInterface<Knowledge> {
protected:
    RevisionTable()
    {
        remoteVersion =
            GetParam().isLive ? remote(ofLaptop(synced(changedEntry()))) : remoteDeletion(entryKey);
        pending = record(synced(entry()));
        pending.revision =
            GetParam().pending == Knowledge::Pending::same ? remoteVersion.revision : id(1).text();
        conflictLocal = record(synced(entry()));
        conflictLocal.revision = id(2).text();
        prepare();
        before = ledger;
    }

    void prepare()
    {
        if (GetParam().pending != Knowledge::Pending::none) {
            leavePending(pending);
        }
        if (GetParam().base != Knowledge::Base::none) {
            state().baseRevisions[entryKey] =
                GetParam().base == Knowledge::Base::same ? remoteVersion.revision : id(3).text();
        }
        if (GetParam().conflict) {
            openConflict(conflictLocal, remote(synced(entry()), 4));
        }
        openConflict(record(client()), remote(client(), 5));
        if (GetParam().tombstone) {
            state().tombstones[entryKey] = deletion(entryKey);
        }
    }

    [[nodiscard]] static TimeEntry changedEntry()
    {
        TimeEntry changed = entry();
        changed.title = "Changed elsewhere";
        return changed;
    }

    /// What the ledger must be afterwards.
    [[nodiscard]] LedgerData expected() const
    {
        LedgerData result = before;
        LedgerSyncState& known = result.replication.edit();
        switch (rowFor(GetParam()).outcome) {
        case Outcome::delivered:
            known.outbox.erase(entryKey);
            known.baseRevisions[entryKey] = remoteVersion.revision;
            break;
        case Outcome::ignored:
            break;
        case Outcome::conflictWithPending:
            putConflict(known, pending);
            break;
        case Outcome::remoteSideReplaced:
            putConflict(known, conflictLocal);
            break;
        case Outcome::conflictWithTombstone:
            putConflict(known, deletion(entryKey));
            break;
        case Outcome::deletionApplied:
            result.entries = {};
            known.tombstones[entryKey] = remoteVersion;
            known.baseRevisions[entryKey] = remoteVersion.revision;
            break;
        case Outcome::applied:
            result.entries = {changedEntry()};
            known.baseRevisions[entryKey] = remoteVersion.revision;
        }
        return result;
    }

    void putConflict(LedgerSyncState& known, const SyncRecord& local) const
    {
        known.conflicts = {known.conflicts.back()};
        known.conflicts.append({entryKey, local, remoteVersion});
    }

    SyncRecord remoteVersion;
    SyncRecord pending;
    SyncRecord conflictLocal;
    LedgerData before;
};

TEST_P(RevisionTable, DecidesOnAVersionByWhatIsKnownOfItsRecord)
{
    LedgerSyncState known = *ledger.replication;
    EXPECT_TRUE(applyRemoteRecord(remoteVersion, ledger, known, newUuid()));
    ledger.replication = known;
    EXPECT_EQ(ledger, expected());
    EXPECT_EQ(revisions, 0U) << "a revision was made up";
}

INSTANTIATE_TEST_SUITE_P(EveryRowAndColumn, RevisionTable, testing::ValuesIn(everyKnowledge()));

TEST(RevisionTableRows, EachDecidesOnSomething)
{
    std::set<const Row*> deciding;
    for (const Knowledge& known : everyKnowledge()) {
        deciding.insert(&rowFor(known));
    }
    EXPECT_EQ(deciding.size(), rows().size());
}

} // namespace
} // namespace KestryCore
