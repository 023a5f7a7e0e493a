#include "ArbitraryText.h"

#include "AllCodePoints.h"

namespace KestryCore {

namespace {

rc::Gen<char32_t> codePoint()
{
    return rc::gen::oneOf(rc::gen::inRange<char32_t>(0x20, 0x7F),
        rc::gen::element(U'"', U'\\', U'/', U'\n', U'\0', U'\x1F', U'\x7F', U'\u2028'),
        rc::gen::inRange<char32_t>(0x80, 0xD800), rc::gen::inRange<char32_t>(0xE000, 0x110000));
}

} // namespace

rc::Gen<std::string> arbitraryText()
{
    return rc::gen::map(rc::gen::container<std::u32string>(codePoint()),
        [](const std::u32string& codePoints) { return utf8(codePoints); });
}

} // namespace KestryCore
