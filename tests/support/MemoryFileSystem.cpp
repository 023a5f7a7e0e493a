#include "MemoryFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace KestryCore {

namespace {

/// What a path through a claim begins with; the number of the directory follows.
const std::string claimPrefix = "/claimed/";

} // namespace

class MemoryFileSystem::Lock final : public DirectoryLock {
public:
    Lock(MemoryFileSystem& files, Disk::FileID directory)
        : files_(files), locks_(files.ownLocks_), directory_(directory)
    {
        locks_->insert(directory_);
    }
    ~Lock() override { locks_->erase(directory_); }

    std::string place() const override { return claimPrefix + std::to_string(directory_); }
    bool isAt(const std::string& path) const override
    {
        files_.call(path, "looked at");
        return files_.disk_.find(path) == directory_;
    }

private:
    MemoryFileSystem& files_;
    std::shared_ptr<std::set<Disk::FileID>> locks_;
    Disk::FileID directory_;
};

MemoryFileSystem::MemoryFileSystem(const std::string& directory)
    : ownLocks_(std::make_shared<std::set<Disk::FileID>>())
{
    putDirectory("/");
    putDirectory(directory);
}

std::optional<FileStatus> MemoryFileSystem::status(const std::string& name)
{
    const std::string path = enter(name, "looked at");
    const Disk::FileID found = disk_.find(path);
    if (found == 0) {
        return std::nullopt;
    }
    const Disk::File& file = disk_.file(found);
    const auto links = static_cast<std::uint64_t>(std::ranges::count_if(
        disk_.names(), [&](const auto& other) { return other.second == found; }));
    return FileStatus{!file.isDirectory && !file.isLink, file.isDirectory, file.isLink,
        file.content->size(), links};
}

std::vector<std::string> MemoryFileSystem::list(const std::string& name)
{
    const std::string directory = enter(name, "listed");
    std::vector<std::string> names;
    for (const auto& [path, file] : disk_.names()) {
        if (path != "/" && parentPath(path) == directory) {
            names.push_back(path.substr(path.find_last_of('/') + 1));
        }
    }
    return names;
}

FileSystem::Handle MemoryFileSystem::open(const std::string& name, FileUse use)
{
    static const std::map<FileUse, std::string> kinds{{FileUse::read, "read"},
        {FileUse::create, "written"}, {FileUse::createOrdinary, "written"},
        {FileUse::directory, "opened as a directory"}};
    const std::string& kind = kinds.at(use);
    const std::string path = enter(name, kind);
    if (use == FileUse::create || use == FileUse::createOrdinary) {
        return openNew(path, kind);
    }
    const Disk::FileID found = disk_.find(path);
    if (found == 0) {
        throw fileError(path, kind, ENOENT);
    }
    if (disk_.file(found).isLink) {
        throw fileError(path, kind, ELOOP); // Nothing here goes through links.
    }
    const bool isDirectory = disk_.file(found).isDirectory;
    if (isDirectory != (use == FileUse::directory)) {
        throw fileError(path, kind, isDirectory ? EISDIR : ENOTDIR);
    }
    handles_[nextHandle_] = OpenFile{path, found, 0};
    return nextHandle_++;
}

FileSystem::Handle MemoryFileSystem::openNew(const std::string& path, const std::string& kind)
{
    requireParent(path);
    if (disk_.find(path) != 0) {
        throw fileError(path, kind, EEXIST);
    }
    handles_[nextHandle_] = OpenFile{path, disk_.create(path, false), 0};
    return nextHandle_++;
}

FileSystem::Handle MemoryFileSystem::createProgram(const std::string& name)
{
    return openNew(enter(name, "written"), "written");
}

std::uint64_t MemoryFileSystem::size(Handle handle)
{
    const OpenFile& file = opened(handle);
    call(file.path, "measured");
    return disk_.file(file.file).content->size();
}

std::size_t MemoryFileSystem::read(Handle handle, char* buffer, std::size_t capacity)
{
    OpenFile& file = opened(handle);
    call(file.path, "read from");
    const std::size_t count = disk_.file(file.file).content->copy(buffer, capacity, file.position);
    file.position += count;
    return count;
}

FileIdentity MemoryFileSystem::identity(Handle handle)
{
    const OpenFile& file = opened(handle);
    call(file.path, "identified");
    return FileIdentity{0, file.file, 0, disk_.file(file.file).writes};
}

void MemoryFileSystem::setAccess(Handle handle, const std::optional<std::string>&)
{
    call(opened(handle).path, "given its access");
}

std::size_t MemoryFileSystem::write(Handle handle, std::span<const std::string_view> pieces)
{
    const OpenFile& file = opened(handle);
    std::string taken;
    for (const std::string_view piece : pieces) {
        taken += piece.substr(0, maximumWriteBytes_ - taken.size());
    }
    try {
        call(file.path, "written to");
    } catch (const PowerCut&) {
        disk_.append(file.file, taken.substr(0, taken.size() / 2));
        throw;
    }
    for (const std::size_t unit : Disk::units) {
        if (!recorder_ || taken.size() <= unit) {
            continue;
        }
        for (const std::size_t end : std::set{unit, (taken.size() - 1) / unit * unit}) {
            Disk torn = disk_;
            torn.append(file.file, taken.substr(0, end));
            recordMoment(file.path + " written to, torn after " + std::to_string(end), torn, unit);
        }
    }
    disk_.append(file.file, taken);
    return taken.size();
}

void MemoryFileSystem::sync(Handle handle)
{
    const OpenFile& file = opened(handle);
    const bool isDirectory = disk_.file(file.file).isDirectory;
    call(file.path, isDirectory ? "synced as a directory" : "synced");
    if (isDirectory) {
        disk_.syncDirectory(disk_.nameOf(file.file).value_or(file.path));
        return;
    }
    for (const std::size_t unit : Disk::units) {
        if (recorder_) {
            Disk partly = disk_;
            partly.syncPart(file.file, unit);
            recordMoment(file.path + " synced, torn at " + std::to_string(unit), partly, unit);
        }
    }
    disk_.sync(file.file);
}

void MemoryFileSystem::close(Handle handle)
{
    const std::string path = opened(handle).path;
    handles_.erase(handle);
    call(path, "closed");
}

void MemoryFileSystem::rename(const std::string& oldName, const std::string& newName)
{
    const std::string to = enter(newName, "replaced");
    const std::string from = resolved(oldName);
    const Disk::FileID moved = disk_.find(from);
    if (moved == 0) {
        throw fileError(to, "replaced", ENOENT);
    }
    if (disk_.isDirectory(to)) {
        throw fileError(to, "replaced", EISDIR);
    }
    if (disk_.find(to) == moved) {
        return; // One name of a file over another of the same: nothing happens, and both stay.
    }
    disk_.rename(from, to);
}

void MemoryFileSystem::link(Handle handle, const std::string& name)
{
    const OpenFile& file = opened(handle);
    const std::string to = enter(name, "linked");
    if (linkRefusal_ != 0 || disk_.find(to) != 0) {
        throw fileError(to, "linked", linkRefusal_ != 0 ? linkRefusal_ : EEXIST);
    }
    requireParent(to);
    disk_.link(file.file, to);
}

void MemoryFileSystem::remove(const std::string& name)
{
    const std::string path = enter(name, "removed");
    if (disk_.find(path) == 0 || disk_.isDirectory(path)) {
        throw fileError(path, "removed", disk_.find(path) != 0 ? EISDIR : ENOENT);
    }
    disk_.remove(path);
}

bool MemoryFileSystem::createDirectory(const std::string& name)
{
    const std::string path = enter(name, "created");
    requireParent(path);
    if (disk_.find(path) != 0) {
        return false;
    }
    disk_.create(path, true);
    return true;
}

bool MemoryFileSystem::createOrdinaryDirectory(const std::string& name)
{
    return createDirectory(name);
}

void MemoryFileSystem::removeEmptyDirectory(const std::string& name)
{
    const std::string path = enter(name, "removed");
    if (!disk_.isDirectory(path)) {
        throw fileError(path, "removed", disk_.find(path) != 0 ? ENOTDIR : ENOENT);
    }
    const auto isInside = [&](const auto& other) { return other.first.starts_with(path + '/'); };
    if (std::ranges::any_of(disk_.names(), isInside)) {
        throw fileError(path, "removed", ENOTEMPTY);
    }
    disk_.remove(path);
}

void MemoryFileSystem::createLink(const std::string& target, const std::string& name)
{
    const std::string path = enter(name, "linked");
    requireParent(path);
    if (disk_.find(path) != 0) {
        throw fileError(path, "linked", EEXIST);
    }
    disk_.createLink(path, target);
}

std::string MemoryFileSystem::linkTarget(const std::string& name)
{
    const std::string path = enter(name, "read");
    const Disk::FileID found = disk_.find(path);
    if (found == 0 || !disk_.file(found).isLink) {
        throw fileError(path, "read", found == 0 ? ENOENT : EINVAL);
    }
    return *disk_.file(found).content;
}

LockAttempt MemoryFileSystem::lockDirectory(const std::string& path)
{
    call(path, "locked");
    if (!isDirectory(path)) {
        throw fileError(path, "locked", disk_.find(path) != 0 ? ENOTDIR : ENOENT);
    }
    if (const auto holder = lockHolders_.find(path); holder != lockHolders_.end()) {
        return {nullptr, holder->second};
    }
    return {std::make_unique<Lock>(*this, disk_.find(path)), {}};
}

void MemoryFileSystem::put(const std::string& path, const std::string& bytes)
{
    disk_.put(path, bytes);
}

void MemoryFileSystem::putDirectory(const std::string& path)
{
    if (!disk_.isDirectory(path)) {
        disk_.putDirectory(path);
    }
}

void MemoryFileSystem::erase(const std::string& path)
{
    disk_.erase(path);
}

void MemoryFileSystem::removeDirectory(const std::string& path)
{
    const std::map<std::string, Disk::FileID> names = disk_.names();
    for (const auto& [name, file] : names) {
        if (name == path || name.starts_with(path + '/')) {
            disk_.erase(name);
        }
    }
}

void MemoryFileSystem::holdLock(const std::string& directory, const std::string& holder)
{
    if (holder.empty()) {
        lockHolders_.erase(directory);
    } else {
        lockHolders_[directory] = holder;
    }
}

std::optional<std::string> MemoryFileSystem::content(const std::string& path) const
{
    const Disk::FileID found = disk_.find(path);
    if (found == 0 || disk_.file(found).isDirectory) {
        return std::nullopt;
    }
    return *disk_.file(found).content;
}

std::map<std::string, std::string> MemoryFileSystem::contents() const
{
    return disk_.contents();
}

bool MemoryFileSystem::isDirectory(const std::string& path) const
{
    return disk_.isDirectory(path);
}

bool MemoryFileSystem::isLocked(const std::string& directory) const
{
    return ownLocks_->contains(disk_.find(directory));
}

void MemoryFileSystem::failCall(int number, int code)
{
    plan({{}, number, false, code});
}

void MemoryFileSystem::failCalls(const std::string& description, int code)
{
    plan({description, 0, false, code});
}

void MemoryFileSystem::failCallsFrom(int number, int code)
{
    plan({{}, number, true, code});
}

void MemoryFileSystem::cutPowerBefore(int number)
{
    plan({{}, number, false, 0});
}

void MemoryFileSystem::interfereAt(int number, std::function<void()> interference)
{
    plan({{}, number, false, 0, std::move(interference)});
}

void MemoryFileSystem::heal()
{
    plan({});
}

void MemoryFileSystem::plan(Faults faults)
{
    faults_ = std::move(faults);
    calls_ = 0;
    faultHappened_ = false;
    faultyCall_.clear();
}

void MemoryFileSystem::call(const std::string& path, const std::string& kind)
{
    if (powerIsOff_) {
        throw PowerCut{};
    }
    ++calls_;
    const std::string description = path + " " + kind;
    recordMoment(description, disk_);
    if (!isFaulty(description)) {
        return;
    }
    if (!faultHappened_) {
        faultHappened_ = true;
        faultyCall_ = description;
    }
    if (faults_.interference) {
        faults_.interference();
        return;
    }
    if (faults_.code == 0) {
        powerIsOff_ = true;
        throw PowerCut{};
    }
    throw fileError(path, kind, faults_.code);
}

bool MemoryFileSystem::isFaulty(const std::string& description) const
{
    if (!faults_.description.empty()) {
        return description == faults_.description;
    }
    const bool isReached = faults_.first != 0 && calls_ >= faults_.first;
    return isReached && (faults_.lasting || calls_ == faults_.first);
}

void MemoryFileSystem::recordMoment(
    const std::string& call, const Disk& disk, std::size_t tornAt) const
{
    if (recorder_) {
        recorder_(Moment{call, disk, tornAt});
    }
}

void MemoryFileSystem::restart(Unsynced unsynced)
{
    heal();
    powerIsOff_ = false;
    handles_.clear();
    SameChoice names(unsynced == Unsynced::lost ? 0 : 1);
    SameChoice contents(unsynced == Unsynced::kept ? 1 : 0);
    disk_.cutPowerFromNames(names);
    disk_.cutPowerFromContents(contents);
}

MemoryFileSystem::OpenFile& MemoryFileSystem::opened(Handle handle)
{
    const auto found = handles_.find(handle);
    if (found == handles_.end()) {
        throw std::logic_error("A handle was used that is not open.");
    }
    return found->second;
}

std::string MemoryFileSystem::enter(const std::string& name, const std::string& kind)
{
    call(resolved(name), kind);
    // What another program does before the call may lead a name elsewhere.
    return resolved(name);
}

std::string MemoryFileSystem::resolved(const std::string& path) const
{
    if (!path.starts_with(claimPrefix)) {
        return path;
    }
    const std::string rest = path.substr(claimPrefix.size());
    const std::size_t end = rest.find('/');
    const auto directory = disk_.nameOf(std::stoull(rest.substr(0, end)));
    return directory && end != std::string::npos ? *directory + rest.substr(end)
                                                 : directory.value_or(path);
}

void MemoryFileSystem::requireParent(const std::string& path) const
{
    if (!isDirectory(parentPath(path))) {
        throw fileError(path, "created", ENOENT);
    }
}

} // namespace KestryCore
