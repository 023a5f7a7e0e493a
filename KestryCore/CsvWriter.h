#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Date.h"
#include "UtcText.h"

namespace KestryCore {

/// Writes lines of quoted cells, ended by CR LF. A cell that a spreadsheet would read as a formula
/// gets an apostrophe before its text.
class CsvWriter {
public:
    enum class Decimals { two, six };

    /// Starts with a line that is taken as it is. `expectedSize` is about how many bytes will be
    /// written.
    CsvWriter(std::string_view firstLine, std::size_t expectedSize);

    void text(std::string_view value);
    /// As "2026-03-14T09:26:53.589Z".
    void time(Date date);
    /// Rounded by the exact value, halves to an even digit. Has a decimal point in every locale.
    void number(double value, Decimals decimals);
    /// The shortest digits that read back exactly, always with a point or an exponent.
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
