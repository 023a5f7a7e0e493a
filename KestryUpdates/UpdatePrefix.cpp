#include "UpdatePrefix.h"

#include <algorithm>

#include "DurableFiles.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr std::string_view linkName = "current";
constexpr std::string_view newLinkName = "current.new";
constexpr std::string_view versionsName = "versions";
constexpr std::string_view trialName = "trial";
constexpr std::string_view newTrialName = "trial.new";
constexpr std::string_view failedName = "failed";
constexpr std::string_view updatesName = "updates";
constexpr std::uint64_t mostTrialBytes = 200;

/// The last name of a path.
std::string nameOf(const std::string& path)
{
    return path.substr(path.find_last_of('/') + 1);
}

} // namespace

std::optional<UpdatePrefix> UpdatePrefix::ofProgram(TreeFiles& files, const std::string& program)
{
    const std::string version = parentPath(parentPath(program));
    const std::string versions = parentPath(version);
    const std::optional<UpdateVersion> name = UpdateVersion::parse(nameOf(version));
    if (!name || nameOf(versions) != versionsName) {
        return std::nullopt;
    }
    UpdatePrefix prefix(files, parentPath(versions));
    const bool isOne = prefix.program(*name) == program && prefix.current().has_value()
        && files.status(prefix.launcher()).has_value();
    return isOne ? std::optional(prefix) : std::nullopt;
}

std::string UpdatePrefix::directoryOf(const UpdateVersion& version) const
{
    return joinPath(in(versionsName), version.text());
}

std::string UpdatePrefix::program(const UpdateVersion& version) const
{
    return joinPath(directoryOf(version), "bin/kestry");
}

std::optional<UpdateVersion> UpdatePrefix::current() const
{
    const std::optional<FileStatus> status = files_->status(in(linkName));
    if (!status || !status->isLink) {
        return std::nullopt;
    }
    const std::string target = files_->linkTarget(in(linkName));
    if (parentPath(target) != versionsName) {
        return std::nullopt;
    }
    return UpdateVersion::parse(nameOf(target));
}

std::optional<UpdatePrefix::Trial> UpdatePrefix::readTrial(const std::string& path) const
{
    const std::optional<FileStatus> status = files_->status(path);
    if (!status || !status->isRegular || status->size > mostTrialBytes) {
        return std::nullopt;
    }
    const std::string lines = readFile(*files_, path);
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const auto version = UpdateVersion::parse(lines.substr(0, end));
    const std::string rest = lines.substr(std::min(end + 1, lines.size()));
    const auto previous = UpdateVersion::parse(rest.substr(0, rest.find('\n')));
    return version && previous ? std::optional(Trial{*version, *previous}) : std::nullopt;
}

std::optional<UpdatePrefix::Trial> UpdatePrefix::trial() const
{
    std::optional<Trial> trial = readTrial(in(trialName));
    const std::optional<UpdateVersion> now = current();
    return trial && now && now->text() == trial->version.text() ? trial : std::nullopt;
}

std::unique_ptr<DirectoryLock> UpdatePrefix::lock() const
{
    LockAttempt attempt = files_->lockDirectory(path_);
    if (attempt.lock == nullptr) {
        throw LedgerError("Another program is just changing this installation of Kestry.");
    }
    return std::move(attempt.lock);
}

std::vector<UpdateVersion> UpdatePrefix::versionsInUse() const
{
    std::vector<UpdateVersion> versions;
    const std::optional<UpdateVersion> now = current();
    if (!now) {
        throw LedgerError("This installation of Kestry has no current version.");
    }
    versions.push_back(*now);
    if (const std::optional<Trial> onTrial = trial()) {
        versions.push_back(onTrial->previous);
    }
    return versions;
}

UpdatePrefix::Room UpdatePrefix::makeRoom(const UpdateVersion& version)
{
    const std::vector<UpdateVersion> used = versionsInUse();
    if (std::ranges::find(used, version) != used.end()) {
        throw LedgerError(
            "Version " + version.text() + " is installed already. Quit Kestry and start it again.");
    }
    clear();
    files_->createDirectory(in(updatesName));
    files_->createOrdinaryDirectory(directoryOf(version));
    return {directoryOf(version), joinPath(in(updatesName), "archive")};
}

void UpdatePrefix::clear()
{
    const std::vector<UpdateVersion> used = versionsInUse();
    const auto isUsed = [&](const std::string& name) {
        return std::ranges::find(used, name, &UpdateVersion::text) != used.end();
    };
    // A switch that could be undone by a power cut must not lose what it would lead back to.
    syncDirectory(*files_, path_);
    for (const std::string& name : files_->list(in(versionsName))) {
        if (UpdateVersion::parse(name) && !isUsed(name)) {
            removeTree(*files_, joinPath(in(versionsName), name));
        }
    }
    removeTree(*files_, in(updatesName));
    removeTree(*files_, in(newLinkName));
    removeTree(*files_, in(newTrialName));
}

void UpdatePrefix::writeLink(const UpdateVersion& version)
{
    const std::string made = in(newLinkName);
    removeTree(*files_, made);
    files_->createLink(joinPath(std::string(versionsName), version.text()), made);
    try {
        files_->rename(made, in(linkName));
    } catch (...) {
        removeQuietly(made);
        throw;
    }
    try {
        syncDirectory(*files_, path_);
    } catch (const FileError&) {
        return; // It has happened, and both versions are whole; `clear` waits for it.
    }
}

void UpdatePrefix::switchTo(const UpdateVersion& version)
{
    const std::optional<UpdateVersion> previous = current();
    if (!previous || !files_->status(program(version))) {
        throw LedgerError("Version " + version.text() + " can't be switched to.");
    }
    syncDirectory(*files_, in(versionsName));
    DurableFiles durable(*files_);
    durable.write(in(trialName), version.text() + '\n' + previous->text() + '\n', in(newTrialName));
    try {
        syncDirectory(*files_, path_);
        writeLink(version);
    } catch (...) {
        removeQuietly(in(trialName));
        throw;
    }
}

bool UpdatePrefix::linkBack()
{
    const std::optional<Trial> onTrial = trial();
    if (!onTrial || !files_->status(program(onTrial->previous))) {
        return false;
    }
    writeLink(onTrial->previous);
    return true;
}

bool UpdatePrefix::goBack()
{
    if (!linkBack()) {
        return false;
    }
    try {
        files_->rename(in(trialName), in(failedName));
    } catch (const FileError&) {
        return true; // Nobody is told, and nothing else depends on it.
    }
    return true;
}

void UpdatePrefix::takeBack()
{
    if (linkBack()) {
        removeQuietly(in(trialName));
    }
}

void UpdatePrefix::confirm(const UpdateVersion& version)
{
    const std::optional<UpdateVersion> now = current();
    if (!now || *now != version) {
        return;
    }
    removeTree(*files_, in(trialName)); // whatever it is
    clear();
}

std::optional<UpdatePrefix::Trial> UpdatePrefix::takeFailed()
{
    std::optional<Trial> failed = readTrial(in(failedName));
    if (files_->status(in(failedName))) {
        files_->remove(in(failedName));
    }
    return failed;
}

void UpdatePrefix::removeQuietly(const std::string& path)
{
    try {
        files_->remove(path);
    } catch (const FileError&) {
        return;
    }
}

} // namespace Kestry
