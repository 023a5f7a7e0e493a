#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KestryCore {

/// The order in which the people of one locale look for texts: that of its language, small
/// letters and capitals together, and with numbers in digits by their value, so that "Item 2"
/// stands before "Item 10". Texts that differ in bytes may be the same to it, as "Item 2" and
/// "Item 02". Copies share what they have loaded; make one and keep it, for making one is slow.
class LocalizedOrder {
public:
    /// `locale` is a name such as "de_DE"; an unknown one has the order common to most languages.
    explicit LocalizedOrder(const std::string& locale);

    [[nodiscard]] const std::string& locale() const;

    /// How two UTF-8 texts stand to each other.
    [[nodiscard]] std::weak_ordering compare(std::string_view left, std::string_view right) const;

    /// A number for each text: lower for what goes first, equal for what is the same. For many
    /// texts much quicker than comparing them in pairs, and never otherwise in its result.
    [[nodiscard]] std::vector<std::uint32_t> ranks(
        const std::vector<std::string_view>& texts) const;

private:
    struct Rules;
    std::shared_ptr<const Rules> rules_;
};

} // namespace KestryCore
