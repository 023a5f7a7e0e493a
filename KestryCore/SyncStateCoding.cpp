#include "Base64.h"
#include "LedgerCoding.h"

namespace KestryCore {

namespace {

std::string base64(const std::string& bytes)
{
    return encodeBase64(bytes);
}

std::string asItIs(const std::string& text)
{
    return text;
}

/// The JSON of a map, worked out once for as long as it stays the same.
const SharedBytes& mapJson(
    const SharedMap<std::string>& map, std::string (*textOf)(const std::string&))
{
    SharedBytes& json = map.rememberedJson();
    if (!json) {
        JsonWriter writer;
        writer.beginObject();
        for (const auto& [recordID, content] : map) {
            writer.member(recordID, textOf(content));
        }
        writer.endObject();
        json = SharedBytes(writer.take());
    }
    return json;
}

template <class Record>
void encodeRecordMap(
    JsonWriter& writer, std::string_view key, const std::map<std::string, Record>& map)
{
    writer.key(key);
    writer.beginObject();
    for (const auto& [recordID, record] : map) {
        writer.key(recordID);
        encode(writer, record);
    }
    writer.endObject();
}

template <class Value>
using TextMap = std::map<std::string, Value>;

template <class Value>
TextMap<Value> decodeMap(const JsonValue& value)
{
    TextMap<Value> map;
    const JsonObject object(value);
    object.forEachMember([&](std::string_view key, const JsonValue& member) {
        map.emplace(key, decode<Value>(member));
    });
    return map;
}

void encodeConflicts(JsonWriter& writer, const std::vector<SyncConflict>& conflicts)
{
    writer.key("conflicts");
    writer.beginArray();
    for (const SyncConflict& conflict : conflicts) {
        writer.beginObject();
        writer.member("id", conflict.id);
        writer.key("local");
        encode(writer, conflict.local);
        writer.key("remote");
        encode(writer, conflict.remote);
        writer.endObject();
    }
    writer.endArray();
}

} // namespace

void encode(JsonWriter& writer, const SyncRecord& record)
{
    writer.beginObject();
    writer.member("recordID", record.recordID);
    writer.member("revision", record.revision);
    writer.member("deviceID", record.deviceID);
    if (record.payload) {
        writer.member("payload", encodeBase64(*record.payload));
    }
    writer.member("isDeleted", record.isDeleted);
    writer.endObject();
}

void encode(JsonWriter& writer, const SyncedSession& session)
{
    writer.beginObject();
    writer.member("ownerDeviceID", session.ownerDeviceID);
    writer.member("ownerName", session.ownerName);
    if (session.active) {
        writer.key("active");
        encode(writer, *session.active);
    }
    if (session.entry) {
        writer.key("entry");
        encode(writer, *session.entry);
    }
    writer.endObject();
}

namespace {

/// Hands the JSON of each map that grows with the ledger to `putMap`, once its key is written.
template <class PutMap>
void encodeState(JsonWriter& writer, const LedgerSyncState& state, PutMap putMap)
{
    writer.beginObject();
    writer.member("deviceID", state.deviceID);
    writer.member("deviceName", state.deviceName);
    writer.member("accountID", state.accountID);
    writer.member("environment", environmentName(state.environment));
    writer.member("enabled", state.enabled);
    if (state.changeToken) {
        writer.member("changeToken", encodeBase64(*state.changeToken));
    }
    writer.key("systemFields");
    putMap(mapJson(state.systemFields, base64));
    writer.key("baseRevisions");
    putMap(mapJson(state.baseRevisions, asItIs));
    encodeRecordMap(writer, "outbox", state.outbox);
    encodeConflicts(writer, state.conflicts);
    encodeRecordMap(writer, "remoteSessions", state.remoteSessions);
    encodeRecordMap(writer, "staged", state.staged);
    encodeRecordMap(writer, "tombstones", state.tombstones);
    writer.endObject();
}

} // namespace

void encode(JsonWriter& writer, const LedgerSyncState& state)
{
    encodeState(writer, state, [&](const SharedBytes& json) { writer.json(json.view()); });
}

void encode(LedgerBytes& bytes, JsonWriter& writer, const LedgerSyncState& state)
{
    encodeState(writer, state, [&](const SharedBytes& json) {
        writer.elementWrittenElsewhere();
        bytes.append(writer.take());
        bytes.append(json);
    });
}

template <>
SyncRecord decode<SyncRecord>(const JsonValue& value)
{
    JsonObject object(value);
    SyncRecord record;
    record.recordID = object.required<std::string>("recordID");
    record.revision = object.required<std::string>("revision");
    record.deviceID = object.required<std::string>("deviceID");
    if (std::optional<Base64Bytes> payload = object.optional<Base64Bytes>("payload")) {
        record.payload = std::move(payload->content);
    }
    record.isDeleted = object.required<bool>("isDeleted");
    return record;
}

template <>
SyncedSession decode<SyncedSession>(const JsonValue& value)
{
    JsonObject object(value);
    SyncedSession session;
    session.ownerDeviceID = object.required<std::string>("ownerDeviceID");
    session.ownerName = object.required<std::string>("ownerName");
    session.active = object.optional<ActiveSession>("active");
    session.entry = object.optional<TimeEntry>("entry");
    return session;
}

template <>
SyncConflict decode<SyncConflict>(const JsonValue& value)
{
    JsonObject object(value);
    SyncConflict conflict;
    conflict.id = object.required<std::string>("id");
    conflict.local = object.required<SyncRecord>("local");
    conflict.remote = object.required<SyncRecord>("remote");
    return conflict;
}

template <>
CloudSyncEnvironment decode<CloudSyncEnvironment>(const JsonValue& value)
{
    const std::string_view name = value.text();
    for (const auto environment :
        {CloudSyncEnvironment::development, CloudSyncEnvironment::production}) {
        if (name == environmentName(environment)) {
            return environment;
        }
    }
    value.fail("is an unknown environment");
}

template <>
std::vector<SyncConflict> decode<std::vector<SyncConflict>>(const JsonValue& value)
{
    std::vector<SyncConflict> conflicts;
    value.forEachElement(
        [&](const JsonValue& element) { conflicts.push_back(decode<SyncConflict>(element)); });
    return conflicts;
}

template <>
TextMap<std::string> decode<TextMap<std::string>>(const JsonValue& value)
{
    return decodeMap<std::string>(value);
}

template <>
TextMap<SyncRecord> decode<TextMap<SyncRecord>>(const JsonValue& value)
{
    return decodeMap<SyncRecord>(value);
}

template <>
TextMap<SyncedSession> decode<TextMap<SyncedSession>>(const JsonValue& value)
{
    return decodeMap<SyncedSession>(value);
}

template <>
TextMap<Base64Bytes> decode<TextMap<Base64Bytes>>(const JsonValue& value)
{
    return decodeMap<Base64Bytes>(value);
}

template <>
LedgerSyncState decode<LedgerSyncState>(const JsonValue& value)
{
    JsonObject object(value);
    LedgerSyncState state;
    state.deviceID = object.required<std::string>("deviceID");
    state.deviceName = object.required<std::string>("deviceName");
    state.accountID = object.required<std::string>("accountID");
    state.environment = object.valueOr("environment", CloudSyncEnvironment::development);
    state.enabled = object.valueOr("enabled", true);
    if (std::optional<Base64Bytes> token = object.optional<Base64Bytes>("changeToken")) {
        state.changeToken = std::move(token->content);
    }
    TextMap<std::string> systemFields;
    for (auto& [recordID, bytes] : object.valueOr<TextMap<Base64Bytes>>("systemFields", {})) {
        systemFields.emplace(recordID, std::move(bytes.content));
    }
    state.systemFields = std::move(systemFields);
    state.baseRevisions = object.valueOr<TextMap<std::string>>("baseRevisions", {});
    state.outbox = object.valueOr<TextMap<SyncRecord>>("outbox", {});
    state.conflicts = object.valueOr<std::vector<SyncConflict>>("conflicts", {});
    state.remoteSessions = object.valueOr<TextMap<SyncedSession>>("remoteSessions", {});
    state.staged = object.valueOr<TextMap<SyncRecord>>("staged", {});
    state.tombstones = object.valueOr<TextMap<SyncRecord>>("tombstones", {});
    return state;
}

} // namespace KestryCore
