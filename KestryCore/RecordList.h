#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BlockIterator.h"
#include "LedgerBytes.h"

namespace KestryCore {

/// A sequence of records that is a value, yet cheap to copy: the records are in immutable blocks
/// that copies share, and a change replaces only the block that contains it. So a copy costs a
/// pointer for each block, and an unchanged block is the same object in both lists.
///
/// A block remembers what was computed from its records (`Remembered`), so that it is computed once
/// while the records stay the same object. It is forgotten when the block changes, and ignored by
/// equality.
///
/// Not thread-safe.
template <class Record>
class RecordList {
public:
    /// What was computed from the records of a block, set by the code that computes it.
    struct Remembered {
        SharedBytes json;           ///< The records' JSON, joined by commas.
        bool soundByItself = false; ///< The records keep every rule about one record.
    };

    struct Block {
        using Item = Record;
        std::vector<Record> records;
        mutable Remembered remembered;

        [[nodiscard]] std::size_t size() const { return records.size(); }
        [[nodiscard]] const Item& operator[](std::size_t index) const { return records[index]; }
    };

    /// Small enough that copying one block takes no time beside writing a file, large enough that
    /// the block pointers of a million records are copied quickly.
    static constexpr std::size_t blockCapacity = 256;

    using Iterator = BlockIterator<Block>;

    RecordList() = default;
    RecordList(std::initializer_list<Record> records)
    {
        for (const Record& record : records) {
            append(record);
        }
    }

    [[nodiscard]] Iterator begin() const { return {blocks_.begin(), 0}; }
    [[nodiscard]] Iterator end() const { return {blocks_.end(), 0}; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }
    [[nodiscard]] const Record& front() const { return *begin(); }
    [[nodiscard]] const Record& back() const { return blocks_.back()->records.back(); }

    /// The blocks in order. None is empty. A block at the same address in two lists contains the
    /// same records.
    [[nodiscard]] std::size_t blockCount() const { return blocks_.size(); }
    [[nodiscard]] const Block& block(std::size_t index) const { return *blocks_[index]; }

    /// The first record with this identifier, or null. Valid until the list changes.
    template <class Identifier>
    [[nodiscard]] const Record* find(const Identifier& id) const
    {
        for (const auto& block : blocks_) {
            for (const Record& record : block->records) {
                if (record.id == id) {
                    return &record;
                }
            }
        }
        return nullptr;
    }

    void append(Record record)
    {
        if (blocks_.empty() || blocks_.back()->records.size() >= blockCapacity) {
            blocks_.push_back(std::make_shared<Block>());
        }
        editable(blocks_.size() - 1).push_back(std::move(record));
        ++size_;
    }

    /// Appends records whose JSON, joined by commas, is known: between one and `blockCapacity`.
    void appendBlock(std::vector<Record> records, const SharedBytes& json)
    {
        assert(!records.empty() && records.size() <= blockCapacity);
        size_ += records.size();
        auto block = std::make_shared<Block>();
        block->records = std::move(records);
        block->remembered.json = json;
        blocks_.push_back(std::move(block));
    }

    /// Calls `change` with the first record that has this identifier, which `change` must not
    /// alter. Returns false, with nothing changed, when there is none.
    template <class Identifier, class Change>
    bool modify(const Identifier& id, Change change)
    {
        for (std::size_t index = 0; index < blocks_.size(); ++index) {
            const auto& records = blocks_[index]->records;
            for (std::size_t offset = 0; offset < records.size(); ++offset) {
                if (records[offset].id == id) {
                    change(editable(index)[offset]);
                    return true;
                }
            }
        }
        return false;
    }

    /// Removes every record with this identifier.
    template <class Identifier>
    void remove(const Identifier& id)
    {
        removeIf([&](const Record& record) { return record.id == id; });
    }

    /// Removes every record for which `isUnwanted` returns true, in one pass.
    template <class Predicate>
    void removeIf(Predicate isUnwanted)
    {
        for (std::size_t index = blocks_.size(); index-- > 0;) {
            if (std::ranges::none_of(blocks_[index]->records, isUnwanted)) {
                continue;
            }
            auto& records = editable(index);
            size_ -= std::erase_if(records, isUnwanted);
            if (records.empty()) {
                blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(index));
            }
        }
    }

    /// Whether both lists consist of the same block objects, so that what was computed from one is
    /// true of the other. Equal lists may have different blocks.
    [[nodiscard]] bool sharesAllWith(const RecordList& other) const
    {
        return blocks_ == other.blocks_;
    }

    friend bool operator==(const RecordList& left, const RecordList& right)
    {
        if (left.size_ != right.size_) {
            return false;
        }
        if (left.blocks_ == right.blocks_) {
            return true;
        }
        return std::equal(left.begin(), left.end(), right.begin());
    }

private:
    /// The records of a block, for changing them: a shared block is copied first, and what it
    /// remembered is forgotten.
    std::vector<Record>& editable(std::size_t index)
    {
        std::shared_ptr<Block>& block = blocks_[index];
        if (block.use_count() > 1) {
            auto copy = std::make_shared<Block>();
            copy->records = block->records;
            block = std::move(copy);
        }
        block->remembered = {};
        return block->records;
    }

    std::vector<std::shared_ptr<Block>> blocks_;
    std::size_t size_ = 0;
};

} // namespace KestryCore
