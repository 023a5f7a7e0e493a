#include "StoreCommands.h"

#include <optional>

#include "CommandSyntax.h"
#include "CompletionScript.h"
#include "CsvFile.h"
#include "JsonWriter.h"
#include "LedgerCheck.h"
#include "Listings.h"
#include "MetricsReport.h"
#include "PlainText.h"
#include "RecordCommands.h"
#include "SessionCommands.h"
#include "SessionListing.h"
#include "StatusReport.h"
#include "SyncCommands.h"

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::TimeStore;

namespace {

CommandAnswer run(const StatusCommand&, TimeStore& store, const CommandContext& context)
{
    return statusReport(store, context);
}

CommandAnswer run(const ClientListCommand&, TimeStore& store, const CommandContext& context)
{
    return clientListing(*store.data(), context);
}

CommandAnswer run(
    const ProjectListCommand& command, TimeStore& store, const CommandContext& context)
{
    std::optional<KestryCore::Uuid> client;
    if (command.client) {
        client = findClient(*store.data(), *command.client);
    }
    return projectListing(*store.data(), client, context);
}

CommandAnswer run(const SessionsCommand& command, TimeStore& store, const CommandContext& context)
{
    return sessionListing(*store.data(), command, context);
}

CommandAnswer run(const ReportCommand& command, TimeStore& store, const CommandContext& context)
{
    return monthReport(*store.data(), command, context);
}

CommandAnswer run(
    const ClientReportCommand& command, TimeStore& store, const CommandContext& context)
{
    return clientReport(*store.data(), command, context);
}

CommandAnswer run(const ExportCommand& command, TimeStore& store, const CommandContext& context)
{
    return exportSessions(store, command.file, context);
}

CommandAnswer run(const SuggestCommand& command, TimeStore& store, const CommandContext&)
{
    return titleListing(*store.data(), command.prefix);
}

CommandAnswer run(const RestoreCommand&, TimeStore& store, const CommandContext&)
{
    store.restoreBackup();
    return changeAnswer(*store.recoveredSession()
            ? "Restored the backup. Its running session is paused at its last checkpoint."
            : "Restored the backup.",
        std::nullopt);
}

CommandAnswer run(const CheckCommand&, TimeStore&, const CommandContext& context)
{
    return checkLedgers(context.dataDirectory, context);
}

CommandAnswer run(const CompletionCommand& command, TimeStore&, const CommandContext&)
{
    return completionAnswer(command);
}

} // namespace

CommandAnswer completionAnswer(const CompletionCommand& command)
{
    const std::string script = completionScript(CommandSyntax().root(), command.shell);
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("shell", shellNames.at(static_cast<std::size_t>(command.shell)));
    json.member("script", script);
    json.endObject();
    return {script, json.take()};
}

CommandAnswer runOnStore(const Command& command, TimeStore& store, const CommandContext& context)
{
    CommandAnswer answer;
    if (changesLedger(command) && !std::holds_alternative<RestoreCommand>(command)) {
        requireSaving(store);
    }
    try {
        store.performForCaller([&] {
            answer = std::visit(
                [&](const auto& chosen) { return run(chosen, store, context); }, command);
        });
    } catch (const LookupError& failure) {
        throw explained(failure, store);
    }
    return answer;
}

LedgerError explained(const LookupError& failure, const TimeStore& store)
{
    const auto& condition = *store.errorMessage();
    return LedgerError{
        failure.what() + (store.blocked() && condition ? " " + *condition : std::string())};
}

void requireSaving(const TimeStore& store)
{
    const auto& condition = *store.errorMessage();
    try {
        store.requireSaving();
    } catch (const LedgerError& failure) {
        // With a backup they say what to do; without one it takes the reason.
        const bool isTold =
            *store.recoveryAvailable() || !condition || *condition == failure.what();
        throw LedgerError(failure.what() + (isTold ? "" : " " + *condition));
    }
}

void requireReadable(const Command& command, const TimeStore& store, Console& console)
{
    const auto& condition = *store.errorMessage();
    // The status tells of the condition by itself.
    if (!store.blocked() || !condition || std::holds_alternative<StatusCommand>(command)) {
        return;
    }
    // An unreadable ledger is not an empty one.
    if (!*store.recoveryAvailable()) {
        throw LedgerError(*condition);
    }
    console.writeError(printableLines(*condition) + "\n");
}

} // namespace Kestry
