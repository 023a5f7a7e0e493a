#include "ZoneCalendar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <tuple>
#include <vector>

#include "LedgerError.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

ZoneCalendar berlin()
{
    return {"Europe/Berlin", "de_DE"};
}

Date utc(int year, int month, int day, int hour = 0, int minute = 0, double second = 0.0)
{
    return dateInUtc(WallTime{CalendarDay{year, month, day}, hour, minute, second});
}

TEST(ZoneCalendar, CountsInstantsFromTheReferenceDate)
{
    EXPECT_EQ(utc(2001, 1, 1), Date{0.0});
    EXPECT_EQ(utc(1970, 1, 1), Date{-978307200.0});
    EXPECT_EQ(utc(2200, 1, 1), Date{6279811200.0});
    EXPECT_EQ(utc(2026, 3, 14, 9, 26, 53.5), Date{795173213.5});
}

TEST(ZoneCalendar, ShowsWhatTheClocksShowInItsZone)
{
    const WallTime winter{CalendarDay{2026, 1, 15}, 13, 30, 15.25};
    EXPECT_EQ(berlin().wallTime(utc(2026, 1, 15, 12, 30, 15.25)), winter);
    const WallTime summer{CalendarDay{2026, 7, 2}, 0, 30, 0.0};
    EXPECT_EQ(berlin().wallTime(utc(2026, 7, 1, 22, 30)), summer);
}

TEST(ZoneCalendar, FindsTheInstantOfAWallTime)
{
    EXPECT_EQ(
        berlin().date(WallTime{CalendarDay{2026, 7, 2}, 0, 30, 0.0}), utc(2026, 7, 1, 22, 30));
}

TEST(ZoneCalendar, KeepsFractionsOfASecondOnTheWayThere)
{
    const WallTime time{CalendarDay{2026, 3, 14}, 10, 26, 53.589};
    EXPECT_EQ(berlin().date(time), utc(2026, 3, 14, 9, 26, 53.589));
}

TEST(ZoneCalendar, FindsNoInstantForATimeThatTheClocksSkip)
{
    EXPECT_EQ(berlin().date(WallTime{CalendarDay{2026, 3, 29}, 2, 30, 0.0}), std::nullopt);
    EXPECT_EQ(berlin().date(WallTime{CalendarDay{2026, 3, 29}, 3, 0, 0.0}), utc(2026, 3, 29, 1, 0));
}

TEST(ZoneCalendar, TakesTheFirstOfTwoInstantsOfATimeShownTwice)
{
    EXPECT_EQ(
        berlin().date(WallTime{CalendarDay{2026, 10, 25}, 2, 30, 0.0}), utc(2026, 10, 25, 0, 30));
}

TEST(ZoneCalendar, BeginsADayAtMidnight)
{
    EXPECT_EQ(berlin().startOfDay(utc(2026, 7, 1, 22, 30)), utc(2026, 7, 1, 22, 0));
}

TEST(ZoneCalendar, BeginsADayWhoseMidnightIsSkippedWhenTheClocksHaveChanged)
{
    const ZoneCalendar santiago("America/Santiago", "es_CL");
    const Date first = santiago.startOfDay(CalendarDay{2026, 9, 6});
    EXPECT_EQ(first, utc(2026, 9, 6, 4, 0));
    EXPECT_EQ(santiago.wallTime(first), (WallTime{CalendarDay{2026, 9, 6}, 1, 0, 0.0}));
}

TEST(ZoneCalendar, StepsFromASkippedMidnightToTheNextMidnight)
{
    const ZoneCalendar santiago("America/Santiago", "es_CL");
    const Date next = santiago.startOfNextDay(utc(2026, 9, 6, 12, 0)).value();
    EXPECT_EQ(santiago.wallTime(next), (WallTime{CalendarDay{2026, 9, 7}, 0, 0, 0.0}));
}

TEST(ZoneCalendar, BeginsADayWhoseMidnightComesTwiceWithTheFirst)
{
    const ZoneCalendar havana("America/Havana", "es_CU");
    EXPECT_EQ(havana.startOfDay(CalendarDay{2026, 11, 1}), utc(2026, 11, 1, 4, 0));
}

TEST(ZoneCalendar, GivesDaysOfAClockChangeTheirOwnLength)
{
    const ZoneCalendar calendar = berlin();
    const Date spring = calendar.startOfDay(CalendarDay{2026, 3, 29});
    const Date autumn = calendar.startOfDay(CalendarDay{2026, 10, 25});
    EXPECT_EQ(calendar.startOfNextDay(spring).value() - spring, 23 * 3600.0);
    EXPECT_EQ(calendar.startOfNextDay(autumn).value() - autumn, 25 * 3600.0);
}

TEST(ZoneCalendar, NeverBeginsADayAfterAnInstantInIt)
{
    for (const char* zone : {"America/Santiago", "America/Havana", "Asia/Beirut", "Africa/Cairo",
             "Pacific/Apia", "Asia/Kathmandu", "Australia/Lord_Howe", "UTC"}) {
        const ZoneCalendar calendar(zone, "en_US");
        for (Date date = utc(2010, 1, 1); date < utc(2013, 1, 1); date = date + 1801.0) {
            const Date start = calendar.startOfDay(date);
            ASSERT_LE(start, date) << zone << date.seconds;
            ASSERT_EQ(calendar.day(start), calendar.day(date)) << zone << date.seconds;
            ASSERT_GT(calendar.startOfNextDay(date).value(), date) << zone << date.seconds;
        }
    }
}

TEST(ZoneCalendar, LetsANewDayStandWhereTheClocksGoBackOverItsMidnight)
{
    const ZoneCalendar stJohns("America/St_Johns", "en_CA");
    const Date shownOnceMore = utc(2009, 11, 1, 2, 50);
    EXPECT_EQ(stJohns.wallTime(shownOnceMore), (WallTime{CalendarDay{2009, 10, 31}, 23, 20, 0.0}));
    EXPECT_EQ(stJohns.startOfDay(shownOnceMore), utc(2009, 11, 1, 2, 30));
    EXPECT_EQ(stJohns.startOfNextDay(shownOnceMore), utc(2009, 11, 2, 3, 30));
    EXPECT_EQ(stJohns.dayOfMonth(shownOnceMore), 1);
    EXPECT_EQ(stJohns.month(shownOnceMore).value().start, utc(2009, 11, 1, 2, 30));
    EXPECT_EQ(stJohns.daysInMonth(shownOnceMore), 30);
    EXPECT_EQ(stJohns.monthsBetween(utc(2009, 10, 31, 12), shownOnceMore), 1);
}

TEST(ZoneCalendar, AnswersAlikeWhateverItWasAskedBefore)
{
    const ZoneCalendar asked = berlin();
    std::vector<Date> dates;
    for (const Date change : {utc(2026, 3, 29, 1), utc(2026, 10, 25, 1), utc(2026, 7, 1)}) {
        for (const double later : {-90'000.0, -3'600.0, -0.25, 0.0, 3'600.0, 90'000.0}) {
            dates.push_back(change + later);
        }
    }
    for (const Date before : dates) {
        for (const Date date : dates) {
            std::ignore = asked.wallTime(before);
            ASSERT_EQ(asked.startOfNextDay(date), berlin().startOfNextDay(date)) << date.seconds;
        }
    }
}

TEST(ZoneCalendar, SpansAMonthFromItsFirstMomentToThatOfTheNext)
{
    const MonthInterval december = berlin().month(utc(2026, 12, 31, 22, 59)).value();
    EXPECT_EQ(december.start, utc(2026, 11, 30, 23, 0));
    EXPECT_EQ(december.end, utc(2026, 12, 31, 23, 0));
    EXPECT_EQ(berlin().dayOfMonth(utc(2026, 12, 31, 22, 59)), 31);
}

TEST(ZoneCalendar, KnowsTheLengthOfMonths)
{
    EXPECT_EQ(berlin().daysInMonth(utc(2026, 2, 10)), 28);
    EXPECT_EQ(berlin().daysInMonth(utc(2028, 2, 10)), 29);
    EXPECT_EQ(berlin().daysInMonth(utc(2100, 2, 10)), 28);
    EXPECT_EQ(berlin().daysInMonth(utc(2026, 12, 10)), 31);
}

TEST(ZoneCalendar, YieldsNothingForDatesBeyondItsReach)
{
    for (const double seconds : {1e12, -1e12, std::numeric_limits<double>::infinity(),
             std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(berlin().daysInMonth(Date{seconds}), std::nullopt);
        EXPECT_EQ(berlin().startOfNextDay(Date{seconds}), std::nullopt);
        EXPECT_FALSE(berlin().month(Date{seconds}).has_value());
    }
}

TEST(ZoneCalendar, CountsMonthsInItsOwnZone)
{
    EXPECT_EQ(berlin().monthsBetween(utc(2025, 11, 30, 23, 30), utc(2026, 3, 1)), 3);
    EXPECT_EQ(berlin().monthsBetween(utc(2025, 11, 30, 22, 30), utc(2026, 3, 1)), 4);
    EXPECT_EQ(berlin().monthsBetween(utc(2026, 3, 1), utc(2026, 3, 31, 12)), 0);
}

TEST(ZoneCalendar, TakesTheWeekendFromTheCountry)
{
    const Date friday = utc(2026, 3, 13, 12);
    const Date sunday = utc(2026, 3, 15, 12);
    const ZoneCalendar cairo("Africa/Cairo", "ar_EG");
    EXPECT_TRUE(cairo.isWeekend(friday));
    EXPECT_FALSE(cairo.isWeekend(sunday));
    EXPECT_FALSE(berlin().isWeekend(friday));
    EXPECT_TRUE(berlin().isWeekend(sunday));
}

TEST(ZoneCalendar, FollowsTheSystemsZoneFilesAndNotOlderData)
{
    const ZoneCalendar mexico("America/Mexico_City", "es_MX");
    EXPECT_EQ(mexico.day(utc(2026, 7, 1, 5, 10)), (CalendarDay{2026, 6, 30}));
    EXPECT_EQ(mexico.date(WallTime{CalendarDay{2026, 7, 1}, 10, 0, 0.0}), utc(2026, 7, 1, 16, 0));
    const ZoneCalendar juarez("America/Ciudad_Juarez", "es_MX");
    EXPECT_EQ(juarez.startOfDay(CalendarDay{2026, 7, 1}), utc(2026, 7, 1, 6, 0));
}

TEST(ZoneCalendar, TakesAChangedZoneFileAtOnce)
{
    const TemporaryDirectory folder;
    const ZoneFiles files(folder.path());
    const auto noon = [&] {
        return ZoneCalendar("Home", "en_US", files).wallTime(utc(2026, 1, 1, 12)).hour;
    };
    for (const auto& [zone, hour] : {std::pair("Asia/Tokyo", 21), std::pair("Etc/GMT+3", 9)}) {
        std::filesystem::copy_file("/usr/share/zoneinfo/" + std::string(zone), folder.path("Home"),
            std::filesystem::copy_options::overwrite_existing);
        EXPECT_EQ(noon(), hour) << zone;
    }
}

TEST(ZoneCalendar, RefusesAZoneFileThatMakesNoSense)
{
    const TemporaryDirectory folder;
    std::ofstream(folder.path("Home")) << "TZif2 and no more";
    EXPECT_THAT([&] { ZoneCalendar("Home", "en_US", ZoneFiles(folder.path())); },
        testing::ThrowsMessage<LedgerError>(
            "The system's file of the time zone \"Home\" makes no sense. Please install the "
            "system's time zone data again."));
}

TEST(ZoneCalendar, HasTheUnicodeLibrarysRulesWhereThereAreNoZoneFiles)
{
    const ZoneCalendar calendar("Europe/Berlin", "de_DE", ZoneFiles("/nonexistent"));
    const ZoneCalendar files = berlin();
    for (Date date = utc(2025, 1, 1); date < utc(2027, 1, 1); date = date + 10'801.0) {
        ASSERT_EQ(calendar.wallTime(date), files.wallTime(date)) << date.seconds;
        ASSERT_EQ(calendar.startOfNextDay(date), files.startOfNextDay(date)) << date.seconds;
    }
    EXPECT_EQ(calendar.date(WallTime{CalendarDay{2026, 3, 29}, 2, 30, 0.0}), std::nullopt);
}

TEST(ZoneCalendar, GoesOnByTheRuleAfterTheYearsThatAFileLists)
{
    for (const int year : {2037, 2038, 2200, 2395, 2397, 2400, 2436, 2438, 2700, 9000}) {
        EXPECT_EQ(berlin().wallTime(utc(year, 7, 1, 12)).hour, 14) << year;
        EXPECT_EQ(berlin().wallTime(utc(year, 12, 1, 12)).hour, 13) << year;
    }
}

TEST(ZoneCalendar, IsOfAZoneThatThereIs)
{
    EXPECT_EQ(ZoneCalendar("US/Pacific", "en_US").timeZone(), "US/Pacific");
    EXPECT_THROW(ZoneCalendar("US/Pacifi", "en_US"), LedgerError);
}

TEST(ZoneCalendar, TellsDaysThatThereAreNot)
{
    EXPECT_TRUE(isCalendarDay({2028, 2, 29}));
    EXPECT_FALSE(isCalendarDay({2026, 2, 29}));
    EXPECT_FALSE(isCalendarDay({2026, 13, 1}));
    EXPECT_FALSE(isCalendarDay({2026, 0, 1}));
    EXPECT_FALSE(isCalendarDay({2026, 4, 0}));
}

TEST(ZoneCalendar, CountsDaysAcrossTheEndOfAYear)
{
    EXPECT_EQ(daysAfter({2026, 12, 31}, 1), (CalendarDay{2027, 1, 1}));
    EXPECT_EQ(daysAfter({2028, 3, 1}, -1), (CalendarDay{2028, 2, 29}));
}

} // namespace
} // namespace KestryCore
