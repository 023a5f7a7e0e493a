#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Kestry {

/// The text without anything that could control a terminal or change the direction of writing:
/// control characters are written as in "\n" or "\x1B", bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string printable(std::string_view text);

/// As `printable`, but line feeds stay: for messages made of several lines.
[[nodiscard]] std::string printableLines(std::string_view text);

/// A JSON document in which all such characters are written as JSON's own escapes.
[[nodiscard]] std::string visibleJson(std::string json);

/// The text with bytes that are not UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// The columns that a text takes on a terminal: two for wide characters, zero for combining ones.
[[nodiscard]] std::size_t columnWidth(std::string_view text);

/// A number of things, as in "1 session" and "2 sessions".
[[nodiscard]] std::string counted(std::int64_t count, std::string_view noun);

/// The colour of a cell where colours can be shown.
enum class Tint { plain, heading, good, waiting, warning };

struct TextCell {
    std::string text; ///< Made printable when it is shown.
    Tint tint = Tint::plain;
    bool alignsRight = false;
};

/// Lines of cells in aligned columns, two spaces apart, with no space after the last.
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

    // A long table has a row for each session of the ledger. So its cells share one string.
    std::string shown_; // the printable text of all cells
    std::vector<Cell> cells_;
    std::vector<std::size_t> widths_; // the widest cell of each column
};

} // namespace Kestry
