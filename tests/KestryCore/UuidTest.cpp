#include "Uuid.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

TEST(Uuid, ReadsEitherCaseAndWritesUpperCase)
{
    const auto uuid = Uuid::parse("1b4e28ba-2FA1-11d2-883F-0016d3cca427");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->text(), "1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
}

TEST(Uuid, RefusesBracesBlanksAndOtherShapes)
{
    for (const char* text :
        {"{1B4E28BA-2FA1-11D2-883F-0016D3CCA427}", " 1B4E28BA-2FA1-11D2-883F-0016D3CCA427",
            "1B4E28BA-2FA1-11D2-883F-0016D3CCA42", "1B4E28BA2FA111D2883F0016D3CCA427",
            "1B4E28BA-2FA1-11D2-883F-0016D3CCA42G", "1B4E28BA-2FA11-1D2-883F-0016D3CCA427", ""}) {
        EXPECT_FALSE(Uuid::parse(text)) << text;
    }
}

TEST(Uuid, RandomIdentifiersDifferAndCarryVersionFour)
{
    const Uuid first = Uuid::random();
    EXPECT_NE(first, Uuid::random());
    EXPECT_EQ(first.bytes[6] >> 4, 4);
    EXPECT_EQ(first.bytes[8] >> 6, 2);
}

} // namespace
} // namespace KestryCore
