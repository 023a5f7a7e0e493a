#include "CouchZone.h"

#include <algorithm>
#include <utility>

#include "CloudError.h"
#include "Reply.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr const char* incarnationField = "incarnation";
constexpr std::size_t incarnationLength = 8; // of it in a version: the ledger keeps many
constexpr int readings = 3;                  // before something is believed to be missing

std::string incarnationIn(const CouchDocument& marker)
{
    const auto found = marker.fields.find(incarnationField);
    const auto* const text =
        found != marker.fields.end() ? std::get_if<std::string>(&found->second) : nullptr;
    return text != nullptr ? *text : std::string();
}

[[noreturn]] void refuseZone()
{
    throw CloudError("The record store has no workspace of Kestry.", CloudErrorCode::zoneNotFound);
}

[[noreturn]] void refuseForNow()
{
    throw CloudError("The record store lacks what it had before. One of its machines may lag "
                     "behind, so Kestry looks again in a minute. Your local changes are saved.");
}

std::int64_t deliveriesOf(const std::string& device, const std::vector<CouchRow>& rows)
{
    const auto found = std::ranges::find(rows, deviceDocument(device), &CouchRow::id);
    return found != rows.end() ? generationOf(found->revision) : 0;
}

bool hasLost(const CouchCursor& known, const std::vector<CouchRow>& devices)
{
    return std::ranges::any_of(known.deliveries,
        [&](const auto& seen) { return deliveriesOf(seen.first, devices) < seen.second; });
}

std::vector<std::string> devicesOf(const std::optional<CouchCursor>& known)
{
    std::vector<std::string> devices;
    if (known) {
        for (const auto& [device, count] : known->deliveries) {
            devices.push_back(device);
        }
        if (!known->deliveries.contains(known->device)) {
            devices.push_back(known->device);
        }
    }
    return devices;
}

/// Whether a look tells all that has to be known.
bool isEnough(const CouchZoneLook& look, const std::optional<CouchCursor>& known)
{
    return std::ranges::all_of(devicesOf(known), [&](const std::string& device) {
        return std::ranges::find(look.devices, device) != look.devices.end();
    });
}

} // namespace

std::vector<std::string> CouchZoneLook::documents() const
{
    std::vector<std::string> ids{marker.id};
    for (const std::string& device : devices) {
        ids.push_back(deviceDocument(device));
    }
    return ids;
}

std::optional<CouchZoneLook> CouchZoneLook::again(std::vector<CouchRow> found) const
{
    CouchZoneLook look{marker, devices, {}};
    bool isSame = false;
    for (CouchRow& row : found) {
        if (row.id == marker.id) {
            isSame = row.revision == marker.revision && !row.isDeleted;
        } else if (deviceOfDocument(row.id)) {
            look.rows.push_back(std::move(row));
        }
    }
    return isSame ? std::optional(std::move(look)) : std::nullopt;
}

std::string CouchZoneState::version(const std::string& revision) const
{
    return incarnations.front().substr(0, incarnationLength) + ":" + revision;
}

std::optional<std::string> CouchZoneState::revision(const std::string& version) const
{
    for (const std::string& incarnation : incarnations) {
        const std::string prefix = incarnation.substr(0, incarnationLength) + ":";
        if (version.starts_with(prefix) && generationOf(version.substr(prefix.size())) > 0) {
            return version.substr(prefix.size());
        }
    }
    return std::nullopt;
}

CouchZone::CouchZone(CouchServer& server, Scheduler& scheduler, const UuidSource& newUuid,
    Doubt& doubt, CloudZoneID zone)
    : server_(server), scheduler_(scheduler), newUuid_(newUuid), doubt_(doubt),
      zone_(std::move(zone))
{
}

Task<CouchZoneLook> CouchZone::read(std::vector<std::string> devices)
{
    std::vector<std::string> ids{zoneDocument(zone_)};
    for (const std::string& device : devices) {
        ids.push_back(deviceDocument(device));
    }
    Task<std::vector<CouchRow>> asking = server_.documents(std::move(ids), true);
    std::vector<CouchRow> rows = co_await asking;
    CouchZoneLook look;
    look.devices = std::move(devices);
    for (CouchRow& row : rows) {
        if (row.id != zoneDocument(zone_)) {
            look.rows.push_back(std::move(row));
        } else if (row.document && !row.isDeleted) {
            look.marker = *std::move(row.document);
        }
    }
    if (incarnationIn(look.marker).empty()) {
        refuseZone();
    }
    co_return look;
}

Task<CouchZoneLook> CouchZone::find(std::optional<CouchCursor> known)
{
    for (int attempt = 1;; ++attempt) {
        Task<CouchZoneLook> reading = read(devicesOf(known));
        try {
            CouchZoneLook look = co_await reading;
            co_return look;
        } catch (const CouchNoDatabase&) {
            // A database without the zone in it is not late: a device has to make the zone.
            if (attempt == readings) {
                throw;
            }
        }
        Delay pause(scheduler_, server_.limits().patienceSeconds);
        co_await pause;
    }
}

Task<std::vector<std::string>> CouchZone::incarnationsOf(CouchDocument marker)
{
    std::vector<std::string> incarnations{incarnationIn(marker)};
    if (marker.overruled.empty()) {
        co_return incarnations;
    }
    std::vector<std::pair<std::string, std::string>> revisions;
    for (const std::string& revision : marker.overruled) {
        revisions.emplace_back(marker.id, revision);
    }
    Task<std::vector<CouchDocument>> asking = server_.versions(std::move(revisions));
    const std::vector<CouchDocument> others = co_await asking;
    for (const CouchDocument& other : others) {
        if (!other.isDeleted && !incarnationIn(other).empty()) {
            incarnations.push_back(incarnationIn(other));
        }
    }
    co_return incarnations;
}

Task<CouchZoneState> CouchZone::identify(
    std::optional<CouchCursor> known, std::optional<CouchZoneLook> look)
{
    if (look && !isEnough(*look, known)) {
        look.reset();
    }
    bool isOfGivenLook = look.has_value();
    for (int attempt = 1;; ++attempt) {
        if (!look) {
            isOfGivenLook = false;
            Task<CouchZoneLook> asking = read(devicesOf(known));
            CouchZoneLook found = co_await asking;
            look = std::move(found);
        }
        Task<std::vector<std::string>> naming = incarnationsOf(look->marker);
        CouchZoneState state;
        state.incarnations = co_await naming;
        state.look = *look;
        state.isOfGivenLook = isOfGivenLook;
        if (!known) {
            co_return state;
        }
        if (std::ranges::find(state.incarnations, known->incarnation) == state.incarnations.end()) {
            throw CloudError::replaced();
        }
        if (!hasLost(*known, look->rows)) {
            const auto own =
                std::ranges::find(look->rows, deviceDocument(known->device), &CouchRow::id);
            const bool isThere = own != look->rows.end() && !own->isMissing;
            state.deviceRevision = isThere && !own->isDeleted ? own->revision : std::string();
            doubt_.since.reset();
            co_return state;
        }
        if (attempt == readings) {
            if (!isBelieved()) {
                refuseForNow();
            }
            Task<void> renewing = renew(std::move(look->marker));
            co_await renewing;
            throw CloudError::replaced();
        }
        // One machine of several may lag behind.
        look.reset();
        Delay pause(scheduler_, server_.limits().patienceSeconds);
        co_await pause;
    }
}

bool CouchZone::isBelieved()
{
    if (!doubt_.since) {
        doubt_.since = scheduler_.now();
        return false;
    }
    return scheduler_.now() - *doubt_.since >= server_.limits().doubtSeconds;
}

std::string CouchZone::markerJson(const std::string& revision) const
{
    CouchDocument marker;
    marker.id = zoneDocument(zone_);
    marker.revision = revision;
    marker.type = "zone";
    marker.fields[incarnationField] = newUuid_().text();
    return couchJson(marker);
}

Task<void> CouchZone::renew(CouchDocument marker)
{
    std::vector<std::string> documents{markerJson(marker.revision)};
    for (const std::string& revision : marker.overruled) {
        CouchDocument other;
        other.id = marker.id;
        other.revision = revision;
        other.isDeleted = true;
        documents.push_back(couchJson(other));
    }
    Task<std::vector<CouchSaved>> saving = server_.save(std::move(documents));
    try {
        (void)co_await saving;
    } catch (const CloudError&) {
        // The next look at it finds the same loss, and tries again.
    }
}

Task<void> CouchZone::create()
{
    bool isMissing = false;
    std::vector<std::string> ids{zoneDocument(zone_)};
    Task<std::vector<CouchRow>> asking = server_.documents(std::move(ids), false);
    try {
        (void)co_await asking;
    } catch (const CouchNoDatabase&) {
        isMissing = true;
    }
    if (isMissing) {
        Task<void> creating = server_.createDatabase();
        co_await creating;
    }
    std::vector<std::string> documents{markerJson({})};
    Task<std::vector<CouchSaved>> saving = server_.save(std::move(documents));
    const std::vector<CouchSaved> saved = co_await saving;
    const bool isThere =
        !saved.empty() && (saved.front().error.empty() || saved.front().error == "conflict");
    if (!isThere) {
        throw CloudError(saveFailure(saved.empty() ? "" : saved.front().error));
    }
}

} // namespace Kestry
