#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "CloudStore.h"

namespace KestryCore {

class World;
struct Member;

/// How one device gets in step with the store: it fetches until nothing is left, then sends what
/// waits, in batches. Each question and each answer is a step of its own, between which anything
/// can happen; answers and deliveries get lost, late, twice and out of order.
class SyncCycle {
public:
    /// Takes the next step; begins a cycle where none runs. The program must run.
    void step(World& world, Member& member);
    /// The program ends, replication is turned off, or the network goes.
    void abandon();
    [[nodiscard]] bool isIdle() const { return stage_ == Stage::idle; }

    /// Deliveries given up by their sender that are still on their way.
    struct LateDelivery {
        SyncRecord record;
        std::optional<std::string> systemFields;
    };
    /// Lets the first of them arrive, if there are any; false when there are none.
    bool arriveLate(World& world);

private:
    enum class Stage { idle, fetching, sending };

    /// What becomes of a batch that is sent.
    enum class Fate { arrives, lost, late, replyLost };

    struct Sent {
        SyncRecord record;
        std::optional<CloudStore::SaveOutcome> outcome; ///< None when the reply does not tell.
    };

    void fetch(World& world, Member& member, const std::optional<std::string>& cursor);
    void takeAnswer(World& world, Member& member);
    bool apply(World& world, Member& member, const CloudStore::Changes& answer);
    void startSending(World& world, Member& member);
    void send(World& world, Member& member);
    static Fate drawFate(World& world);
    static std::optional<CloudStore::SaveOutcome> deliver(
        World& world, const SyncRecord& record, const std::optional<std::string>& systemFields);
    void takeReply(World& world, Member& member);
    bool takeOutcome(World& world, Member& member, const SyncRecord& record,
        const CloudStore::SaveOutcome& outcome);

    Stage stage_ = Stage::idle;
    CloudStore::Changes answer_;
    std::optional<CloudStore::Changes> lastAnswer_; // that might come once more
    bool hasStartedAnew_ = false;                   // after the cursor expired
    std::vector<SyncRecord> pending_;
    std::size_t next_ = 0; // of those pending
    std::vector<Sent> sent_;
    std::vector<LateDelivery> late_;
};

} // namespace KestryCore
