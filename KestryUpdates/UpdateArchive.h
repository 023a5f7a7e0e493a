#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "TreeFiles.h"

namespace Kestry {

/// How much an archive may hold.
struct ArchiveLimits {
    std::size_t entries = 20'000;
    std::uint64_t bytes = std::uint64_t{2} << 30U; ///< Of all files, unpacked.
};

/// What was unpacked.
struct UnpackedTree {
    std::set<std::string> programs; ///< The files that can be run, by their paths in the tree.
};

/// Unpacks a tar archive, compressed with xz or zstd, into an empty directory. Everything in it is
/// on the disk when this returns.
///
/// An archive holds files, directories, and symbolic links that lead to something in the archive.
/// Throws LedgerError, in words for people, for one that is damaged or holds anything else: a path
/// from the root or with "..", a name twice, a file below a link, a link that leads out, a hard
/// link, a device, rights to act for another user, more than the limits. Then, and when a file
/// cannot be written, a part of it may lie in the directory, and nothing outside of it.
[[nodiscard]] UnpackedTree unpackArchive(std::string_view archive, KestryCore::TreeFiles& files,
    const std::string& directory, const ArchiveLimits& limits = {});

} // namespace Kestry
