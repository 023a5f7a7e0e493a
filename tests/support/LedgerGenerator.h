#pragma once

#include <cstddef>
#include <cstdint>

#include "Ledger.h"

namespace KestryCore {

/// What a made-up ledger is drawn from: equal values give equal ledgers, on every machine.
struct LedgerShape {
    std::size_t sessions = 1'000;
    std::size_t clients = 20;
    std::size_t projects = 60; ///< Dealt out to the clients in turn.
    std::uint64_t seed = 1;
};

/// A valid ledger as somebody's years of work leave it, with no session in progress: titles from
/// none to a long sentence, sessions of one to three intervals in the order of time, dates with
/// the fractions that a real clock gives. Where one life of work is too short for them all, the
/// sessions begin again at the first day, as those of a colleague. Needs a client and a project as
/// soon as it has sessions.
[[nodiscard]] LedgerData generateLedger(const LedgerShape& shape);

} // namespace KestryCore
