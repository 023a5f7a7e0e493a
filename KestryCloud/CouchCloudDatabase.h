#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "CloudDatabase.h"
#include "CouchCursor.h"
#include "CouchEarlyFeed.h"
#include "CouchPull.h"
#include "CouchServer.h"
#include "CouchZone.h"
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
    /// A look at a zone, for the reading or the batch that follows at once.
    struct Look {
        KestryCore::CloudZoneID zone;
        CouchZoneLook seen;
        double at = 0.0;
        std::unique_ptr<CouchEarlyFeed> feed; ///< Asked for together with it, or null.
    };
    void keepLook(const KestryCore::CloudZoneID& zone, CouchZoneLook seen,
        std::unique_ptr<CouchEarlyFeed> feed = {});
    [[nodiscard]] std::optional<Look> takeLook(const KestryCore::CloudZoneID& zone);
    [[nodiscard]] static std::optional<CouchZoneLook> seenIn(const std::optional<Look>& look);
    [[nodiscard]] std::unique_ptr<CouchEarlyFeed> askEarly(const KestryCore::CloudZoneID& zone);
    [[nodiscard]] CouchZone zoneNamed(KestryCore::CloudZoneID zone);
    [[nodiscard]] std::optional<CouchCursor> knownOf(const KestryCore::CloudZoneID& zone) const;
    [[nodiscard]] CouchCursor begun(const CouchZoneState& state) const;

    CouchServer& server_;
    KestryCore::Scheduler& scheduler_;
    KestryCore::UuidSource newUuid_;
    CouchPull::Pace pace_;
    std::optional<Known> known_;
    std::optional<Look> look_; // It serves once, while it is fresh.
    CouchZone::Doubt doubt_;
};

} // namespace Kestry
