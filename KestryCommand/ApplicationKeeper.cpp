#include "ApplicationKeeper.h"

#include <optional>
#include <string>

#include "CommandPreparation.h"
#include "HandedCommand.h"
#include "LedgerError.h"
#include "SystemTimeZone.h"
#include "ZoneCalendar.h"

namespace Kestry {

using KestryCore::LedgerError;
using Outcome = LocalReply::Outcome;

namespace {

/// The caller's time zone when it has neither name nor rule: a zone whose clocks always show what
/// they show now.
std::string ruleOfNow(const ProgramPlatform& platform)
{
    const KestryCore::Date now = platform.now();
    const auto calendar = KestryCore::ZoneCalendar::withSystemTimeZone(
        {}, KestryCore::systemTimeZone(platform.environment));
    return KestryCore::fixedRule(dateInUtc(calendar.wallTime(now)) - now);
}

/// Throws when the files must not be used instead of an application that has not answered. Reading
/// them is always safe.
void requireUntouched(const LocalReply& reply, const StoreCommand& command)
{
    if (!changesLedger(command)) {
        return;
    }
    if (reply.outcome == Outcome::silent) {
        throw LedgerError("Kestry (process " + std::to_string(reply.process)
            + ") is using this data directory and does not answer. Nothing was changed.");
    }
    if (reply.outcome == Outcome::lost) {
        throw LedgerError(lostCommandText(reply));
    }
}

} // namespace

LocalAnswer ApplicationKeeper::carryOut(const ReadyCommand& command)
{
    constexpr double mostSeconds = 5.0;
    constexpr double pause = 0.05;
    LocalCommand message = messageOf(command);
    const bool fits = isWithinLimits(message);
    for (double waited = 0.0;; waited += pause) {
        LocalReply reply = fits ? platform_.handOver(message) : LocalReply{};
        if (reply.outcome == Outcome::declined && !message.session) {
            // Searching a long ledger for a name would keep the application busy. It takes the ID.
            message.session = files_.findSession(command);
            if (message.session) {
                reply = platform_.handOver(message);
            }
        }
        if (reply.outcome == Outcome::answered) {
            return std::move(reply.answer);
        }
        requireUntouched(reply, command.command);
        try {
            return files_.carryOut(command);
        } catch (const DirectoryInUse& inUse) {
            if (inUse.isApplication() && !fits) {
                throw LedgerError("Kestry is running, and takes no command line with words as long "
                                  "as these. Nothing was changed.");
            }
            if (!inUse.isApplication() || waited >= mostSeconds) {
                throw;
            }
        }
        platform_.sleep(pause);
    }
}

/// The command as the application is to carry it out.
LocalCommand ApplicationKeeper::messageOf(const ReadyCommand& command) const
{
    LocalCommand message = commandToHandOver(
        command.words, command.origin.dataDirectory(), command.origin.environment);
    message.namedDirectory = command.options.dataDirectory;
    message.writesToTerminal = command.origin.writesToTerminal;
    if (message.timeZone.empty()) {
        message.timeZone = ruleOfNow(platform_);
    }
    describePreparation(message, command);
    return message;
}

} // namespace Kestry
