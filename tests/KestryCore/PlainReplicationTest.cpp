// Replication as it is done beside the plain telling of its rules: over random edits, fetches and
// decisions both give the same ledgers, bytes, revisions and refusals.

#include "PlainReplication.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

#include <array>

#include "ArbitraryLedger.h"
#include "LedgerCoding.h"
#include "LedgerValidation.h"
#include "OutboxDelivery.h"
#include "Refusal.h"
#include "RemoteChanges.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

/// So few of each that they often meet.
constexpr unsigned thingsOfAKind = 4;

unsigned below(unsigned count)
{
    return *rc::gen::inRange(0U, count);
}

bool chance()
{
    return below(2) == 0;
}

unsigned anyNumber()
{
    return 1 + below(thingsOfAKind);
}

std::string anyTitle()
{
    constexpr std::array<const char*, 3> titles{"", "Index", "Cover"};
    return titles[below(titles.size())];
}

TimeEntry anyEntry()
{
    TimeEntry result = entry(anyNumber());
    result.title = anyTitle();
    result.projectID = projectID(anyNumber());
    return result;
}

ActiveSession anySession()
{
    ActiveSession result = chance() ? runningSession() : pausedSession();
    result.id = sessionID(anyNumber());
    result.title = anyTitle();
    result.projectID = projectID(anyNumber());
    return result;
}

Client anyClient()
{
    Client result = client(anyNumber());
    result.name += anyTitle();
    return result;
}

Project anyProject()
{
    Project result = project(anyNumber());
    result.clientID = clientID(anyNumber());
    result.name += anyTitle();
    return result;
}

SyncRecord anyRecord()
{
    const auto choose = [] {
        switch (below(4)) {
        case 0:
            return record(anyClient());
        case 1:
            return record(anyProject());
        case 2:
            return record(synced(anyEntry()));
        default:
            return record(synced(anySession()));
        }
    };
    SyncRecord result = choose();
    if (below(3) == 0) {
        result = deletion(result.recordID);
    }
    result.revision = id(0x100 + below(5)).text();
    result.deviceID = chance() ? "device-a" : "device-b";
    if (below(60) == 0) {
        result.payload = "{";
    }
    return result;
}

/// A change that somebody makes here; it may leave a ledger that is not sound.
std::function<void(LedgerData&)> anyEdit()
{
    const Uuid session = sessionID(anyNumber());
    switch (below(7)) {
    case 0:
        return [client = anyClient()](LedgerData& ledger) {
            ledger.clients.remove(client.id);
            ledger.clients.append(client);
        };
    case 1:
        return [project = anyProject()](LedgerData& ledger) {
            ledger.projects.remove(project.id);
            ledger.projects.append(project);
        };
    case 2:
        return [entry = anyEntry()](LedgerData& ledger) {
            ledger.entries.remove(entry.id);
            ledger.entries.append(entry);
        };
    case 3:
        return [session](LedgerData& ledger) { ledger.entries.remove(session); };
    case 4:
        return [active = anySession()](LedgerData& ledger) { ledger.active = active; };
    case 5:
        return [](LedgerData& ledger) { ledger.active.reset(); };
    default:
        return [session, title = anyTitle()](LedgerData& ledger) {
            ledger.entries.modify(session, [&](TimeEntry& entry) { entry.title = title; });
        };
    }
}

/// One ledger in both tellings.
class BothTellings {
public:
    BothTellings()
    {
        LedgerData start = chance() ? connectedLedger() : LedgerData{};
        start.replication = Sample::state();
        if (chance()) {
            // More than one block of everything.
            for (unsigned number = 100; number < 500; ++number) {
                start.clients.append(client(number));
                start.replication.edit().baseRevisions[record(client(number)).recordID] =
                    id(number).text();
            }
        }
        quick_ = start;
        plain_ = rebuilt(start);
    }

    void act()
    {
        switch (below(6)) {
        case 0:
        case 1:
            return edit();
        case 2:
        case 3:
            return fetch();
        case 4:
            return resolve();
        default:
            return acknowledge();
        }
    }

private:
    void edit()
    {
        const auto change = anyEdit();
        const ChangeTracking tracking{below(8) != 0, below(8) == 0};
        perform(
            [&](LedgerData& ledger, const UuidSource& newUuid) {
                const LedgerData before = ledger;
                change(ledger);
                recordLedgerChange(before, ledger, tracking, newUuid);
            },
            [&](LedgerData& ledger, const UuidSource& newUuid) {
                const LedgerData before = ledger;
                change(ledger);
                Plain::recordLedgerChange(before, ledger, tracking, newUuid);
            });
    }

    void fetch()
    {
        std::vector<SyncRecord> records(below(6));
        std::map<std::string, std::string> systemFields;
        for (SyncRecord& record : records) {
            record = below(4) == 0 ? anyKnownRecord() : anyRecord();
            systemFields[record.recordID] = anyTitle();
        }
        const auto token = chance() ? std::optional(anyTitle()) : std::nullopt;
        perform(
            [&](LedgerData& ledger, const UuidSource& newUuid) {
                applyRemoteSync(ledger, records, systemFields, token, newUuid);
            },
            [&](LedgerData& ledger, const UuidSource& newUuid) {
                Plain::applyRemoteSync(ledger, records, systemFields, token, newUuid);
            });
    }

    void resolve()
    {
        const auto& conflicts = plain_.replication->conflicts;
        const std::string id = conflicts.empty() || below(8) == 0
            ? "Client:none"
            : std::next(conflicts.begin(), below(static_cast<unsigned>(conflicts.size())))->id;
        const auto choice = chance() ? ConflictChoice::keepLocal : ConflictChoice::useCloud;
        perform(
            [&](LedgerData& ledger, const UuidSource& newUuid) {
                resolveSyncConflict(ledger, id, choice, newUuid);
            },
            [&](LedgerData& ledger, const UuidSource& newUuid) {
                Plain::resolveSyncConflict(ledger, id, choice, newUuid);
            });
    }

    void acknowledge()
    {
        const SyncRecord record = anyKnownRecord();
        const auto note = [&](LedgerData& ledger, const UuidSource&) {
            acknowledgeDelivery(ledger, record, "etag");
        };
        perform(note, note);
    }

    /// One that waits here, if any does.
    [[nodiscard]] SyncRecord anyKnownRecord() const
    {
        const auto& outbox = plain_.replication->outbox;
        return outbox.empty()
            ? anyRecord()
            : std::next(outbox.begin(), below(static_cast<unsigned>(outbox.size())))->second;
    }

    /// Does the same in both tellings, and validates as a store does.
    template <class Quick, class Plain>
    void perform(Quick quick, Plain plain)
    {
        LedgerData quickly = quick_;
        LedgerData plainly = plain_;
        const unsigned firstUuid = uuids_;
        const UuidSource newUuid = [this] { return id(++uuids_); };
        const std::string quickRefusal = refusalOf([&] {
            quick(quickly, newUuid);
            validateChange(quick_, quickly);
        });
        const unsigned uuidsAfter = std::exchange(uuids_, firstUuid);
        const std::string plainRefusal = refusalOf([&] {
            plain(plainly, newUuid);
            validate(rebuilt(plainly));
        });
        RC_ASSERT(quickRefusal == plainRefusal);
        if (quickRefusal != accepted) {
            uuids_ = std::max(uuids_, uuidsAfter);
            return;
        }
        RC_ASSERT(uuidsAfter == uuids_);
        RC_ASSERT(quickly == plainly);
        RC_ASSERT(encodeLedger(quickly) == encodeLedger(rebuilt(plainly)));
        quick_ = quickly;
        plain_ = rebuilt(plainly);
    }

    LedgerData quick_;
    LedgerData plain_;
    unsigned uuids_ = 0x1000;
};

RC_GTEST_PROP(PlainReplication, TellsTheSameOfAnyEditsFetchesAndDecisions, ())
{
    BothTellings both;
    const unsigned acts = 5 + below(40);
    for (unsigned act = 0; act < acts; ++act) {
        both.act();
    }
}

} // namespace
} // namespace KestryCore
