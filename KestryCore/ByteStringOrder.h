#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace KestryCore {

/// Numbered things in an order, of which neighbours may be the same.
struct OrderedClasses {
    std::vector<std::uint32_t> members;      ///< Those of the lowest class first.
    std::vector<std::uint8_t> isLastOfClass; ///< For each of `members`, 1 or 0.
};

/// Sorts many byte strings that belong to numbered things: all bytes lie in one piece of memory,
/// and are compared eight at a time. No string holds a zero; one that is the beginning of another
/// goes before it.
class ByteStringOrder {
public:
    /// Room for a string of at most so many bytes, until the next call.
    [[nodiscard]] std::uint8_t* room(std::size_t most);
    /// Takes what was written there as the string of this thing.
    void add(std::uint32_t member, std::size_t length);

    /// All that was added, which is used up by it.
    [[nodiscard]] OrderedClasses sorted() &&;

private:
    /// The next eight bytes of a string, the first one highest, and where those after them are.
    struct Item {
        std::uint64_t key;
        std::uint32_t nextWord;
        std::uint32_t member;
    };
    [[nodiscard]] std::uint64_t wordAt(std::size_t index) const;
    /// Sorts items by the word that was read last, and notes which of them go on the same.
    void sortByWord(std::span<Item> items);

    std::vector<std::uint8_t> bytes_; // each string with zeros up to a whole word, at least one
    std::size_t used_ = 0;
    std::vector<Item> items_;
    std::vector<std::uint8_t> isLastOfClass_;
    std::vector<Item> spare_;
    /// Items whose strings are equal as far as they were read, and go on. A list, because strings
    /// may be longer than calls can be deep.
    std::vector<std::span<Item>> open_;
};

} // namespace KestryCore
