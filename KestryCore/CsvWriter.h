#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Date.h"
#include "UtcText.h"

namespace KestryCore {

/// Writes lines of quoted cells that end in CR LF. No cell is left in a form that a spreadsheet
/// would take for a formula: an apostrophe goes before it.
class CsvWriter {
public:
    enum class Decimals { two, six };

    /// Makes room for a text of about so many bytes, beginning with a line to be taken as it is.
    CsvWriter(std::string_view firstLine, std::size_t expectedSize);

    void text(std::string_view value);
    /// As "2026-03-14T09:26:53.589Z".
    void time(Date date);
    /// Rounded by the exact value, exact halves to an even digit; with a point in every locale.
    void number(double value, Decimals decimals);
    /// In the shortest digits that read back, always with a point or an exponent.
    void exactNumber(double value);
    void flag(bool value);
    void empty();
    void endLine();

    [[nodiscard]] std::string take();

private:
    /// Ends the cell before as well, and leaves room for any but a text. Here, to be inlined: it
    /// is called for every cell of a file.
    void beginCell()
    {
        if (collected_.data() + collected_.size() - place_ < std::ptrdiff_t{longestPlainCell}) {
            flush();
        }
        if (isInLine_) {
            *place_++ = '"';
            *place_++ = ',';
        }
        *place_++ = '"';
        isInLine_ = true;
    }

    void append(std::string_view bytes);
    void guardSign(double value);
    void flush();

    /// For the separator and the longest of numbers in plain notation.
    static constexpr std::size_t longestPlainCell = 400;

    std::string text_;
    TimestampWriter timestamps_;
    /// What is not in the text yet: bytes are collected here, for adding to a text that may have
    /// to grow costs more.
    std::array<char, 4096> collected_{};
    char* place_ = collected_.data();
    bool isInLine_ = false;
};

} // namespace KestryCore
