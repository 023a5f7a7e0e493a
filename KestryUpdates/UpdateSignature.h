#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace Kestry {

using UpdateKey = std::array<std::uint8_t, 32>;
using UpdateSignature = std::array<std::uint8_t, 64>;

/// Whether the signature is one of Ed25519 over all of these bytes by the owner of the public key.
/// False also for a key that is no point of the curve.
[[nodiscard]] bool isSignedBy(
    const UpdateKey& publicKey, const UpdateSignature& signature, std::string_view bytes);

} // namespace Kestry
