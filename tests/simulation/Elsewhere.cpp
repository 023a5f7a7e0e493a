#include "Elsewhere.h"

#include "LedgerCoding.h"
#include "RecordContents.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

/// The identity of what a live record refers to; empty for a client.
std::string parentOf(const SyncRecord& record)
{
    if (record.recordID.starts_with("Project:")) {
        return recordID(SyncRecordKind::client, decodeRecord<Project>(*record.payload).clientID);
    }
    if (record.recordID.starts_with("Session:")) {
        const auto session = decodeRecord<SyncedSession>(*record.payload);
        return recordID(SyncRecordKind::project,
            session.active ? session.active->projectID : session.entry->projectID);
    }
    return {};
}

} // namespace

void Elsewhere::deleteSomething()
{
    if (!world_.cloud.removed().empty()) {
        return; // It would take children for orphans, and stops as all others do.
    }
    const std::string doomed = anyLive(world_.oneIn(2) ? "Client:" : "Project:");
    if (doomed.empty()) {
        return;
    }
    world_.history.note([&] { return "a newer program deletes " + shortName(doomed); });
    world_.tally.count(Event::deletionElsewhere);
    deleteRecord(doomed);
    deleteOrphans();
}

void Elsewhere::deleteOrphans()
{
    bool isDone = false;
    while (!isDone) {
        isDone = true;
        const auto records = world_.cloud.records();
        for (const auto& [key, stored] : records) {
            if (stored.record.isDeleted) {
                continue;
            }
            const std::string parent = parentOf(stored.record);
            if (!parent.empty() && !isLive(parent)) {
                deleteRecord(key);
                isDone = false;
            }
        }
    }
}

void Elsewhere::saveAnew(const SyncRecord& record)
{
    const CloudStore::Stored* const held = world_.cloud.find(record.recordID);
    if (held == nullptr) {
        world_.book.replace(record.revision); // The same content follows it.
    }
    deliver(held != nullptr ? held->record : record);
}

void Elsewhere::endLost(const std::string& recordID)
{
    if (world_.cloud.find(recordID) != nullptr) {
        return;
    }
    SyncRecord record;
    record.recordID = recordID;
    record.isDeleted = true;
    deliver(std::move(record));
}

void Elsewhere::deleteRecord(const std::string& recordID)
{
    SyncRecord record = world_.cloud.find(recordID)->record;
    record.payload.reset();
    record.isDeleted = true;
    deliver(std::move(record));
}

void Elsewhere::deliver(SyncRecord record)
{
    const CloudStore::Stored* const held = world_.cloud.find(record.recordID);
    std::optional<std::string> over;
    if (held != nullptr) {
        over = CloudStore::systemFields(*held);
        world_.book.replace(held->record.revision);
    }
    record.revision = world_.drawUuid().text();
    record.deviceID = "elsewhere";
    world_.book.enter(record);
    world_.save(CloudStore::asSent(record, over));
}

bool Elsewhere::isLive(const std::string& recordID) const
{
    const CloudStore::Stored* const found = world_.cloud.find(recordID);
    return found != nullptr && !found->record.isDeleted;
}

std::string Elsewhere::anyLive(const std::string& kind)
{
    std::vector<std::string> live;
    for (const auto& [key, stored] : world_.cloud.records()) {
        if (key.starts_with(kind) && !stored.record.isDeleted) {
            live.push_back(key);
        }
    }
    return live.empty() ? std::string() : live.at(world_.choices.below(live.size()));
}

} // namespace KestryCore
