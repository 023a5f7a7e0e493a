#include "CouchDocument.h"

#include <charconv>
#include <utility>

#include "Base64.h"
#include "CloudError.h"
#include "JsonWriter.h"
#include "LedgerError.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr std::string_view zonePrefix = "zone:";
constexpr std::string_view devicePrefix = "device:";

// Reading. What has the wrong type is left out.

std::string textOf(JsonObject& members, std::string_view key)
{
    const auto value = members.optional(key);
    try {
        return value ? std::string(value->text()) : std::string();
    } catch (const LedgerError&) {
        return {};
    }
}

std::optional<CloudValue> bytesOf(const simdjson::dom::object& value)
{
    std::string_view encoded;
    if (value["base64"].get_string().get(encoded) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    auto bytes = decodeBase64(encoded);
    return bytes ? std::optional<CloudValue>(CloudBytes{*std::move(bytes)}) : std::nullopt;
}

/// By the type that it has: there are too many to find out by failures.
std::optional<CloudValue> fieldOf(const simdjson::dom::element& value)
{
    switch (value.type()) {
    case simdjson::dom::element_type::INT64:
    case simdjson::dom::element_type::UINT64:
    case simdjson::dom::element_type::DOUBLE:
        return CloudValue(double(value.get_double()));
    case simdjson::dom::element_type::STRING:
        return CloudValue(std::string(std::string_view(value.get_string())));
    case simdjson::dom::element_type::OBJECT:
        return bytesOf(value.get_object());
    default:
        return std::nullopt;
    }
}

void readFields(const JsonValue& value, CouchDocument& document)
{
    try {
        for (const simdjson::dom::key_value_pair& field : value.object()) {
            if (auto content = fieldOf(field.value)) {
                const bool isEscaped = field.key.starts_with('_');
                document.fields.emplace(field.key.substr(isEscaped ? 1 : 0), *std::move(content));
            }
        }
    } catch (const LedgerError&) {
        document.fields.clear(); // It is no object.
    }
}

std::vector<std::string> textsOf(const JsonValue& value)
{
    std::vector<std::string> texts;
    value.forEachElement([&](const JsonValue& element) { texts.emplace_back(element.text()); });
    return texts;
}

/// The server tells a history as the number of the newest revision and the hashes, newest first.
std::vector<std::string> historyOf(const JsonValue& value)
{
    JsonObject members(value);
    std::int64_t generation = members.required("start").integer();
    const std::vector<std::string> hashes = textsOf(members.required("ids"));
    if (generation < static_cast<std::int64_t>(hashes.size())) {
        throw LedgerError("A history is longer than its newest revision is old.");
    }
    std::vector<std::string> revisions;
    for (const std::string& hash : hashes) {
        revisions.push_back(std::to_string(generation) + "-" + hash);
        --generation;
    }
    return revisions;
}

// Writing.

void writeField(JsonWriter& writer, const CloudValue& value)
{
    if (const auto* const number = std::get_if<double>(&value)) {
        writer.value(*number);
    } else if (const auto* const text = std::get_if<std::string>(&value)) {
        writer.value(std::string_view(*text));
    } else {
        writer.beginObject();
        writer.member("base64", std::string_view(encodeBase64(std::get<CloudBytes>(value).bytes)));
        writer.endObject();
    }
}

std::string write(const CouchDocument& document)
{
    JsonWriter writer;
    writer.beginObject();
    writer.member("_id", std::string_view(document.id));
    if (!document.revision.empty()) {
        writer.member("_rev", std::string_view(document.revision));
    }
    if (document.isDeleted) {
        writer.member("_deleted", true);
    }
    writer.member("type", std::string_view(document.type));
    writer.key("fields");
    writer.beginObject();
    for (const auto& [name, value] : document.fields) {
        writer.key((name.starts_with('_') ? "_" : "") + name);
        writeField(writer, value);
    }
    writer.endObject();
    writer.endObject();
    return writer.take();
}

/// A malformed one would make the server refuse everything that is sent together with it.
bool isRevision(std::string_view revision)
{
    return revision.empty()
        || (generationOf(revision) > 0 && revision.find('-') + 1 < revision.size());
}

} // namespace

CouchDocument couchDocument(const JsonValue& value)
{
    JsonObject members(value);
    CouchDocument document;
    document.id = members.required("_id").text();
    document.revision = members.required("_rev").text();
    if (const auto deleted = members.optional("_deleted")) {
        document.isDeleted = deleted->flag();
    }
    document.type = textOf(members, "type");
    if (const auto fields = members.optional("fields")) {
        readFields(*fields, document);
    }
    if (const auto conflicts = members.optional("_conflicts")) {
        document.overruled = textsOf(*conflicts);
    }
    if (const auto revisions = members.optional("_revisions")) {
        document.history = historyOf(*revisions);
    }
    return document;
}

std::string couchJson(const CouchDocument& document)
{
    if (document.id.empty() || document.id.front() == '_' || !isRevision(document.revision)) {
        throw CloudError("A record has a name that the record store cannot keep.");
    }
    try {
        return write(document);
    } catch (const LedgerError& refusal) {
        throw CloudError(std::string("A record cannot be sent. ") + refusal.what());
    }
}

CouchDocument documentOf(const CloudRecord& record)
{
    CouchDocument document;
    document.id = recordDocument(record.id);
    document.revision = record.serverVersion;
    document.type = record.type;
    document.fields = record.fields;
    return document;
}

CloudRecord recordOf(CouchDocument document)
{
    return {recordOfDocument(document.id).value_or(CloudRecordID{}), std::move(document.type),
        std::move(document.revision), std::move(document.fields)};
}

std::string recordDocument(const CloudRecordID& id)
{
    return id.zone.name + "/" + id.name;
}

std::optional<CloudRecordID> recordOfDocument(std::string_view name)
{
    const std::size_t solidus = name.find('/');
    if (solidus == std::string_view::npos || name.starts_with('_')) {
        return std::nullopt;
    }
    return CloudRecordID{
        std::string(name.substr(solidus + 1)), {std::string(name.substr(0, solidus))}};
}

std::string zoneDocument(const CloudZoneID& zone)
{
    return std::string(zonePrefix) + zone.name;
}

std::string deviceDocument(const std::string& device)
{
    return std::string(devicePrefix) + device;
}

std::optional<std::string> deviceOfDocument(std::string_view name)
{
    if (!name.starts_with(devicePrefix) || name.find('/') != std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(name.substr(devicePrefix.size()));
}

std::int64_t generationOf(std::string_view revision)
{
    std::int64_t generation = 0;
    const char* const end = revision.data() + revision.size();
    const auto [rest, failure] = std::from_chars(revision.data(), end, generation);
    const bool isRead = failure == std::errc() && rest != end && *rest == '-' && generation > 0;
    return isRead ? generation : 0;
}

bool isBehind(std::string_view revision, std::string_view other)
{
    // The hyphen of a revision without a number is not found, and the whole text is compared.
    const auto hash = [](std::string_view of) { return of.substr(of.find('-') + 1); };
    const std::int64_t own = generationOf(revision);
    const std::int64_t others = generationOf(other);
    return own != others ? own < others : hash(revision) < hash(other);
}

} // namespace Kestry
