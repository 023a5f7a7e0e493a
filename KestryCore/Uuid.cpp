#include "Uuid.h"

#include <sys/random.h>

#include <bit>
#include <cerrno>
#include <chrono>

#include "LedgerError.h"

namespace KestryCore {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPosition(std::size_t position)
{
    return position == 8 || position == 13 || position == 18 || position == 23;
}

/// More than any digit's value, in bits that no digit has.
constexpr std::uint8_t noDigit = 0xF0;

constexpr std::uint8_t digitValue(char character)
{
    if (character >= '0' && character <= '9') {
        return static_cast<std::uint8_t>(character - '0');
    }
    if (character >= 'A' && character <= 'F') {
        return static_cast<std::uint8_t>(character - 'A' + 10);
    }
    if (character >= 'a' && character <= 'f') {
        return static_cast<std::uint8_t>(character - 'a' + 10);
    }
    return noDigit;
}

/// The value of each character as a hexadecimal digit, or `noDigit`.
constexpr std::array<std::uint8_t, 256> digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    for (std::size_t code = 0; code < values.size(); ++code) {
        values[code] = digitValue(static_cast<char>(code));
    }
    return values;
}();

} // namespace

std::string Uuid::text() const
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result(textLength, '-');
    std::size_t position = 0;
    for (const std::uint8_t byte : bytes) {
        if (isHyphenPosition(position)) {
            ++position;
        }
        result[position++] = digits[byte >> 4];
        result[position++] = digits[byte & 0x0F];
    }
    return result;
}

std::optional<Uuid> Uuid::parse(std::string_view text)
{
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid result;
    bool hasHyphens = true;
    unsigned seen = 0;
    std::size_t position = 0;
    const auto nextDigit = [&] {
        return unsigned{digitValues[static_cast<unsigned char>(text[position++])]};
    };
    for (std::uint8_t& byte : result.bytes) {
        if (isHyphenPosition(position)) {
            hasHyphens = hasHyphens && text[position] == '-';
            ++position;
        }
        const unsigned high = nextDigit();
        const unsigned low = nextDigit();
        seen |= high | low;
        byte = static_cast<std::uint8_t>(high << 4 | low);
    }
    return hasHyphens && (seen & noDigit) == 0 ? std::optional(result) : std::nullopt;
}

Uuid Uuid::random()
{
    Uuid result;
    while (getrandom(result.bytes.data(), result.bytes.size(), 0)
        != static_cast<ssize_t>(result.bytes.size())) {
        if (errno != EINTR) {
            throw LedgerError("The system has no random numbers to make an identifier from.");
        }
    }
    result.bytes[6] = static_cast<std::uint8_t>((result.bytes[6] & 0x0F) | 0x40);
    result.bytes[8] = static_cast<std::uint8_t>((result.bytes[8] & 0x3F) | 0x80);
    return result;
}

namespace {

/// Without random numbers the time has to do: no file may count as damaged for want of them.
Uuid mixingSecret()
{
    try {
        return Uuid::random();
    } catch (const LedgerError&) {
        const auto time = std::chrono::steady_clock::now().time_since_epoch().count();
        const auto place = reinterpret_cast<std::uintptr_t>(&time);
        return {std::bit_cast<decltype(Uuid::bytes)>(
            std::array{static_cast<std::uint64_t>(time), static_cast<std::uint64_t>(place)})};
    }
}

} // namespace

} // namespace KestryCore

std::size_t std::hash<KestryCore::Uuid>::operator()(const KestryCore::Uuid& uuid) const
{
    // A file may come from anyone. Were the mix known beforehand, its identifiers could be chosen
    // to collide, and reading it would take time by the square of their number.
    static const KestryCore::Uuid secret = KestryCore::mixingSecret();
    const auto [high, low] = std::bit_cast<std::array<std::uint64_t, 2>>(uuid.bytes);
    const auto [secretHigh, secretLow] = std::bit_cast<std::array<std::uint64_t, 2>>(secret.bytes);
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(high ^ secretHigh) * (low ^ secretLow);
    return static_cast<std::size_t>(product) ^ static_cast<std::size_t>(product >> 64);
}
