#include "SyncCloudRecord.h"

#include <optional>

#include "CloudArchive.h"
#include "SyncDeliveryError.h"
#include "Uuid.h"

namespace KestryCore {

namespace {

constexpr const char* recordType = "KestryRecord";
constexpr double schema = 1.0;

/// Null when there is no such field, or not of this type.
template <class Value>
const Value* field(const CloudRecord& record, const char* name)
{
    const auto found = record.fields.find(name);
    return found != record.fields.end() ? std::get_if<Value>(&found->second) : nullptr;
}

bool isSupported(const CloudRecord& record)
{
    const auto* const form = field<double>(record, "schema");
    const auto* const revision = field<std::string>(record, "revision");
    const auto* const writer = field<std::string>(record, "writer");
    const auto* const deleted = field<double>(record, "deleted");
    return record.type == recordType && form != nullptr && *form == schema && revision != nullptr
        && Uuid::parse(*revision) && writer != nullptr && !writer->empty() && deleted != nullptr
        && (*deleted == 0.0 || *deleted == 1.0);
}

/// The record that the next save changes, without fields.
CloudRecord knownRecord(const std::string& recordID, const SharedMap<std::string>& systemFields)
{
    const CloudRecordID id{recordID, workspaceZone()};
    const auto found = systemFields.find(recordID);
    if (found == systemFields.end()) {
        return CloudRecord{id, recordType, {}, {}};
    }
    auto known = recordFromSystemFields(found->second);
    if (!known || known->id != id || known->type != recordType) {
        throw SyncDeliveryError("Saved iCloud metadata is invalid. Local changes are preserved.");
    }
    return *std::move(known);
}

} // namespace

const CloudZoneID& workspaceZone()
{
    static const CloudZoneID zone{"KestryWorkspace"};
    return zone;
}

SyncRecord syncRecordFrom(const CloudRecord& record)
{
    if (!isSupported(record)) {
        throw SyncDeliveryError("iCloud contains an unsupported record. Update Kestry before "
                                "retrying; local data is safe.");
    }
    SyncRecord version;
    version.recordID = record.id.name;
    version.revision = *field<std::string>(record, "revision");
    version.deviceID = *field<std::string>(record, "writer");
    version.isDeleted = *field<double>(record, "deleted") == 1.0;
    if (const auto* const payload = field<CloudBytes>(record, "payload")) {
        version.payload = payload->bytes;
    } else if (!version.isDeleted) {
        throw SyncDeliveryError(
            "An iCloud record is incomplete. Sync stopped without advancing its cursor.");
    }
    return version;
}

CloudRecord cloudRecordFor(const SyncRecord& record, const SharedMap<std::string>& systemFields)
{
    CloudRecord made = knownRecord(record.recordID, systemFields);
    made.fields["schema"] = schema;
    made.fields["revision"] = record.revision;
    made.fields["writer"] = record.deviceID;
    made.fields["deleted"] = record.isDeleted ? 1.0 : 0.0;
    if (record.payload) {
        made.fields["payload"] = CloudBytes{*record.payload};
    }
    return made;
}

} // namespace KestryCore
