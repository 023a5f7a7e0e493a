#include "KestryUrl.h"

#include <algorithm>
#include <charconv>

namespace Kestry {

namespace {

std::string smallLetters(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return result;
}

/// The text with its escapes resolved; none when an escape is cut off or has no number.
std::optional<std::string> unescaped(std::string_view text)
{
    constexpr std::size_t escapeSize = 3;
    constexpr int hexadecimal = 16;
    std::string result;
    while (!text.empty()) {
        if (text.front() != '%') {
            result += text.front();
            text.remove_prefix(1);
            continue;
        }
        unsigned char value = 0;
        const std::string_view digits = text.substr(1, escapeSize - 1);
        const auto read =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal);
        if (digits.size() != escapeSize - 1 || read.ptr != digits.data() + digits.size()) {
            return std::nullopt;
        }
        result += static_cast<char>(value);
        text.remove_prefix(escapeSize);
    }
    return result;
}

/// What stands before a separator, which is taken off with it; all of it when there is none.
std::string_view takeUntil(std::string_view& text, std::string_view separators)
{
    const std::size_t end = text.find_first_of(separators);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    return taken;
}

bool isScheme(std::string_view text)
{
    constexpr std::string_view letters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.";
    return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

std::string_view hostOf(std::string_view authority)
{
    authority.remove_prefix(authority.find_last_of('@') + 1); // npos + 1 is nothing
    return authority.substr(0, authority.find_last_of(':'));
}

} // namespace

KestryUrl::KestryUrl(std::string_view text)
{
    std::string_view rest = text;
    const std::string_view scheme = takeUntil(rest, ":/?#");
    if (!isScheme(scheme) || !rest.starts_with("://")) {
        return;
    }
    rest.remove_prefix(std::string_view("://").size());
    scheme_ = smallLetters(scheme);
    host_ = smallLetters(hostOf(takeUntil(rest, "/?#")));
    (void)takeUntil(rest, "?#");
    items_ = itemsOf(takeUntil(rest, "#"));
}

std::vector<KestryUrl::Item> KestryUrl::itemsOf(std::string_view query)
{
    std::vector<Item> items;
    while (!query.empty()) {
        query.remove_prefix(1); // the question mark, or what parts the items
        std::string_view value = takeUntil(query, "&");
        const auto name = unescaped(takeUntil(value, "="));
        const auto content = unescaped(value.substr(value.empty() ? 0 : 1));
        if (!name || !content) {
            return {};
        }
        items.push_back({*name, value.empty() ? std::nullopt : content});
    }
    return items;
}

std::optional<std::string> KestryUrl::queryItem(std::string_view name) const
{
    const auto found = std::ranges::find(items_, name, &Item::name);
    return found == items_.end() ? std::nullopt : found->value;
}

} // namespace Kestry
