#include "Listings.h"

#include <string>
#include <unordered_map>

#include "JsonWriter.h"
#include "PlainText.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;
using KestryCore::MoneyText;
using KestryCore::Project;
using KestryCore::Uuid;

namespace {

using SessionCounts = std::unordered_map<Uuid, std::int64_t>;

SessionCounts savedSessionCounts(const LedgerData& ledger)
{
    SessionCounts counts;
    for (const auto& entry : ledger.entries) {
        ++counts[entry.projectID];
    }
    return counts;
}

std::int64_t countOf(const SessionCounts& counts, const Uuid& projectID)
{
    const auto found = counts.find(projectID);
    return found != counts.end() ? found->second : 0;
}

std::string rateText(const MoneyText& words, KestryCore::Cents cents, bool isKnown)
{
    return isKnown ? words.rateShort(cents) : KestryCore::rateNotSet;
}

std::vector<TextCell> headings(std::initializer_list<const char*> names)
{
    std::vector<TextCell> row;
    for (const char* name : names) {
        row.push_back({name, Tint::heading});
    }
    return row;
}

void writeClient(JsonWriter& json, const Client& client)
{
    json.beginObject();
    json.member("id", client.id);
    json.member("name", client.name);
    json.member("hourlyRateCents", client.hourlyRateCents);
    json.member("rateIsKnown", client.rateIsKnown);
    json.member("colorHex", client.colorHex);
    json.member("projectsEnabled", client.projectsEnabled);
    json.member("hasLogo", client.logoData.has_value());
    json.endObject();
}

void writeProject(
    JsonWriter& json, const Project& project, const Client* client, std::int64_t sessions)
{
    json.beginObject();
    json.member("id", project.id);
    json.member("clientID", project.clientID);
    json.key("client");
    if (client != nullptr) {
        json.value(client->name);
    } else {
        json.null();
    }
    json.member("name", project.name);
    json.member("hourlyRateCents", project.hourlyRateCents);
    json.member("rateIsKnown", project.rateIsKnown);
    json.member("isClientDefault", project.isClientDefault);
    json.member("savedSessions", sessions);
    json.endObject();
}

} // namespace

CommandAnswer clientListing(const LedgerData& ledger, const CommandContext& context)
{
    const MoneyText words(context.calendar.locale());
    JsonWriter json;
    TextTable table;
    json.beginArray();
    table.add(headings({"CLIENT", "RATE", "PROJECTS", "COLOR", "ID"}));
    for (const Client& client : ledger.clients) {
        writeClient(json, client);
        table.add({{client.name}, {rateText(words, client.hourlyRateCents, client.rateIsKnown)},
            {client.projectsEnabled ? "yes" : "no"}, {client.colorHex}, {client.id.text()}});
    }
    json.endArray();
    const std::string text =
        ledger.clients.empty() ? "There are no clients yet.\n" : table.text(context.isColored);
    return {text, json.take()};
}

CommandAnswer projectListing(
    const LedgerData& ledger, const std::optional<Uuid>& clientID, const CommandContext& context)
{
    const MoneyText words(context.calendar.locale());
    const SessionCounts counts = savedSessionCounts(ledger);
    JsonWriter json;
    TextTable table;
    bool isEmpty = true;
    json.beginArray();
    table.add(headings({"CLIENT", "PROJECT", "RATE", "SESSIONS", "ID"}));
    for (const Project& project : ledger.projects) {
        if (clientID && project.clientID != *clientID) {
            continue;
        }
        const Client* client = ledger.clients.find(project.clientID);
        const std::int64_t sessions = countOf(counts, project.id);
        writeProject(json, project, client, sessions);
        if (!project.isClientDefault) {
            isEmpty = false;
            table.add({{client != nullptr ? client->name : ""}, {project.name},
                {rateText(words, project.hourlyRateCents, project.rateIsKnown)},
                {std::to_string(sessions), Tint::plain, true}, {project.id.text()}});
        }
    }
    json.endArray();
    return {isEmpty ? "There are no projects yet.\n" : table.text(context.isColored), json.take()};
}

} // namespace Kestry
