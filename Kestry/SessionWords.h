#pragma once

#include <string>

#include "DayText.h"
#include "Ledger.h"
#include "RecordIndex.h"
#include "TextForms.h"

namespace Kestry {

/// Whose work a session is: "Aster Studio · Website", or the client alone where it has no projects.
/// Null: deleted.
[[nodiscard]] std::string sessionDetail(
    const KestryCore::Project* project, const KestryCore::Client* client);

/// The same as a screen reader should say it: "Aster Studio, Website".
[[nodiscard]] std::string spokenSessionDetail(
    const KestryCore::Project* project, const KestryCore::Client* client);

/// A length as a list shows it, in words: "2 hours 30 minutes".
[[nodiscard]] std::string spokenHoursAndMinutes(double seconds);

/// A saved session in one line: "Design review, Aster Studio, Website, March 14, 2 hours 30
/// minutes, $375.00".
[[nodiscard]] std::string spokenSession(const KestryCore::TimeEntry& entry,
    const KestryCore::RecordIndex& index, const KestryCore::DayText& days,
    const KestryCore::MoneyText& money);

} // namespace Kestry
