#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace KestryCore {

namespace KeySorting {

inline constexpr std::size_t digitCount = sizeof(std::uint64_t);
inline constexpr std::size_t digitValues = 256;

/// How often each value of each byte occurs in the keys, lowest byte first.
using Counts = std::array<std::array<std::uint32_t, digitValues>, digitCount>;

inline std::size_t digit(std::uint64_t key, std::size_t place)
{
    return key >> (8 * place) & 0xFFU;
}

template <class Item>
Counts countDigits(std::span<const Item> items)
{
    Counts counts{};
    for (const Item& item : items) {
        for (std::size_t place = 0; place < digitCount; ++place) {
            ++counts[place][digit(item.key, place)];
        }
    }
    return counts;
}

/// Copies the items in the order of one byte of their keys, equal ones in the order they are in.
template <class Item>
void distribute(std::span<const Item> items, std::span<Item> target, std::size_t place,
    std::array<std::uint32_t, digitValues> counts)
{
    std::uint32_t start = 0;
    for (std::uint32_t& count : counts) {
        start += std::exchange(count, start);
    }
    for (const Item& item : items) {
        target[counts[digit(item.key, place)]++] = item;
    }
}

/// Byte by byte from the lowest, leaving out the bytes in which all keys agree.
template <class Item>
void sortByDigits(std::span<Item> items, std::vector<Item>& spare)
{
    const Counts counts = countDigits(std::span<const Item>(items));
    spare.resize(std::max(spare.size(), items.size()));
    std::span<Item> source = items;
    std::span<Item> target = std::span(spare).first(items.size());
    for (std::size_t place = 0; place < digitCount; ++place) {
        if (counts[place][digit(source.front().key, place)] < items.size()) {
            distribute(std::span<const Item>(source), target, place, counts[place]);
            std::swap(source, target);
        }
    }
    if (source.data() != items.data()) {
        std::ranges::copy(source, items.begin());
    }
}

} // namespace KeySorting

/// Sorts items by their 64-bit `key`, those of equal keys in any order. Takes time in proportion
/// to their number. `spare` is memory to work in, kept from call to call.
template <class Item>
void sortByKey(std::span<Item> items, std::vector<Item>& spare)
{
    /// Fewer are sorted quicker by comparing them.
    constexpr std::size_t fewest = 256;
    // What people enter is mostly in the order of time already, one way or the other.
    if (std::ranges::is_sorted(items, std::less{}, &Item::key)) {
        return;
    }
    if (std::ranges::is_sorted(items, std::greater{}, &Item::key)) {
        std::ranges::reverse(items);
    } else if (items.size() < fewest) {
        std::ranges::sort(items, std::less{}, &Item::key);
    } else {
        KeySorting::sortByDigits(items, spare);
    }
}

/// Calls `action` with each part of sorted items that have equal keys.
template <class Item, class Action>
void forEachEqualKey(std::span<Item> items, Action action)
{
    for (std::size_t begin = 0; begin < items.size();) {
        std::size_t end = begin + 1;
        while (end < items.size() && items[end].key == items[begin].key) {
            ++end;
        }
        action(items.subspan(begin, end - begin));
        begin = end;
    }
}

} // namespace KestryCore
