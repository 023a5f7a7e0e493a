#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace KestryCore {

/// What happens in a simulation, and is counted to show that it happened.
enum class Event {
    deviceDay,
    userChange,
    refusedChange,
    delivery,
    answer,
    staged,
    conflict,
    keptLocal,
    usedCloud,
    deletionElsewhere,
    syncTurnedOff,
    cutOff,
    powerCut,
    powerCutInSync,
    processKilled,
    diskError,
    passingFailure,
    openedLater,
    damagedLedger,
    restoreOfRunning,
    restoreOnOpening,
    oldBackup,
    oldCopy,
    exchangedDirectory,
    expiredCursor,
    lostAnswer,
    shuffledAnswer,
    lateAnswer,
    repeatedAnswer,
    lostDelivery,
    failedDelivery,
    lostReply,
    lostAcknowledgement,
    repeatedDelivery,
    lateDelivery,
    refusedDelivery,
    unwrittenChoice,
    exchange,
    failedExchange,
    cancelledExchange,
    failedFetch,
    retryAfter,
    repeatedReply,
    twoWriters,
    overruled,
    takenBack,
    expiredTwice,
    zoneHidden,
    zoneMissing,
    storeInTrouble,
    storeRestored,
    storeWiped,
    uploadedAgain,
    removedRecord,
    refusedDeletion,
    signedOut,
    accountChanged,
    accountChangedBack,
    accountUnnoticed,
    foreignAccountFound,
    asleepInExchange,
    asleepForAWeek,
    // Two in the order of the questions to the store, of which the first is named.
    killedWaitingForAccount,
    killedWaitingForName,
    killedWaitingForZone,
    killedWaitingForCreation,
    killedWaitingForChanges,
    killedWaitingForSave,
    killedWaitingForDiscarding,
    switchedWaitingForAccount,
    switchedWaitingForName,
    switchedWaitingForZone,
    switchedWaitingForCreation,
    switchedWaitingForChanges,
    switchedWaitingForSave,
    switchedWaitingForDiscarding,
    clockForward,
    clockBack,
    clockJumpFound,
    count
};

/// How often each event happened.
class Tally {
public:
    void count(Event event, std::uint64_t times = 1)
    {
        counts_.at(static_cast<std::size_t>(event)) += times;
    }
    void add(const Tally& other);
    [[nodiscard]] std::uint64_t of(Event event) const
    {
        return counts_.at(static_cast<std::size_t>(event));
    }
    /// The words for events that never happened.
    [[nodiscard]] std::vector<std::string_view> missing() const;
    void print() const;

private:
    std::array<std::uint64_t, static_cast<std::size_t>(Event::count)> counts_{};
};

} // namespace KestryCore
