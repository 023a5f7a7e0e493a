#include "Durations.h"

#include <gmock/gmock.h>

#include "UsageError.h"

namespace Kestry {
namespace {

using testing::ThrowsMessage;

TEST(ReadDuration, ReadsUnits)
{
    EXPECT_EQ(readDuration("1h30m"), 5400.0);
    EXPECT_EQ(readDuration("90m"), 5400.0);
    EXPECT_EQ(readDuration("1h"), 3600.0);
    EXPECT_EQ(readDuration("45s"), 45.0);
    EXPECT_EQ(readDuration("2h0m5s"), 7205.0);
    EXPECT_EQ(readDuration("0m"), 0.0);
    EXPECT_EQ(readDuration("744h"), 2'678'400.0);
}

TEST(ReadDuration, ReadsAFractionInTheLastPart)
{
    EXPECT_EQ(readDuration("1.5h"), 5400.0);
    EXPECT_EQ(readDuration("1h0.5m"), 3630.0);
    EXPECT_EQ(readDuration("0.25s"), 0.25);
}

TEST(ReadDuration, ReadsHoursAndMinutesWithColons)
{
    EXPECT_EQ(readDuration("1:30"), 5400.0);
    EXPECT_EQ(readDuration("01:30:15"), 5415.0);
    EXPECT_EQ(readDuration("744:00"), 2'678'400.0);
}

TEST(ReadDuration, AllowsBlanksBetweenPartsAndAround)
{
    EXPECT_EQ(readDuration(" 1 h 30 m "), 5400.0);
}

TEST(ReadDuration, RefusesABareNumberWhichDoesNotSayOfWhat)
{
    EXPECT_THAT([] { (void)readDuration("90"); },
        ThrowsMessage<UsageError>(
            "\"90\" is no length of time. Give one as in 1h30m, 90m, 1.5h or 1:30."));
}

TEST(ReadDuration, RefusesNonsense)
{
    for (const char* text : {"", " ", "h", "-1h", "+1h", "1h90m", "30m1h", "1h1h", "1.5h30m", "1.h",
             ".5h", "1,5h", "1:60", "1:5", "1:30:60", "1:30:", ":30", "1h30", "1e3m", "infh", "nan",
             "1d", "1h x", "99999999h", "1H30M", "1\n30"}) {
        EXPECT_THROW((void)readDuration(text), UsageError) << text;
    }
}

} // namespace
} // namespace Kestry
