#include "LocalizedOrder.h"

#include <algorithm>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include "ByteStringOrder.h"
#include "CollationUnits.h"
#include "KeySort.h"
#include "LocaleCollator.h"

namespace KestryCore {

struct LocalizedOrder::Rules {
    std::string locale;
    LocaleCollator collator;
    /// Made when it is first needed, as making it takes a while.
    mutable std::optional<CollationUnits> units;

    [[nodiscard]] const CollationUnits& lettersOnly() const
    {
        return units ? *units : units.emplace(collator.library());
    }
};

namespace {

using Texts = std::vector<std::string_view>;
using Members = std::vector<std::uint32_t>;

/// The different texts among those of some members, and which one each member has.
struct DistinctTexts {
    Texts texts;
    Members indices; ///< One for each member.
};

DistinctTexts distinctTexts(const Texts& texts, std::span<const std::uint32_t> members)
{
    DistinctTexts distinct;
    std::unordered_map<std::string_view, std::uint32_t> known;
    for (const std::uint32_t member : members) {
        const auto next = static_cast<std::uint32_t>(distinct.texts.size());
        const auto [place, isNew] = known.try_emplace(texts[member], next);
        if (isNew) {
            distinct.texts.push_back(texts[member]);
        }
        distinct.indices.push_back(place->second);
    }
    return distinct;
}

struct ClassedMember {
    std::uint64_t key; ///< The number of its class.
    std::uint32_t member;
};

/// Puts members in place of the texts that they have.
OrderedClasses withMembers(const OrderedClasses& ofTexts, const DistinctTexts& distinct,
    std::span<const std::uint32_t> members)
{
    Members classOf(ofTexts.members.size());
    std::uint32_t number = 0;
    for (std::size_t place = 0; place < classOf.size(); ++place) {
        classOf[ofTexts.members[place]] = number;
        number += ofTexts.isLastOfClass[place];
    }
    std::vector<ClassedMember> items;
    items.reserve(members.size());
    for (std::size_t place = 0; place < members.size(); ++place) {
        items.push_back({classOf[distinct.indices[place]], members[place]});
    }
    std::vector<ClassedMember> spare;
    sortByKey(std::span(items), spare);
    OrderedClasses result;
    forEachEqualKey(std::span(items), [&](std::span<ClassedMember> together) {
        for (const ClassedMember& item : together) {
            result.members.push_back(item.member);
            result.isLastOfClass.push_back(0);
        }
        result.isLastOfClass.back() = 1;
    });
    return result;
}

/// Asks the collator for what stands for each text, once for all members that have the same.
OrderedClasses sortedByKeys(
    const LocaleCollator& collator, const Texts& texts, std::span<const std::uint32_t> members)
{
    const DistinctTexts distinct = distinctTexts(texts, members);
    ByteStringOrder keys;
    for (std::uint32_t index = 0; index < distinct.texts.size(); ++index) {
        collator.addKey(distinct.texts[index], index, keys);
    }
    return withMembers(std::move(keys).sorted(), distinct, members);
}

bool areSameBytes(const Texts& texts, std::span<const std::uint32_t> members)
{
    return std::ranges::all_of(members.subspan(1),
        [&](std::uint32_t member) { return texts[member] == texts[members.front()]; });
}

/// Has the collator decide between texts that are equal but for accents and capitals.
void sortWithinClasses(OrderedClasses& classes, const LocaleCollator& collator, const Texts& texts)
{
    const auto count = classes.members.size();
    for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
        end = begin + 1;
        while (classes.isLastOfClass[end - 1] == 0) {
            ++end;
        }
        const auto members = std::span(classes.members).subspan(begin, end - begin);
        if (!areSameBytes(texts, members)) {
            const OrderedClasses parts = sortedByKeys(collator, texts, members);
            std::ranges::copy(parts.members, members.begin());
            std::ranges::copy(parts.isLastOfClass,
                classes.isLastOfClass.begin() + static_cast<std::ptrdiff_t>(begin));
        }
    }
}

/// Hands out ranks to two sorted lists at once, as if they were merged.
class Merging {
public:
    Merging(const LocaleCollator& collator, const Texts& texts, const OrderedClasses& many)
        : collator_(collator), texts_(texts), many_(many), ranks_(texts.size())
    {
    }

    void mergeIn(const OrderedClasses& few)
    {
        for (std::size_t place = 0; place < few.members.size();) {
            const std::string_view text = texts_[few.members[place]];
            rankUntil(placeOf(text));
            const bool isSame = next_ < many_.members.size()
                && collator_.compare(text, texts_[many_.members[next_]]) == 0;
            do {
                ranks_[few.members[place]] = rank_;
            } while (few.isLastOfClass[place++] == 0);
            rank_ += isSame ? 0 : 1;
        }
    }

    [[nodiscard]] std::vector<std::uint32_t> finish()
    {
        rankUntil(many_.members.size());
        return std::move(ranks_);
    }

private:
    /// Where the first of the many is, from the next one on, that does not go before a text. Looks
    /// near the next one first, as the next text is often not far.
    [[nodiscard]] std::size_t placeOf(std::string_view text) const
    {
        const auto goesBefore = [&](std::uint32_t member) {
            return collator_.compare(texts_[member], text) < 0;
        };
        const auto rest = std::span(many_.members).subspan(next_);
        std::size_t step = 1;
        while (step < rest.size() && goesBefore(rest[step])) {
            step *= 2;
        }
        const auto near = rest.subspan(step / 2, std::min(step + 1, rest.size()) - step / 2);
        const auto found = std::ranges::partition_point(near, goesBefore);
        return next_ + step / 2 + static_cast<std::size_t>(found - near.begin());
    }

    void rankUntil(std::size_t end)
    {
        for (; next_ < end; ++next_) {
            ranks_[many_.members[next_]] = rank_;
            rank_ += many_.isLastOfClass[next_];
        }
    }

    const LocaleCollator& collator_;
    const Texts& texts_;
    const OrderedClasses& many_;
    std::vector<std::uint32_t> ranks_;
    std::size_t next_ = 0;
    std::uint32_t rank_ = 0;
};

} // namespace

LocalizedOrder::LocalizedOrder(const std::string& locale)
    : rules_(std::make_shared<const Rules>(Rules{locale, LocaleCollator(locale), std::nullopt}))
{
}

const std::string& LocalizedOrder::locale() const
{
    return rules_->locale;
}

std::weak_ordering LocalizedOrder::compare(std::string_view left, std::string_view right) const
{
    return rules_->collator.compare(left, right);
}

std::vector<std::uint32_t> LocalizedOrder::ranks(const std::vector<std::string_view>& texts) const
{
    const CollationUnits& units = rules_->lettersOnly();
    ByteStringOrder quick;
    Members slow;
    for (std::uint32_t member = 0; member < texts.size(); ++member) {
        const std::string_view text = texts[member];
        const auto length = units.write(text, quick.room(CollationUnits::most(text.size())));
        if (length) {
            quick.add(member, *length);
        } else {
            slow.push_back(member);
        }
    }
    OrderedClasses classes = std::move(quick).sorted();
    sortWithinClasses(classes, rules_->collator, texts);
    Merging merging(rules_->collator, texts, classes);
    merging.mergeIn(sortedByKeys(rules_->collator, texts, slow));
    return merging.finish();
}

} // namespace KestryCore
