#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "BlockIterator.h"
#include "LedgerBytes.h"
#include "Uuid.h"

namespace KestryCore {

/// A map with text keys that is a value, yet cheap to copy and change: the entries are in sorted
/// blocks that copies share, and a change replaces only the block that contains it. An unchanged
/// entry is the same object in both maps.
///
/// A block remembers what was computed from its entries, and so does each entry, so that it is
/// computed once while they stay the same object. It is forgotten when they change, and ignored by
/// equality.
///
/// Not thread-safe.
template <class Value>
class SharedMap {
public:
    using Map = std::map<std::string, Value>;
    using value_type = typename Map::value_type;

    struct Entry {
        value_type content;
        mutable bool soundByItself = false; ///< Keeps every rule about one entry.
        mutable std::optional<Uuid> parent; ///< The client or project it belongs to.
    };

    struct Block {
        using Item = value_type;
        std::vector<std::shared_ptr<Entry>> entries; ///< Ascending by key, never empty.
        mutable SharedBytes json;                    ///< The members' JSON, joined by commas.
        mutable bool soundByItself = false;          ///< Every entry is.

        [[nodiscard]] std::size_t size() const { return entries.size(); }
        [[nodiscard]] const Item& operator[](std::size_t index) const
        {
            return entries[index]->content;
        }
    };

    /// Small enough that encoding one block again takes no time beside writing a file, large enough
    /// that the block pointers of a million entries are copied quickly.
    static constexpr std::size_t blockCapacity = 128;

    using Iterator = BlockIterator<Block>;

    SharedMap() = default;
    SharedMap(const Map& map)
    {
        for (const auto& [key, value] : map) {
            (*this)[key] = value;
        }
    }
    SharedMap(std::initializer_list<value_type> values) : SharedMap(Map(values)) { }
    // Copies in place of moves: they cost next to nothing, and what was moved from stays a map.
    SharedMap(const SharedMap&) = default;
    SharedMap& operator=(const SharedMap&) = default;
    ~SharedMap() = default;

    [[nodiscard]] Iterator begin() const { return {blocks_.begin(), 0}; }
    [[nodiscard]] Iterator end() const { return {blocks_.end(), 0}; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }
    [[nodiscard]] Iterator find(const std::string& key) const
    {
        const Place place = placeOf(key);
        return place.isTaken ? Iterator(blocks_.begin() + place.block, place.offset) : end();
    }
    [[nodiscard]] bool contains(const std::string& key) const { return placeOf(key).isTaken; }
    /// Whether the map has just this value under the key, and every rule about it was found kept.
    [[nodiscard]] bool hasSound(const std::string& key, const Value& value) const
    {
        const Place place = placeOf(key);
        if (!place.isTaken) {
            return false;
        }
        const Entry& entry = *blocks_[static_cast<std::size_t>(place.block)]->entries[place.offset];
        return &entry.content.second == &value && entry.soundByItself;
    }
    [[nodiscard]] const Value& at(const std::string& key) const
    {
        const Iterator found = find(key);
        if (found == end()) {
            throw std::out_of_range("The map has no such key.");
        }
        return found->second;
    }

    /// The blocks in ascending order. None is empty. A block at the same address in two maps
    /// contains the same entries.
    [[nodiscard]] std::size_t blockCount() const { return blocks_.size(); }
    [[nodiscard]] const Block& block(std::size_t index) const { return *blocks_[index]; }

    /// The value, for changing it; a new one when it is missing. Valid until the next use of the
    /// map.
    Value& operator[](const std::string& key)
    {
        Place place = placeOf(key);
        if (!place.isTaken) {
            place = insert(key, place);
        }
        std::shared_ptr<Entry>& entry = editable(place.block).entries[place.offset];
        if (entry.use_count() > 1) {
            entry = std::make_shared<Entry>(Entry{entry->content, false, {}});
        }
        entry->soundByItself = false;
        entry->parent.reset();
        return entry->content.second;
    }

    /// Removes the value, if there is one.
    void erase(const std::string& key)
    {
        const Place place = placeOf(key);
        if (!place.isTaken) {
            return;
        }
        assert(size_ > 0);
        auto& entries = editable(place.block).entries;
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(place.offset));
        if (entries.empty()) {
            blocks_.erase(blocks_.begin() + place.block);
        }
        --size_;
    }
    void clear() { *this = SharedMap(); }

    friend bool operator==(const SharedMap& left, const SharedMap& right)
    {
        if (left.size_ != right.size_) {
            return false;
        }
        return left.blocks_ == right.blocks_ || std::equal(left.begin(), left.end(), right.begin());
    }

private:
    /// The place of a key, or the place where it belongs.
    struct Place {
        std::ptrdiff_t block = 0;
        std::size_t offset = 0;
        bool isTaken = false;
    };

    [[nodiscard]] Place placeOf(const std::string& key) const
    {
        const auto block = std::ranges::partition_point(
            blocks_, [&](const auto& each) { return keyOf(*each->entries.back()) < key; });
        const std::ptrdiff_t index = block - blocks_.begin();
        if (block == blocks_.end()) {
            return {index, 0, false};
        }
        const auto& entries = (*block)->entries;
        const auto entry = std::ranges::partition_point(
            entries, [&](const auto& each) { return keyOf(*each) < key; });
        return {index, static_cast<std::size_t>(entry - entries.begin()), keyOf(**entry) == key};
    }

    [[nodiscard]] static const std::string& keyOf(const Entry& entry)
    {
        return entry.content.first;
    }

    /// Inserts a new entry where it belongs, and returns its place.
    Place insert(const std::string& key, Place place)
    {
        if (place.block == static_cast<std::ptrdiff_t>(blocks_.size())) {
            place = placeAtTheEnd();
        }
        if (blockAt(place.block)->entries.size() >= blockCapacity) {
            place = splitAt(place);
        }
        auto& entries = editable(place.block).entries;
        entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(place.offset),
            std::make_shared<Entry>(Entry{value_type(key, Value()), false, {}}));
        ++size_;
        return place;
    }

    /// The place after all entries. A full last block stays full, so that a map that is made in
    /// order has no half-empty blocks.
    Place placeAtTheEnd()
    {
        if (blocks_.empty() || blocks_.back()->entries.size() >= blockCapacity) {
            blocks_.push_back(std::make_shared<Block>());
        }
        return {
            static_cast<std::ptrdiff_t>(blocks_.size()) - 1, blocks_.back()->entries.size(), false};
    }

    /// Splits the block of a place into two, and returns where the place is then.
    Place splitAt(Place place)
    {
        auto& first = editable(place.block).entries;
        assert(first.size() > 1);
        const std::size_t half = first.size() / 2;
        auto second = std::make_shared<Block>();
        second->entries.assign(first.begin() + static_cast<std::ptrdiff_t>(half), first.end());
        first.resize(half);
        blocks_.insert(blocks_.begin() + place.block + 1, std::move(second));
        return place.offset <= half ? place : Place{place.block + 1, place.offset - half, false};
    }

    [[nodiscard]] std::shared_ptr<Block>& blockAt(std::ptrdiff_t index)
    {
        return blocks_[static_cast<std::size_t>(index)];
    }

    /// A block, for changing it: a shared block is copied first, and what it remembered is
    /// forgotten. Its entries may still be shared.
    Block& editable(std::ptrdiff_t index)
    {
        std::shared_ptr<Block>& block = blockAt(index);
        if (block.use_count() > 1) {
            auto copy = std::make_shared<Block>();
            copy->entries = block->entries;
            block = std::move(copy);
        }
        block->json = {};
        block->soundByItself = false;
        return *block;
    }

    std::vector<std::shared_ptr<Block>> blocks_;
    std::size_t size_ = 0;
};

} // namespace KestryCore
