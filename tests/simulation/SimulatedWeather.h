#pragma once

#include <optional>
#include <string>

#include "CloudWeather.h"

namespace KestryCore {

class World;

/// All that goes wrong between devices and store in a simulation, drawn and counted.
class SimulatedWeather final : public CloudWeather {
public:
    explicit SimulatedWeather(World& world);

    /// From now on the store says that it is not what it was; none ends that.
    void setTrouble(std::optional<std::string> words) { trouble_ = std::move(words); }
    /// The longest time for which a question or an answer is under way, in seconds.
    static constexpr double longestWay = 86'400.0;

    CloudPassage passage(CloudLine& line, CloudQuestion question) override;
    std::optional<std::string> trouble() override;
    void answered(const std::string& cursor) override;
    std::size_t mostRecordsOfAnAnswer() override;
    std::uint64_t repeatedChanges() override;
    bool failsWithoutCursor() override;
    bool isShuffled() override;
    std::optional<CloudError> failureToFetch() override;
    CloudRecordFate fateOf(const CloudRecord& record) override;
    bool letsRivalWin(const std::string& recordID, bool isAnswered) override;
    CloudStore::SaveOutcome save(const CloudRecord& record, CloudStore::Rival rival) override;
    void discard(const CloudRecord& overruled) override;
    std::size_t below(std::size_t count) override;

private:
    [[nodiscard]] double travelSeconds();
    void spoilDelivery(CloudPassage& passage);

    World& world_;
    std::optional<std::string> trouble_;
    bool hasExpired_ = false; // and nothing was fetched since
};

} // namespace KestryCore
