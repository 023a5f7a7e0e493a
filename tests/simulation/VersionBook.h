#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "SyncState.h"

namespace KestryCore {

/// A rule of replication that does not hold, in words.
class Violation : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

void require(bool holds, const std::string& violation);

/// Every version that a user has ever saved of every record, and where it is still found.
///
/// A version may go only once it was replaced: a newer one was made by somebody who had it on the
/// screen, or the user gave it up, shown in a conflict or with the disk that it was on. One that
/// was not replaced and is nowhere is lost.
class VersionBook {
public:
    struct Version {
        std::string recordID;
        std::string content; ///< Empty for a deletion.
        bool isReplaced = false;
        std::vector<std::string> others{}; ///< What a device uploaded under its revision.

        [[nodiscard]] bool says(const std::string& what) const
        {
            return what == content || std::ranges::find(others, what) != others.end();
        }
    };

    /// A version seen for the first time.
    void enter(const SyncRecord& record);
    /// A device that was to use the cloud's version, and still shows its own until a newer one
    /// comes, uploads that under the revision of the cloud's.
    void enterUnder(const SyncRecord& record);
    /// Null for a version that nobody saved, such as one made to show a conflict.
    [[nodiscard]] const Version* find(const std::string& revision) const;
    void replace(const std::string& revision);

    /// One more device or store holds the version.
    void hold(const std::string& revision) { ++places_[revision]; }
    void release(const std::string& revision) { --places_[revision]; }
    [[nodiscard]] bool isLost(const std::string& revision) const;
    /// How many devices and stores hold the version.
    [[nodiscard]] int placesOf(const std::string& revision) const;

private:
    std::unordered_map<std::string, Version> versions_; // by revision; only ever looked up
    std::unordered_map<std::string, int> places_;
};

} // namespace KestryCore
