#include <string>

#include "Base64.h"
#include "BlockCoding.h"
#include "LedgerCoding.h"

namespace KestryCore {

namespace {

void encodeText(JsonWriter& writer, const std::string& text)
{
    writer.value(text);
}

void encodeBytes(JsonWriter& writer, const std::string& bytes)
{
    writer.value(encodeBase64(bytes));
}

/// `read` turns one member into a value.
template <class Value, class Read>
SharedMap<Value> decodeMap(const JsonValue& value, Read read)
{
    SharedMap<Value> map;
    const JsonObject object(value);
    object.forEachMember([&](std::string_view key, const JsonValue& member) {
        map[std::string(key)] = read(member);
    });
    return map;
}

/// A map of bytes rather than of texts.
struct BytesMap {
    SharedMap<std::string> map;
};

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

void encode(JsonWriter& writer, const SyncConflict& conflict)
{
    writer.beginObject();
    writer.member("id", conflict.id);
    writer.key("local");
    encode(writer, conflict.local);
    writer.key("remote");
    encode(writer, conflict.remote);
    writer.endObject();
}

namespace {

/// Writes what may grow with the ledger whole.
class WholeParts {
public:
    explicit WholeParts(JsonWriter& writer) : writer_(writer) { }

    template <class Value>
    void map(const SharedMap<Value>& map, void (*encodeValue)(JsonWriter&, const Value&))
    {
        writer_.beginObject();
        for (const auto& [key, value] : map) {
            writer_.key(key);
            encodeValue(writer_, value);
        }
        writer_.endObject();
    }
    void list(const RecordList<SyncConflict>& conflicts)
    {
        writer_.beginArray();
        for (const SyncConflict& conflict : conflicts) {
            encode(writer_, conflict);
        }
        writer_.endArray();
    }

private:
    JsonWriter& writer_;
};

/// Writes the same in pieces that are remembered with the blocks they were made from.
class RememberedParts {
public:
    RememberedParts(LedgerBytes& bytes, JsonWriter& writer) : bytes_(bytes), writer_(writer) { }

    template <class Value>
    void map(const SharedMap<Value>& map, void (*encodeValue)(JsonWriter&, const Value&))
    {
        writer_.beginObject();
        appendBlocks(bytes_, writer_, map, [&](const auto& block) -> const SharedBytes& {
            if (!block.json) {
                block.json = membersJson(block, encodeValue);
            }
            return block.json;
        });
        writer_.endObject();
    }
    void list(const RecordList<SyncConflict>& conflicts) { encodeList(bytes_, writer_, conflicts); }

private:
    template <class Block, class EncodeValue>
    [[nodiscard]] static SharedBytes membersJson(const Block& block, EncodeValue encodeValue)
    {
        JsonWriter writer;
        writer.beginObject();
        for (const auto& entry : block.entries) {
            writer.key(entry->content.first);
            encodeValue(writer, entry->content.second);
        }
        writer.endObject();
        return withoutBrackets(writer.take());
    }

    LedgerBytes& bytes_;
    JsonWriter& writer_;
};

template <class Parts>
void encodeState(JsonWriter& writer, const LedgerSyncState& state, Parts parts)
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
    parts.map(state.systemFields, encodeBytes);
    writer.key("baseRevisions");
    parts.map(state.baseRevisions, encodeText);
    writer.key("outbox");
    parts.map(state.outbox, encode);
    writer.key("conflicts");
    parts.list(state.conflicts);
    writer.key("remoteSessions");
    parts.map(state.remoteSessions, encode);
    writer.key("staged");
    parts.map(state.staged, encode);
    writer.key("tombstones");
    parts.map(state.tombstones, encode);
    writer.endObject();
}

} // namespace

void encode(JsonWriter& writer, const LedgerSyncState& state)
{
    encodeState(writer, state, WholeParts(writer));
}

void encode(LedgerBytes& bytes, JsonWriter& writer, const LedgerSyncState& state)
{
    encodeState(writer, state, RememberedParts(bytes, writer));
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
RecordList<SyncConflict> decode<RecordList<SyncConflict>>(const JsonValue& value)
{
    RecordList<SyncConflict> conflicts;
    value.forEachElement(
        [&](const JsonValue& element) { conflicts.append(decode<SyncConflict>(element)); });
    return conflicts;
}

template <>
SharedMap<std::string> decode<SharedMap<std::string>>(const JsonValue& value)
{
    return decodeMap<std::string>(value, decode<std::string>);
}

template <>
SharedMap<SyncRecord> decode<SharedMap<SyncRecord>>(const JsonValue& value)
{
    return decodeMap<SyncRecord>(value, decode<SyncRecord>);
}

template <>
SharedMap<SyncedSession> decode<SharedMap<SyncedSession>>(const JsonValue& value)
{
    return decodeMap<SyncedSession>(value, decode<SyncedSession>);
}

template <>
BytesMap decode<BytesMap>(const JsonValue& value)
{
    return {decodeMap<std::string>(
        value, [](const JsonValue& member) { return decode<Base64Bytes>(member).content; })};
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
    state.systemFields = object.valueOr<BytesMap>("systemFields", {}).map;
    state.baseRevisions = object.valueOr<SharedMap<std::string>>("baseRevisions", {});
    state.outbox = object.valueOr<SharedMap<SyncRecord>>("outbox", {});
    state.conflicts = object.valueOr<RecordList<SyncConflict>>("conflicts", {});
    state.remoteSessions = object.valueOr<SharedMap<SyncedSession>>("remoteSessions", {});
    state.staged = object.valueOr<SharedMap<SyncRecord>>("staged", {});
    state.tombstones = object.valueOr<SharedMap<SyncRecord>>("tombstones", {});
    return state;
}

} // namespace KestryCore
