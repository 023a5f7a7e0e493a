#include "SqliteZone.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

#include "StoredFields.h"

namespace KestryCore {

namespace {

// No record of ours comes near it; one that does is refused before it fills the disk.
constexpr std::size_t largestContent = std::size_t{64} << 20U;

/// Half of an identifier, which is plenty to tell the versions of a record apart.
std::string tagOf(const Uuid& uuid)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string tag;
    for (std::size_t index = 0; index < uuid.bytes.size() / 2; ++index) {
        tag += digits[uuid.bytes[index] >> 4U];
        tag += digits[uuid.bytes[index] & 0xFU];
    }
    return tag;
}

} // namespace

SqliteZone::SqliteZone(SqliteConnection& connection, CloudZoneID zone, std::int64_t key)
    : connection_(connection), zone_(std::move(zone)), key_(key)
{
}

std::optional<SqliteZone> SqliteZone::find(SqliteConnection& connection, const CloudZoneID& zone)
{
    SqliteStatement statement = connection.prepare("SELECT id FROM zones WHERE name = ?");
    if (!statement.withText(zone.name).step()) {
        return std::nullopt;
    }
    return SqliteZone(connection, zone, statement.number(0));
}

void SqliteZone::make(
    SqliteConnection& connection, const CloudZoneID& zone, const UuidSource& newUuid)
{
    connection.prepare("INSERT INTO zones (name) VALUES (?)").withText(zone.name).run();
    // So that there is a place before the first change.
    connection.prepare("INSERT INTO batches VALUES (last_insert_rowid(), 0, ?)")
        .withText(tagOf(newUuid()))
        .run();
}

SqlitePosition SqliteZone::newest()
{
    SqliteStatement statement = connection_.get().prepare(
        "SELECT last, tag FROM batches WHERE zone = ? ORDER BY last DESC LIMIT 1");
    if (!statement.with(key_).step()) {
        throw CloudError("The record store has lost the order of its changes. Local data is safe.");
    }
    return {statement.number(0), statement.bytes(1)};
}

bool SqliteZone::isKnown(const SqlitePosition& position)
{
    SqliteStatement statement = connection_.get().prepare(
        "SELECT tag FROM batches WHERE zone = ? AND last >= ? ORDER BY last LIMIT 1");
    return statement.with(key_).with(position.change).step() && statement.bytes(0) == position.tag;
}

void SqliteZone::require(const SqlitePosition& position)
{
    if (!isKnown(position)) {
        throw CloudError::replaced();
    }
}

SqliteReading SqliteZone::beginningAt(const std::optional<CloudCursor>& since)
{
    if (!since) {
        return {{-1, {}}, newest().change, {}};
    }
    const auto reading = SqliteReading::of(*since);
    if (!reading) {
        throw CloudError("The record store cannot tell what has changed since the last exchange.",
            CloudErrorCode::changeTokenExpired);
    }
    require(reading->position);
    if (reading->delivered) {
        require(*reading->delivered);
    }
    return *reading;
}

CloudChanges SqliteZone::changes(const std::optional<CloudCursor>& since, std::size_t pageBytes)
{
    const SqliteReading beginning = beginningAt(since);
    SqliteStatement statement = connection_.get().prepare(
        "SELECT name, version, content FROM records WHERE zone = ? AND change > ? ORDER BY change");
    statement.with(key_).with(beginning.position.change);
    CloudChanges page;
    std::size_t bytes = 0;
    std::string lastVersion;
    while (!page.moreComing && statement.step()) {
        if (bytes >= pageBytes) {
            page.moreComing = true;
            continue;
        }
        const std::string content = statement.bytes(2);
        bytes += content.size();
        lastVersion = statement.bytes(1);
        page.modifications.push_back(read(statement.bytes(0), lastVersion, content));
    }
    SqliteReading end{newest(), 0, {}};
    if (page.moreComing) {
        const auto last = SqliteReading::of({lastVersion});
        if (!last) {
            throw CloudError("A record's version in the record store is damaged. Local data is "
                             "safe; restore the file from a backup.");
        }
        end = {last->position, beginning.start, beginning.delivered};
    }
    page.deletions =
        removals(std::max(beginning.position.change, beginning.start), end.position.change);
    page.cursor = end.cursor();
    return page;
}

std::vector<CloudRecordID> SqliteZone::removals(std::int64_t after, std::int64_t upTo)
{
    SqliteStatement statement = connection_.get().prepare(
        "SELECT name FROM removals WHERE zone = ? AND change > ? AND change <= ? ORDER BY change");
    statement.with(key_).with(after).with(upTo);
    std::vector<CloudRecordID> removed;
    while (statement.step()) {
        removed.push_back({statement.bytes(0), zone_});
    }
    return removed;
}

CloudRecordResult SqliteZone::read(
    const std::string& name, const std::string& version, const std::string& content) const
{
    CloudRecord record{{name, zone_}, {}, version, {}};
    if (!decodeStoredFields(content, record)) {
        return {record.id,
            CloudError("The record " + name
                + " is damaged in the record store. Local data is safe; restore the file from a "
                  "backup.")};
    }
    return {record.id, record};
}

std::vector<CloudRecordResult> SqliteZone::save(
    std::span<const CloudRecord> records, const UuidSource& newUuid)
{
    SqlitePosition position{newest().change, tagOf(newUuid())};
    const std::int64_t before = position.change;
    std::vector<CloudRecordResult> results;
    for (const CloudRecord& record : records) {
        ++position.change;
        results.push_back(saveOne(record, position));
        if (!std::holds_alternative<CloudRecord>(results.back().result)) {
            --position.change;
        }
    }
    if (position.change != before) {
        connection_.get()
            .prepare("INSERT INTO batches VALUES (?, ?, ?)")
            .with(key_)
            .with(position.change)
            .withText(position.tag)
            .run();
    }
    return results;
}

CloudRecordResult SqliteZone::saveOne(const CloudRecord& record, const SqlitePosition& position)
{
    SqliteStatement statement = connection_.get().prepare(
        "SELECT version, content FROM records WHERE zone = ? AND name = ?");
    const bool isThere = statement.with(key_).withText(record.id.name).step();
    if (!isThere && !record.serverVersion.empty()) {
        return {record.id,
            CloudError("The record " + record.id.name + " is not in the record store any more.")};
    }
    if (isThere && statement.bytes(0) != record.serverVersion) {
        const CloudRecordResult server =
            read(record.id.name, statement.bytes(0), statement.bytes(1));
        if (const auto* const found = std::get_if<CloudRecord>(&server.result)) {
            return {record.id,
                CloudError::changed("The record was changed by another device.", *found)};
        }
        return server;
    }
    CloudRecord saved = record;
    saved.serverVersion = position.text();
    const std::string content = encodeStoredFields(saved);
    if (content.size() > largestContent) {
        return {record.id,
            CloudError("The record " + record.id.name + " is too large for the record store.")};
    }
    write(saved, content, position.change, !isThere);
    return {record.id, std::move(saved)};
}

void SqliteZone::write(
    const CloudRecord& record, const std::string& content, std::int64_t change, bool isNew)
{
    const std::string& name = record.id.name;
    connection_.get()
        .prepare(isNew ? "INSERT INTO records (change, version, content, zone, name) "
                         "VALUES (?, ?, ?, ?, ?)"
                       : "UPDATE records SET change = ?, version = ?, content = ? "
                         "WHERE zone = ? AND name = ?")
        .with(change)
        .withText(record.serverVersion)
        .withBytes(content)
        .with(key_)
        .withText(name)
        .run();
    if (isNew) {
        connection_.get()
            .prepare("DELETE FROM removals WHERE zone = ? AND name = ?")
            .with(key_)
            .withText(name)
            .run();
    }
}

} // namespace KestryCore
