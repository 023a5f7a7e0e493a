#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "SyncState.h"

namespace KestryCore {

/// A value of the application's information: nothing that matters here, a boolean or a text.
using InfoValue = std::variant<std::monostate, bool, std::string>;

/// Gives the value of a key. The types are kept: the text "true" is not a boolean.
using InfoKeys = std::function<InfoValue(std::string_view key)>;

/// What the build decided about the cloud store.
struct CloudConfiguration {
    std::string containerIdentifier; ///< Which store; see `CloudPlatform`.
    bool isConfigured = false;       ///< Whether this build may use a store at all.
    std::optional<CloudSyncEnvironment> environment;

    /// Reads `KestryCloudContainerIdentifier` (a text, else the built-in one),
    /// `KestryCloudKitEnabled` (the boolean true, or "yes", "true" or "1" in either case) and
    /// `KestryCloudKitEnvironment` ("Development" or "Production", in that case). A container that
    /// is handed in goes before that of the build.
    [[nodiscard]] static CloudConfiguration read(
        const InfoKeys& keys, const std::optional<std::string>& containerIdentifier = {});

    friend bool operator==(const CloudConfiguration&, const CloudConfiguration&) = default;
};

} // namespace KestryCore
