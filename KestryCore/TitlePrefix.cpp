#include "TitlePrefix.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

#include "Text.h"
#include "TitleFolding.h"

namespace KestryCore {

namespace {

constexpr char32_t asciiEnd = 0x80;
constexpr char32_t illFormed = 0xFFFFFFFF;

char32_t loweredAscii(char32_t letter)
{
    return letter >= U'A' && letter <= U'Z' ? letter - U'A' + U'a' : letter;
}

std::string utf8(char32_t codePoint)
{
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t size = 0;
    U8_APPEND_UNSAFE(bytes, size, codePoint);
    return {bytes.data(), size};
}

/// The code point at `index`, which moves behind it.
char32_t nextCodePoint(std::string_view text, std::size_t& index)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    UChar32 codePoint = 0;
    U8_NEXT(bytes, index, text.size(), codePoint);
    return codePoint < 0 ? illFormed : static_cast<char32_t>(codePoint);
}

std::u32string codePoints(std::string_view text)
{
    std::u32string result;
    for (std::size_t index = 0; index < text.size();) {
        result += nextCodePoint(text, index);
    }
    return result;
}

bool isMark(char32_t letter)
{
    return u_getCombiningClass(static_cast<UChar32>(letter)) != 0;
}

/// Whether the letter never becomes one with another before it.
bool staysApart(char32_t letter)
{
    return u_getIntPropertyValue(static_cast<UChar32>(letter), UCHAR_NFC_QUICK_CHECK) == UNORM_YES;
}

} // namespace

TitlePrefix::TitlePrefix(std::string_view foldedPrefix) : prefix_(codePoints(foldedPrefix)) { }

const TitlePrefix::Fold& TitlePrefix::foldOf(char32_t codePoint)
{
    Fold& fold = known_[codePoint % known_.size()];
    if (fold.codePoint == codePoint) {
        return fold;
    }
    fold = Fold{codePoint};
    if (codePoint == illFormed) {
        return fold;
    }
    const std::u32string letters = codePoints(foldedTitle(utf8(codePoint)));
    if (letters.size() > fold.letters.size() || !std::ranges::all_of(letters, staysApart)) {
        return fold;
    }
    fold.count = letters.size();
    std::ranges::copy(letters, fold.letters.begin());
    const auto marks = std::ranges::count_if(letters, isMark);
    if (marks == 0) {
        fold.joining = Joining::never;
    } else if (letters.size() == 1) {
        fold.joining = Joining::asMark;
    }
    return fold;
}

bool TitlePrefix::mayChangeWhatIsBefore(std::string_view text, Joining before)
{
    for (std::size_t index = 0; index < text.size();) {
        const char32_t codePoint = nextCodePoint(text, index);
        if (codePoint < asciiEnd) {
            return false;
        }
        const Fold& fold = foldOf(codePoint);
        if (fold.joining == Joining::maybe) {
            return true;
        }
        if (fold.joining == Joining::asMark && before == Joining::asMark) {
            return true;
        }
        if (fold.joining == Joining::never && fold.count > 0) {
            return false;
        }
    }
    return false;
}

bool TitlePrefix::mayBegin(std::string_view title)
{
    std::size_t compared = 0;
    Joining before = Joining::never;
    bool isBeforeTitle = true;
    for (std::size_t index = 0; index < title.size() && compared < prefix_.size();) {
        const char32_t codePoint = nextCodePoint(title, index);
        if (isBeforeTitle && isBlank(codePoint)) {
            continue;
        }
        isBeforeTitle = false;
        if (codePoint < asciiEnd) {
            // Nothing that stays in a folded text becomes one with an ASCII letter.
            if (prefix_[compared++] != loweredAscii(codePoint)) {
                return false;
            }
            before = Joining::never;
            continue;
        }
        const Fold fold = foldOf(codePoint);
        if (fold.joining == Joining::maybe
            || (fold.joining == Joining::asMark && before == Joining::asMark)) {
            return true;
        }
        for (std::size_t letter = 0; letter < fold.count && compared < prefix_.size(); ++letter) {
            if (prefix_[compared++] != fold.letters[letter]) {
                return mayChangeWhatIsBefore(title.substr(index), fold.joining);
            }
        }
        before = fold.count > 0 ? fold.joining : before;
    }
    return compared == prefix_.size();
}

} // namespace KestryCore
