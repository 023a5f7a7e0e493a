#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PosixFileSystem.h"

namespace KestryCore {

namespace {

constexpr std::string_view accessList = "system.posix_acl_access";
constexpr mode_t permissions = 0777;
constexpr mode_t ownersAlone = 0600;
constexpr mode_t ownersPart = 0700;

struct Attribute {
    std::string name;
    std::string value;
};

/// What decides who may do what with a file, and what else its user has put on it.
struct FileAccess {
    mode_t mode = ownersAlone;
    uid_t owner = 0;
    gid_t group = 0;
    std::vector<Attribute> attributes;
};

bool meansNoAttributes(int code)
{
    return code == ENODATA || code == EOPNOTSUPP || code == ENOSYS;
}

/// Whether a refusal means that the file system has no modes of its own to change.
bool meansNoModes(int code)
{
    constexpr std::array codes{EPERM, EOPNOTSUPP, ENOSYS, EINVAL};
    return std::ranges::find(codes, code) != codes.end();
}

/// What a user or an administrator may have put on the file itself. The rest, such as signatures
/// of its content, belongs to the bytes that are replaced.
bool isKept(std::string_view name)
{
    return name == accessList || name == "security.selinux" || name.starts_with("user.");
}

std::vector<std::string> attributeNames(const std::string& path)
{
    ssize_t size = llistxattr(path.c_str(), nullptr, 0);
    std::string names;
    if (size > 0) {
        names.resize(static_cast<std::size_t>(size));
        size = llistxattr(path.c_str(), names.data(), names.size());
    }
    if (size < 0 && !meansNoAttributes(errno)) {
        throw fileError(path, "looked at", errno);
    }
    std::vector<std::string> kept;
    for (std::size_t begin = 0; size > 0 && begin < static_cast<std::size_t>(size);) {
        const std::string name = names.c_str() + begin;
        begin += name.size() + 1;
        if (isKept(name)) {
            kept.push_back(name);
        }
    }
    return kept;
}

std::vector<Attribute> attributesOf(const std::string& path)
{
    std::vector<Attribute> attributes;
    for (const std::string& name : attributeNames(path)) {
        std::string value(XATTR_SIZE_MAX, '\0');
        const ssize_t size = lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
        if (size >= 0) {
            value.resize(static_cast<std::size_t>(size));
            attributes.push_back({name, std::move(value)});
        } else if (!meansNoAttributes(errno)) {
            throw fileError(path, "looked at", errno);
        }
    }
    return attributes;
}

/// The access of the regular file at a path; nullopt when there is no such file.
std::optional<FileAccess> accessOf(const std::string& path)
{
    struct stat found { };
    if (lstat(path.c_str(), &found) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return std::nullopt;
        }
        throw fileError(path, "looked at", errno);
    }
    if (!S_ISREG(found.st_mode)) {
        return std::nullopt;
    }
    return FileAccess{found.st_mode & permissions, found.st_uid, found.st_gid, attributesOf(path)};
}

/// Gives the file to its owner and group. False when it stays with another group.
bool setOwners(FileSystem::Handle handle, const FileAccess& access)
{
    if (fchown(handle, access.owner, access.group) == 0
        || fchown(handle, static_cast<uid_t>(-1), access.group) == 0) {
        return true;
    }
    struct stat found { };
    return fstat(handle, &found) == 0 && found.st_gid == access.group;
}

/// Sets the access control list, or takes off one that the directory has given. False when the
/// mode alone would let in more than `access` does.
bool setAccessList(FileSystem::Handle handle, const std::string* list)
{
    if (list != nullptr) {
        return fsetxattr(handle, accessList.data(), list->data(), list->size(), 0) == 0;
    }
    return fremovexattr(handle, accessList.data()) == 0 || meansNoAttributes(errno);
}

/// The mode for a file that stays with a group of this process. That one gets nothing; and since
/// the members of the old group are now among all others, these get no more than they had.
mode_t modeWithoutGroup(mode_t mode)
{
    const mode_t groupsPart = (mode >> 3U) & 07U;
    return (mode & ownersPart) | (mode & groupsPart);
}

} // namespace

// In this order the file is never open to more than in the end: it is made for its owner alone,
// and gets its group before anything is allowed to it.
void PosixFileSystem::setAccess(Handle handle, const std::optional<std::string>& like)
{
    const std::optional<FileAccess> access = like ? accessOf(*like) : std::nullopt;
    mode_t mode = ownersAlone;
    if (access) {
        const auto list = std::ranges::find(access->attributes, accessList, &Attribute::name);
        const bool hasList = list != access->attributes.end();
        mode = access->mode;
        if (!setOwners(handle, *access)) {
            mode = hasList ? mode & ownersPart : modeWithoutGroup(mode);
        } else if (!setAccessList(handle, hasList ? &list->value : nullptr)) {
            mode &= ownersPart;
        }
        for (const auto& [name, value] : access->attributes) {
            if (name != accessList) {
                // Not worth a refusal: what they say is said beside the ledger, not in it.
                (void)fsetxattr(handle, name.c_str(), value.data(), value.size(), 0);
            }
        }
    }
    if (fchmod(handle, mode) != 0 && !meansNoModes(errno)) {
        throw fileError(like.value_or("The file"), "given its access", errno);
    }
}

} // namespace KestryCore
