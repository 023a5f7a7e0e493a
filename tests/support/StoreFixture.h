#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <source_location>
#include <string>
#include <vector>

#include "MemoryFileSystem.h"
#include "SyncState.h"
#include "TimeStore.h"

namespace KestryCore {

/// A data directory in memory, a clock that stands still until it is set, predictable
/// identifiers, and a store on top: the verbs of the store's tests.
///
/// The day is 15 November 2026, and it is twelve o'clock.
class StoreWorld {
public:
    /// An identifier that shows its number.
    [[nodiscard]] static Uuid uuid(unsigned number);
    /// A time of the day.
    [[nodiscard]] static Date clockTime(int hour, int minute = 0, double second = 0.0);

    // A ledger: Acme has the projects Website and Design, Solo works without projects, and one
    // meeting on Website from 8:00 to 8:30 and from 9:00 to 9:30 is saved.
    static const Uuid acme;
    static const Uuid website;
    static const Uuid design;
    static const Uuid solo;
    static const Uuid meeting;
    static const Uuid writing; ///< The session in progress, where there is one.
    [[nodiscard]] static LedgerData sampleLedger();
    /// With Writing on Website, running since 11:00, last checkpoint at 11:30.
    [[nodiscard]] static LedgerData runningLedger();
    /// With Writing on Website, paused, worked on from 10:00 to 10:30.
    [[nodiscard]] static LedgerData pausedLedger();
    /// The ledger connected for replication, with nothing waiting.
    [[nodiscard]] static LedgerData connected(LedgerData ledger);

    // The world before and behind the store.

    MemoryFileSystem files;
    Date now = clockTime(12);
    /// On a clock that nobody sets; a store that is opened without it takes every date for right.
    std::optional<double> steadySeconds;
    StoreOptions options;
    /// Saved sessions that every ledger put there has besides its own, to make files long.
    unsigned sessionsBesides = 0;
    /// Goes into files that would be short without it.
    std::string filler;

    StoreWorld();
    void putPrimary(const LedgerData& ledger);
    void putBackup(const LedgerData& ledger);
    /// Replaces a file by something that is no ledger; tells what.
    std::string corruptPrimary();
    std::string corruptBackup();
    /// Cuts the primary in half; tells what is left.
    std::string truncatePrimary();

    // The store.

    /// Opens the directory, in place of the store that was open; claims it before where the
    /// options have a lock.
    TimeStore& open();
    TimeStore& open(const LedgerData& primary);
    TimeStore& store() { return *store_; }
    [[nodiscard]] bool blocked() const { return store_->blocked(); }
    [[nodiscard]] bool recoveryAvailable() const { return *store_->recoveryAvailable(); }
    void close() { store_.reset(); }
    /// Has the store draw identifiers after this one, as a later process would.
    void drawUuidsAfter(unsigned number) { lastUuid_ = number; }
    /// Adds a client with projects.
    Uuid addClient(const std::string& name = "Beta", Cents rate = 100);
    [[nodiscard]] const LedgerData& ledger() const { return *store_->data(); }
    [[nodiscard]] std::string errorMessage() const { return store_->errorMessage()->value_or(""); }
    [[nodiscard]] const TimeEntry& entry(const Uuid& id) const;
    [[nodiscard]] const ActiveSession& active() const { return *ledger().active; }

    // What the disk holds.

    static const std::string primaryPath;
    static const std::string backupPath;
    static const std::string handoffPath;
    [[nodiscard]] std::string primary() const { return files.content(primaryPath).value(); }
    [[nodiscard]] std::string backup() const { return files.content(backupPath).value(); }
    [[nodiscard]] LedgerData readPrimary() const;
    [[nodiscard]] LedgerData readBackup() const;
    /// The preserved copies of replaced primaries, by path.
    [[nodiscard]] std::map<std::string, std::string> corruptCopies() const;

    // Refusals. Both check the words, and that ledger and files stay as they were and that
    // nothing is published but the words themselves.

    using Location = std::source_location;
    /// Refused, and put into `errorMessage`.
    void expectRefused(const std::function<void()>& action, const std::string& message,
        const Location& location = Location::current());
    /// Refused to the caller alone.
    void expectRefusedQuietly(const std::function<void()>& action, const std::string& message,
        const Location& location = Location::current());

private:
    [[nodiscard]] std::string fileOf(LedgerData ledger) const;
    void expectUnchanged(const std::function<void()>& action, const std::string& message,
        const std::string& messageAfter, const Location& location);

    std::optional<TimeStore> store_;
    unsigned lastUuid_ = 1000;
};

class StoreFixture : public testing::Test, public StoreWorld { };

} // namespace KestryCore
