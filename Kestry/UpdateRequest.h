#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FileSystem.h"
#include "Uuid.h"

namespace Kestry {

/// The token in the first of the URLs that asks for an update, `kestry://update?token=` and a UUID.
/// None when there is no such URL, or when the first has no usable token.
[[nodiscard]] std::optional<KestryCore::Uuid> updateToken(const std::vector<std::string>& urls);

/// What an update agent has laid down before it asks for an update: the file that proves that the
/// request does not come from a web page.
class UpdateRequest {
public:
    UpdateRequest(KestryCore::FileSystem& files, const std::string& dataDirectory);

    /// Whether the agent has laid down this token.
    [[nodiscard]] bool holds(const KestryCore::Uuid& token) const;
    /// Removes the file. Fails with a `LedgerError`.
    void remove() const;

private:
    KestryCore::FileSystem& files_;
    std::string path_;
};

/// Tells the update agent that the program which it has started with a token is up: writes
/// `update-ready.json`, making the data directory where it is missing. `bundlePath` is what the
/// agent replaces. Fails with a `LedgerError`.
void acknowledgeUpdate(KestryCore::FileSystem& files, const std::string& dataDirectory,
    const KestryCore::Uuid& token, const std::string& bundlePath);

} // namespace Kestry
