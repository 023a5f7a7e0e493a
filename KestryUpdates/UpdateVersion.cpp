#include "UpdateVersion.h"

#include <algorithm>
#include <charconv>

namespace Kestry {

namespace {

constexpr std::size_t mostNumbers = 6;
constexpr std::size_t mostDigits = 9;

std::optional<std::uint32_t> parseNumber(std::string_view digits)
{
    const bool isPlain = !digits.empty() && digits.size() <= mostDigits
        && digits.find_first_not_of("0123456789") == std::string_view::npos;
    if (!isPlain || (digits.size() > 1 && digits.front() == '0')) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

} // namespace

std::optional<UpdateVersion> UpdateVersion::parse(std::string_view text)
{
    UpdateVersion version;
    version.text_ = text;
    while (version.numbers_.size() < mostNumbers) {
        const std::size_t dot = text.find('.');
        const std::optional<std::uint32_t> number = parseNumber(text.substr(0, dot));
        if (!number) {
            return std::nullopt;
        }
        version.numbers_.push_back(*number);
        if (dot == std::string_view::npos) {
            return version;
        }
        text.remove_prefix(dot + 1);
    }
    return std::nullopt;
}

std::weak_ordering operator<=>(const UpdateVersion& left, const UpdateVersion& right)
{
    const auto numberAt = [](const UpdateVersion& version, std::size_t place) {
        return place < version.numbers_.size() ? version.numbers_[place] : 0U;
    };
    for (std::size_t place = 0; place < mostNumbers; ++place) {
        const auto order = numberAt(left, place) <=> numberAt(right, place);
        if (order != std::strong_ordering::equal) {
            return order;
        }
    }
    return std::weak_ordering::equivalent;
}

std::optional<UpdateVersion> versionAtBeginning(std::string_view text)
{
    text = text.substr(0, text.find_first_not_of("0123456789."));
    while (text.ends_with('.')) {
        text.remove_suffix(1);
    }
    return UpdateVersion::parse(text);
}

} // namespace Kestry
