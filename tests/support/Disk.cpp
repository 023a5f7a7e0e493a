#include "Disk.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>

#include "FileSystem.h"

namespace KestryCore {

namespace {

Disk::Bytes shared(std::string bytes)
{
    return std::make_shared<const std::string>(std::move(bytes));
}

/// What is left of bytes that reached the disk in units, in any order, when the power failed.
std::string torn(const std::string& bytes, std::size_t unit, Choices& choices)
{
    enum Loss { cutOff, zeroAfter, zeroBefore, oneUnitMissing, count };
    const std::size_t loss = choices.below(count);
    const std::size_t units = (bytes.size() + unit - 1) / unit;
    const std::size_t end = choices.cut(units) * unit;
    std::string left = bytes;
    switch (loss) {
    case cutOff:
        left.resize(end);
        break;
    case zeroAfter:
        std::fill(left.begin() + static_cast<std::ptrdiff_t>(end), left.end(), '\0');
        break;
    case zeroBefore:
        std::fill_n(left.begin(), end, '\0');
        break;
    default:
        std::fill_n(left.begin() + static_cast<std::ptrdiff_t>(end - unit), unit, '\0');
    }
    return left;
}

/// What is left of bytes that were not synced; adds the unit at which they were torn.
std::string remains(const std::string& bytes, Choices& choices, std::set<std::size_t>& tears)
{
    enum Fate { gone, there, zero, tornAtFirstUnit };
    const auto divides = [&](std::size_t unit) { return unit < bytes.size(); };
    const auto tearable = static_cast<std::size_t>(std::ranges::count_if(Disk::units, divides));
    const std::size_t fate = choices.below(tornAtFirstUnit + tearable);
    switch (fate) {
    case gone:
        return {};
    case there:
        return bytes;
    case zero:
        return std::string(bytes.size(), '\0');
    default:
        const std::size_t unit = Disk::units.at(fate - tornAtFirstUnit);
        tears.insert(unit);
        return torn(bytes, unit, choices);
    }
}

} // namespace

Disk::FileID Disk::find(const std::string& path) const
{
    const auto found = names_.find(path);
    return found != names_.end() ? found->second : 0;
}

bool Disk::isDirectory(const std::string& path) const
{
    const FileID id = find(path);
    return id != 0 && file(id).isDirectory;
}

std::optional<std::string> Disk::nameOf(FileID id) const
{
    const auto found =
        std::ranges::find_if(names_, [id](const auto& name) { return name.second == id; });
    return found != names_.end() ? std::optional(found->first) : std::nullopt;
}

std::map<std::string, std::string> Disk::contents() const
{
    std::map<std::string, std::string> result;
    for (const auto& [path, id] : names_) {
        if (!file(id).isDirectory) {
            result[path] = *file(id).content;
        }
    }
    return result;
}

std::size_t Disk::digest() const
{
    constexpr std::size_t spread = 0x9E3779B97F4A7C15;
    std::size_t result = 0;
    const auto add = [&](const std::string& text) {
        result = (result ^ std::hash<std::string>{}(text)) * spread + (result >> 29);
    };
    std::map<FileID, std::string> firstNames;
    for (const auto& [path, id] : names_) {
        add(path);
        add(firstNames.try_emplace(id, path).first->second);
        add(*file(id).content);
    }
    return result;
}

Disk::FileID Disk::create(const std::string& path, bool isDirectory)
{
    files_[++lastFile_] = File{isDirectory, shared({}), shared({})};
    changeName({path, lastFile_});
    return lastFile_;
}

void Disk::createLink(const std::string& path, const std::string& target)
{
    files_[++lastFile_] = File{false, shared(target), shared(target), 0, true};
    changeName({path, lastFile_});
}

void Disk::append(FileID id, const std::string& bytes)
{
    File& changed = files_.at(id);
    changed.content = shared(*changed.content + bytes);
    ++changed.writes;
}

void Disk::link(FileID id, const std::string& path)
{
    changeName({path, id});
}

void Disk::rename(const std::string& from, const std::string& to)
{
    changeName({to, find(from), from});
}

void Disk::remove(const std::string& path)
{
    changeName({path, 0});
}

void Disk::changeName(NameChange change)
{
    names_.erase(change.from);
    if (change.file == 0) {
        names_.erase(change.path);
    } else {
        names_[change.path] = change.file;
    }
    unsyncedNames_.push_back(std::move(change));
}

void Disk::sync(FileID id)
{
    files_.at(id).durable = files_.at(id).content;
}

void Disk::syncPart(FileID id, std::size_t unit)
{
    File& synced = files_.at(id);
    const std::size_t durable = synced.durable->size();
    const std::size_t half = (synced.content->size() - durable) / 2;
    synced.durable = shared(synced.content->substr(0, durable + half / unit * unit));
}

void Disk::syncDirectory(const std::string& path)
{
    const auto isInside = [&](const std::string& name) {
        return name != "/" && parentPath(name) == path;
    };
    std::erase_if(durableNames_, [&](const auto& name) { return isInside(name.first); });
    std::ranges::copy_if(names_, std::inserter(durableNames_, durableNames_.end()),
        [&](const auto& name) { return isInside(name.first); });
    std::erase_if(unsyncedNames_, [&](const NameChange& change) { return isInside(change.path); });
}

void Disk::put(const std::string& path, const std::string& bytes)
{
    files_[++lastFile_] = File{false, shared(bytes), shared(bytes)};
    makeDurable(path, lastFile_);
}

void Disk::putDirectory(const std::string& path)
{
    files_[++lastFile_] = File{true, shared({}), shared({})};
    makeDurable(path, lastFile_);
}

void Disk::putLink(const std::string& path, const std::string& target)
{
    files_[++lastFile_] = File{false, shared(target), shared(target), 0, true};
    makeDurable(path, lastFile_);
}

void Disk::makeDurable(const std::string& path, FileID id)
{
    erase(path);
    names_[path] = durableNames_[path] = id;
}

void Disk::erase(const std::string& path)
{
    names_.erase(path);
    durableNames_.erase(path);
    std::erase_if(unsyncedNames_, [&](const NameChange& change) { return change.path == path; });
}

void Disk::moveDirectory(const std::string& from, const std::string& to)
{
    const auto moved = [&](const std::string& path) {
        const bool isInside = path == from || path.starts_with(from + '/');
        return isInside ? to + path.substr(from.size()) : path;
    };
    for (auto* names : {&names_, &durableNames_}) {
        std::map<std::string, FileID> after;
        for (const auto& [path, id] : *names) {
            after[moved(path)] = id;
        }
        *names = std::move(after);
    }
    for (NameChange& change : unsyncedNames_) {
        change.path = moved(change.path);
        change.from = moved(change.from);
    }
    // The move itself is there for good, and so is the directory that it moved.
    durableNames_[to] = names_.at(to);
    std::erase_if(unsyncedNames_, [&](const NameChange& change) { return change.path == to; });
}

void Disk::overwrite(FileID id, const std::string& bytes)
{
    files_.at(id).content = files_.at(id).durable = shared(bytes);
}

void Disk::cutPowerFromNames(Choices& choices)
{
    enum Outcome { lost, done, doneWithOldNameLeft };
    std::map<std::string, FileID> left = durableNames_;
    for (const NameChange& change : unsyncedNames_) {
        const std::size_t outcome = choices.below(change.from.empty() ? 2 : 3);
        if (outcome == lost) {
            continue;
        }
        left.erase(change.path);
        if (change.file != 0) {
            left[change.path] = change.file;
        }
        if (outcome == doneWithOldNameLeft) {
            left[change.from] = change.file;
        } else {
            left.erase(change.from);
        }
    }
    unsyncedNames_.clear();
    names_.clear();
    // A name whose directory was lost is lost with it; a directory comes before what is in it.
    for (const auto& [path, id] : left) {
        if (path == "/" || isDirectory(parentPath(path))) {
            names_[path] = id;
        }
    }
    durableNames_ = names_;
}

std::set<std::size_t> Disk::cutPowerFromContents(Choices& choices)
{
    std::set<std::size_t> tears;
    std::set<FileID> kept;
    for (const auto& [path, id] : names_) {
        if (!kept.insert(id).second) {
            continue;
        }
        File& left = files_.at(id);
        if (left.content->size() > left.durable->size()) {
            const std::string unsynced = left.content->substr(left.durable->size());
            left.content = shared(*left.durable + remains(unsynced, choices, tears));
        }
        left.durable = left.content;
    }
    std::erase_if(files_, [&](const auto& found) { return !kept.contains(found.first); });
    return tears;
}

} // namespace KestryCore
