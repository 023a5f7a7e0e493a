#pragma once

#include <cassert>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

namespace KestryCore {

/// Visits the items of a sequence of blocks, block by block. `Block` has `Item`, `size()` and
/// `operator[]`; no block is empty. Valid until the sequence changes.
template <class Block>
class BlockIterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = typename Block::Item;
    using difference_type = std::ptrdiff_t;
    using pointer = const value_type*;
    using reference = const value_type&;
    using BlockPosition = typename std::vector<std::shared_ptr<Block>>::const_iterator;

    BlockIterator() = default;
    /// The item at `offset` in a block; with offset 0 also the end of all blocks.
    BlockIterator(BlockPosition block, std::size_t offset) : block_(block), offset_(offset) { }

    reference operator*() const { return (**block_)[offset_]; }
    pointer operator->() const { return &**this; }
    BlockIterator& operator++()
    {
        assert(offset_ < (*block_)->size());
        if (++offset_ == (*block_)->size()) {
            ++block_;
            offset_ = 0;
        }
        return *this;
    }
    BlockIterator operator++(int)
    {
        BlockIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const BlockIterator&, const BlockIterator&) = default;

private:
    BlockPosition block_{};
    std::size_t offset_ = 0;
};

} // namespace KestryCore
