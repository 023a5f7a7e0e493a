#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Task.h"

namespace Kestry {

/// Where a version's archive is fetched from, and to.
struct ArchiveRequest {
    std::string url;        ///< By https.
    std::string path;       ///< Of the new file, which is for its owner alone.
    std::int64_t bytes = 0; ///< Exactly so many are taken.
    /// Told how many are here, each time that some have come.
    std::function<void(std::int64_t received)> progress{};
};

/// Fetches what a server publishes. Nothing that it gives is to be believed. Both throw LedgerError
/// in words for people; destroying a task breaks it off.
class UpdateSource {
public:
    UpdateSource() = default;
    UpdateSource(const UpdateSource&) = delete;
    UpdateSource& operator=(const UpdateSource&) = delete;
    virtual ~UpdateSource() = default;

    /// The bytes of the feed.
    [[nodiscard]] virtual KestryCore::Task<std::string> feed(std::string url) = 0;
    /// Writes an archive to a new file. Leaves none behind when it fails.
    [[nodiscard]] virtual KestryCore::Task<void> archive(ArchiveRequest request) = 0;
};

} // namespace Kestry
