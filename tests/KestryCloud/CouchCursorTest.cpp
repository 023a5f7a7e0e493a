#include "CouchCursor.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

CouchCursor sampleCursor()
{
    return {"incarnation", "device-a", {{"device-a", 7}, {"device-b", 2}}, false, "12-g1AA\"/"};
}

TEST(CouchCursorTest, WhatIsWrittenReadsTheSame)
{
    EXPECT_EQ(CouchCursor::decode(sampleCursor().encoded()), sampleCursor());
    EXPECT_EQ(CouchCursor::decode(CouchCursor().encoded()), CouchCursor());
}

TEST(CouchCursorTest, EqualCursorsHaveEqualBytes)
{
    EXPECT_EQ(sampleCursor().encoded(), sampleCursor().encoded());
}

TEST(CouchCursorTest, OtherBytesAreNoCursor)
{
    const std::string whole = sampleCursor().encoded().bytes;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(CouchCursor::decode({whole.substr(0, length)})) << length;
    }
    for (const char* const bytes : {"0", "[]", "{}", "null", "\"text\"",
             "{\"incarnation\":1,\"device\":\"\",\"deliveries\":{},\"first\":true,\"since\":"
             "\"\"}"}) {
        EXPECT_FALSE(CouchCursor::decode({bytes})) << bytes;
    }
}

TEST(CouchCursorTest, ACountNeverFalls)
{
    CouchCursor cursor = sampleCursor();
    cursor.see("device-a", 3);
    cursor.see("device-b", 5);
    cursor.see("device-c", 1);
    EXPECT_EQ(cursor.deliveries,
        (std::map<std::string, std::int64_t>{{"device-a", 7}, {"device-b", 5}, {"device-c", 1}}));
}

} // namespace
} // namespace Kestry
