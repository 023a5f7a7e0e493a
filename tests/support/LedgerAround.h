#pragma once

#include <cstdint>
#include <vector>

#include "Choices.h"
#include "Ledger.h"

namespace KestryCore {

/// Makes ledgers whose sessions lie around one moment: some near it, some weeks away, some across
/// it, and some of a project that is gone. All spans last whole and even seconds, and a recorded
/// duration is half or twice the spans, so that sums of seconds are exact in any order.
class LedgerAround {
public:
    /// Their numbers count from 1, as those of samples do.
    static constexpr unsigned clientCount = 3;

    /// Equal moments and seeds make equal ledgers. The moment is a whole second.
    LedgerAround(Date moment, std::uint64_t seed) : moment_(moment), choices_(seed) { }

    [[nodiscard]] LedgerData make();

    /// Seconds from the moment to where something begins or ends: mostly near, sometimes weeks
    /// away, and now and then none.
    [[nodiscard]] double distance();

private:
    bool chance() { return choices_.below(2) == 0; }
    double evenSeconds(double most);
    std::vector<TimeSpan> spans();
    Uuid project();
    TimeEntry entry(unsigned number);
    ActiveSession activeSession();

    Date moment_;
    SeededChoices choices_;
};

} // namespace KestryCore
