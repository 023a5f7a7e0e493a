#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "Descriptor.h"
#include "FileSystem.h"
#include "PlainText.h"
#include "StandardStreams.h"
#include "Uuid.h"

namespace Kestry {

using KestryCore::LedgerError;

namespace {

constexpr const char* accessList = "system.posix_acl_access";
constexpr std::size_t mostListBytes = 65'536; // the system's own limit

[[noreturn]] void fail(const std::string& file, int code)
{
    throw KestryCore::fileError(file, "written", code);
}

struct stat statusOf(const std::string& file, int descriptor)
{
    struct stat found { };
    if (fstat(descriptor, &found) != 0) {
        fail(file, errno);
    }
    return found;
}

bool isSame(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

/// The file to write, after links at the end of the path were followed.
struct Place {
    Descriptor folder;
    std::string name;      ///< In the folder.
    bool isLinked = false; ///< Reached through a link.
};

/// Whether a folder lists this process's own descriptors.
bool holdsOwnDescriptors(const std::string& file, const Descriptor& folder)
{
    struct stat own { };
    return stat("/proc/self/fd", &own) == 0 && isSame(own, statusOf(file, folder.number()));
}

Place placeOf(const std::string& file)
{
    constexpr int mostLinks = 40;
    Place place;
    std::string path = file;
    for (int links = 0; links < mostLinks; ++links) {
        const int start = place.folder ? place.folder.number() : AT_FDCWD;
        const std::size_t nameBegin = path.find_last_of('/') + 1; // 0 without a slash
        const std::string parent = nameBegin == 0 ? "." : path.substr(0, nameBegin);
        Descriptor folder(openat(start, parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!folder) {
            fail(file, errno);
        }
        place = {std::move(folder), path.substr(nameBegin), links > 0};
        std::array<char, PATH_MAX> target{};
        const ssize_t length =
            readlinkat(place.folder.number(), place.name.c_str(), target.data(), target.size());
        if (length < 0 || holdsOwnDescriptors(file, place.folder)) {
            return place;
        }
        path.assign(target.data(), static_cast<std::size_t>(length));
    }
    fail(file, ELOOP);
}

/// Only the store writes its own files, including those that a later version may add.
void requireNotTheStores(
    const std::string& file, const Place& place, const std::string& ledgerDirectory)
{
    constexpr std::string_view ending = ".csv";
    struct stat ledger { };
    const bool isInside = stat(ledgerDirectory.c_str(), &ledger) == 0
        && isSame(ledger, statusOf(file, place.folder.number()));
    if (isInside && (place.name.size() <= ending.size() || !place.name.ends_with(ending))) {
        throw LedgerError("\"" + place.name
            + "\" may be one of the ledger's own files. In its folder, an export needs a name that "
              "ends in \".csv\".");
    }
}

FileWritten writeStream(const FileToWrite& file, const Descriptor& stream)
{
    const bool isTerminal = isatty(stream.number()) != 0;
    const int code = writeAll(stream.number(), isTerminal ? shownCsv(file.bytes) : file.bytes);
    if (code != 0) {
        fail(file.name, code);
    }
    struct stat output { };
    const bool isOutput =
        fstat(STDOUT_FILENO, &output) == 0 && isSame(output, statusOf(file.name, stream.number()));
    return isOutput ? FileWritten::asStandardOutput : FileWritten::beside;
}

/// A descriptor of this process, by its number. It has its own position and may append.
Descriptor ownDescriptor(const FileToWrite& file, const std::string& number)
{
    const bool isNumber =
        !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
    Descriptor descriptor(isNumber
            ? fcntl(static_cast<int>(std::strtol(number.c_str(), nullptr, 10)), F_DUPFD_CLOEXEC, 0)
            : -1);
    if (!descriptor) {
        fail(file.name, ENOENT);
    }
    return descriptor;
}

/// Opens an existing file for writing without truncating it.
Descriptor opened(const std::string& file, const Place& place)
{
    Descriptor descriptor(openat(
        place.folder.number(), place.name.c_str(), O_WRONLY | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    if (!descriptor) {
        fail(file, errno);
    }
    return descriptor;
}

/// Gives a new file the access rights of another one. When the group can't be set, the group's
/// rights are dropped.
void copyAccess(const std::string& file, int from, int to)
{
    const struct stat old = statusOf(file, from);
    mode_t mode = old.st_mode & 07777U;
    if (fchown(to, old.st_uid, old.st_gid) != 0
        && fchown(to, static_cast<uid_t>(-1), old.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_IRWXG | S_ISGID);
    }
    // The default rights of the folder are not those of the old file.
    (void)fremovexattr(to, accessList);
    if (fchmod(to, mode) != 0) {
        fail(file, errno);
    }
    std::array<char, mostListBytes> list{};
    const ssize_t size = fgetxattr(from, accessList, list.data(), list.size());
    if (size > 0
        && fsetxattr(to, accessList, list.data(), static_cast<std::size_t>(size), 0) != 0) {
        fail(file, errno);
    }
}

/// Writes a new file next to the one that it replaces, and renames it.
class Replacement {
public:
    Replacement(const FileToWrite& file, const Place& place, mode_t mode)
        : file_(file), place_(place), name_(".kestry-export-" + KestryCore::Uuid::random().text()),
          new_(openat(
              place.folder.number(), name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode))
    {
        if (!new_) {
            fail(file.name, errno);
        }
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement()
    {
        if (!isDone_) {
            unlinkat(place_.folder.number(), name_.c_str(), 0);
        }
    }

    [[nodiscard]] int descriptor() const { return new_.number(); }

    void finish()
    {
        const int folder = place_.folder.number();
        if (const int code = writeAll(new_.number(), file_.bytes); code != 0) {
            fail(file_.name, code);
        }
        if (fsync(new_.number()) != 0
            || renameat(folder, name_.c_str(), folder, place_.name.c_str()) != 0) {
            fail(file_.name, errno);
        }
        isDone_ = true;
        // The file is in place; only a power cut in the next seconds could still undo it.
        const Descriptor readable(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (readable) {
            (void)fsync(readable.number());
        }
    }

private:
    const FileToWrite& file_;
    const Place& place_;
    std::string name_;
    Descriptor new_;
    bool isDone_ = false;
};

void create(const FileToWrite& file, const Place& place)
{
    if (place.isLinked) {
        throw LedgerError(file.name + " is a link that leads nowhere.");
    }
    constexpr mode_t processDefault = 0666;
    Replacement(file, place, processDefault).finish();
}

void replace(const FileToWrite& file, const Place& place)
{
    const Descriptor old = opened(file.name, place);
    if (!S_ISREG(statusOf(file.name, old.number()).st_mode)) {
        fail(file.name, EAGAIN);
    }
    Replacement replacement(file, place, S_IRUSR | S_IWUSR);
    copyAccess(file.name, old.number(), replacement.descriptor());
    replacement.finish();
}

FileWritten writeAt(const FileToWrite& file, const Place& place, const struct stat& found)
{
    if (S_ISDIR(found.st_mode)) {
        throw LedgerError(file.name + " is a directory.");
    }
    if (S_ISREG(found.st_mode)) {
        replace(file, place);
        return FileWritten::beside;
    }
    if (S_ISFIFO(found.st_mode) || S_ISCHR(found.st_mode)) {
        const Descriptor stream = opened(file.name, place);
        if (!isSame(found, statusOf(file.name, stream.number()))) {
            fail(file.name, EAGAIN);
        }
        return writeStream(file, stream);
    }
    throw LedgerError(
        file.name + " is no ordinary file. Leave FILE out to write to the standard output.");
}

} // namespace

FileWritten writeOutputFile(const FileToWrite& file, const std::string& ledgerDirectory)
{
    if (file.name.empty()) {
        fail(file.name, ENOENT);
    }
    const Place place = placeOf(file.name);
    if (holdsOwnDescriptors(file.name, place.folder)) {
        return writeStream(file, ownDescriptor(file, place.name));
    }
    requireNotTheStores(file.name, place, ledgerDirectory);
    const std::string name = place.name.empty() ? "." : place.name;
    struct stat found { };
    if (fstatat(place.folder.number(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0) {
        return writeAt(file, place, found);
    }
    if (errno != ENOENT) {
        fail(file.name, errno);
    }
    create(file, place);
    return FileWritten::beside;
}

std::string shownCsv(std::string_view csv)
{
    std::string lines;
    lines.reserve(csv.size());
    for (std::size_t index = 0; index < csv.size(); ++index) {
        // The line feed that follows ends the line.
        if (csv[index] != '\r' || csv.substr(index + 1, 1) != "\n") {
            lines += csv[index];
        }
    }
    return printableLines(lines);
}

} // namespace Kestry
