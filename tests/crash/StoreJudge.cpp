#include "StoreJudge.h"

#include <algorithm>
#include <array>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "SessionLifecycle.h"
#include "UpdateHandoff.h"

namespace KestryCore {

namespace {

using World = StoreWorld;

bool isTemporary(const std::string& path)
{
    return path.ends_with(".new") || path.ends_with(".new-2") || path.ends_with(".new-3");
}

bool isCorruptCopy(const std::string& path)
{
    return path.starts_with(parentPath(World::primaryPath) + "/ledger.corrupt-")
        && !isTemporary(path);
}

void judgeNames(const Files& left)
{
    for (const auto& [path, content] : left) {
        require(path == World::primaryPath || path == World::backupPath
                || path == World::handoffPath || isCorruptCopy(path) || isTemporary(path),
            "there is an unknown file: " + path);
    }
}

void judgeHandoff(const Files& left, const StoreStep& step)
{
    const auto handoff = fileIn(left, World::handoffPath);
    const auto before = fileIn(step.before, World::handoffPath);
    const auto after = fileIn(step.after, World::handoffPath);
    // One that is replaced is removed first.
    const bool mayBeGone = before != after;
    require(handoff == before || handoff == after || (!handoff && mayBeGone),
        "the handoff is neither the one before nor the one after");
}

void judgeCorruptCopies(const Files& left, const StoreStep& step, bool wasReadable)
{
    const auto primary = fileIn(step.before, World::primaryPath);
    bool isPreserved = false;
    for (const auto& [path, content] : left) {
        if (isCorruptCopy(path) && !step.before.contains(path)) {
            require(content == primary, "a preserved ledger is not what it was: " + path);
        }
        isPreserved = isPreserved || (isCorruptCopy(path) && content == primary);
    }
    for (const auto& [path, content] : step.before) {
        require(!isCorruptCopy(path) || fileIn(left, path) == content,
            "a preserved ledger was changed or lost: " + path);
    }
    require(!primary || wasReadable || isPreserved || fileIn(left, World::primaryPath) == primary,
        "the ledger that could not be read was lost");
}

/// Whether the session found running is one that was left to this process.
bool isLeftToUs(const StoreWorld& world, const Files& files, const LedgerData& ledger)
{
    const auto bytes = fileIn(files, World::handoffPath);
    try {
        const UpdateHandoff handoff = decodeUpdateHandoff(bytes.value_or(""));
        return handoff.token == world.options.updateToken && handoff.active == ledger.active;
    } catch (const LedgerError&) {
        return false;
    }
}

bool holdsSameRecords(const LedgerData& left, const LedgerData& right)
{
    return left.clients == right.clients && left.projects == right.projects
        && left.entries == right.entries && left.active == right.active;
}

} // namespace

void require(bool holds, const std::string& violation)
{
    if (!holds) {
        throw Violation(violation);
    }
}

std::optional<std::string> fileIn(const Files& files, const std::string& path)
{
    const auto found = files.find(path);
    return found != files.end() ? std::optional(found->second) : std::nullopt;
}

const StoreJudge::Reading& StoreJudge::read(const std::optional<std::string>& bytes)
{
    const auto [found, isNew] = readings_.try_emplace(bytes.value_or(""));
    if (isNew && bytes) {
        try {
            LedgerData ledger = decodeLedger(*bytes);
            validate(ledger);
            found->second = std::move(ledger);
        } catch (const LedgerError&) {
            found->second.reset();
        }
    }
    return found->second;
}

void StoreJudge::judgeFiles(const Files& left, const StoreStep& step)
{
    const auto primary = fileIn(left, World::primaryPath);
    require(primary == fileIn(step.before, World::primaryPath)
            || primary == fileIn(step.after, World::primaryPath),
        "the ledger is neither the one before nor the one after");
    judgeBackup(left, step);
    judgeCorruptCopies(left, step, read(fileIn(step.before, World::primaryPath)).has_value());
    judgeHandoff(left, step);
    judgeNames(left);
}

void StoreJudge::judgeBackup(const Files& left, const StoreStep& step)
{
    const auto backup = fileIn(left, World::backupPath);
    if (backup == fileIn(step.before, World::backupPath)) {
        const bool isReplaced =
            fileIn(left, World::primaryPath) != fileIn(step.before, World::primaryPath);
        const bool isBackedUp = fileIn(step.after, World::backupPath) != backup;
        require(
            !isReplaced || !isBackedUp, "the backup is older than the ledger that was replaced");
        return;
    }
    require(read(backup).has_value(), "the backup cannot be read");
    const std::array known{
        fileIn(step.before, World::primaryPath), fileIn(step.after, World::backupPath)};
    require(std::ranges::find(known, backup) != known.end(),
        "the backup is none of the ledgers before");
}

void StoreJudge::openAndSave(StoreWorld& world, const Perform& perform)
{
    const Files found = world.files.contents();
    perform([&] { world.open(); });
    judgeOpened(world, found);
    if (world.store().blocked()) {
        const Files before = world.files.contents();
        perform([&] { world.store().restoreBackup(); });
        judgeRestored(world, before);
    }
    saveNext(world, perform);
}

void StoreJudge::judgeOpened(const StoreWorld& world, const Files& before)
{
    const auto primary = fileIn(before, World::primaryPath);
    const auto backup = fileIn(before, World::backupPath);
    const Reading& ledger = read(primary);
    require(world.files.openHandles() == 0, "a file was left open");
    if (!primary && !backup) {
        require(world.ledger() == LedgerData{} && world.errorMessage().empty(),
            "an empty directory does not open as one");
        return;
    }
    if (!ledger) {
        require(world.blocked() && world.recoveryAvailable(),
            "a ledger that cannot be read does not open on its backup");
        return;
    }
    require(world.errorMessage().empty(), "opening says: " + world.errorMessage());
    require(!world.blocked(), "the store opens blocked");
    require(!world.files.content(World::handoffPath)
            && !world.files.content(World::handoffPath + ".new"),
        "the handoff was not consumed");
    LedgerData expected = *ledger;
    if (!isLeftToUs(world, before, expected)) {
        recoverSession(expected);
    }
    require(holdsSameRecords(world.ledger(), expected), "the store opens on other records");
    require(read(world.files.content(World::primaryPath)) == world.ledger(),
        "what is shown is not what is on the disk");
}

void StoreJudge::judgeRestored(const StoreWorld& world, const Files& before)
{
    require(world.errorMessage().empty() && !world.blocked(), "the restore did not free the store");
    const Files left = world.files.contents();
    StoreStep step{before, left};
    judgeFiles(left, step);
    LedgerData expected = *read(fileIn(before, World::backupPath));
    recoverSession(expected);
    require(holdsSameRecords(world.ledger(), expected), "the restore brought other records");
}

void StoreJudge::saveNext(StoreWorld& world, const Perform& perform)
{
    const auto previous = world.files.content(World::primaryPath);
    const std::string name = "Next " + std::to_string(world.ledger().clients.size());
    perform([&] { world.addClient(name); });
    require(read(world.files.content(World::primaryPath)) == world.ledger(),
        "the next change is not on the disk");
    require(world.ledger().clients.back().name == name, "the next change did not happen");
    require(!previous || world.files.content(World::backupPath) == previous,
        "the backup is not the ledger before the next change");
    for (const auto& [path, content] : world.files.contents()) {
        // What a failed handoff left is cleared by the next opening: saving need not look for it.
        require(!isTemporary(path) || path.starts_with(World::handoffPath),
            "a temporary file stays: " + path);
    }
    require(world.files.openHandles() == 0, "a file was left open");
}

} // namespace KestryCore
