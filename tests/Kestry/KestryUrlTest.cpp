#include "KestryUrl.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

TEST(KestryUrl, IsTakenApartIntoItsParts)
{
    const KestryUrl url("kestry://update?token=abc&other=1#token=x");
    EXPECT_EQ(url.scheme(), "kestry");
    EXPECT_EQ(url.host(), "update");
    EXPECT_EQ(url.queryItem("token"), "abc");
    EXPECT_EQ(url.queryItem("other"), "1");
    EXPECT_EQ(url.queryItem("none"), std::nullopt);
}

TEST(KestryUrl, UserPortAndPathAreNotTheHost)
{
    for (const char* text : {"kestry://update", "kestry://update/", "kestry://update:80/a?b",
             "kestry://me@update", "kestry://a:b@update/path#x", "KESTRY://UPDATE?x"}) {
        EXPECT_EQ(KestryUrl(text).scheme(), "kestry") << text;
        EXPECT_EQ(KestryUrl(text).host(), "update") << text;
    }
}

TEST(KestryUrl, WhatIsNoUrlHasNoParts)
{
    for (const char* text : {"", "kestry", "kestry:update?token=1", "//update", "://update",
             "kes try://update", "kestry:/update"}) {
        EXPECT_EQ(KestryUrl(text).scheme(), "") << text;
        EXPECT_EQ(KestryUrl(text).host(), "") << text;
    }
}

TEST(KestryUrl, TheFirstItemOfANameCounts)
{
    EXPECT_EQ(KestryUrl("a://b?token=1&token=2").queryItem("token"), "1");
    EXPECT_EQ(KestryUrl("a://b?token&token=2").queryItem("token"), std::nullopt);
    EXPECT_EQ(KestryUrl("a://b?token=").queryItem("token"), "");
    EXPECT_EQ(KestryUrl("a://b?token=1=2").queryItem("token"), "1=2");
}

TEST(KestryUrl, EscapesAreResolvedInNamesAndValues)
{
    EXPECT_EQ(KestryUrl("a://b?to%6ben=%2d%26").queryItem("token"), "-&");
}

TEST(KestryUrl, AQueryWithABrokenEscapeHasNoItems)
{
    for (const char* query : {"%", "%4", "%zz", "%+1"}) {
        const KestryUrl url(std::string("a://b?token=1&x=") + query);
        EXPECT_EQ(url.host(), "b");
        EXPECT_EQ(url.queryItem("token"), std::nullopt) << query;
    }
}

} // namespace
} // namespace Kestry
