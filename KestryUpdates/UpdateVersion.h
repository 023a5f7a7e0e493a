#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kestry {

/// A version of a program: one to six numbers with dots between them, such as "1.3.0". Versions are
/// compared by their numbers, and "1.3" is equal to "1.3.0".
class UpdateVersion {
public:
    /// Nullopt for any other text, also for numbers of more than nine digits or with a zero in
    /// front. So a version is always fit to be the name of a file.
    [[nodiscard]] static std::optional<UpdateVersion> parse(std::string_view text);

    /// As it was written.
    [[nodiscard]] const std::string& text() const { return text_; }

    friend std::weak_ordering operator<=>(const UpdateVersion& left, const UpdateVersion& right);
    friend bool operator==(const UpdateVersion& left, const UpdateVersion& right)
    {
        return left <=> right == std::weak_ordering::equivalent;
    }

private:
    UpdateVersion() = default;

    std::string text_;
    std::vector<std::uint32_t> numbers_;
};

/// The version that a longer text begins with, such as that of a kernel, "6.1.0-28-amd64"; nullopt
/// when it begins with none.
[[nodiscard]] std::optional<UpdateVersion> versionAtBeginning(std::string_view text);

} // namespace Kestry
