#include "MemoryFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace KestryCore {

class MemoryFileSystem::Lock final : public DirectoryLock {
public:
    Lock(std::shared_ptr<std::set<std::string>> locks, std::string path)
        : locks_(std::move(locks)), path_(std::move(path))
    {
        locks_->insert(path_);
    }
    ~Lock() override { locks_->erase(path_); }

private:
    std::shared_ptr<std::set<std::string>> locks_;
    std::string path_;
};

MemoryFileSystem::MemoryFileSystem(const std::string& directory)
    : ownLocks_(std::make_shared<std::set<std::string>>())
{
    putDirectory("/");
    putDirectory(directory);
}

std::optional<FileStatus> MemoryFileSystem::status(const std::string& path)
{
    call(path, "looked at");
    const auto found = node(path);
    if (!found) {
        return std::nullopt;
    }
    return FileStatus{!found->isDirectory, found->isDirectory, found->content.size()};
}

std::vector<std::string> MemoryFileSystem::list(const std::string& directory)
{
    call(directory, "listed");
    std::vector<std::string> names;
    for (const auto& [path, found] : names_) {
        if (path != "/" && parentPath(path) == directory) {
            names.push_back(path.substr(path.find_last_of('/') + 1));
        }
    }
    return names;
}

FileSystem::Handle MemoryFileSystem::open(const std::string& path, FileUse use)
{
    static const std::map<FileUse, std::string> kinds{{FileUse::read, "read"},
        {FileUse::create, "written"}, {FileUse::directory, "opened as a directory"}};
    const std::string& kind = kinds.at(use);
    call(path, kind);
    if (use == FileUse::create) {
        requireParent(path);
        if (node(path)) {
            throw fileError(path, kind, EEXIST);
        }
        names_[path] = newFile({});
    }
    const auto found = node(path);
    if (!found) {
        throw fileError(path, kind, ENOENT);
    }
    if (found->isDirectory != (use == FileUse::directory)) {
        throw fileError(path, kind, found->isDirectory ? EISDIR : ENOTDIR);
    }
    handles_[nextHandle_] = OpenFile{path, found, 0};
    return nextHandle_++;
}

std::uint64_t MemoryFileSystem::size(Handle handle)
{
    OpenFile& file = opened(handle);
    call(file.path, "measured");
    return file.node->content.size();
}

std::size_t MemoryFileSystem::read(Handle handle, char* buffer, std::size_t capacity)
{
    OpenFile& file = opened(handle);
    call(file.path, "read from");
    const std::size_t count = file.node->content.copy(buffer, capacity, file.position);
    file.position += count;
    return count;
}

FileIdentity MemoryFileSystem::identity(Handle handle)
{
    const OpenFile& file = opened(handle);
    call(file.path, "identified");
    return FileIdentity{0, file.node->inode, 0, file.node->writes};
}

std::size_t MemoryFileSystem::write(Handle handle, std::span<const std::string_view> pieces)
{
    OpenFile& file = opened(handle);
    std::string taken;
    for (const std::string_view piece : pieces) {
        taken += piece.substr(0, maximumWriteBytes - taken.size());
    }
    try {
        call(file.path, "written to");
    } catch (const PowerCut&) {
        file.node->content += taken.substr(0, taken.size() / 2);
        throw;
    }
    file.node->content += taken;
    ++file.node->writes;
    return taken.size();
}

void MemoryFileSystem::sync(Handle handle)
{
    const OpenFile& file = opened(handle);
    call(file.path, file.node->isDirectory ? "synced as a directory" : "synced");
    if (!file.node->isDirectory) {
        file.node->durableContent = file.node->content;
        return;
    }
    const auto isInside = [&](const auto& name) {
        return name.first != "/" && parentPath(name.first) == file.path;
    };
    std::erase_if(durableNames_, isInside);
    std::ranges::copy_if(names_, std::inserter(durableNames_, durableNames_.end()), isInside);
}

void MemoryFileSystem::close(Handle handle)
{
    const std::string path = opened(handle).path;
    handles_.erase(handle);
    call(path, "closed");
}

void MemoryFileSystem::rename(const std::string& from, const std::string& to)
{
    call(to, "replaced");
    const auto moved = node(from);
    if (!moved) {
        throw fileError(to, "replaced", ENOENT);
    }
    if (const auto target = node(to); target && target->isDirectory) {
        throw fileError(to, "replaced", EISDIR);
    }
    if (node(to) == moved) {
        return; // One name of a file over another of the same: nothing happens, and both stay.
    }
    names_[to] = moved;
    names_.erase(from);
}

void MemoryFileSystem::link(Handle handle, const std::string& to)
{
    const OpenFile& file = opened(handle);
    call(to, "linked");
    if (linkRefusal_ != 0 || node(to)) {
        throw fileError(to, "linked", linkRefusal_ != 0 ? linkRefusal_ : EEXIST);
    }
    requireParent(to);
    names_[to] = file.node;
}

void MemoryFileSystem::remove(const std::string& path)
{
    call(path, "removed");
    const auto found = node(path);
    if (!found || found->isDirectory) {
        throw fileError(path, "removed", found ? EISDIR : ENOENT);
    }
    names_.erase(path);
}

bool MemoryFileSystem::createDirectory(const std::string& path)
{
    call(path, "created");
    requireParent(path);
    const auto made = std::make_shared<Node>(Node{.isDirectory = true});
    return names_.try_emplace(path, made).second;
}

LockAttempt MemoryFileSystem::lockDirectory(const std::string& path)
{
    call(path, "locked");
    if (!isDirectory(path)) {
        throw fileError(path, "locked", node(path) ? ENOTDIR : ENOENT);
    }
    if (const auto holder = lockHolders_.find(path); holder != lockHolders_.end()) {
        return {nullptr, holder->second};
    }
    return {std::make_unique<Lock>(ownLocks_, path), {}};
}

void MemoryFileSystem::put(const std::string& path, const std::string& bytes)
{
    durableNames_[path] = names_[path] = newFile(bytes);
}

void MemoryFileSystem::putDirectory(const std::string& path)
{
    durableNames_[path] = names_[path] = std::make_shared<Node>(Node{.isDirectory = true});
}

void MemoryFileSystem::erase(const std::string& path)
{
    names_.erase(path);
    durableNames_.erase(path);
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
    const auto found = node(path);
    return found && !found->isDirectory ? std::optional(found->content) : std::nullopt;
}

std::map<std::string, std::string> MemoryFileSystem::contents() const
{
    std::map<std::string, std::string> result;
    for (const auto& [path, found] : names_) {
        if (!found->isDirectory) {
            result[path] = found->content;
        }
    }
    return result;
}

bool MemoryFileSystem::isDirectory(const std::string& path) const
{
    const auto found = node(path);
    return found && found->isDirectory;
}

bool MemoryFileSystem::isLocked(const std::string& directory) const
{
    return ownLocks_->contains(directory);
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
    if (!isFaulty(description)) {
        return;
    }
    if (!faultHappened_) {
        faultHappened_ = true;
        faultyCall_ = description;
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

void MemoryFileSystem::restart(Unsynced unsynced)
{
    heal();
    powerIsOff_ = false;
    handles_.clear();
    if (unsynced == Unsynced::lost) {
        names_ = durableNames_;
        // A name whose directory was lost is lost with it.
        std::erase_if(names_, [&](const auto& name) {
            return name.first != "/" && !isDirectory(parentPath(name.first));
        });
    }
    for (const auto& [path, found] : names_) {
        if (unsynced != Unsynced::kept) {
            found->content = found->durableContent;
        }
        found->durableContent = found->content;
    }
    durableNames_ = names_;
}

MemoryFileSystem::OpenFile& MemoryFileSystem::opened(Handle handle)
{
    const auto found = handles_.find(handle);
    if (found == handles_.end()) {
        throw std::logic_error("A handle was used that is not open.");
    }
    return found->second;
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::newFile(const std::string& content)
{
    return std::make_shared<Node>(
        Node{.content = content, .durableContent = content, .inode = nextInode_++});
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::node(const std::string& path) const
{
    const auto found = names_.find(path);
    return found != names_.end() ? found->second : nullptr;
}

void MemoryFileSystem::requireParent(const std::string& path) const
{
    if (!isDirectory(parentPath(path))) {
        throw fileError(path, "created", ENOENT);
    }
}

} // namespace KestryCore
