#include "CouchCursor.h"

#include <algorithm>

#include "JsonReader.h"
#include "JsonWriter.h"

namespace Kestry {

using namespace KestryCore;

void CouchCursor::see(const std::string& name, std::int64_t count)
{
    std::int64_t& known = deliveries[name];
    known = std::max(known, count);
}

CloudCursor CouchCursor::encoded() const
{
    JsonWriter writer;
    writer.beginObject();
    writer.member("incarnation", std::string_view(incarnation));
    writer.member("device", std::string_view(device));
    writer.key("deliveries");
    writer.beginObject();
    for (const auto& [name, count] : deliveries) {
        writer.member(name, count);
    }
    writer.endObject();
    writer.member("first", isFirstReading);
    writer.member("since", std::string_view(since));
    writer.endObject();
    return {writer.take()};
}

namespace {

CouchCursor read(const std::string& bytes)
{
    const JsonDocument document(bytes);
    JsonObject members(document.root());
    CouchCursor cursor;
    cursor.incarnation = members.required("incarnation").text();
    cursor.device = members.required("device").text();
    const JsonObject deliveries(members.required("deliveries"));
    deliveries.forEachMember([&](std::string_view name, const JsonValue& count) {
        cursor.deliveries[std::string(name)] = count.integer();
    });
    cursor.isFirstReading = members.required("first").flag();
    cursor.since = members.required("since").text();
    return cursor;
}

} // namespace

std::optional<CouchCursor> CouchCursor::decode(const CloudCursor& cursor)
{
    try {
        return read(cursor.bytes);
    } catch (const LedgerError&) {
        return std::nullopt;
    }
}

} // namespace Kestry
