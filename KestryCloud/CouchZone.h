#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CloudRecord.h"
#include "CouchCursor.h"
#include "CouchServer.h"
#include "Scheduler.h"
#include "Task.h"
#include "Uuid.h"

namespace Kestry {

/// A look at what tells of a zone's identity.
struct CouchZoneLook {
    CouchDocument marker;
    std::vector<std::string> devices; ///< Whose documents were asked for.
    std::vector<CouchRow> rows;       ///< Those documents.

    /// What to ask for to look again.
    [[nodiscard]] std::vector<std::string> documents() const;
    /// The same zone as rows of `documents` show it, without bodies, among others; nullopt when its
    /// identity may be another now.
    [[nodiscard]] std::optional<CouchZoneLook> again(std::vector<CouchRow> found) const;
};

/// What the server has of a zone beside its records.
struct CouchZoneState {
    /// The zone's identities. More than one only when several devices made the zone at once.
    std::vector<std::string> incarnations;
    std::string deviceRevision; ///< Of the document in which the reader counts its deliveries.
    CouchZoneLook look;         ///< What all of this was found out from.
    bool isOfGivenLook = false; ///< The look that was given did, and nothing was read again.

    /// A version of a record, as the program keeps it. It names the incarnation: the server would
    /// save over a revision of another one as if the record were new.
    [[nodiscard]] std::string version(const std::string& revision) const;
    /// The revision in such a version; nullopt for one that this zone never gave.
    [[nodiscard]] std::optional<std::string> revision(const std::string& version) const;
};

/// The identity of a zone, and how to tell that the server has lost some of it.
///
/// A server that was restored from a backup goes on counting from there, and a database that was
/// made anew answers an old cursor: neither tells. So a random identity is part of the zone, and
/// with each delivery a device saves a document of its own, whose revisions count. A count that is
/// lower than it was seen once gives the restored server away. The zone gets another identity then,
/// so that all devices learn of it, also those whose deliveries are all there. That cannot be taken
/// back, and one machine of a cluster may only lag behind: so the loss has to show once more after
/// a while.
class CouchZone {
public:
    /// A loss that was seen and is not believed yet.
    struct Doubt {
        std::optional<double> since; ///< On the scheduler's clock.
    };

    /// All but the zone's name must outlive the zone.
    CouchZone(CouchServer& server, KestryCore::Scheduler& scheduler,
        const KestryCore::UuidSource& newUuid, Doubt& doubt, KestryCore::CloudZoneID zone);

    /// Makes the database if there is none, and the zone in it. Another device may have.
    [[nodiscard]] KestryCore::Task<void> create();
    /// Looks whether it is there, with what a cursor will be compared with. Throws `zoneNotFound`,
    /// after a while when there is no database either: some servers make one for each user, a
    /// little late.
    [[nodiscard]] KestryCore::Task<CouchZoneLook> find(std::optional<CouchCursor> known);
    /// Reads its state, unless that is in a look at it. Throws `zoneNotFound`, and `storeReplaced`
    /// when it is no longer what the cursor was of; at first sight of a loss, another failure.
    [[nodiscard]] KestryCore::Task<CouchZoneState> identify(
        std::optional<CouchCursor> known, std::optional<CouchZoneLook> look = {});

private:
    [[nodiscard]] KestryCore::Task<CouchZoneLook> read(std::vector<std::string> devices);
    [[nodiscard]] KestryCore::Task<std::vector<std::string>> incarnationsOf(CouchDocument marker);
    [[nodiscard]] KestryCore::Task<void> renew(CouchDocument marker);
    [[nodiscard]] bool isBelieved();
    [[nodiscard]] std::string markerJson(const std::string& revision) const;

    CouchServer& server_;
    KestryCore::Scheduler& scheduler_;
    const KestryCore::UuidSource& newUuid_;
    Doubt& doubt_;
    KestryCore::CloudZoneID zone_;
};

} // namespace Kestry
