#pragma once

#include <unicode/coll.h>

#include <compare>
#include <memory>
#include <string>
#include <string_view>

#include "ByteStringOrder.h"

namespace KestryCore {

/// The library's collator of one locale, made to sort numbers of any length by their value.
class LocaleCollator {
public:
    explicit LocaleCollator(const std::string& locale);

    [[nodiscard]] std::weak_ordering compare(std::string_view left, std::string_view right) const;

    /// Adds the bytes that stand for a text among those of others; nearly as slow as a comparison
    /// of long texts, and needed only once for each.
    void addKey(std::string_view text, std::uint32_t member, ByteStringOrder& keys) const;

    [[nodiscard]] const icu::Collator& library() const { return *collator_; }

private:
    std::unique_ptr<const icu::Collator> collator_;
};

} // namespace KestryCore
