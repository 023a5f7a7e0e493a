#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FileSystem.h"
#include "Uuid.h"

namespace Kestry {

/// The token of the first URL that asks for an update: `kestry://update?token=` and a UUID.
/// Returns nullopt when there is no such URL, or when the first has no valid token.
[[nodiscard]] std::optional<KestryCore::Uuid> updateToken(const std::vector<std::string>& urls);

/// The file that an update agent writes before it asks for an update. It proves that the request
/// does not come from a web page, which cannot write files.
class UpdateRequest {
public:
    UpdateRequest(KestryCore::FileSystem& files, const std::string& dataDirectory);

    /// Whether the file contains this token.
    [[nodiscard]] bool holds(const KestryCore::Uuid& token) const;
    /// Removes the file. Throws a `LedgerError`.
    void remove() const;

private:
    KestryCore::FileSystem& files_;
    std::string path_;
};

/// Tells the update agent that the program which it started with this token is running: writes
/// `update-ready.json`, creating the data directory when it is missing. `bundlePath` is the file
/// that the agent replaces. Throws a `LedgerError`.
void acknowledgeUpdate(KestryCore::FileSystem& files, const std::string& dataDirectory,
    const KestryCore::Uuid& token, const std::string& bundlePath);

} // namespace Kestry
