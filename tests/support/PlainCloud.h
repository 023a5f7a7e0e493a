#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "Scheduler.h"

namespace KestryCore {

/// A cloud store in memory, in the plainest form that keeps the contract: what other stores are
/// compared with. It answers in a later turn of the loop, from what it holds at that moment.
class PlainCloud {
public:
    explicit PlainCloud(Scheduler& scheduler) : scheduler_(scheduler) { }

    bool isReachable = true;
    std::string account = "account";
    std::size_t pageBytes = std::size_t{1} << 20U; ///< Of fields, after which a page ends.

    /// A container of one more device; this must outlive it.
    [[nodiscard]] std::unique_ptr<CloudContainer> open();
    void removeZone(const CloudZoneID& zone) { zones_.erase(zone.name); }
    void removeRecord(const CloudRecordID& id);

private:
    class Container;
    class Database;

    struct Stored {
        CloudRecord record;
        std::uint64_t change = 0; // its place in the order of changes
        bool isRemoved = false;
    };
    struct Zone {
        std::uint64_t identity = 0;
        std::uint64_t changes = 0;
        std::map<std::string, Stored> records;
    };

    void requireReach() const;
    [[nodiscard]] Zone& zone(const CloudZoneID& id);
    void create(const CloudZoneID& id);
    [[nodiscard]] CloudChanges changes(
        const CloudZoneID& id, const std::optional<CloudCursor>& since);
    [[nodiscard]] std::vector<CloudRecordResult> save(const std::vector<CloudRecord>& records);
    [[nodiscard]] CloudRecordResult saveOne(const CloudRecord& record);

    Scheduler& scheduler_;
    std::map<std::string, Zone> zones_;
    std::uint64_t zonesMade_ = 0;
};

} // namespace KestryCore
