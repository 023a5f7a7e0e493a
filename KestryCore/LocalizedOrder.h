#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KestryCore {

/// The alphabetical order of one locale: that of its language, small letters and capitals
/// together, and with numbers in digits by their value, so that "Item 2" comes before "Item 10".
/// Different texts may be equal in it, as "Item 2" and "Item 02".
///
/// Construction is slow: make one and keep it. Copies share what they have loaded and remembered.
/// Not thread-safe.
class LocalizedOrder {
public:
    /// `locale` is a name such as "de_DE"; an unknown one has the order common to most languages.
    /// Throws LedgerError when the library has no order at all.
    explicit LocalizedOrder(const std::string& locale);

    [[nodiscard]] const std::string& locale() const;

    /// The sort key of each text, which is UTF-8: bytes that compare as the texts do in this order.
    /// A key is computed once for each different text and remembered. The views are valid until the
    /// next call.
    [[nodiscard]] std::vector<std::string_view> keys(
        const std::vector<std::string_view>& texts) const;

private:
    struct Rules;
    std::shared_ptr<Rules> rules_;
};

} // namespace KestryCore
