#pragma once

#include <map>
#include <string>

#include "SimulatedDevice.h"

namespace KestryCore {

/// Watches one device, and throws a `Violation` when a session in progress counts more time than
/// has passed since it was seen first, whatever became of the clock.
class ClockJudge {
public:
    explicit ClockJudge(const SimulatedDevice& device) : device_(device) { }

    void saw(const LedgerData& ledger);
    /// The session was stopped just now.
    void sawStopped(const LedgerData& ledger, const Uuid& id);

private:
    struct Sight {
        double counted = 0.0;
        double possible = 0.0;
    };

    /// As far as differences go.
    [[nodiscard]] double possibleSeconds() const;
    void check(const Uuid& id, double counted);

    const SimulatedDevice& device_;
    std::map<std::string, Sight> first_; // of each session
};

} // namespace KestryCore
