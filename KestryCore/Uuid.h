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

    /// Reads the 8-4-4-4-12 form with digits in either case. Nullopt for everything else, also with
    /// braces or blanks around.
    [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);

    /// A random identifier (version 4) from the system's entropy.
    [[nodiscard]] static Uuid random();

    friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

/// Returns a new identifier. Passed as an argument, so that tests can use predictable ones.
using UuidSource = std::function<Uuid()>;

} // namespace KestryCore

/// Differs between runs of the program, so no order may depend on it.
template <>
struct std::hash<KestryCore::Uuid> {
    std::size_t operator()(const KestryCore::Uuid& uuid) const;
};
