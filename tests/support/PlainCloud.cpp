#include "PlainCloud.h"

#include <charconv>
#include <utility>

#include "Reply.h"

namespace KestryCore {

namespace {

std::size_t bytesOf(const CloudRecord& record)
{
    std::size_t bytes = 0;
    for (const auto& [name, value] : record.fields) {
        if (const auto* const text = std::get_if<std::string>(&value)) {
            bytes += text->size();
        } else if (const auto* const data = std::get_if<CloudBytes>(&value)) {
            bytes += data->bytes.size();
        }
    }
    return bytes;
}

/// How far a cursor has read, and up to where removals are nothing new to its reader.
struct Position {
    std::uint64_t change = 0;
    std::uint64_t start = 0;
};

std::string cursorText(std::uint64_t zone, const Position& position)
{
    return std::to_string(zone) + ' ' + std::to_string(position.change) + ' '
        + std::to_string(position.start);
}

Position positionOf(const CloudCursor& cursor, std::uint64_t zone, std::uint64_t changes)
{
    std::uint64_t zoneOfCursor = 0;
    Position position;
    const char* at = cursor.bytes.data();
    const char* const end = at + cursor.bytes.size();
    for (std::uint64_t* const number : {&zoneOfCursor, &position.change, &position.start}) {
        at = std::from_chars(at, end, *number).ptr;
        at += at != end ? 1 : 0;
    }
    if (cursorText(zone, position) != cursor.bytes || position.change > changes) {
        throw CloudError("The cursor has expired.", CloudErrorCode::changeTokenExpired);
    }
    return position;
}

} // namespace

class PlainCloud::Database final : public CloudDatabase {
public:
    explicit Database(PlainCloud& cloud) : cloud_(cloud) { }

    Task<void> fetchZone(CloudZoneID zone) override
    {
        Delay turn(cloud_.scheduler_, 0);
        co_await turn;
        (void)cloud_.zone(zone);
    }
    Task<void> createZone(CloudZoneID zone) override
    {
        Delay turn(cloud_.scheduler_, 0);
        co_await turn;
        cloud_.create(zone);
    }
    Task<CloudChanges> changes(CloudZoneID zone, std::optional<CloudCursor> since) override
    {
        Delay turn(cloud_.scheduler_, 0);
        co_await turn;
        co_return cloud_.changes(zone, since);
    }
    Task<std::vector<CloudRecordResult>> save(std::vector<CloudRecord> records) override
    {
        Delay turn(cloud_.scheduler_, 0);
        co_await turn;
        co_return cloud_.save(records);
    }

private:
    PlainCloud& cloud_;
};

class PlainCloud::Container final : public CloudContainer {
public:
    explicit Container(PlainCloud& cloud) : cloud_(cloud), database_(cloud) { }

    Task<bool> isAccountAvailable() override
    {
        Delay turn(cloud_.scheduler_, 0);
        co_await turn;
        cloud_.requireReach();
        co_return true;
    }
    Task<std::string> userRecordName() override
    {
        Delay turn(cloud_.scheduler_, 0);
        co_await turn;
        cloud_.requireReach();
        co_return cloud_.account;
    }
    CloudDatabase& privateDatabase() override { return database_; }

private:
    PlainCloud& cloud_;
    Database database_;
};

std::unique_ptr<CloudContainer> PlainCloud::open()
{
    return std::make_unique<Container>(*this);
}

void PlainCloud::requireReach() const
{
    if (!isReachable) {
        throw CloudError("The cloud cannot be reached.");
    }
}

PlainCloud::Zone& PlainCloud::zone(const CloudZoneID& id)
{
    requireReach();
    const auto found = zones_.find(id.name);
    if (found == zones_.end()) {
        throw CloudError("There is no such zone.", CloudErrorCode::zoneNotFound);
    }
    return found->second;
}

void PlainCloud::create(const CloudZoneID& id)
{
    requireReach();
    if (!zones_.contains(id.name)) {
        zones_[id.name].identity = ++zonesMade_;
    }
}

void PlainCloud::removeRecord(const CloudRecordID& id)
{
    Zone& inside = zones_.at(id.zone.name);
    Stored& stored = inside.records.at(id.name);
    stored = {{id, {}, {}, {}}, ++inside.changes, true};
}

CloudChanges PlainCloud::changes(const CloudZoneID& id, const std::optional<CloudCursor>& since)
{
    const Zone& inside = zone(id);
    Position position{0, inside.changes};
    if (since) {
        position = positionOf(*since, inside.identity, inside.changes);
    }
    std::map<std::uint64_t, const Stored*> inOrder;
    for (const auto& [name, stored] : inside.records) {
        if (stored.change > position.change) {
            inOrder[stored.change] = &stored;
        }
    }
    CloudChanges answer;
    std::size_t bytes = 0;
    for (const auto& [change, stored] : inOrder) {
        if (bytes >= pageBytes) {
            answer.moreComing = true;
            break;
        }
        position.change = change;
        if (!stored->isRemoved) {
            bytes += bytesOf(stored->record);
            answer.modifications.push_back({stored->record.id, stored->record});
        } else if (change > position.start) {
            answer.deletions.push_back(stored->record.id);
        }
    }
    if (!answer.moreComing) {
        position = {inside.changes, 0};
    }
    answer.cursor = CloudCursor{cursorText(inside.identity, position)};
    return answer;
}

std::vector<CloudRecordResult> PlainCloud::save(const std::vector<CloudRecord>& records)
{
    requireReach();
    std::vector<CloudRecordResult> results;
    for (const CloudRecord& record : records) {
        results.push_back(saveOne(record));
    }
    return results;
}

CloudRecordResult PlainCloud::saveOne(const CloudRecord& record)
{
    Zone& inside = zone(record.id.zone);
    const auto found = inside.records.find(record.id.name);
    const bool isThere = found != inside.records.end() && !found->second.isRemoved;
    if (isThere && found->second.record.serverVersion != record.serverVersion) {
        return {record.id,
            CloudError::changed("The record was changed on the server.", found->second.record)};
    }
    if (!isThere && !record.serverVersion.empty()) {
        return {record.id, CloudError("The record is not on the server any more.")};
    }
    Stored stored{record, ++inside.changes};
    stored.record.serverVersion =
        std::to_string(inside.identity) + '-' + std::to_string(stored.change);
    inside.records[record.id.name] = stored;
    return {record.id, stored.record};
}

} // namespace KestryCore
