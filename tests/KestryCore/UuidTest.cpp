#include "Uuid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <unordered_set>

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

/// Identifiers whose two halves follow from a number.
template <class High, class Low>
std::size_t fullestBucket(High high, Low low)
{
    constexpr std::uint64_t count = 20'000;
    std::unordered_set<Uuid> identifiers;
    for (std::uint64_t number = 0; number < count; ++number) {
        const std::array<std::uint64_t, 2> halves{high(number), low(number)};
        identifiers.insert(std::bit_cast<Uuid>(halves));
    }
    std::size_t fullest = 0;
    for (std::size_t bucket = 0; bucket < identifiers.bucket_count(); ++bucket) {
        fullest = std::max(fullest, identifiers.bucket_size(bucket));
    }
    return fullest;
}

TEST(Uuid, IdentifiersMadeToCollideSpreadOverAHashTable)
{
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15ULL;
    const auto zero = [](std::uint64_t) { return std::uint64_t{0}; };
    const auto counting = [](std::uint64_t number) { return number; };
    const auto shifted = [](std::uint64_t number) { return number << 40; };
    const auto cancelling = [](std::uint64_t number) { return number * factor; };
    EXPECT_LT(fullestBucket(zero, counting), 50U);
    EXPECT_LT(fullestBucket(counting, zero), 50U);
    EXPECT_LT(fullestBucket(shifted, counting), 50U);
    EXPECT_LT(fullestBucket(counting, counting), 50U);
    EXPECT_LT(fullestBucket(cancelling, counting), 50U);
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
