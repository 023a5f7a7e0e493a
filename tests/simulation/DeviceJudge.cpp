#include "DeviceJudge.h"

#include <algorithm>

#include "CloudArchive.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "RecordContents.h"
#include "RemoteChanges.h"
#include "RestoreCheck.h"
#include "SyncCloudRecord.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

const SyncConflict* conflictAbout(const LedgerSyncState& state, const std::string& recordID)
{
    return state.conflicts.find(recordID);
}

bool isSound(const std::string& bytes)
{
    try {
        validate(decodeLedger(bytes));
        return true;
    } catch (const LedgerError&) {
        return false;
    }
}

/// The versions of this device that only it has, as far as it knows.
std::set<std::string> undelivered(const LedgerData& ledger)
{
    std::set<std::string> revisions;
    if (ledger.replication) {
        for (const auto& [key, record] : ledger.replication->outbox) {
            revisions.insert(record.revision);
        }
        for (const SyncConflict& conflict : ledger.replication->conflicts) {
            revisions.insert(conflict.local.revision);
        }
    }
    return revisions;
}

} // namespace

DeviceJudge::DeviceJudge(
    SimulatedDevice& device, const CloudStore& cloud, VersionBook& book, Tally& tally)
    : device_(device), cloud_(cloud), book_(book), tally_(tally)
{
}

void DeviceJudge::sawSaved()
{
    if (device_.store().blocked()) {
        fail("a change was saved although saving is off");
    }
    if (encodeLedger(device_.ledger()) != device_.primary()) {
        fail("what is shown is not what is on the disk");
    }
    observe(device_.ledger(), Loss::none);
    checkDisk();
    mayBeUnsynced_ = device_.hadFailingCall();
    saved_.insert(soundPrimary_);
}

void DeviceJudge::sawPublished(const LedgerData& ledger, const std::optional<std::string>& primary)
{
    if (encodeLedger(ledger) == primary) {
        observe(ledger, Loss::none);
        checkDisk();
        mayBeUnsynced_ = device_.hadFailingCall();
        saved_.insert(*primary);
    } else {
        checkAcknowledgement(ledger);
        observe(ledger, Loss::none);
    }
}

void DeviceJudge::checkAcknowledgement(const LedgerData& now) const
{
    if (!now.replication || !seen_.replication || contentsOf(now) != contentsOf(seen_)) {
        fail("what is shown is not what is on the disk");
    }
    LedgerSyncState delivered = *now.replication;
    const LedgerSyncState& before = *seen_.replication;
    for (const auto& [key, record] : before.outbox) {
        const auto base = delivered.baseRevisions.find(key);
        const bool isDelivered =
            base != delivered.baseRevisions.end() && base->second == record.revision;
        if (!delivered.outbox.contains(key) && !isDelivered) {
            fail("what waits for delivery of " + key + " is not known any more");
        }
    }
    delivered.outbox = before.outbox;
    delivered.baseRevisions = before.baseRevisions;
    delivered.systemFields = before.systemFields;
    if (!(delivered == before)) {
        fail("something beside deliveries is published and not saved");
    }
}

void DeviceJudge::sawFetched() const
{
    LedgerData again = device_.ledger();
    LedgerSyncState state = *again.replication;
    drainStaged(again, state, [] { return Uuid{}; });
    if (state.staged.size() != device_.state()->staged.size()) {
        fail("something is left waiting that could be applied");
    }
}

void DeviceJudge::sawRefused(const std::optional<std::string>& primaryBefore)
{
    if (!(device_.ledger() == seen_) || device_.primary() != primaryBefore) {
        fail("a refused change has left something");
    }
}

void DeviceJudge::sawEnd()
{
    mayBeUnsynced_ = mayBeUnsynced_ || device_.hadFailingCall();
    const auto primary = device_.primary();
    if (isDamaged_ && !isSound(primary.value())) {
        return; // The backup is what counts now, and opening tells what it holds.
    }
    isDamaged_ = false; // A restore came to its end.
    const bool isUndone =
        mayBeUnsynced_ && primary != soundPrimary_ && saved_.contains(primary.value_or(""));
    checkDisk();
    if (!primary) {
        return;
    }
    if (isUndone) {
        startFrom(decodeLedger(*primary));
    } else {
        observe(decodeLedger(*primary), Loss::none);
    }
}

void DeviceJudge::sawOpened()
{
    isOpenedOnBackup_ = device_.store().blocked();
    if (device_.store().blocked()) {
        if (!isDamaged_ || !*device_.store().recoveryAvailable()) {
            fail("the ledger cannot be opened: " + device_.store().errorMessage()->value_or(""));
        }
        return startFrom(device_.ledger());
    }
    if (isDamaged_) {
        fail("a damaged ledger was opened");
    }
    observe(device_.ledger(), Loss::none);
    checkDisk();
}

void DeviceJudge::sawRestored(const LedgerData& before)
{
    isDamaged_ = false;
    isOpenedOnBackup_ = false;
    decided_.clear(); // The backup may be from before the decision.
    if (!before.replication) {
        return sawSaved(); // Going back means just that as long as there is no other device.
    }
    try {
        requireNothingDropped(before, decodeLedger(device_.backup().value()), device_.ledger());
    } catch (const Violation& violation) {
        fail(violation.what());
    }
    sawSaved();
}

void DeviceJudge::sawUploadAgain()
{
    decided_.clear();
    const LedgerSyncState& state = *device_.state();
    for (const auto& [key, session] : state.remoteSessions) {
        book_.replace(shownRevision(state, key));
    }
}

void DeviceJudge::sawPutBack()
{
    isDamaged_ = false;
    mayBeUnsynced_ = false;
    startFrom(decodeLedger(device_.primary().value()));
    checkDisk();
}

void DeviceJudge::startFrom(LedgerData ledger)
{
    // A version that the cloud has let go, because it waited here, went with what was here; an old
    // copy may well hold it still, as delivered. So did one that a cloud has lost which was
    // restored, though another device may have heard of it.
    const std::set<std::string> waiting = undelivered(ledger);
    const bool wasConnected = static_cast<bool>(seen_.replication);
    for (const std::string& revision :
        wasConnected ? heldRevisions(*seen_.replication) : undelivered(seen_)) {
        if (!waiting.contains(revision) && !isInCloud(revision)) {
            book_.replace(revision);
        }
    }
    seen_ = std::move(ledger);
    noticed_.clear();
    decided_.clear();
    gone_.startFrom(seen_);
    if (seen_.replication) {
        enterNewVersions(*seen_.replication);
        noticed_ = noticedRevisions(*seen_.replication);
    }
    keep(seen_, Loss::allowed);
}

bool DeviceJudge::isInCloud(const std::string& revision) const
{
    const auto isIt = [&](const auto& each) { return each.second.record.revision == revision; };
    return std::ranges::any_of(cloud_.records(), isIt)
        || std::ranges::any_of(cloud_.overruled(), isIt);
}

void DeviceJudge::observe(const LedgerData& now, Loss loss)
{
    if (now.replication) {
        enterNewVersions(*now.replication);
        if (seen_.replication) {
            noteChoices(now);
            if (const auto back = gone_.observe(seen_, now)) {
                fail(*back + " was gone, and is back without anybody's decision");
            }
        }
    }
    clock_.saw(now);
    keep(now, loss);
    seen_ = now;
    if (now.replication) {
        noticed_.merge(noticedRevisions(*now.replication));
        if (!isOpenedOnBackup_) {
            checkShown(now); // A session recovered in memory has no version before the restore.
        }
        checkConflicts(*now.replication);
        checkCursor(*now.replication);
    }
}

void DeviceJudge::enterNewVersions(const LedgerSyncState& now)
{
    for (const auto& [key, record] : now.outbox) {
        if (const VersionBook::Version* const known = book_.find(record.revision)) {
            if (!known->says(contentOf(record))) {
                if (!unwritten_.contains(record.revision)) {
                    fail("the version " + record.revision + " of " + key + " has changed");
                }
                book_.enterUnder(record);
            }
            continue;
        }
        if (seen_.replication) {
            const LedgerSyncState& before = *seen_.replication;
            book_.replace(shownRevision(before, key));
            const SyncConflict* const conflict = conflictAbout(before, key);
            if (conflict != nullptr && conflictAbout(now, key) == nullptr) {
                // Kept the local version, with the cloud's beside it.
                book_.replace(conflict->local.revision);
                book_.replace(conflict->remote.revision);
            }
        }
        book_.enter(record);
    }
}

void DeviceJudge::noteChoices(const LedgerData& ledger)
{
    const LedgerSyncState& before = *seen_.replication;
    const LedgerSyncState& now = *ledger.replication;
    for (const auto& [key, record] : now.staged) {
        if (!before.staged.contains(key)) {
            tally_.count(Event::staged);
        }
    }
    for (const SyncConflict& conflict : now.conflicts) {
        if (conflictAbout(before, conflict.id) == nullptr) {
            tally_.count(Event::conflict);
        }
        if (decided_.contains(conflict.local.revision)) {
            fail(conflict.id + " was decided on in version " + shortName(conflict.local.revision)
                + ", and is asked about again");
        }
    }
    for (const SyncConflict& conflict : before.conflicts) {
        const bool isKept = now.outbox.contains(conflict.id);
        if (conflictAbout(now, conflict.id) != nullptr) {
            continue;
        }
        decided_.insert(conflict.local.revision);
        if (isKept) {
            continue;
        }
        const std::string shown = shownRevision(before, conflict.id);
        for (const std::string& given : {shown, conflict.local.revision}) {
            if (given != conflict.remote.revision) {
                book_.replace(given);
            }
        }
        unwritten_.insert(conflict.remote.revision);
        if (ledger.active && recordID(SyncRecordKind::session, ledger.active->id) == conflict.id) {
            fail(conflict.id + " was given up, and is still in progress");
        }
    }
}

void DeviceJudge::keep(const LedgerData& now, Loss loss)
{
    std::set<std::string> kept;
    if (now.replication) {
        kept = heldRevisions(*now.replication);
    }
    for (const std::string& revision : kept) {
        book_.hold(revision);
    }
    for (const std::string& revision : kept_) {
        book_.release(revision);
    }
    for (const std::string& revision : kept_) {
        if (!book_.isLost(revision)) {
            continue;
        }
        if (loss == Loss::none) {
            fail("the version " + shortName(revision) + " of " + book_.find(revision)->recordID
                + " is nowhere any more");
        }
        book_.replace(revision);
    }
    kept_ = std::move(kept);
}

void DeviceJudge::checkDisk()
{
    if (const auto primary = device_.primary(); primary && *primary != soundPrimary_) {
        checkSound("ledger", *primary);
        soundPrimary_ = *primary;
    }
    if (const auto backup = device_.backup(); backup && *backup != soundBackup_) {
        checkSound("backup", *backup);
        soundBackup_ = *backup;
    }
}

void DeviceJudge::checkSound(const std::string& file, const std::string& bytes)
{
    if (bytes == soundPrimary_ || bytes == soundBackup_) {
        return;
    }
    try {
        validate(decodeLedger(bytes));
    } catch (const LedgerError& error) {
        fail("the " + file + " on the disk is not sound: " + error.what());
    }
}

void DeviceJudge::checkShown(const LedgerData& now) const
{
    const LedgerSyncState& state = *now.replication;
    std::map<std::string, std::string> contents = contentsOf(now);
    for (const auto& [key, deletion] : state.tombstones) {
        if (contents.contains(key)) {
            fail(key + " was deleted, and is back without anybody's decision");
        }
    }
    for (const auto& [key, session] : state.remoteSessions) {
        if (now.projects.find(session.active->projectID) == nullptr) {
            fail(key + " runs elsewhere in a project that is not here");
        }
    }
    for (const auto& [key, revision] : state.baseRevisions) {
        contents.try_emplace(key);
    }
    for (const auto& [key, record] : state.outbox) {
        contents.try_emplace(key);
    }
    for (const auto& [key, content] : contents) {
        const std::string revision = shownRevision(state, key);
        const VersionBook::Version* const version = book_.find(revision);
        // Until its own device has uploaded it again, what runs elsewhere is of no known version.
        const bool isOfBefore = revision.empty() && state.remoteSessions.contains(key);
        const bool isUnwritten = !state.outbox.contains(key) && unwritten_.contains(revision);
        if (!isOfBefore && !isUnwritten && (version == nullptr || !version->says(content))) {
            fail(key + " is not shown in its version " + shortName(revision) + " but as "
                + (content.empty() ? "deleted" : content));
        }
    }
}

void DeviceJudge::checkConflicts(const LedgerSyncState& state) const
{
    for (const SyncConflict& conflict : state.conflicts) {
        const auto pending = state.outbox.find(conflict.id);
        if (pending != state.outbox.end() && pending->second != conflict.local) {
            fail("the conflict about " + conflict.id + " does not show the newest version");
        }
    }
}

void DeviceJudge::checkCursor(const LedgerSyncState& state) const
{
    const auto cursor = cursorFromArchive(workspaceZone(), state.changeToken.value_or(""));
    if (cursor && !cloud_.isOfThisZone(cursor->bytes)) {
        return; // It says nothing about the store as it is now.
    }
    const std::uint64_t reached = cursor ? CloudStore::position(cursor->bytes) : 0;
    for (const auto& [place, removed] : cloud_.removed()) {
        if (place <= reached) {
            fail("the cursor has passed the removal of " + removed.record.recordID);
        }
    }
    for (const auto& [key, stored] : cloud_.records()) {
        if (stored.change <= reached && !noticed_.contains(stored.record.revision)) {
            fail("the cursor has passed " + key + " in its version "
                + shortName(stored.record.revision));
        }
    }
}

void DeviceJudge::fail(const std::string& violation) const
{
    throw Violation(device_.name() + ": " + violation);
}

} // namespace KestryCore
