#include "SyncCommands.h"

#include <algorithm>
#include <string>
#include <vector>

#include "DateTimeText.h"
#include "JsonWriter.h"
#include "PlainText.h"
#include "SyncStatusText.h"
#include "SyncSummaries.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::ConflictChoice;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;
using KestryCore::LedgerSyncState;
using KestryCore::SyncConflict;
using KestryCore::SyncedSession;
using KestryCore::TimeStore;

namespace {

/// The condition as far as the ledger tells it: on files, `kestryctl` never connects to a store.
/// Whether one can be reached, and how the last try went, is known only to the application.
SyncCondition conditionOf(const LedgerData& ledger)
{
    SyncCondition condition;
    condition.isEnabled = ledger.replication && ledger.replication->enabled;
    condition.status =
        condition.isEnabled ? KestryCore::syncStatusText(ledger) : "iCloud sync is off";
    return condition;
}

std::int64_t count(std::size_t number)
{
    return static_cast<std::int64_t>(number);
}

double elapsed(const SyncedSession& remote)
{
    return remote.active->elapsed(remote.active->checkpointAt);
}

std::string label(const SyncedSession& remote)
{
    return remote.active->title.empty() ? "Session on " + remote.ownerName : remote.active->title;
}

void writeSession(JsonWriter& json, const SyncedSession& remote)
{
    json.beginObject();
    json.member("id", remote.active->id);
    json.member("label", label(remote));
    json.member("title", remote.active->title);
    json.member("ownerName", remote.ownerName);
    json.member("state", remote.active->isPaused() ? "paused" : "running");
    json.member("elapsedSeconds", elapsed(remote));
    json.member("durationText", KestryCore::durationText(elapsed(remote)));
    json.endObject();
}

template <class Value>
void writeOptional(JsonWriter& json, const char* name, const std::optional<Value>& value)
{
    json.key(name);
    if (value) {
        json.value(*value);
    } else {
        json.null();
    }
}

void writeAccount(JsonWriter& json, const std::optional<SyncCondition::Account>& account)
{
    json.key("account");
    if (!account) {
        json.null();
        return;
    }
    json.beginObject();
    json.member("address", account->address);
    json.member("user", account->user);
    json.endObject();
}

std::string statusJson(const SyncCondition& condition, const LedgerSyncState& state)
{
    JsonWriter json;
    json.beginObject();
    writeOptional(json, "configured", condition.isConfigured);
    json.member("enabled", condition.isEnabled);
    json.member("isSyncing", condition.isSyncing);
    json.member("status", condition.status);
    writeOptional(json, "lastSync", condition.lastSync);
    writeOptional(json, "errorMessage", condition.errorMessage);
    json.member("pending", count(state.outbox.size()));
    json.member("staged", count(state.staged.size()));
    json.member("conflicts", count(state.conflicts.size()));
    json.key("remoteSessions");
    json.beginArray();
    for (const auto& [key, remote] : state.remoteSessions) {
        writeSession(json, remote);
    }
    json.endArray();
    writeAccount(json, condition.account);
    json.endObject();
    return json.take();
}

/// What only the application knows.
void addLiveRows(TextTable& table, const SyncCondition& condition, const CommandContext& context)
{
    if (condition.errorMessage) {
        table.add({{"Problem", Tint::heading}, {*condition.errorMessage, Tint::warning}});
    }
    if (const auto& account = condition.account) {
        const std::string user = account->user.empty() ? "" : account->user + " · ";
        table.add({{"Account", Tint::heading}, {user + account->address}});
    }
    if (condition.lastSync) {
        const KestryCore::DateTimeText moments(context.calendar);
        table.add({{"Last synced", Tint::heading}, {moments.dateAndTime(*condition.lastSync)}});
    }
}

std::string statusText(const LedgerData& ledger, const SyncCondition& condition,
    const LedgerSyncState& state, const CommandContext& context)
{
    TextTable table;
    table.add({{"Sync", Tint::heading},
        {condition.status, state.conflicts.empty() ? Tint::plain : Tint::warning}});
    addLiveRows(table, condition, context);
    if (ledger.replication) {
        table.add({{"Pending", Tint::heading}, {std::to_string(state.outbox.size())}});
        table.add({{"Staged", Tint::heading}, {std::to_string(state.staged.size())}});
        table.add({{"Conflicts", Tint::heading}, {std::to_string(state.conflicts.size())}});
    }
    for (const auto& [key, remote] : state.remoteSessions) {
        table.add({{"Elsewhere", Tint::heading},
            {label(remote) + " · " + remote.ownerName + " · "
                + (remote.active->isPaused() ? "Paused" : "Running when last synced") + " · "
                + KestryCore::durationText(elapsed(remote))}});
    }
    return table.text(context.isColored);
}

/// The replication state of a ledger; empty when it was never connected.
LedgerSyncState stateOf(const LedgerData& ledger)
{
    return ledger.replication ? *ledger.replication : LedgerSyncState{};
}

} // namespace

CommandAnswer run(const SyncStatusCommand&, TimeStore& store, const CommandContext& context)
{
    const LedgerData& ledger = *store.data();
    const LedgerSyncState state = stateOf(ledger);
    const SyncCondition condition = context.sync.value_or(conditionOf(ledger));
    return {statusText(ledger, condition, state, context), statusJson(condition, state)};
}

CommandAnswer run(const SyncConflictsCommand&, TimeStore& store, const CommandContext& context)
{
    const KestryCore::SyncSummaries words(context.calendar);
    const LedgerSyncState state = stateOf(*store.data());
    JsonWriter json;
    std::string text;
    json.beginArray();
    for (const SyncConflict& conflict : state.conflicts) {
        const std::string local = words.summary(conflict.local);
        const std::string remote = words.summary(conflict.remote);
        json.beginObject();
        json.member("id", conflict.id);
        json.member("local", local);
        json.member("remote", remote);
        json.endObject();
        text += (text.empty() ? "" : "\n") + printable(conflict.id)
            + "\n  On this Mac: " + printable(local) + "\n  iCloud: " + printable(remote) + "\n";
    }
    json.endArray();
    return {text.empty() ? "There are no conflicts.\n" : text, json.take()};
}

CommandAnswer run(const SyncOffCommand&, TimeStore& store, const CommandContext&)
{
    if (conditionOf(*store.data()).isEnabled) {
        store.setSyncEnabled(false);
    }
    return changeAnswer("Sync is off.", std::nullopt);
}

CommandAnswer run(const SyncResolveCommand& command, TimeStore& store, const CommandContext&)
{
    store.resolveSyncConflict(command.conflict, command.choice);
    JsonWriter json;
    json.beginObject();
    json.member("ok", true);
    json.member("id", command.conflict);
    json.endObject();
    const bool isLocal = command.choice == ConflictChoice::keepLocal;
    return {isLocal ? "Kept this device's version; it goes out with the next sync.\n"
                    : "Gave up this device's change in favour of the cloud's version.\n",
        json.take()};
}

} // namespace Kestry
