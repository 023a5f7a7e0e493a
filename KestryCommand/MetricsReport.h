#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "Ledger.h"

namespace Kestry {

/// A month's figures and where they are heading, of the whole ledger or of one client. The month
/// of the command's moment is still under way; any other is told as a finished one.
[[nodiscard]] CommandAnswer monthReport(const KestryCore::LedgerData& ledger,
    const ReportCommand& command, const CommandContext& context);

/// A client's figures of all time.
[[nodiscard]] CommandAnswer clientReport(const KestryCore::LedgerData& ledger,
    const ClientReportCommand& command, const CommandContext& context);

} // namespace Kestry
