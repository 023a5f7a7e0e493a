#include "PlainText.h"

#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace Kestry {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// Calls `visit` with each code point, negative where the bytes are not UTF-8, and its bytes.
template <class Visit>
void forEachCodePoint(std::string_view text, Visit visit)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t position = 0;
    while (position < text.size()) {
        const std::size_t start = position;
        UChar32 codePoint = 0;
        U8_NEXT(bytes, position, text.size(), codePoint);
        visit(codePoint, text.substr(start, position - start));
    }
}

/// Whether a character is more than text: a control character, a line separator, or a mark that
/// changes the direction of writing.
bool isActing(UChar32 codePoint)
{
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0)
        || (codePoint >= 0x2028 && codePoint <= 0x202E)
        || (codePoint >= 0x2066 && codePoint <= 0x2069) || codePoint == 0x200E
        || codePoint == 0x200F || codePoint == 0x061C;
}

std::string escaped(UChar32 codePoint)
{
    switch (codePoint) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return codePoint < 0x100 ? fmt::format("\\x{:02X}", codePoint)
                                 : fmt::format("\\u{:04X}", codePoint);
    }
}

/// Whether all characters are printable ASCII, as in most texts.
bool isPlainAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char byte) { return byte >= 0x20 && byte < 0x7F; });
}

std::string madePrintable(std::string_view text, bool keepsLines)
{
    if (isPlainAscii(text)) {
        return std::string(text);
    }
    std::string result;
    forEachCodePoint(text, [&](UChar32 codePoint, std::string_view bytes) {
        if (codePoint < 0) {
            result += replacementCharacter;
        } else if (isActing(codePoint) && !(keepsLines && codePoint == '\n')) {
            result += escaped(codePoint);
        } else {
            result += bytes;
        }
    });
    return result;
}

void appendTinted(std::string& line, std::string_view text, Tint tint, bool isColored)
{
    constexpr std::array codes{0, 1, 32, 33, 31};
    if (isColored && tint != Tint::plain) {
        line += fmt::format("\x1B[{}m{}\x1B[0m", codes[static_cast<std::size_t>(tint)], text);
    } else {
        line += text;
    }
}

} // namespace

std::string printable(std::string_view text)
{
    return madePrintable(text, false);
}

std::string printableLines(std::string_view text)
{
    return madePrintable(text, true);
}

std::string visibleJson(std::string json)
{
    // Such characters occur only inside strings: the writer has escaped all ASCII control
    // characters but the last one.
    const bool isPlain =
        std::ranges::all_of(json, [](char byte) { return byte >= 0 && byte != 0x7F; });
    if (isPlain) {
        return json;
    }
    std::string result;
    forEachCodePoint(json, [&](UChar32 codePoint, std::string_view bytes) {
        if (codePoint >= 0 && isActing(codePoint)) {
            result += fmt::format("\\u{:04X}", codePoint);
        } else {
            result += bytes;
        }
    });
    return result;
}

std::string wellFormed(std::string_view text)
{
    std::string result;
    forEachCodePoint(text, [&](UChar32 codePoint, std::string_view bytes) {
        result += codePoint < 0 ? replacementCharacter : bytes;
    });
    return result;
}

std::string counted(std::int64_t count, std::string_view noun)
{
    return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

std::size_t columnWidth(std::string_view text)
{
    if (isPlainAscii(text)) {
        return text.size();
    }
    std::size_t width = 0;
    forEachCodePoint(text, [&](UChar32 codePoint, std::string_view) {
        if (codePoint >= 0) {
            const int category = u_charType(codePoint);
            if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK
                || category == U_FORMAT_CHAR) {
                return;
            }
        }
        const int shape = u_getIntPropertyValue(codePoint, UCHAR_EAST_ASIAN_WIDTH);
        width += codePoint >= 0 && (shape == U_EA_WIDE || shape == U_EA_FULLWIDTH) ? 2 : 1;
    });
    return width;
}

void TextTable::add(const std::vector<TextCell>& row)
{
    widths_.resize(std::max(widths_.size(), row.size()));
    for (std::size_t column = 0; column < row.size(); ++column) {
        const TextCell& cell = row[column];
        const std::string shown = printable(cell.text);
        const std::size_t width = columnWidth(shown);
        widths_[column] = std::max(widths_[column], width);
        cells_.push_back(
            {shown.size(), width, cell.tint, cell.alignsRight, column + 1 == row.size()});
        shown_ += shown;
    }
}

std::string TextTable::text(bool isColored) const
{
    constexpr std::size_t columnGap = 2;
    std::string result;
    std::size_t position = 0;
    std::size_t column = 0;
    // Spaces are written before the cell that follows them, so that no line ends in spaces.
    std::size_t blanks = 0;
    for (const Cell& cell : cells_) {
        const std::size_t padding = widths_[column++] - cell.width;
        blanks += cell.alignsRight ? padding : 0;
        if (cell.length > 0) {
            result.append(blanks, ' ');
            blanks = 0;
            appendTinted(result, std::string_view(shown_).substr(position, cell.length), cell.tint,
                isColored);
        }
        blanks += columnGap + (cell.alignsRight ? 0 : padding);
        position += cell.length;
        if (cell.endsRow) {
            result += '\n';
            column = 0;
            blanks = 0;
        }
    }
    return result;
}

} // namespace Kestry
