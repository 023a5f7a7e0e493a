#include "SessionListing.h"

#include "Instants.h"
#include "JsonWriter.h"
#include "PlainText.h"
#include "RecordIndex.h"
#include "RecordLookup.h"
#include "SessionLabel.h"
#include "SessionQuery.h"
#include "SessionTitleSuggestions.h"
#include "SessionValue.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;
using KestryCore::MoneyText;
using KestryCore::Project;
using KestryCore::RecordIndex;
using KestryCore::SessionQuery;
using KestryCore::TimeEntry;

namespace {

using Sessions = std::vector<const TimeEntry*>;

Sessions found(const LedgerData& ledger, const SessionQuery& query, const SessionsCommand& command,
    const CommandContext& context)
{
    const KestryCore::LocalizedOrder order(context.calendar.locale());
    std::optional<KestryCore::Date> month;
    if (command.month) {
        month = context.calendar.startOfDay(*command.month);
    }
    return query.sessions({ledger, context.calendar, order, month});
}

/// One line of the list: a session with the texts that its record does not contain.
struct ListedSession {
    ListedSession(const TimeEntry& entry, const RecordIndex& index, const MoneyText& words)
        : label(sessionLabel(entry, index)), project(index.projectOf(entry)),
          client(index.clientOf(project)), duration(entry.duration()),
          earnedCents(entry.earnedCents()), value(valueText(entry, words))
    {
        if (project != nullptr && project->isClientDefault) {
            project = nullptr;
        }
    }

    std::string_view label;
    const Project* project; ///< Null also when the project is hidden.
    const Client* client;
    double duration;
    double earnedCents;
    std::string value;
};

template <class Record>
void nameMember(JsonWriter& json, std::string_view name, const Record* record)
{
    json.key(name);
    if (record != nullptr) {
        json.value(record->name);
    } else {
        json.null();
    }
}

void writeSession(JsonWriter& json, const TimeEntry& entry, const ListedSession& facts)
{
    json.beginObject();
    json.member("id", entry.id);
    json.member("label", facts.label);
    json.member("title", entry.title);
    nameMember(json, "client", facts.client);
    nameMember(json, "project", facts.project);
    json.member("startedAt", entry.startedAt());
    json.member("endedAt", entry.endedAt());
    json.member("durationSeconds", facts.duration);
    json.member("durationText", KestryCore::durationText(facts.duration));
    json.member("earnedCents", facts.earnedCents);
    json.member("valueText", facts.value);
    json.member("isBillable", entry.isBillable);
    json.member("rateIsKnown", entry.rateIsKnown);
    json.member("hourlyRateCents", entry.hourlyRateCents);
    json.key("sourceID");
    if (entry.sourceID) {
        json.value(*entry.sourceID);
    } else {
        json.null();
    }
    json.endObject();
}

std::string sessionsJson(const Sessions& sessions, const RecordIndex& index, const MoneyText& words)
{
    JsonWriter json;
    json.beginArray();
    for (const TimeEntry* entry : sessions) {
        writeSession(json, *entry, ListedSession(*entry, index, words));
    }
    json.endArray();
    return json.take();
}

std::string sessionsText(const Sessions& sessions, const RecordIndex& index, const MoneyText& words,
    const CommandContext& context)
{
    TextTable table;
    table.add({{"STARTED", Tint::heading}, {"DURATION", Tint::heading, true},
        {"VALUE", Tint::heading, true}, {"SESSION", Tint::heading}, {"CLIENT", Tint::heading},
        {"PROJECT", Tint::heading}, {"ID", Tint::heading}});
    for (const TimeEntry* entry : sessions) {
        const ListedSession facts(*entry, index, words);
        const bool isUnpriced = entry->isBillable && !entry->rateIsKnown;
        table.add({{instantText(entry->startedAt(), context.calendar)},
            {KestryCore::durationText(facts.duration), Tint::plain, true},
            {facts.value, isUnpriced ? Tint::warning : Tint::plain, true},
            {std::string(facts.label)},
            {facts.client != nullptr ? facts.client->name : std::string()},
            {facts.project != nullptr ? facts.project->name : std::string()}, {entry->id.text()}});
    }
    return table.text(context.isColored);
}

/// Why a list is empty, in the words of the sessions page.
std::string emptyText(const SessionsCommand& command)
{
    if (command.month) {
        return "No sessions this month\n";
    }
    return command.search.empty() ? "No sessions yet\n" : "No matching sessions\n";
}

} // namespace

CommandAnswer sessionListing(
    const LedgerData& ledger, const SessionsCommand& command, const CommandContext& context)
{
    SessionQuery query(KestryCore::SessionListPlace::page, knownClient(ledger, command.client));
    query.setSearch(command.search);
    query.setSort(command.sort);
    const Sessions sessions = found(ledger, query, command, context);
    const RecordIndex index(ledger);
    const MoneyText words(context.calendar.locale());
    if (context.asJson) {
        return {{}, sessionsJson(sessions, index, words)};
    }
    return {
        sessions.empty() ? emptyText(command) : sessionsText(sessions, index, words, context), {}};
}

CommandAnswer titleListing(const LedgerData& ledger, const std::string& prefix)
{
    constexpr int mostTitles = 4;
    namespace Suggestions = KestryCore::SessionTitleSuggestions;
    std::string text;
    std::optional<std::string> suffix;
    JsonWriter json;
    json.beginObject();
    json.key("matches");
    json.beginArray();
    for (const std::string& title : Suggestions::matches(prefix, ledger.entries, mostTitles)) {
        text += printable(title) + "\n";
        json.value(title);
        suffix = suffix ? suffix : Suggestions::inlineSuffix(prefix, title);
    }
    json.endArray();
    json.key("inlineSuffix");
    if (suffix) {
        json.value(*suffix);
    } else {
        json.null();
    }
    json.endObject();
    return {text, json.take()};
}

} // namespace Kestry
