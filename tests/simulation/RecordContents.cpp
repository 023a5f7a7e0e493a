#include "RecordContents.h"

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

std::string withoutOwner(const std::string& recordID, std::string payload)
{
    if (recordID.starts_with("Session:")) {
        payload.resize(payload.rfind(",\"ownerDeviceID\""));
    }
    return payload;
}

} // namespace

std::map<std::string, std::string> contentsOf(const LedgerData& ledger)
{
    std::map<std::string, std::string> contents = recordPayloads(ledger, "any", "any");
    if (ledger.replication) {
        for (const auto& [key, session] : ledger.replication->remoteSessions) {
            contents.try_emplace(key, canonicalJson(session));
        }
    }
    for (auto& [key, content] : contents) {
        content = withoutOwner(key, std::move(content));
    }
    return contents;
}

std::string contentOf(const SyncRecord& record)
{
    return record.isDeleted ? std::string() : withoutOwner(record.recordID, *record.payload);
}

std::string shownRevision(const LedgerSyncState& state, const std::string& recordID)
{
    if (const auto pending = state.outbox.find(recordID); pending != state.outbox.end()) {
        return pending->second.revision;
    }
    const auto base = state.baseRevisions.find(recordID);
    return base != state.baseRevisions.end() ? base->second : std::string();
}

std::set<std::string> heldRevisions(const LedgerSyncState& state)
{
    std::set<std::string> revisions;
    for (const auto& [key, revision] : state.baseRevisions) {
        revisions.insert(shownRevision(state, key));
    }
    for (const auto& [key, record] : state.outbox) {
        revisions.insert(record.revision);
    }
    for (const auto& [key, record] : state.staged) {
        revisions.insert(record.revision);
    }
    for (const SyncConflict& conflict : state.conflicts) {
        revisions.insert(conflict.local.revision);
        revisions.insert(conflict.remote.revision);
    }
    return revisions;
}

std::set<std::string> noticedRevisions(const LedgerSyncState& state)
{
    std::set<std::string> noticed;
    for (const auto& [key, revision] : state.baseRevisions) {
        noticed.insert(revision);
    }
    for (const auto& [key, record] : state.staged) {
        noticed.insert(record.revision);
    }
    for (const SyncConflict& conflict : state.conflicts) {
        noticed.insert(conflict.remote.revision);
    }
    return noticed;
}

std::string shortName(const std::string& text)
{
    constexpr std::size_t shown = 4;
    const std::size_t colon = text.find(':');
    const std::string kind = colon == std::string::npos ? "" : text.substr(0, colon) + " ";
    return kind + (text.size() > shown ? text.substr(text.size() - shown) : text);
}

} // namespace KestryCore
