#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace KestryCore {

/// A 128-bit identifier (RFC 9562). Identifiers are compared as values, never as text, because
/// a file may spell one in lower case.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// The canonical 8-4-4-4-12 form in upper case.
    [[nodiscard]] std::string text() const;

    /// Reads the 8-4-4-4-12 form with digits of either case; none for anything else, braces and
    /// surrounding blanks included.
    [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);

    /// A random identifier (version 4) from the system's entropy.
    [[nodiscard]] static Uuid random();

    friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

/// Where new identifiers come from; tests hand in a predictable one.
using UuidSource = std::function<Uuid()>;

} // namespace KestryCore

/// Differs from one run of the program to the next, so no order may depend on it.
template <>
struct std::hash<KestryCore::Uuid> {
    std::size_t operator()(const KestryCore::Uuid& uuid) const;
};
