#include "StatusReport.h"

#include <string>

#include "Instants.h"
#include "JsonWriter.h"
#include "LedgerCoding.h"
#include "PlainText.h"
#include "SessionValue.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::ActiveSession;
using KestryCore::Date;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;
using KestryCore::Project;
using KestryCore::TimeStore;

namespace {

/// The figures of the session in progress; all absent or zero when there is none.
struct ActiveFigures {
    std::string state = "idle";
    double elapsedSeconds = 0.0;
    std::optional<std::string> client;
    std::optional<std::string> project;
    std::optional<double> earnedCents;
    std::optional<std::string> valueText;
};

ActiveFigures activeFigures(const TimeStore& store, const CommandContext& context)
{
    const LedgerData& ledger = *store.data();
    ActiveFigures facts;
    if (!ledger.active) {
        return facts;
    }
    const ActiveSession& session = *ledger.active;
    facts.state = session.isPaused() ? "paused" : "running";
    facts.elapsedSeconds = store.elapsed(context.at);
    facts.earnedCents = session.earnedCents(facts.elapsedSeconds);
    facts.valueText =
        valueText(session, facts.elapsedSeconds, KestryCore::MoneyText(context.calendar.locale()));
    const Project* project = ledger.projects.find(session.projectID);
    if (project == nullptr) {
        return facts;
    }
    if (!project->isClientDefault) {
        facts.project = project->name;
    }
    if (const auto* client = ledger.clients.find(project->clientID)) {
        facts.client = client->name;
    }
    return facts;
}

template <class Value>
void member(JsonWriter& json, std::string_view name, const std::optional<Value>& value)
{
    json.key(name);
    if (value) {
        json.value(*value);
    } else {
        json.null();
    }
}

std::string statusJson(
    const TimeStore& store, const ActiveFigures& facts, const CommandContext& context)
{
    const LedgerData& ledger = *store.data();
    JsonWriter json;
    json.beginObject();
    json.member("state", facts.state);
    json.key("active");
    if (ledger.active) {
        encode(json, *ledger.active);
    } else {
        json.null();
    }
    json.member("elapsedSeconds", facts.elapsedSeconds);
    json.member("clock", KestryCore::clockText(facts.elapsedSeconds));
    member(json, "client", facts.client);
    member(json, "project", facts.project);
    member(json, "earnedCents", facts.earnedCents);
    member(json, "valueText", facts.valueText);
    json.member("recoveredSession", *store.recoveredSession());
    json.member("recoveryAvailable", *store.recoveryAvailable());
    json.member("blocked", store.blocked());
    const auto& message = *store.errorMessage();
    member(json, "errorMessage", message ? std::optional(wellFormed(*message)) : std::nullopt);
    // A path may be any bytes. A changed letter is better than a document that can't be read.
    json.member("dataDirectory", wellFormed(context.dataDirectory));
    json.endObject();
    return json.take();
}

/// The time of day, with the date unless it is the day of `now`.
std::string momentText(Date date, const CommandContext& context)
{
    const std::string text = instantText(date, context.calendar);
    const bool isToday = context.calendar.day(date) == context.calendar.day(context.at);
    return isToday ? text.substr(text.find(' ') + 1) : text;
}

void addSession(TextTable& table, const ActiveSession& session, const ActiveFigures& facts,
    const CommandContext& context)
{
    const bool isRunning = !session.isPaused();
    table.add({{"State", Tint::heading},
        {(isRunning ? "running, last checkpoint " : "paused at ")
                + momentText(session.checkpointAt, context),
            isRunning ? Tint::good : Tint::waiting}});
    table.add({{"Elapsed", Tint::heading}, {KestryCore::clockText(facts.elapsedSeconds)}});
    if (!session.title.empty()) {
        table.add({{"Title", Tint::heading}, {session.title}});
    }
    if (facts.client) {
        table.add({{"Client", Tint::heading}, {*facts.client}});
    }
    if (facts.project) {
        table.add({{"Project", Tint::heading}, {*facts.project}});
    }
    table.add({{"Value", Tint::heading}, {facts.valueText.value_or("")}});
}

std::string statusText(
    const TimeStore& store, const ActiveFigures& facts, const CommandContext& context)
{
    TextTable table;
    if (const auto& session = store.data()->active) {
        addSession(table, *session, facts, context);
    } else {
        table.add({{"State", Tint::heading}, {facts.state}});
    }
    if (*store.errorMessage()) {
        table.add({{"Attention", Tint::heading}, {**store.errorMessage(), Tint::warning}});
    }
    if (*store.recoveryAvailable()) {
        table.add({{"Backup", Tint::heading}, {"can be restored with \"kestryctl restore\""}});
    }
    return table.text(context.isColored);
}

} // namespace

CommandAnswer statusReport(const TimeStore& store, const CommandContext& context)
{
    const ActiveFigures facts = activeFigures(store, context);
    return {statusText(store, facts, context), statusJson(store, facts, context)};
}

} // namespace Kestry
