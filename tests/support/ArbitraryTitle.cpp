#include "ArbitraryTitle.h"

#include "AllCodePoints.h"
#include "ArbitraryText.h"
#include "TitleFolding.h"

namespace KestryCore {

namespace {

rc::Gen<char32_t> letter()
{
    return rc::gen::weightedOneOf<char32_t>({{8,
                                                 rc::gen::element(U'a', U'A', U's', U'S', U'e',
                                                     U'E', U'k', U'i', U'f', U' ')},
        {4, rc::gen::element(U'é', U'É', U'ß', U'ẞ', U'Å', U'İ', U'ı', U'ő', U'ﬃ', U'ŉ')},
        {3, rc::gen::element(U'\u0301', U'\u0308', U'\u0327', U'\u0338', U'\u0345', U'\u20DD')},
        {2, rc::gen::element(U'か', U'が', U'\u3099', U'한', U'하', U'\u11AB', U'क', U'\u093F')},
        {2, rc::gen::element(U'\u093C', U'\u094D', U'ก', U'\u0E48', U'ש', U'\u05C1', U'\u064E')},
        {2, rc::gen::element(U'Σ', U'ς', U'й', U'И', U'ᾳ', U'\u212A', U'\u212B', U'\U0001D15E')},
        {2, rc::gen::element(U'\u00A0', U'\t', U'\r', U'\n', U'\u200D', U'\U0001F469')}});
}

} // namespace

rc::Gen<std::string> arbitraryTitle()
{
    const auto special = rc::gen::map(rc::gen::container<std::u32string>(letter()),
        [](const std::u32string& codePoints) { return utf8(codePoints); });
    return rc::gen::weightedOneOf<std::string>({{9, special}, {1, arbitraryText()}});
}

rc::Gen<std::string> startOf(const std::string& title)
{
    const std::string folded = foldedTitle(title);
    const auto part = rc::gen::map(
        rc::gen::inRange<std::size_t>(0, folded.size() + 1), [folded](std::size_t size) {
            while (
                size < folded.size() && (static_cast<unsigned char>(folded[size]) & 0xC0) == 0x80) {
                ++size;
            }
            return folded.substr(0, size);
        });
    return rc::gen::weightedOneOf<std::string>({{4, part}, {1, arbitraryTitle()}});
}

} // namespace KestryCore
