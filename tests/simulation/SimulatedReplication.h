#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CloudLine.h"
#include "CloudSyncController.h"
#include "Ledger.h"
#include "Observable.h"

namespace KestryCore {

class World;
struct Member;

/// The replication of one device as its running program has it: the controller itself. What it
/// publishes and how its exchanges end is written down, to be judged after each turn of its loop;
/// an observer must not throw.
class SimulatedReplication {
public:
    SimulatedReplication(World& world, Member& member) : world_(world), member_(member) { }

    /// The program has started.
    void start();
    /// The program has ended.
    void end();
    [[nodiscard]] bool isRunning() const { return controller_.has_value(); }
    [[nodiscard]] CloudSyncController& controller() { return *controller_; }
    [[nodiscard]] bool isSyncing() const { return controller_ && *controller_->fields().isSyncing; }

    /// A ledger that the program has published, and the file at that moment.
    struct Publication {
        LedgerData ledger;
        std::optional<std::string> primary;
        LedgerData before;
    };

    /// A turn of the program's loop begins.
    void beginTurn();
    [[nodiscard]] const std::vector<Publication>& published() const { return published_; }
    /// Whether an exchange, or the attempt to turn replication on, ended in this turn. Throws a
    /// Violation when it went wrong and does not tell.
    [[nodiscard]] bool checkEnd();
    /// The machine has another account; the program is told.
    void tellAccountChange() { accountChanges_.assign(*accountChanges_ + 1); }
    /// How often the program has started.
    [[nodiscard]] int starts() const { return starts_; }

private:
    void sawSyncing(bool isSyncing);
    void checkSuccess();
    void checkFailure();
    /// The failure that the program shows; empty for none.
    [[nodiscard]] std::string told() const;

    World& world_;
    Member& member_;
    std::optional<CloudSyncController> controller_;
    Observable<int> accountChanges_;
    std::vector<Subscription> subscriptions_;
    std::vector<Publication> published_;
    LedgerData shown_;
    bool wasSyncing_ = false;
    int starts_ = 0;
    bool isCancelled_ = false;                 // what is under way must end silently
    bool hasEnded_ = false;                    // in this turn
    bool hasSucceeded_ = false;                // in this turn
    std::vector<CloudLine::Failure> failures_; // of the exchange that ended in this turn
};

} // namespace KestryCore
