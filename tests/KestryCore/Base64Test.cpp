#include "Base64.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace KestryCore {
namespace {

TEST(Base64, WritesTheStandardAlphabetWithPadding)
{
    EXPECT_EQ(encodeBase64(""), "");
    EXPECT_EQ(encodeBase64("f"), "Zg==");
    EXPECT_EQ(encodeBase64("fo"), "Zm8=");
    EXPECT_EQ(encodeBase64("foo"), "Zm9v");
    EXPECT_EQ(encodeBase64("foob"), "Zm9vYg==");
    EXPECT_EQ(encodeBase64("\xFB\xFF\xFE"), "+//+");
}

TEST(Base64, RefusesMissingOrMisplacedPadding)
{
    for (const char* text :
        {"Zg", "Zg=", "Zm9vY", "Z===", "====", "=Zm9", "Zg==Zg==", "Zm=v", "Zm9v=", "Z=g="}) {
        EXPECT_FALSE(decodeBase64(text)) << text;
    }
}

TEST(Base64, RefusesCharactersOutsideTheAlphabet)
{
    for (const char* text : {"Zm9-", "Zm9_", "Zm 9", "Zm9\n", "Zm9\xC3", "Zg==\n\n\n\n"}) {
        EXPECT_FALSE(decodeBase64(text)) << text;
    }
}

RC_GTEST_PROP(Base64, ReadsBackAnyBytes, (const std::string& bytes))
{
    RC_ASSERT(decodeBase64(encodeBase64(bytes)) == bytes);
}

} // namespace
} // namespace KestryCore
