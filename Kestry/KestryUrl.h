#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kestry {

/// The parts of a URL that the program acts on, split as in RFC 3986. For a text that is not a URL
/// all parts are empty. A query with an invalid percent escape has no items.
class KestryUrl {
public:
    explicit KestryUrl(std::string_view text);

    /// Lower case, as is the host: neither is case-sensitive.
    [[nodiscard]] const std::string& scheme() const { return scheme_; }
    [[nodiscard]] const std::string& host() const { return host_; }
    /// The value of the first item with this name. Returns nullopt when there is no such item, or
    /// when the first one has no value.
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
