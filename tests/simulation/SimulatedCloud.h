#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "CloudStore.h"
#include "CloudWeather.h"
#include "MachineLoop.h"

namespace KestryCore {

/// The server of a record store on virtual time: it handles what arrives from the lines of the
/// devices, and the weather decides what goes wrong.
///
/// Two devices may save on one version, as in a cluster, and then the later one may win. The other
/// is told of the winner in the answer to its save, or after it had been told that it won: then
/// whoever fetches the record is told of the overruled version as well.
class SimulatedCloud {
public:
    using Results = std::vector<CloudRecordResult>;

    /// All of these must outlive the cloud, and the cloud the lines.
    SimulatedCloud(CloudStore& store, MachineLoop& network, CloudWeather& weather)
        : store_(store), network_(network), weather_(weather)
    {
    }

    [[nodiscard]] MachineLoop& network() { return network_; }
    [[nodiscard]] CloudWeather& weather() { return weather_; }

    // What the server does at the moment when a question arrives. Each throws a `CloudError`.

    void fetchZone() const;
    void createZone() { store_.createZone(); }
    [[nodiscard]] CloudChanges changes(const std::optional<CloudCursor>& since);

    /// The answer to a delivery, until it leaves.
    struct Letter {
        const CloudLine* receiver = nullptr;
        Results results;
    };
    void discard(const std::vector<CloudRecord>& overruled);
    [[nodiscard]] std::shared_ptr<Letter> save(
        const CloudLine& sender, const std::vector<CloudRecord>& records);
    /// The store was restored: letters under way tell of what it had taken before.
    void sawRestored() { unanswered_.clear(); }
    /// What a letter says in the end.
    [[nodiscard]] Results send(const std::shared_ptr<Letter>& letter);

private:
    /// Where a letter tells of a record that was saved.
    struct Place {
        std::shared_ptr<Letter> letter;
        std::size_t index = 0;
    };

    void requireOrder() const;
    void saveOne(const std::shared_ptr<Letter>& letter, const CloudRecord& record);
    [[nodiscard]] CloudStore::SaveOutcome take(const Letter& letter, const CloudRecord& record);

    CloudStore& store_;
    MachineLoop& network_;
    CloudWeather& weather_;
    std::map<std::string, Place> unanswered_; // the last save of each record, until it is told
};

} // namespace KestryCore
