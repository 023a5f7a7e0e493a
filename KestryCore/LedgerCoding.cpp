#include "LedgerCoding.h"

#include "Base64.h"
#include "BlockCoding.h"

namespace KestryCore {

namespace {

template <class Value>
void optionalMember(JsonWriter& writer, std::string_view key, const std::optional<Value>& content)
{
    if (content) {
        writer.member(key, *content);
    }
}

void encode(JsonWriter& writer, const std::vector<TimeSpan>& spans)
{
    writer.beginArray();
    for (const TimeSpan& span : spans) {
        writer.beginObject();
        writer.member("start", span.start);
        writer.member("end", span.end);
        writer.endObject();
    }
    writer.endArray();
}

} // namespace

template <>
Uuid decode<Uuid>(const JsonValue& value)
{
    const std::optional<Uuid> uuid = Uuid::parse(value.text());
    if (!uuid) {
        value.fail("isn't a UUID");
    }
    return *uuid;
}

template <>
Date decode<Date>(const JsonValue& value)
{
    return Date{value.number()};
}

template <>
Base64Bytes decode<Base64Bytes>(const JsonValue& value)
{
    std::optional<std::string> bytes = decodeBase64(value.text());
    if (!bytes) {
        value.fail("isn't base64");
    }
    return Base64Bytes{std::move(*bytes)};
}

namespace {

template <class Record>
Record decodeMembers(const JsonValue& value)
{
    JsonObject object(value);
    Record record;
    readMembers(object, record);
    return record;
}

} // namespace

template <>
std::vector<TimeSpan> decode<std::vector<TimeSpan>>(const JsonValue& value)
{
    std::vector<TimeSpan> spans;
    value.forEachElement(
        [&](const JsonValue& element) { spans.push_back(decodeMembers<TimeSpan>(element)); });
    return spans;
}

template <>
Client decode<Client>(const JsonValue& value)
{
    return decodeMembers<Client>(value);
}

template <>
Project decode<Project>(const JsonValue& value)
{
    return decodeMembers<Project>(value);
}

template <>
TimeEntry decode<TimeEntry>(const JsonValue& value)
{
    return decodeMembers<TimeEntry>(value);
}

template <>
ActiveSession decode<ActiveSession>(const JsonValue& value)
{
    return decodeMembers<ActiveSession>(value);
}

namespace {

template <class Record>
RecordList<Record> readList(const JsonValue& value)
{
    RecordList<Record> list;
    value.forEachElement([&](const JsonValue& element) { list.append(decode<Record>(element)); });
    return list;
}

} // namespace

template <>
RecordList<Client> decode<RecordList<Client>>(const JsonValue& value)
{
    return readList<Client>(value);
}

template <>
RecordList<Project> decode<RecordList<Project>>(const JsonValue& value)
{
    return readList<Project>(value);
}

template <>
RecordList<TimeEntry> decode<RecordList<TimeEntry>>(const JsonValue& value)
{
    return readList<TimeEntry>(value);
}

void encode(JsonWriter& writer, const Client& client)
{
    writer.beginObject();
    writer.member("id", client.id);
    writer.member("name", client.name);
    writer.member("hourlyRateCents", client.hourlyRateCents);
    writer.member("colorHex", client.colorHex);
    writer.member("rateIsKnown", client.rateIsKnown);
    if (client.logoData) {
        writer.member("logoData", encodeBase64(*client.logoData));
    }
    writer.member("projectsEnabled", client.projectsEnabled);
    writer.endObject();
}

void encode(JsonWriter& writer, const Project& project)
{
    writer.beginObject();
    writer.member("id", project.id);
    writer.member("clientID", project.clientID);
    writer.member("name", project.name);
    writer.member("hourlyRateCents", project.hourlyRateCents);
    writer.member("rateIsKnown", project.rateIsKnown);
    writer.member("isClientDefault", project.isClientDefault);
    writer.endObject();
}

void encode(JsonWriter& writer, const TimeEntry& entry)
{
    writer.beginObject();
    writer.member("id", entry.id);
    writer.member("projectID", entry.projectID);
    writer.member("title", entry.title);
    writer.member("hourlyRateCents", entry.hourlyRateCents);
    writer.key("spans");
    encode(writer, entry.spans);
    writer.member("isBillable", entry.isBillable);
    writer.member("rateIsKnown", entry.rateIsKnown);
    optionalMember(writer, "recordedDuration", entry.recordedDuration);
    optionalMember(writer, "sourceID", entry.sourceID);
    writer.endObject();
}

void encode(JsonWriter& writer, const ActiveSession& session)
{
    writer.beginObject();
    writer.member("id", session.id);
    writer.member("projectID", session.projectID);
    writer.member("title", session.title);
    writer.member("hourlyRateCents", session.hourlyRateCents);
    writer.key("spans");
    encode(writer, session.spans);
    optionalMember(writer, "runningSince", session.runningSince);
    writer.member("checkpointAt", session.checkpointAt);
    writer.member("isBillable", session.isBillable);
    writer.member("rateIsKnown", session.rateIsKnown);
    optionalMember(writer, "sourceID", session.sourceID);
    writer.endObject();
}

LedgerBytes ledgerBytes(const LedgerData& ledger)
{
    LedgerBytes bytes;
    JsonWriter writer;
    writer.beginObject();
    writer.key("clients");
    encodeList(bytes, writer, ledger.clients);
    writer.key("projects");
    encodeList(bytes, writer, ledger.projects);
    writer.key("entries");
    encodeList(bytes, writer, ledger.entries);
    if (ledger.active) {
        writer.key("active");
        encode(writer, *ledger.active);
    }
    if (ledger.replication) {
        writer.key("replication");
        encode(bytes, writer, *ledger.replication);
    }
    writer.endObject();
    bytes.append(writer.take());
    return bytes;
}

std::string encodeLedger(const LedgerData& ledger)
{
    return ledgerBytes(ledger).text();
}

namespace {

} // namespace

} // namespace KestryCore
