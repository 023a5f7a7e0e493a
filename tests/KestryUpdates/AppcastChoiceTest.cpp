#include "AppcastChoice.h"

#include <gtest/gtest.h>

#include "Appcast.h"

namespace Kestry {
namespace {

/// Which version a program of version 1.2.0 on a kernel 6.1.0 takes; "none" for none.
std::string chosen(const std::vector<FeedItem>& items, const char* system = "6.1.0")
{
    const auto item = newestSuitable(readAppcast(appcast(items)),
        {UpdateVersion::parse("1.2.0").value(), UpdateVersion::parse(system)});
    return item ? item->version.text() : "none";
}

TEST(AppcastChoiceTest, TheNewestVersionIsTakenWhereverItStands)
{
    EXPECT_EQ(chosen({{.version = "1.3"}, {.version = "1.10"}, {.version = "1.4"}}), "1.10");
}

TEST(AppcastChoiceTest, AnOlderVersionOrTheSameIsNone)
{
    EXPECT_EQ(chosen({{.version = "1.1.9"}, {.version = "1.2.0"}, {.version = "1.2"}}), "none");
    EXPECT_EQ(chosen({}), "none");
}

TEST(AppcastChoiceTest, AVersionForANewerSystemIsPassedOver)
{
    EXPECT_EQ(chosen({{.version = "1.4", .minimumSystem = "6.2"}, {.version = "1.3"}}), "1.3");
    EXPECT_EQ(chosen({{.version = "1.4", .minimumSystem = "6.1"}}), "1.4");
}

TEST(AppcastChoiceTest, OnASystemOfUnknownVersionOnlyWhatAsksForNoneSuits)
{
    EXPECT_EQ(chosen({{.version = "1.4", .minimumSystem = "1"}, {.version = "1.3"}}, ""), "1.3");
}

TEST(AppcastChoiceTest, AnArchiveThatIsTooLargeIsPassedOver)
{
    const std::string most = std::to_string(maximumArchiveBytes);
    const std::string more = std::to_string(maximumArchiveBytes + 1);
    EXPECT_EQ(
        chosen({{.version = "1.4", .bytes = more}, {.version = "1.3", .bytes = most}}), "1.3");
}

TEST(AppcastChoiceTest, OfEqualVersionsTheFirstIsTaken)
{
    EXPECT_EQ(chosen({{.version = "1.3.0"}, {.version = "1.3"}}), "1.3.0");
}

} // namespace
} // namespace Kestry
