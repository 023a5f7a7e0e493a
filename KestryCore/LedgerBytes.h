#pragma once

#include <cassert>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KestryCore {

/// Bytes that exist as long as this object or a copy of it: a whole text, or a part of one that is
/// shared. Initially empty.
class SharedBytes {
public:
    SharedBytes() = default;
    explicit SharedBytes(std::string text)
        : owner_(std::make_shared<const std::string>(std::move(text))), view_(*owner_)
    {
    }
    explicit SharedBytes(std::shared_ptr<const std::string> text)
        : owner_(std::move(text)), view_(*owner_)
    {
    }
    SharedBytes(std::shared_ptr<const std::string> text, std::size_t begin, std::size_t end)
        : owner_(std::move(text)), view_(std::string_view(*owner_).substr(begin, end - begin))
    {
        assert(begin <= end && end <= owner_->size());
    }

    explicit operator bool() const { return owner_ != nullptr; }
    [[nodiscard]] std::string_view view() const { return view_; }

private:
    std::shared_ptr<const std::string> owner_;
    std::string_view view_;
};

/// The bytes of a ledger document, in pieces that are shared with the blocks of records that they
/// were made from. So they can be kept as long as the ledger, written and compared without a second
/// copy.
class LedgerBytes {
public:
    void append(SharedBytes piece)
    {
        size_ += piece.view().size();
        pieces_.push_back(std::move(piece));
    }
    void append(std::string piece) { append(SharedBytes(std::move(piece))); }

    /// Bytes in all pieces.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The pieces in order; valid until this object changes.
    [[nodiscard]] std::vector<std::string_view> views() const
    {
        std::vector<std::string_view> views;
        views.reserve(pieces_.size());
        for (const auto& piece : pieces_) {
            views.push_back(piece.view());
        }
        return views;
    }

    /// All pieces as one text.
    [[nodiscard]] std::string text() const
    {
        std::string text;
        text.reserve(size_);
        for (const auto& piece : pieces_) {
            text += piece.view();
        }
        return text;
    }

private:
    std::vector<SharedBytes> pieces_;
    std::size_t size_ = 0;
};

} // namespace KestryCore
