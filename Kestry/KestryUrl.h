#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kestry {

/// The parts of a URL that the program acts on, taken apart as RFC 3986 tells. All parts of a text
/// that is no URL are empty, and a query with a broken escape has no items.
class KestryUrl {
public:
    explicit KestryUrl(std::string_view text);

    /// In small letters, as is the host: capitals mean the same in both.
    [[nodiscard]] const std::string& scheme() const { return scheme_; }
    [[nodiscard]] const std::string& host() const { return host_; }
    /// The value of the first item with a name; none when there is no such item or the first one
    /// has no value.
    [[nodiscard]] std::optional<std::string> queryItem(std::string_view name) const;

private:
    struct Item {
        std::string name;
        std::optional<std::string> value;
    };

    [[nodiscard]] static std::vector<Item> itemsOf(std::string_view query);

    std::string scheme_;
    std::string host_;
    std::vector<Item> items_;
};

} // namespace Kestry
