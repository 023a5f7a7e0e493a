#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KestryCore {

/// The bytes of a ledger document, in pieces that are shared with the blocks of records they were
/// made from. Keeping them for as long as the ledger itself costs nothing, and writing or
/// comparing them needs no second copy.
class LedgerBytes {
public:
    void append(std::shared_ptr<const std::string> piece)
    {
        size_ += piece->size();
        pieces_.push_back(std::move(piece));
    }
    void append(std::string piece)
    {
        append(std::make_shared<const std::string>(std::move(piece)));
    }

    /// Bytes in all pieces.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The pieces in order; good until this object changes.
    [[nodiscard]] std::vector<std::string_view> views() const
    {
        std::vector<std::string_view> views;
        views.reserve(pieces_.size());
        for (const auto& piece : pieces_) {
            views.emplace_back(*piece);
        }
        return views;
    }

    /// All of it in one text.
    [[nodiscard]] std::string text() const
    {
        std::string text;
        text.reserve(size_);
        for (const auto& piece : pieces_) {
            text += *piece;
        }
        return text;
    }

private:
    std::vector<std::shared_ptr<const std::string>> pieces_;
    std::size_t size_ = 0;
};

} // namespace KestryCore
