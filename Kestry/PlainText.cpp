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

/// Calls `visit` with each code point, negative where the bytes are no UTF-8, and its bytes.
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

/// Whether a character does something other than stand there: controls, line separators, and the
/// marks that turn the direction of writing.
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

std::string madePrintable(std::string_view text, bool keepsLines)
{
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

std::string tinted(const std::string& text, Tint tint, bool isColored)
{
    if (!isColored || tint == Tint::plain || text.empty()) {
        return text;
    }
    constexpr std::array codes{0, 1, 32, 33, 31};
    return fmt::format("\x1B[{}m{}\x1B[0m", codes[static_cast<std::size_t>(tint)], text);
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

std::string wellFormed(std::string_view text)
{
    std::string result;
    forEachCodePoint(text, [&](UChar32 codePoint, std::string_view bytes) {
        result += codePoint < 0 ? replacementCharacter : bytes;
    });
    return result;
}

std::size_t columnWidth(std::string_view text)
{
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

std::string TextTable::text(bool isColored) const
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows_) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], columnWidth(printable(row[column].text)));
        }
    }
    std::string result;
    for (const auto& row : rows_) {
        std::string line;
        std::string gap;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const TextCell& cell = row[column];
            const std::string shown = printable(cell.text);
            const std::string padding(widths[column] - columnWidth(shown), ' ');
            line += gap + (cell.alignsRight ? padding : "") + tinted(shown, cell.tint, isColored);
            gap = (cell.alignsRight ? "" : padding) + "  ";
            if (!shown.empty()) {
                result += line;
                line.clear();
            }
        }
        result += '\n';
    }
    return result;
}

} // namespace Kestry
