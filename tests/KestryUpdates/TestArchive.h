#pragma once

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kestry {

/// One entry of an archive, sound or not.
struct TestEntry {
    std::string path;
    std::string content{};
    unsigned mode = 0644;
    unsigned type = AE_IFREG;
    std::string symbolicLink{};
    std::string hardLink{};
};

/// The entries of a version of the program, as `make` puts them together.
inline std::vector<TestEntry> versionEntries(const std::string& version)
{
    return {{.path = "./", .mode = 0755, .type = AE_IFDIR},
        {.path = "./bin/kestry", .content = "program " + version, .mode = 0755},
        {.path = "./lib/libkestry.so.1.0", .content = std::string(3000, 'l')},
        {.path = "./lib/libkestry.so.1", .type = AE_IFLNK, .symbolicLink = "libkestry.so.1.0"},
        {.path = "./share/kestry/Info.json",
            .content = "{\"CFBundleShortVersionString\": \"" + version + "\"}"}};
}

/// A tar archive of entries, compressed with xz unless told otherwise.
inline std::string testArchive(
    const std::vector<TestEntry>& entries, int (*compress)(archive*) = archive_write_add_filter_xz)
{
    const std::unique_ptr<archive, decltype(&archive_write_free)> writer(
        archive_write_new(), &archive_write_free);
    compress(writer.get());
    archive_write_set_format_gnutar(writer.get());
    std::string bytes(1 << 20, '\0');
    std::size_t used = 0;
    archive_write_open_memory(writer.get(), bytes.data(), bytes.size(), &used);
    for (const TestEntry& each : entries) {
        const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(
            archive_entry_new(), &archive_entry_free);
        archive_entry_set_pathname(entry.get(), each.path.c_str());
        archive_entry_set_filetype(entry.get(), each.type);
        archive_entry_set_perm(entry.get(), each.mode);
        archive_entry_set_size(entry.get(), static_cast<la_int64_t>(each.content.size()));
        if (!each.symbolicLink.empty()) {
            archive_entry_set_symlink(entry.get(), each.symbolicLink.c_str());
        }
        if (!each.hardLink.empty()) {
            archive_entry_set_hardlink(entry.get(), each.hardLink.c_str());
        }
        if (archive_write_header(writer.get(), entry.get()) != ARCHIVE_OK) {
            throw std::runtime_error(archive_error_string(writer.get()));
        }
        archive_write_data(writer.get(), each.content.data(), each.content.size());
    }
    archive_write_close(writer.get());
    bytes.resize(used);
    return bytes;
}

} // namespace Kestry
