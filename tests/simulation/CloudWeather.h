#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "CloudError.h"
#include "CloudRecord.h"
#include "CloudStore.h"

namespace KestryCore {

/// What a device asks a cloud store.
enum class CloudQuestion { account, name, zone, creation, changes, save, discard, count };

class CloudLine;

/// How a question and its answer travel, in seconds.
struct CloudPassage {
    double there = 0.1;
    double back = 0.1;
    bool isHandled = true;   ///< Else it never arrives.
    bool isAnswered = true;  ///< Else the sender is told of a failure, whatever became of it.
    bool isRepeated = false; ///< The same answer comes once more.
};

/// What the store does with one record that it is to save.
struct CloudRecordFate {
    std::optional<CloudError> failure{}; ///< In place of saving it.
    bool isRepeated = false;             ///< It arrives twice.
    bool isAnswered = true;
};

/// What may go wrong between devices and a store; here nothing does.
class CloudWeather {
public:
    explicit CloudWeather(CloudStore& store) : store_(store) { }
    CloudWeather(const CloudWeather&) = delete;
    CloudWeather& operator=(const CloudWeather&) = delete;
    virtual ~CloudWeather() = default;

    /// A question leaves a device.
    virtual CloudPassage passage(CloudLine& /*line*/, CloudQuestion /*question*/) { return {}; }
    /// The words of the store in trouble, which it says in place of fetching and saving.
    virtual std::optional<std::string> trouble() { return std::nullopt; }

    // A fetch.

    /// An answer has come back, which told all there was up to this cursor.
    virtual void answered(const std::string& /*cursor*/) { }

    virtual std::size_t mostRecordsOfAnAnswer() { return 100; }
    /// By how many changes the feed starts too early.
    virtual std::uint64_t repeatedChanges() { return 0; }
    /// A cursor has expired: whether nothing can be fetched without one either.
    virtual bool failsWithoutCursor() { return false; }
    virtual bool isShuffled() { return false; }
    virtual std::optional<CloudError> failureToFetch() { return std::nullopt; }

    // A delivery.

    virtual CloudRecordFate fateOf(const CloudRecord& /*record*/) { return {}; }
    /// Whether a second save on one version wins over one that was accepted: whose writer was not
    /// answered yet, or was.
    virtual bool letsRivalWin(const std::string& /*recordID*/, bool /*isAnswered*/)
    {
        return false;
    }
    virtual CloudStore::SaveOutcome save(const CloudRecord& record, CloudStore::Rival rival)
    {
        return store_.save(record, rival);
    }
    virtual void discard(const CloudRecord& overruled) { (void)store_.discard(overruled); }
    /// A number below `count`, to change the order of things.
    virtual std::size_t below(std::size_t /*count*/) { return 0; }

private:
    CloudStore& store_;
};

} // namespace KestryCore
