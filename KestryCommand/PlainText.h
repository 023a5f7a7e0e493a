#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kestry {

/// The text with nothing in it that could act on a terminal or turn the direction of writing:
/// control characters are written as in "\n" or "\x1B", bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string printable(std::string_view text);

/// As `printable`, but line feeds stay: for messages made of several lines.
[[nodiscard]] std::string printableLines(std::string_view text);

/// A JSON document in which all such characters are written as JSON's own escapes.
[[nodiscard]] std::string visibleJson(std::string json);

/// The text with bytes that are no UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// The columns that a text takes on a terminal: two for wide characters, none for combining ones.
[[nodiscard]] std::size_t columnWidth(std::string_view text);

/// How a cell stands out where colours can be shown.
enum class Tint { plain, heading, good, waiting, warning };

struct TextCell {
    std::string text; ///< Made printable when it is shown.
    Tint tint = Tint::plain;
    bool alignsRight = false;
};

/// Lines of cells in aligned columns, two blanks apart, with nothing after the last.
class TextTable {
public:
    /// A row has at least one cell.
    void add(const std::vector<TextCell>& row);
    [[nodiscard]] std::string text(bool isColored) const;

private:
    struct Cell {
        std::size_t length = 0; // in bytes
        std::size_t width = 0;  // in columns
        Tint tint = Tint::plain;
        bool alignsRight = false;
        bool endsRow = false;
    };

    // Long tables have as many cells as a ledger has sessions, and more: none has a string to
    // itself.
    std::string shown_; // the printable text of all cells
    std::vector<Cell> cells_;
    std::vector<std::size_t> widths_; // the widest cell of each column
};

} // namespace Kestry
