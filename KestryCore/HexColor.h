#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace KestryCore {

/// An opaque colour in sRGB, read from and written as six hexadecimal digits.
class HexColor {
public:
    static constexpr int maximumChannel = 255;

    /// Red, green, blue, each from 0 to `maximumChannel`.
    using Channels = std::array<int, 3>;

    explicit HexColor(const Channels& channels) : channels_(channels) { }

    /// The colour of a text that may have blanks around it, one "#" before it, and letters in
    /// either case; none when it is anything else.
    [[nodiscard]] static std::optional<HexColor> parse(std::string_view text);

    [[nodiscard]] const Channels& channels() const { return channels_; }
    /// Upper case, without a "#".
    [[nodiscard]] std::string text() const;
    /// How bright it looks, from 0 for black to 1 for white.
    [[nodiscard]] double relativeLuminance() const;

private:
    Channels channels_;
};

/// The form in which a colour is stored; nullopt when the text is not a colour.
[[nodiscard]] std::optional<std::string> normalisedHexColor(std::string_view text);

} // namespace KestryCore
