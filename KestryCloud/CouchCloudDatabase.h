#pragma once

#include <optional>
#include <vector>

#include "CloudDatabase.h"
#include "CouchCursor.h"
#include "CouchPull.h"
#include "CouchServer.h"
#include "Scheduler.h"
#include "Uuid.h"

namespace Kestry {

/// The zones of a user in one database of a server that speaks CouchDB's protocol, which may be a
/// cluster. What such a server may do, and how nothing is lost by it, is told in `CouchZone`,
/// `CouchPull` and `CouchDelivery`.
///
/// The tasks of one database must not overlap.
class CouchCloudDatabase final : public KestryCore::CloudDatabase {
public:
    /// Server and scheduler must outlive the database.
    CouchCloudDatabase(
        CouchServer& server, KestryCore::Scheduler& scheduler, KestryCore::UuidSource newUuid);

    [[nodiscard]] KestryCore::Task<void> fetchZone(KestryCore::CloudZoneID zone) override;
    [[nodiscard]] KestryCore::Task<void> createZone(KestryCore::CloudZoneID zone) override;
    [[nodiscard]] KestryCore::Task<KestryCore::CloudChanges> changes(
        KestryCore::CloudZoneID zone, std::optional<KestryCore::CloudCursor> since) override;
    [[nodiscard]] KestryCore::Task<std::vector<KestryCore::CloudRecordResult>> save(
        std::vector<KestryCore::CloudRecord> records) override;
    [[nodiscard]] KestryCore::Task<void> discard(
        std::vector<KestryCore::CloudRecord> overruled) override;
    [[nodiscard]] KestryCore::CloudCursor witnessed(KestryCore::CloudCursor saved) const override;

private:
    /// What is known of the zone that was read or saved to last.
    struct Known {
        KestryCore::CloudZoneID zone;
        CouchCursor cursor;
    };
    [[nodiscard]] CouchZone zoneNamed(KestryCore::CloudZoneID zone) const;
    [[nodiscard]] std::optional<CouchCursor> knownOf(const KestryCore::CloudZoneID& zone) const;
    [[nodiscard]] CouchCursor begun(const CouchZoneState& state) const;

    CouchServer& server_;
    KestryCore::Scheduler& scheduler_;
    KestryCore::UuidSource newUuid_;
    CouchPull::Pace pace_;
    std::optional<Known> known_;
};

} // namespace Kestry
