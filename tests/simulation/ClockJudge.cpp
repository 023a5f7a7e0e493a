#include "ClockJudge.h"

#include "VersionBook.h"

namespace KestryCore {

void ClockJudge::saw(const LedgerData& ledger)
{
    if (ledger.active) {
        check(ledger.active->id, ledger.active->elapsed(ledger.active->checkpointAt));
    }
}

void ClockJudge::sawStopped(const LedgerData& ledger, const Uuid& id)
{
    if (const TimeEntry* const entry = ledger.entries.find(id)) {
        check(id, entry->duration());
    }
}

double ClockJudge::possibleSeconds() const
{
    return device_.steadySeconds() + device_.forgivenSeconds();
}

void ClockJudge::check(const Uuid& id, double counted)
{
    constexpr double rounding = 0.001;
    const auto [sight, isFirst] = first_.try_emplace(id.text(), Sight{counted, possibleSeconds()});
    const double most = possibleSeconds() - sight->second.possible + sight->second.counted;
    if (counted > most + rounding) {
        throw Violation(device_.name() + " counts " + std::to_string(counted) + " s of session "
            + id.text() + ", in which " + std::to_string(most) + " s have passed");
    }
}

} // namespace KestryCore
