#include "StoreCommands.h"

#include <optional>

#include "CommandAnswers.h"
#include "CsvFile.h"
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

/// What only the application does.
template <class Chosen>
requires requires
{
    Chosen::needsApplication;
}
CommandAnswer run(const Chosen& /*command*/, TimeStore& /*store*/, const CommandContext&)
{
    throw LedgerError("Kestry is not running on this data directory, and only it can sign in and "
                      "exchange records. Start it and try again.");
}

CommandAnswer runOnStore(
    const StoreCommand& command, TimeStore& store, const CommandContext& context)
{
    CommandAnswer answer;
    const bool saves = changesLedger(command) && !needsApplication(command)
        && !std::holds_alternative<RestoreCommand>(command);
    if (saves) {
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

/// The warning that a command which only reads shows the backup; empty when there is no need for
/// one. Throws a `LedgerError` when there is nothing to read: an unreadable ledger is not an empty
/// one.
std::string readingWarning(const StoreCommand& command, const TimeStore& store)
{
    const auto& condition = *store.errorMessage();
    // `status` shows the condition in its own text.
    if (changesLedger(command) || std::holds_alternative<StatusCommand>(command) || !store.blocked()
        || !condition) {
        return {};
    }
    if (!*store.recoveryAvailable()) {
        throw LedgerError(*condition);
    }
    return printableLines(*condition) + "\n";
}

} // namespace

LocalAnswer carryOut(const StoreCommand& command, TimeStore& store, const CommandContext& context)
{
    std::string warning;
    LocalAnswer answer = answerOrFailure(context.asJson, [&] {
        warning = readingWarning(command, store);
        LocalAnswer shown = shownAnswer(runOnStore(command, store, context), context.asJson);
        shown.hasChanged = changesLedger(command);
        return shown;
    });
    // The warning comes before a failure of the command itself.
    answer.errors.insert(0, warning);
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

} // namespace Kestry
