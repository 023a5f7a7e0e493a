#include "ByteStringOrder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <span>
#include <utility>

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

void ByteStringOrder::sortByWord(const Run& run)
{
    const auto items = std::span(items_).subspan(run.begin, run.end - run.begin);
    std::ranges::sort(items, {}, &Item::word);
}

void ByteStringOrder::noteEqualRuns(const Run& run)
{
    for (std::size_t begin = run.begin; begin < run.end;) {
        const std::uint64_t word = items_[begin].word;
        std::size_t end = begin + 1;
        while (end < run.end && items_[end].word == word) {
            ++end;
        }
        if (end - begin > 1 && !endsIn(word)) {
            open_.push_back({begin, end});
        } else {
            isLastOfClass_[end - 1] = 1;
        }
        begin = end;
    }
}

OrderedClasses ByteStringOrder::sorted() &&
{
    isLastOfClass_.assign(items_.size(), 0);
    const Run all{0, items_.size()};
    sortByWord(all);
    noteEqualRuns(all);
    while (!open_.empty()) {
        const Run run = open_.back();
        open_.pop_back();
        for (std::size_t index = run.begin; index < run.end; ++index) {
            items_[index].word = wordAt(items_[index].nextWord++);
        }
        sortByWord(run);
        noteEqualRuns(run);
    }
    OrderedClasses result{{}, std::move(isLastOfClass_)};
    result.members.reserve(items_.size());
    for (const Item& item : items_) {
        result.members.push_back(item.member);
    }
    return result;
}

} // namespace KestryCore
