#include "Shared.h"

#include <gtest/gtest.h>

#include <string>

namespace KestryCore {
namespace {

using Text = Shared<std::string>;

TEST(Shared, IsEmptyUntilItIsGivenAValue)
{
    EXPECT_FALSE(Text());
    EXPECT_TRUE(Text(std::string("")));
}

TEST(Shared, ACopyIsTheSameObjectUntilOneIsChanged)
{
    const Text original(std::string("a"));
    Text copy = original;
    EXPECT_EQ(&*copy, &*original);
    copy.edit() += "b";
    EXPECT_EQ(*original, "a");
    EXPECT_EQ(*copy, "ab");
}

TEST(Shared, EqualityLooksAtTheValues)
{
    EXPECT_EQ(Text(std::string("a")), Text(std::string("a")));
    EXPECT_NE(Text(std::string("a")), Text(std::string("b")));
    EXPECT_NE(Text(std::string("")), Text());
    EXPECT_EQ(Text(), Text());
}

} // namespace
} // namespace KestryCore
