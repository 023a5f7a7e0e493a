#include "SqlitePosition.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>

namespace KestryCore {
namespace {

TEST(SqlitePosition, ACursorComesBack)
{
    const SqlitePosition last{std::numeric_limits<std::int64_t>::max(), "0123456789abcdef"};
    const SqliteReading longest{last, last.change, last};
    for (const SqliteReading& reading :
        {SqliteReading{{0, "ab"}, 0, {}}, SqliteReading{{12, "0f"}, 7, {}},
            SqliteReading{{12, "0f"}, 0, SqlitePosition{14, "ab"}}, longest}) {
        EXPECT_EQ(SqliteReading::of(reading.cursor()), reading);
    }
}

TEST(SqlitePosition, TheVersionOfARecordIsThePlaceOfItsChange)
{
    const SqlitePosition position{12, "ab"};
    EXPECT_EQ(position.text(), "12-ab");
    EXPECT_EQ(SqliteReading::of({"12-ab"}), (SqliteReading{position, 0, {}}));
}

TEST(SqlitePosition, OtherBytesAreNoCursor)
{
    for (const std::string& bytes : {std::string(), std::string("-"), std::string("12"),
             std::string("12-"), std::string("-ab"), std::string("-1-ab"), std::string("+1-ab"),
             std::string("012-ab"), std::string("1 -ab"), std::string("12-AB"),
             std::string("12-ab-"), std::string("12-ab-0"), std::string("12-ab-07"),
             std::string("12-ab/"), std::string("12-ab/13"), std::string("12-ab/13-"),
             std::string("12-ab/13-cd-7"), std::string("12-ab/13-cd/14-ef"), std::string("/13-cd"),
             std::string("12-ab-7-"), std::string("12-ab-7\n"), std::string("12-ab\0", 6),
             std::string("9223372036854775808-ab"), "1-" + std::string(200, 'a')}) {
        EXPECT_EQ(SqliteReading::of({bytes}), std::nullopt) << bytes;
    }
}

TEST(SqlitePosition, AnyBytesAreRefusedOrAreWhatIsWritten)
{
    const auto letters = rc::gen::container<std::string>(
        rc::gen::elementOf(std::string("0123456789abcdef---// \n")));
    EXPECT_TRUE(rc::check([&] {
        const CloudCursor cursor{*letters};
        const auto reading = SqliteReading::of(cursor);
        const bool isItsOwn = !reading || reading->cursor() == cursor;
        RC_ASSERT(isItsOwn);
    }));
}

} // namespace
} // namespace KestryCore
