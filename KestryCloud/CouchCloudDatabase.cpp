#include "CouchCloudDatabase.h"

#include <utility>

#include "CouchDelivery.h"

namespace Kestry {

using namespace KestryCore;

CouchCloudDatabase::CouchCloudDatabase(
    CouchServer& server, Scheduler& scheduler, UuidSource newUuid)
    : server_(server), scheduler_(scheduler), newUuid_(std::move(newUuid))
{
}

std::optional<CouchZoneLook> CouchCloudDatabase::seenIn(const std::optional<Look>& look)
{
    return look ? std::optional(look->seen) : std::nullopt;
}

CouchZone CouchCloudDatabase::zoneNamed(CloudZoneID zone)
{
    return CouchZone(server_, scheduler_, newUuid_, doubt_, std::move(zone));
}

std::optional<CouchCursor> CouchCloudDatabase::knownOf(const CloudZoneID& zone) const
{
    return known_ && known_->zone == zone ? std::optional(known_->cursor) : std::nullopt;
}

/// Where a new reader of a zone begins.
CouchCursor CouchCloudDatabase::begun(const CouchZoneState& state) const
{
    CouchCursor cursor;
    cursor.incarnation = state.incarnations.front();
    cursor.device = newUuid_().text();
    return cursor;
}

Task<void> CouchCloudDatabase::fetchZone(CloudZoneID zone)
{
    look_.reset();
    std::unique_ptr<CouchEarlyFeed> feed = askEarly(zone);
    CouchZone wanted = zoneNamed(zone);
    Task<CouchZoneLook> finding = wanted.find(knownOf(zone));
    CouchZoneLook seen = co_await finding;
    keepLook(zone, std::move(seen), std::move(feed));
}

/// Asks for what has changed, before it is known that the zone is the same still. Nothing is done
/// with the answer until that is known.
std::unique_ptr<CouchEarlyFeed> CouchCloudDatabase::askEarly(const CloudZoneID& zone)
{
    const std::optional<CouchCursor> known = knownOf(zone);
    if (!known || known->isFirstReading || known->since.empty()) {
        return nullptr;
    }
    return std::make_unique<CouchEarlyFeed>(
        server_, scheduler_, known->since, CouchPull::rowsWithoutBodies);
}

void CouchCloudDatabase::keepLook(
    const CloudZoneID& zone, CouchZoneLook seen, std::unique_ptr<CouchEarlyFeed> feed)
{
    look_.emplace();
    look_->zone = zone;
    look_->seen = std::move(seen);
    look_->at = scheduler_.now();
    look_->feed = std::move(feed);
}

std::optional<CouchCloudDatabase::Look> CouchCloudDatabase::takeLook(const CloudZoneID& zone)
{
    std::optional<Look> look = std::exchange(look_, std::nullopt);
    const bool isFresh =
        look && look->zone == zone && scheduler_.now() - look->at < server_.limits().lookSeconds;
    if (!isFresh) {
        look.reset();
    }
    return look;
}

Task<void> CouchCloudDatabase::createZone(CloudZoneID zone)
{
    CouchZone wanted = zoneNamed(std::move(zone));
    Task<void> creating = wanted.create();
    co_await creating;
    known_.reset(); // Whatever was known was of a zone that had gone.
    look_.reset();
}

Task<CloudChanges> CouchCloudDatabase::changes(CloudZoneID zone, std::optional<CloudCursor> since)
{
    std::optional<Look> look = takeLook(zone);
    auto known = since ? CouchCursor::decode(*since) : std::nullopt;
    if (since && !known) {
        throw CloudError("The record store cannot go on from where it was read last.",
            CloudErrorCode::changeTokenExpired);
    }
    CouchZone wanted = zoneNamed(zone);
    Task<CouchZoneState> identifying = wanted.identify(known, seenIn(look));
    CouchZoneState state = co_await identifying;
    // What was asked together with a look that did not do may be of a machine that lags behind.
    const bool mayUseFeed = look && look->feed && state.isOfGivenLook;
    CouchCursor cursor = known ? *std::move(known) : begun(state);
    cursor.incarnation = state.incarnations.front();
    CouchPull pull(server_, scheduler_, pace_, zone, std::move(state), std::move(cursor));
    if (mayUseFeed) {
        pull.use(*look->feed);
    }
    Task<CloudChanges> pulling = pull.carryOut();
    CloudChanges page = co_await pulling;
    known_.emplace();
    known_->zone = std::move(zone);
    known_->cursor = pull.cursor();
    co_return page;
}

Task<std::vector<CloudRecordResult>> CouchCloudDatabase::save(std::vector<CloudRecord> records)
{
    std::vector<CloudRecordResult> results;
    if (records.empty()) {
        co_return results;
    }
    const CloudZoneID zone = records.front().id.zone;
    CouchZone wanted = zoneNamed(zone);
    std::optional<Look> look = takeLook(zone);
    Task<CouchZoneState> identifying = wanted.identify(knownOf(zone), seenIn(look));
    CouchZoneState state = co_await identifying;
    if (!knownOf(zone)) {
        known_.emplace();
        known_->zone = zone;
        known_->cursor = begun(state);
    }
    CouchDelivery delivery(server_, std::move(state), known_->cursor.device);
    Task<std::vector<CloudRecordResult>> delivering = delivery.carryOut(std::move(records));
    results = co_await delivering;
    known_->cursor.see(known_->cursor.device, generationOf(delivery.deviceRevision()));
    if (delivery.look()) {
        keepLook(zone, *delivery.look()); // for the next batch
    }
    co_return results;
}

Task<void> CouchCloudDatabase::discard(std::vector<CloudRecord> overruled)
{
    if (overruled.empty()) {
        co_return;
    }
    look_.reset();
    const CloudZoneID zone = overruled.front().id.zone;
    CouchZone wanted = zoneNamed(zone);
    Task<CouchZoneState> identifying = wanted.identify(knownOf(zone));
    const CouchZoneState state = co_await identifying;
    std::vector<std::string> documents;
    for (const CloudRecord& record : overruled) {
        CouchDocument document;
        document.id = recordDocument(record.id);
        document.revision = state.revision(record.serverVersion).value_or("");
        document.isDeleted = true;
        if (!document.revision.empty()) {
            documents.push_back(couchJson(document));
        }
    }
    Task<std::vector<CouchSaved>> removing = server_.save(std::move(documents));
    const std::vector<CouchSaved> removed = co_await removing;
    for (const CouchSaved& answer : removed) {
        // One that is no longer there was removed by a request whose answer got lost.
        if (!answer.error.empty() && answer.error != "conflict" && answer.error != "not_found") {
            throw CloudError(saveFailure(answer.error));
        }
    }
}

CloudCursor CouchCloudDatabase::witnessed(CloudCursor saved) const
{
    auto cursor = CouchCursor::decode(saved);
    if (!cursor || !known_ || known_->cursor.device != cursor->device) {
        return saved;
    }
    for (const auto& [device, count] : known_->cursor.deliveries) {
        cursor->see(device, count);
    }
    return cursor->encoded();
}

} // namespace Kestry
