#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "CloudConfiguration.h"

namespace Kestry {

/// Where newer versions are announced, and by whom they must be signed.
struct UpdateFeed {
    std::string url; ///< As the build has it: https, with a host.
    std::array<std::uint8_t, 32> publicKey{};

    friend bool operator==(const UpdateFeed&, const UpdateFeed&) = default;
};

/// What the build decided about updates.
struct UpdateConfiguration {
    bool isFromStore = false;       ///< A store brings the updates, and this program none.
    std::optional<UpdateFeed> feed; ///< Only where updates are switched on, with a whole feed.

    /// Reads `KestryDistribution` ("appStore"), `KestryUpdatesEnabled` (the boolean true),
    /// `SUFeedURL` (an https URL with a host) and `SUPublicEDKey` (32 bytes in base64).
    [[nodiscard]] static UpdateConfiguration read(const KestryCore::InfoKeys& keys);

    friend bool operator==(const UpdateConfiguration&, const UpdateConfiguration&) = default;
};

} // namespace Kestry
