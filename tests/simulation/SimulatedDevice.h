#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "Choices.h"
#include "MemoryFileSystem.h"
#include "TimeStore.h"

namespace KestryCore {

/// What goes wrong with the disk during an operation. A passing failure says nothing of the files,
/// and is over with the operation.
enum class DiskFault { none, powerCut, failingCall, passingFailure };

/// A machine with a disk of its own, on which the program runs or does not.
class SimulatedDevice {
public:
    enum class Outcome { done, refused, crashed };

    /// The ledger's files, as somebody may copy them and put them back.
    struct Copy {
        std::string primary;
        std::optional<std::string> backup;

        friend bool operator==(const Copy&, const Copy&) = default;
    };

    /// The clock is off by some seconds from that of the world.
    SimulatedDevice(std::string name, Choices& choices, UuidSource newUuid, const Date& now,
        double clockOffset);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] Date now() const { return worldNow_ + clockOffset_; }
    /// On a clock that nobody can set.
    [[nodiscard]] double steadySeconds() const { return worldNow_.seconds; }
    /// Somebody sets the clock, or the network does.
    void setClockForward(double seconds);
    /// Seconds by which it was set forward so little that they may count as time that passed.
    [[nodiscard]] double forgivenSeconds() const { return forgivenSeconds_; }

    // The program.

    [[nodiscard]] bool isRunning() const { return store_.has_value(); }
    [[nodiscard]] TimeStore& store() { return *store_; }
    [[nodiscard]] const LedgerData& ledger() const { return *store_->data(); }
    /// The replication state; null while there is none, or the program does not run.
    [[nodiscard]] const LedgerSyncState* state() const;

    /// Starts the program. After a power cut it does not run, and the machine is up again.
    Outcome open(DiskFault fault);
    /// Does something in the running program, which a power cut ends.
    Outcome perform(const std::function<void(TimeStore&)>& action, DiskFault fault);
    /// Ends the program without its doing; what it has written stays.
    void kill();
    /// Whether a file call failed in what was done last.
    [[nodiscard]] bool hadFailingCall() const { return hadFailingCall_; }
    /// Whether it failed on something that has passed.
    [[nodiscard]] bool hadPassingFailure() const { return hadPassingFailure_; }

    // The files.

    [[nodiscard]] std::optional<std::string> primary() const { return files_.content(primaryPath); }
    [[nodiscard]] std::optional<std::string> backup() const { return files_.content(backupPath); }
    [[nodiscard]] Copy copy() const { return {primary().value(), backup()}; }
    /// Puts an earlier copy in the place of the files; the program must not run.
    void putBack(const Copy& copy);
    void putBackup(const std::string& bytes) { files_.put(backupPath, bytes); }
    /// Another program puts a copy in the place of the data directory, which is moved elsewhere.
    void exchangeDirectory(const Copy& copy);
    /// It puts the directory back.
    void moveDirectoryBack();
    /// The files of the directory that was moved elsewhere.
    [[nodiscard]] Copy copyElsewhere() const;
    /// Makes the primary unreadable, in place or by another file.
    void damagePrimary();

private:
    static constexpr const char* directory = "/home/ledgers";
    static constexpr const char* elsewhere = "/home/elsewhere";
    static constexpr const char* primaryPath = "/home/ledgers/ledger.json";
    static constexpr const char* backupPath = "/home/ledgers/ledger.backup.json";

    Outcome run(const std::function<void()>& action, DiskFault fault);
    void plan(DiskFault fault);
    void losePower();

    std::string name_;
    Choices& choices_;
    UuidSource newUuid_;
    const Date& worldNow_;
    double clockOffset_;
    double forgivenSeconds_ = 0.0;
    MemoryFileSystem files_;
    std::optional<TimeStore> store_;
    std::size_t usualCalls_ = 30; ///< File calls of an operation, to place faults among them.
    bool hadFailingCall_ = false;
    bool hadPassingFailure_ = false;
};

} // namespace KestryCore
