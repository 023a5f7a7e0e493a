#include "HexColor.h"

#include <cmath>

#include "Text.h"

namespace KestryCore {
namespace {

constexpr std::string_view upperCaseDigits = "0123456789ABCDEF";
constexpr std::size_t digitsPerChannel = 2;

/// Returns nullopt for anything but an ASCII hexadecimal digit.
std::optional<int> digitValue(char digit)
{
    const char upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    const std::size_t value = upperCaseDigits.find(upper);
    return value == std::string_view::npos ? std::nullopt : std::optional(static_cast<int>(value));
}

/// Screens do not show light in proportion to a channel's value; this is the light.
double linear(int channel)
{
    const double value = channel / static_cast<double>(HexColor::maximumChannel);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

} // namespace

std::optional<HexColor> HexColor::parse(std::string_view text)
{
    std::string_view digits = trimmed(text);
    digits.remove_prefix(digits.starts_with('#') ? 1 : 0);
    Channels channels{};
    if (digits.size() != channels.size() * digitsPerChannel) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < channels.size(); ++index) {
        const auto high = digitValue(digits[index * digitsPerChannel]);
        const auto low = digitValue(digits[index * digitsPerChannel + 1]);
        if (!high || !low) {
            return std::nullopt;
        }
        channels[index] = *high * 16 + *low;
    }
    return HexColor(channels);
}

std::string HexColor::text() const
{
    std::string text;
    for (const int channel : channels_) {
        text += upperCaseDigits[static_cast<std::size_t>(channel / 16)];
        text += upperCaseDigits[static_cast<std::size_t>(channel % 16)];
    }
    return text;
}

double HexColor::relativeLuminance() const
{
    return 0.2126 * linear(channels_[0]) + 0.7152 * linear(channels_[1])
        + 0.0722 * linear(channels_[2]);
}

std::optional<std::string> normalisedHexColor(std::string_view text)
{
    const auto color = HexColor::parse(text);
    return color ? std::optional(color->text()) : std::nullopt;
}

} // namespace KestryCore
