#include "Tally.h"

#include <cstdio>

namespace KestryCore {

namespace {

constexpr std::array<std::string_view, static_cast<std::size_t>(Event::count)> words{
    "device days",
    "changes by users",
    "changes refused to users",
    "versions delivered",
    "answers to fetches",
    "versions staged to wait",
    "conflicts",
    "conflicts: local version kept",
    "conflicts: cloud version used",
    "deletions by a newer program",
    "replication turned off",
    "weeks without a network",
    "power cuts",
    "power cuts while applying",
    "programs killed",
    "failing file calls",
    "file calls failing for the moment",
    "ledgers opened a moment later",
    "ledgers damaged",
    "restores over a running ledger",
    "restores after opening",
    "restores of an old backup",
    "returns to an old copy",
    "directories exchanged",
    "expired cursors",
    "answers lost",
    "answers out of order",
    "answers late",
    "answers twice",
    "deliveries lost",
    "single deliveries failed",
    "deliveries applied, reply lost",
    "single acknowledgements lost",
    "deliveries twice",
    "deliveries late",
    "deliveries refused as outdated",
    "cloud versions used, not written",
    "exchanges without a failure",
    "exchanges that failed in words",
    "exchanges ended by the switch",
    "records that could not be fetched",
    "records refused for a while",
    "replies twice",
    "second writers who won",
    "accepted versions overruled",
    "overruled versions taken back",
    "cursors expired twice",
    "zones missing for hours",
    "exchanges without a zone",
    "stores in trouble",
    "stores restored from a backup",
    "stores wiped",
    "all records uploaded again",
    "records removed by somebody",
    "exchanges stopped by a removal",
    "accounts signed out",
    "accounts changed",
    "accounts changed back at once",
    "accounts changed unnoticed",
    "foreign accounts found out",
    "machines asleep in an exchange",
    "machines asleep for a week",
    "killed, waiting for the account",
    "killed, waiting for the name",
    "killed, waiting for the zone",
    "killed, waiting for its creation",
    "killed, waiting for changes",
    "killed, waiting for a delivery",
    "killed, waiting for discarding",
    "switched, waiting for the account",
    "switched, waiting for the name",
    "switched, waiting for the zone",
    "switched, waiting for its creation",
    "switched, waiting for changes",
    "switched, waiting for a delivery",
    "switched, waiting for discarding",
    "clocks set forward",
    "clocks set back",
    "sessions paused by a clock's jump",
};

} // namespace

void Tally::add(const Tally& other)
{
    for (std::size_t index = 0; index < counts_.size(); ++index) {
        counts_.at(index) += other.counts_.at(index);
    }
}

std::vector<std::string_view> Tally::missing() const
{
    std::vector<std::string_view> missing;
    for (std::size_t index = 0; index < counts_.size(); ++index) {
        if (counts_.at(index) == 0) {
            missing.push_back(words.at(index));
        }
    }
    return missing;
}

void Tally::print() const
{
    for (std::size_t index = 0; index < counts_.size(); ++index) {
        std::printf("%-34s %12llu\n", words.at(index).data(),
            static_cast<unsigned long long>(counts_.at(index)));
    }
}

} // namespace KestryCore
