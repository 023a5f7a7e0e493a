#pragma once

#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "StoreFixture.h"

namespace KestryCore {

/// A rule that does not hold, in words.
class Violation : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

void require(bool holds, const std::string& violation);

using Files = std::map<std::string, std::string>;

/// Something the store does in one go: the files before, and after when nothing comes between.
struct StoreStep {
    Files before;
    Files after;
};

/// The content of a file, none where there is no such file.
[[nodiscard]] std::optional<std::string> fileIn(const Files& files, const std::string& path);

/// What must hold of the files whatever happened, and of a store that opens on them.
///
/// - The ledger is the one before or after, whole; it is there as long as it was.
/// - The backup is one that could be read, and is there as long as it was. Once the ledger is the
///   one after, the backup is the one before.
/// - A ledger that could not be read is never lost: it stands where it stood, or preserved.
/// - A handoff is the one before or after, whole.
/// - Besides, there is nothing but temporary files.
class StoreJudge {
public:
    void judgeFiles(const Files& left, const StoreStep& step);

    /// Runs an action of the store, and may look at it meanwhile.
    using Perform = std::function<void(const std::function<void()>&)>;

    /// Opens the store on what is left, restores where that is the only way on, and saves a
    /// change; checks that it can, and each outcome.
    void openAndSave(StoreWorld& world, const Perform& perform);

    /// Saves a change that must succeed, and checks that nothing but it is on the disk.
    void saveNext(StoreWorld& world, const Perform& perform);

private:
    using Reading = std::optional<LedgerData>;
    /// The ledger in a file; none where it cannot be read.
    const Reading& read(const std::optional<std::string>& bytes);
    void judgeBackup(const Files& left, const StoreStep& step);
    void judgeOpened(const StoreWorld& world, const Files& before);
    void judgeRestored(const StoreWorld& world, const Files& before);

    std::unordered_map<std::string, Reading> readings_; // reading is what takes the time
};

} // namespace KestryCore
