#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "SqliteConnection.h"
#include "SqlitePosition.h"
#include "Uuid.h"

namespace KestryCore {

/// A zone of a record store in a file, within one transaction. The connection must outlive it.
/// Failures are `SqliteError`s, and `CloudError`s as a `CloudDatabase` has them.
class SqliteZone {
public:
    /// The zone of a name; nullopt when there is none.
    [[nodiscard]] static std::optional<SqliteZone> find(
        SqliteConnection& connection, const CloudZoneID& zone);
    /// Makes a zone that is not there.
    static void make(
        SqliteConnection& connection, const CloudZoneID& zone, const UuidSource& newUuid);

    /// The place behind all changes.
    [[nodiscard]] SqlitePosition newest();
    /// Throws `storeReplaced` unless a place is one of this zone.
    void require(const SqlitePosition& position);
    /// What has changed since a cursor, up to so many bytes, which the last record may exceed.
    [[nodiscard]] CloudChanges changes(
        const std::optional<CloudCursor>& since, std::size_t pageBytes);
    /// Saves records of this zone, each over the version that it has.
    [[nodiscard]] std::vector<CloudRecordResult> save(
        std::span<const CloudRecord> records, const UuidSource& newUuid);

private:
    SqliteZone(SqliteConnection& connection, CloudZoneID zone, std::int64_t key);

    [[nodiscard]] bool isKnown(const SqlitePosition& position);
    [[nodiscard]] SqliteReading beginningAt(const std::optional<CloudCursor>& since);
    [[nodiscard]] std::vector<CloudRecordID> removals(std::int64_t after, std::int64_t upTo);
    [[nodiscard]] CloudRecordResult read(
        const std::string& name, const std::string& version, const std::string& content) const;
    [[nodiscard]] CloudRecordResult saveOne(
        const CloudRecord& record, const SqlitePosition& position);
    void write(
        const CloudRecord& record, const std::string& content, std::int64_t change, bool isNew);

    std::reference_wrapper<SqliteConnection> connection_;
    CloudZoneID zone_;
    std::int64_t key_; // of its rows
};

} // namespace KestryCore
