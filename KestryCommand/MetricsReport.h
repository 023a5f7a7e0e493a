#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "Ledger.h"

namespace Kestry {

/// The figures of a month and their projection, for all clients or for one. The month of
/// `CommandContext::at` is in progress; any other is reported as a finished one.
[[nodiscard]] CommandAnswer monthReport(const KestryCore::LedgerData& ledger,
    const ReportCommand& command, const CommandContext& context);

/// A client's figures over all time.
[[nodiscard]] CommandAnswer clientReport(const KestryCore::LedgerData& ledger,
    const ClientReportCommand& command, const CommandContext& context);

} // namespace Kestry
