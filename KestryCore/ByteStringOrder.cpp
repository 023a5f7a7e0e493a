#include "ByteStringOrder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "KeySort.h"

namespace KestryCore {

namespace {

constexpr std::size_t wordSize = sizeof(std::uint64_t);

/// Whether a string ends in a word: it does in the one that holds its zeros.
bool endsIn(std::uint64_t word)
{
    return (word & 0xFFU) == 0;
}

} // namespace

std::uint8_t* ByteStringOrder::room(std::size_t most)
{
    const std::size_t needed = used_ + most + wordSize;
    if (bytes_.size() < needed) {
        bytes_.resize(std::max(needed, 2 * bytes_.size()));
    }
    return bytes_.data() + used_;
}

void ByteStringOrder::add(std::uint32_t member, std::size_t length)
{
    const std::size_t paddedLength = (length / wordSize + 1) * wordSize;
    std::memset(bytes_.data() + used_ + length, 0, paddedLength - length);
    const std::size_t index = used_ / wordSize;
    items_.push_back({wordAt(index), static_cast<std::uint32_t>(index + 1), member});
    used_ += paddedLength;
}

std::uint64_t ByteStringOrder::wordAt(std::size_t index) const
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes_.data() + index * wordSize, wordSize);
    return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

void ByteStringOrder::sortByWord(std::span<Item> items)
{
    sortByKey(items, spare_);
    forEachEqualKey(items, [&](std::span<Item> equals) {
        if (equals.size() > 1 && !endsIn(equals.front().key)) {
            open_.push_back(equals);
        } else {
            isLastOfClass_[static_cast<std::size_t>(&equals.back() - items_.data())] = 1;
        }
    });
}

OrderedClasses ByteStringOrder::sorted() &&
{
    isLastOfClass_.assign(items_.size(), 0);
    sortByWord(items_);
    while (!open_.empty()) {
        const std::span<Item> items = open_.back();
        open_.pop_back();
        for (Item& item : items) {
            item.key = wordAt(item.nextWord++);
        }
        sortByWord(items);
    }
    OrderedClasses result{{}, std::move(isLastOfClass_)};
    result.members.reserve(items_.size());
    for (const Item& item : items_) {
        result.members.push_back(item.member);
    }
    return result;
}

} // namespace KestryCore
