#include "CouchAnswers.h"

#include <charconv>

#include "JsonReader.h"
#include "LedgerError.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr int oldestVersion = 2;

/// Reads a body; what does not make sense becomes a failure of the store.
template <class Read>
auto reading(const std::string& body, const Read& read)
{
    try {
        const JsonDocument document(body);
        return read(document.root());
    } catch (const LedgerError&) {
        throw CloudError("The record store gave an answer that makes no sense. Your local changes "
                         "are saved and will retry.");
    }
}

std::string textOr(JsonObject& members, std::string_view key)
{
    const auto value = members.optional(key);
    return value ? std::string(value->text()) : std::string();
}

bool flagOr(JsonObject& members, std::string_view key)
{
    const auto value = members.optional(key);
    return value && value->flag();
}

/// A sequence is text, or a number on simpler servers.
std::string sequenceOf(const JsonValue& value)
{
    try {
        return std::string(value.text());
    } catch (const LedgerError&) {
        return std::to_string(value.integer());
    }
}

std::optional<CouchDocument> documentIn(JsonObject& members, std::string_view key)
{
    const auto value = members.optional(key);
    return value ? std::optional<CouchDocument>(couchDocument(*value)) : std::nullopt;
}

[[noreturn]] void refuseOtherServer()
{
    throw CouchNotFound(noServerWords);
}

void requireVersion(const std::string& version)
{
    int major = 0;
    const auto [rest, failure] =
        std::from_chars(version.data(), version.data() + version.size(), major);
    if (failure == std::errc() && major < oldestVersion) {
        throw CloudError("This CouchDB server is too old for Kestry. Ask its administrator to "
                         "install version 2 or later.");
    }
}

CouchWelcome welcomeIn(const JsonValue& root)
{
    JsonObject members(root);
    CouchWelcome welcome{textOr(members, "uuid")};
    const std::string version = textOr(members, "version");
    const bool isCouch = members.optional("couchdb").has_value();
    // Others that speak its language say so in their own words, but have all of this.
    if (!isCouch && (version.empty() || !members.optional("vendor"))) {
        refuseOtherServer();
    }
    if (isCouch) {
        requireVersion(version);
    }
    return welcome;
}

CouchRow rowIn(const JsonValue& value)
{
    JsonObject members(value);
    CouchRow row;
    row.id = members.required("key").text();
    if (members.optional("error")) {
        row.isMissing = true;
        return row;
    }
    JsonObject version(members.required("value"));
    row.revision = version.required("rev").text();
    row.isDeleted = flagOr(version, "deleted");
    row.document = documentIn(members, "doc");
    return row;
}

CouchChange changeIn(const JsonValue& value)
{
    JsonObject members(value);
    CouchChange change;
    change.id = members.required("id").text();
    members.required("changes").forEachElement([&](const JsonValue& element) {
        JsonObject version(element);
        // The first is the one that the server shows.
        if (change.revision.empty()) {
            change.revision = version.required("rev").text();
        }
    });
    change.isDeleted = flagOr(members, "deleted");
    change.document = documentIn(members, "doc");
    return change;
}

} // namespace

CouchWelcome couchWelcome(const std::string& body)
{
    try {
        const JsonDocument document(body);
        return welcomeIn(document.root());
    } catch (const LedgerError&) {
        refuseOtherServer();
    }
}

std::optional<std::string> couchUser(const std::string& body)
{
    return reading(body, [](const JsonValue& root) {
        JsonObject members(root);
        JsonObject user(members.required("userCtx"));
        const auto name = user.optional("name");
        return name ? std::optional<std::string>(name->text()) : std::nullopt;
    });
}

std::vector<CouchSaved> couchSaved(const std::string& body)
{
    return reading(body, [](const JsonValue& root) {
        std::vector<CouchSaved> all;
        root.forEachElement([&](const JsonValue& element) {
            JsonObject members(element);
            CouchSaved saved;
            saved.id = members.required("id").text();
            saved.error = textOr(members, "error");
            saved.revision = saved.error.empty() ? textOr(members, "rev") : std::string();
            all.push_back(std::move(saved));
        });
        return all;
    });
}

std::vector<CouchRow> couchRows(const std::string& body)
{
    return reading(body, [](const JsonValue& root) {
        JsonObject members(root);
        std::vector<CouchRow> rows;
        members.required("rows").forEachElement(
            [&](const JsonValue& element) { rows.push_back(rowIn(element)); });
        return rows;
    });
}

std::vector<CouchDocument> couchVersions(const std::string& body)
{
    return reading(body, [](const JsonValue& root) {
        JsonObject members(root);
        std::vector<CouchDocument> documents;
        members.required("results").forEachElement([&](const JsonValue& result) {
            JsonObject named(result);
            named.required("docs").forEachElement([&](const JsonValue& element) {
                JsonObject version(element);
                if (auto document = documentIn(version, "ok")) {
                    documents.push_back(*std::move(document));
                }
            });
        });
        return documents;
    });
}

CouchFeed couchFeed(const std::string& body)
{
    return reading(body, [](const JsonValue& root) {
        JsonObject members(root);
        CouchFeed feed;
        members.required("results").forEachElement(
            [&](const JsonValue& element) { feed.changes.push_back(changeIn(element)); });
        feed.last = sequenceOf(members.required("last_seq"));
        if (const auto pending = members.optional("pending")) {
            feed.pending = pending->integer();
        }
        return feed;
    });
}

std::string couchErrorWord(const std::string& body)
{
    try {
        const JsonDocument document(body);
        JsonObject members(document.root());
        return textOr(members, "error");
    } catch (const LedgerError&) {
        return {};
    }
}

} // namespace Kestry
