#include "Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace KestryCore {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t notADigit = 0xFF;

constexpr std::array<std::uint8_t, 256> digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(notADigit);
    for (std::uint8_t value = 0; value < 64; ++value) {
        values[static_cast<std::uint8_t>(alphabet[value])] = value;
    }
    return values;
}();

} // namespace

std::string encodeBase64(std::string_view bytes)
{
    std::string result;
    result.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t position = 0; position < bytes.size(); position += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - position);
        std::uint32_t group = 0;
        for (std::size_t index = 0; index < 3; ++index) {
            const auto byte =
                index < count ? static_cast<std::uint8_t>(bytes[position + index]) : 0U;
            group = group << 8 | byte;
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            result += digit <= count ? alphabet[group >> (18 - 6 * digit) & 0x3F] : '=';
        }
    }
    return result;
}

std::optional<std::string> decodeBase64(std::string_view text)
{
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string result;
    result.reserve(text.size() / 4 * 3);
    for (std::size_t position = 0; position < text.size(); position += 4) {
        std::string_view quad = text.substr(position, 4);
        const bool isLast = position + 4 == text.size();
        while (isLast && quad.size() > 2 && quad.back() == '=') {
            quad.remove_suffix(1);
        }
        std::uint32_t group = 0;
        for (const char character : quad) {
            const std::uint8_t value = digitValues[static_cast<std::uint8_t>(character)];
            if (value == notADigit) {
                return std::nullopt;
            }
            group = group << 6 | value;
        }
        const std::size_t byteCount = quad.size() - 1;
        const std::size_t leftOverBits = quad.size() * 6 - byteCount * 8;
        group >>= leftOverBits;
        for (std::size_t index = byteCount; index-- > 0;) {
            result += static_cast<char>(group >> (8 * index) & 0xFF);
        }
    }
    return result;
}

} // namespace KestryCore
