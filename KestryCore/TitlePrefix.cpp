#include "TitlePrefix.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

#include "Text.h"
#include "TitleFolding.h"

namespace KestryCore {

namespace {

constexpr char32_t asciiEnd = 0x80;

char32_t loweredAscii(char32_t letter)
{
    return letter >= U'A' && letter <= U'Z' ? letter - U'A' + U'a' : letter;
}

std::string utf8(char32_t codePoint)
{
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t size = 0;
    U8_APPEND_UNSAFE(bytes.data(), size, codePoint);
    return {bytes.data(), size};
}

} // namespace

TitlePrefix::TitlePrefix(std::string_view prefix) : prefix_(foldedDecomposed(prefix)) { }

const TitlePrefix::Fold& TitlePrefix::foldOf(char32_t codePoint)
{
    Fold& fold = known_[codePoint % known_.size()];
    if (fold.codePoint == codePoint) {
        return fold;
    }
    fold = Fold{codePoint};
    const std::u32string letters = foldedDecomposed(utf8(codePoint));
    fold.isCertain = letters.size() <= fold.letters.size()
        && std::ranges::all_of(letters,
            [](char32_t letter) { return u_getCombiningClass(static_cast<UChar32>(letter)) == 0; });
    if (fold.isCertain) {
        fold.count = letters.size();
        std::ranges::copy(letters, fold.letters.begin());
    }
    return fold;
}

bool TitlePrefix::mayBegin(std::string_view title)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(title.data());
    std::size_t compared = 0;
    bool isBeforeTitle = true;
    for (std::size_t index = 0; index < title.size() && compared < prefix_.size();) {
        UChar32 next = 0;
        U8_NEXT(bytes, index, title.size(), next);
        const auto codePoint = static_cast<char32_t>(next);
        if (next < 0) {
            return true;
        }
        if (isBeforeTitle && isBlank(codePoint)) {
            continue;
        }
        isBeforeTitle = false;
        if (codePoint < asciiEnd) {
            if (prefix_[compared++] != loweredAscii(codePoint)) {
                return false;
            }
            continue;
        }
        const Fold& fold = foldOf(codePoint);
        if (!fold.isCertain) {
            return true;
        }
        for (std::size_t letter = 0; letter < fold.count && compared < prefix_.size(); ++letter) {
            if (prefix_[compared++] != fold.letters[letter]) {
                return false;
            }
        }
    }
    return compared == prefix_.size();
}

} // namespace KestryCore
