#include "UuidSet.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

/// The identifiers differ in one byte only, wherever that is.
Uuid numbered(std::size_t number)
{
    Uuid uuid;
    uuid.bytes[number % 16] = static_cast<std::uint8_t>(1 + number / 16);
    return uuid;
}

TEST(UuidSet, HoldsWhatWasInsertedAndNothingElse)
{
    UuidSet set(500);
    for (std::size_t number = 0; number < 500; ++number) {
        EXPECT_FALSE(set.contains(numbered(number)));
        EXPECT_TRUE(set.insert(numbered(number)));
        EXPECT_TRUE(set.contains(numbered(number)));
    }
    EXPECT_FALSE(set.contains(numbered(500)));
}

TEST(UuidSet, RefusesWhatItHoldsAlready)
{
    UuidSet set(2);
    EXPECT_TRUE(set.insert(numbered(1)));
    EXPECT_FALSE(set.insert(numbered(1)));
}

TEST(UuidSet, TellsTheNilIdentifierFromAnEmptyPlace)
{
    UuidSet set(2);
    EXPECT_FALSE(set.contains(Uuid{}));
    EXPECT_TRUE(set.insert(Uuid{}));
    EXPECT_FALSE(set.insert(Uuid{}));
    EXPECT_TRUE(set.contains(Uuid{}));
}

TEST(UuidSet, MadeForNothingHoldsNothing)
{
    const UuidSet set(0);
    EXPECT_FALSE(set.contains(Uuid{}));
    EXPECT_FALSE(set.contains(numbered(3)));
}

} // namespace
} // namespace KestryCore
