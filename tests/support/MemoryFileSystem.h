#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Disk.h"
#include "TreeFiles.h"

namespace KestryCore {

/// Thrown by the call before which the power failed. No `std::exception`, so that no product
/// code takes it for a failure that it could report.
struct PowerCut { };

/// What the disk still has, after a power cut, of what was never synced.
enum class Unsynced {
    lost,      ///< Nothing: neither names nor contents.
    namesKept, ///< The names, but not the contents behind them.
    kept,      ///< Everything, a torn write included.
};

/// The calls that programs make to files, on a disk in memory.
///
/// - Every operation is a call. Calls are counted, any of them can be made to fail, and any of
///   them can be the one before which the power fails; from then on each call throws `PowerCut`
///   until `restart`.
/// - The state of the disk before every call can be recorded, and in the middle of it where it
///   has one.
/// - A write takes at most so many bytes, so that files take several. One cut off by the power
///   leaves half of its bytes in the cache.
/// - A handle used after it was closed is a mistake of the product, thrown as a logic error.
class MemoryFileSystem final : public TreeFiles {
public:
    /// Starts with one durable directory.
    explicit MemoryFileSystem(const std::string& directory = "/home");

    // The calls.

    [[nodiscard]] std::string applicationSupportDirectory() const override { return "/home/data"; }
    [[nodiscard]] std::optional<FileStatus> status(const std::string& name) override;
    [[nodiscard]] std::vector<std::string> list(const std::string& name) override;
    [[nodiscard]] Handle open(const std::string& name, FileUse use) override;
    [[nodiscard]] std::uint64_t size(Handle handle) override;
    [[nodiscard]] std::size_t read(Handle handle, char* buffer, std::size_t capacity) override;
    [[nodiscard]] FileIdentity identity(Handle handle) override;
    void setAccess(Handle handle, const std::optional<std::string>& like) override;
    [[nodiscard]] std::size_t write(
        Handle handle, std::span<const std::string_view> pieces) override;
    void sync(Handle handle) override;
    void close(Handle handle) override;
    void rename(const std::string& oldName, const std::string& newName) override;
    void link(Handle handle, const std::string& name) override;
    void remove(const std::string& name) override;
    bool createDirectory(const std::string& name) override;
    [[nodiscard]] Handle createProgram(const std::string& name) override;
    bool createOrdinaryDirectory(const std::string& name) override;
    void removeEmptyDirectory(const std::string& name) override;
    void createLink(const std::string& target, const std::string& name) override;
    [[nodiscard]] std::string linkTarget(const std::string& name) override;
    [[nodiscard]] LockAttempt lockDirectory(const std::string& path) override;

    /// From now on no file can have two names; `link` fails with this system error number.
    void refuseLinks(int code) { linkRefusal_ = code; }
    [[nodiscard]] int linkRefusal() const { return linkRefusal_; }
    /// The most bytes that one write takes; 400 unless told.
    void limitWrites(std::size_t bytes) { maximumWriteBytes_ = bytes; }

    // What tests do behind the product's back. None of it is a call, and all of it is durable.

    void put(const std::string& path, const std::string& bytes);
    /// Gives a file another content in place; nothing else tells that it was touched.
    void overwrite(const std::string& path, const std::string& bytes)
    {
        disk_.overwrite(disk_.find(path), bytes);
    }
    /// Makes a symbolic link.
    void putLink(const std::string& path, const std::string& target)
    {
        disk_.putLink(path, target);
    }
    /// Makes a directory where there is none.
    void putDirectory(const std::string& path);
    void erase(const std::string& path);
    /// Gives a directory another name, with everything in it.
    void moveDirectory(const std::string& from, const std::string& to)
    {
        disk_.moveDirectory(from, to);
    }
    /// Removes a directory with everything in it.
    void removeDirectory(const std::string& path);
    /// Another process takes the lock of a directory; an empty name gives it back.
    void holdLock(const std::string& directory, const std::string& holder);

    /// The content of a file, none when there is no such file.
    [[nodiscard]] std::optional<std::string> content(const std::string& path) const;
    /// All files with their contents.
    [[nodiscard]] std::map<std::string, std::string> contents() const;
    [[nodiscard]] bool isDirectory(const std::string& path) const;
    [[nodiscard]] bool isLocked(const std::string& directory) const;
    [[nodiscard]] std::size_t openHandles() const { return handles_.size(); }

    // Faults. The count starts anew with each of these.

    /// Makes the N-th call from now (1 is the next) fail with a system error number.
    void failCall(int number, int code);
    /// Makes every call of this description fail, as in "/home/ledger.json replaced".
    void failCalls(const std::string& description, int code);
    /// Makes the N-th call from now and all after it fail.
    void failCallsFrom(int number, int code);
    /// Makes the power fail before the N-th call from now takes effect.
    void cutPowerBefore(int number);
    /// Lets another program do something before the N-th call from now, which goes on after it.
    void interfereAt(int number, std::function<void()> interference);
    /// Ends all faults to come.
    void heal();
    /// Whether the fault asked for has happened.
    [[nodiscard]] bool faultHappened() const { return faultHappened_; }
    /// The first call that failed, as in "/home/ledger.json synced".
    [[nodiscard]] const std::string& faultyCall() const { return faultyCall_; }
    /// The calls made since the count started.
    [[nodiscard]] int callCount() const { return calls_; }

    // Power cuts at every call of one run.

    /// Where the power may fail: before a call, or in the middle of it.
    struct Moment {
        std::string call; ///< As in "/home/ledger.json written to, torn after 512".
        Disk disk;
        std::size_t tornAt = 0; ///< The unit of the tear, in the middle of a call.
    };
    /// Tells of each moment from now on; nothing ends it.
    void record(std::function<void(Moment)> recorder) { recorder_ = std::move(recorder); }
    [[nodiscard]] const Disk& disk() const { return disk_; }
    /// The machine comes up with this disk; nothing must be open.
    void mount(Disk disk) { disk_ = std::move(disk); }

    /// The machine comes up again after a power cut, or after a plain crash of the program.
    void restart(Unsynced unsynced);

private:
    struct OpenFile {
        std::string path;
        Disk::FileID file;
        std::size_t position = 0;
    };
    struct Faults {
        std::string description; ///< Of the faulty calls, where they are not counted.
        int first = 0;           ///< The number of the first faulty call; 0 for none.
        bool lasting = false;
        int code = 0; ///< 0 for a power cut.
        /// What another program does in place of all that.
        std::function<void()> interference{};
    };
    class Lock;

    void call(const std::string& path, const std::string& kind);
    /// Makes a call on a path, and tells where that leads when it takes effect.
    [[nodiscard]] std::string enter(const std::string& name, const std::string& kind);
    [[nodiscard]] bool isFaulty(const std::string& description) const;
    [[nodiscard]] Handle openNew(const std::string& path, const std::string& kind);
    void recordMoment(const std::string& call, const Disk& disk, std::size_t tornAt = 0) const;
    void plan(Faults faults);
    OpenFile& opened(Handle handle);
    [[nodiscard]] std::string resolved(const std::string& path) const;
    void requireParent(const std::string& path) const;

    Disk disk_;
    std::function<void(Moment)> recorder_;
    std::size_t maximumWriteBytes_ = 400;
    std::map<Handle, OpenFile> handles_;
    std::map<std::string, std::string> lockHolders_;
    std::shared_ptr<std::set<Disk::FileID>> ownLocks_;
    Handle nextHandle_ = 1;
    Faults faults_;
    int calls_ = 0;
    int linkRefusal_ = 0;
    bool powerIsOff_ = false;
    bool faultHappened_ = false;
    std::string faultyCall_;
};

} // namespace KestryCore
