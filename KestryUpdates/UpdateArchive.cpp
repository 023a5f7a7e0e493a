#include "UpdateArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr std::size_t mostPathLength = 500;
constexpr std::size_t blockBytes = std::size_t{256} * 1024;

[[noreturn]] void refuseArchive(const std::string& reason)
{
    throw LedgerError("The new version was refused: " + reason);
}

/// The part of a path before its last slash; empty for a bare name.
std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

/// The names that a path is made of, without "." and empty ones.
std::vector<std::string> partsOf(const std::string& path)
{
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        std::string part = path.substr(begin, end - begin);
        if (!part.empty() && part != ".") {
            parts.push_back(std::move(part));
        }
        begin = end + 1;
    }
    return parts;
}

/// The path of an entry from the root of its tree; empty for the root itself.
std::string plainPath(const char* given)
{
    const std::string path = given != nullptr ? given : "";
    const bool isPlain = !path.empty() && path.size() <= mostPathLength
        && std::ranges::all_of(path, [](char each) { return each >= ' ' && each <= '~'; });
    if (!isPlain) {
        refuseArchive("a file in its archive has no plain name.");
    }
    std::string plain;
    for (const std::string& part : partsOf(path)) {
        if (part == ".." || path.starts_with('/')) {
            refuseArchive("“" + path + "” in its archive leads out of its folder.");
        }
        plain += (plain.empty() ? "" : "/") + part;
    }
    return plain;
}

/// Whether a link in a folder leads to something in the tree. It goes up at its beginning alone:
/// the folders that it stands in are real ones, while names on its way may be links themselves.
bool leadsInside(const std::string& target, const std::string& folder)
{
    const std::vector<std::string> way = partsOf(target);
    const auto isUp = [](const std::string& part) { return part == ".."; };
    const auto down = std::ranges::find_if_not(way, isUp);
    const auto ups = static_cast<std::size_t>(down - way.begin());
    return !target.empty() && !target.starts_with('/') && ups <= partsOf(folder).size()
        && std::none_of(down, way.end(), isUp);
}

class Unpacker {
public:
    Unpacker(std::string_view bytes, TreeFiles& files, const std::string& root,
        const ArchiveLimits& limits)
        : files_(files), root_(root), limits_(limits), archive_(archive_read_new(), &free)
    {
        if (archive_ == nullptr) {
            throw OutOfMemory("There isn't enough memory to unpack the new version.");
        }
        archive_read_support_format_tar(archive_.get());
        archive_read_support_filter_xz(archive_.get());
        archive_read_support_filter_zstd(archive_.get());
        if (archive_read_open_memory(archive_.get(), bytes.data(), bytes.size()) != ARCHIVE_OK) {
            refuseDamaged();
        }
    }

    UnpackedTree unpack()
    {
        while (archive_entry* const entry = next()) {
            take(*entry);
        }
        // Last, so that nothing is ever written through one.
        for (const auto& [path, target] : links_) {
            files_.createLink(target, place(path));
        }
        // What is in a directory comes behind it, so from the end.
        std::for_each(directories_.rbegin(), directories_.rend(),
            [&](const std::string& path) { syncDirectory(files_, place(path)); });
        syncDirectory(files_, root_);
        return std::move(tree_);
    }

private:
    static void free(archive* archive) { archive_read_free(archive); }
    [[noreturn]] static void refuseDamaged() { refuseArchive("its archive is damaged."); }

    [[nodiscard]] std::string place(const std::string& path) const { return joinPath(root_, path); }

    archive_entry* next()
    {
        archive_entry* entry = nullptr;
        const int result = archive_read_next_header(archive_.get(), &entry);
        if (result == ARCHIVE_EOF) {
            return nullptr;
        }
        if (result != ARCHIVE_OK) {
            refuseDamaged();
        }
        if (++entries_ > limits_.entries) {
            refuseArchive("its archive holds too many files.");
        }
        return entry;
    }

    void take(archive_entry& entry)
    {
        const std::string path = plainPath(archive_entry_pathname(&entry));
        const mode_t mode = archive_entry_perm(&entry);
        if (archive_entry_hardlink(&entry) != nullptr) {
            refuseArchive("“" + path + "” in its archive is a hard link.");
        }
        if ((mode & (S_ISUID | S_ISGID | S_ISVTX)) != 0) {
            refuseArchive("“" + path + "” in its archive asks for the rights of others.");
        }
        switch (archive_entry_filetype(&entry)) {
        case AE_IFDIR:
            makeDirectory(path);
            break;
        case AE_IFREG:
            claim(path);
            write(path, (mode & S_IXUSR) != 0);
            break;
        case AE_IFLNK:
            claim(path);
            noteLink(path, archive_entry_symlink(&entry));
            break;
        default:
            refuseArchive("“" + path + "” in its archive is neither a file nor a folder.");
        }
    }

    /// Makes sure that a name is free, and the folder that it stands in real.
    void claim(const std::string& path)
    {
        if (path.empty() || !taken_.insert(path).second || directories_.contains(path)) {
            refuseArchive("“" + path + "” is in its archive twice.");
        }
        makeDirectory(folderOf(path));
    }

    void makeDirectory(const std::string& path)
    {
        if (path.empty() || directories_.contains(path)) {
            return;
        }
        if (taken_.contains(path)) {
            refuseArchive("“" + path + "” is in its archive twice.");
        }
        makeDirectory(folderOf(path));
        if (directories_.size() >= limits_.entries) {
            refuseArchive("its archive holds too many files.");
        }
        files_.createOrdinaryDirectory(place(path));
        directories_.insert(path);
    }

    void noteLink(const std::string& path, const char* given)
    {
        const std::string target = given != nullptr ? given : "";
        if (target.size() > mostPathLength || !leadsInside(target, folderOf(path))) {
            refuseArchive("the link “" + path + "” in its archive leads out of its folder.");
        }
        links_[path] = target;
    }

    void write(const std::string& path, bool isProgram)
    {
        const FileSystem::Handle handle = isProgram
            ? files_.createProgram(place(path))
            : files_.open(place(path), FileUse::createOrdinary);
        try {
            copyData(handle);
            files_.sync(handle);
        } catch (...) {
            closeQuietly(files_, handle);
            throw;
        }
        files_.close(handle); // Some file systems report a failed write only now.
        if (isProgram) {
            tree_.programs.insert(path);
        }
    }

    void copyData(FileSystem::Handle handle)
    {
        while (true) {
            const la_ssize_t count =
                archive_read_data(archive_.get(), buffer_.data(), buffer_.size());
            if (count == 0) {
                return;
            }
            if (count < 0) {
                refuseDamaged();
            }
            bytes_ += static_cast<std::uint64_t>(count);
            if (bytes_ > limits_.bytes) {
                refuseArchive("its archive holds too much.");
            }
            std::string_view rest(buffer_.data(), static_cast<std::size_t>(count));
            while (!rest.empty()) {
                rest.remove_prefix(files_.write(handle, std::span(&rest, 1)));
            }
        }
    }

    TreeFiles& files_;
    const std::string& root_;
    const ArchiveLimits& limits_;
    std::unique_ptr<archive, decltype(&free)> archive_;
    std::vector<char> buffer_ = std::vector<char>(blockBytes);
    std::set<std::string> directories_;
    std::set<std::string> taken_; // names of files and links
    std::map<std::string, std::string> links_;
    std::size_t entries_ = 0;
    std::uint64_t bytes_ = 0;
    UnpackedTree tree_;
};

} // namespace

UnpackedTree unpackArchive(std::string_view archive, TreeFiles& files, const std::string& directory,
    const ArchiveLimits& limits)
{
    return Unpacker(archive, files, directory, limits).unpack();
}

} // namespace Kestry
