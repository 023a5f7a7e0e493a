#include "StartedText.h"

#include <gtest/gtest.h>

#include "Instants.h"
#include "LedgerError.h"

namespace Kestry {
namespace {

using KestryCore::Date;
using KestryCore::ZoneCalendar;

class StartedTextTest : public ::testing::Test {
protected:
    /// What a text means on Saturday, March 14, 2026 at 10:26 in Berlin, as kestryctl writes it.
    [[nodiscard]] std::string read(const char* text, const char* locale = "en_US") const
    {
        const StartedText form{QLocale(locale)};
        return instantText(form.read(text, now, calendar), calendar);
    }
    [[nodiscard]] std::string refusal(const char* text) const
    {
        try {
            return read(text);
        } catch (const KestryCore::LedgerError& error) {
            return error.what();
        }
    }

    ZoneCalendar calendar{"Europe/Berlin", "en_US"};
    Date now = *calendar.date({{2026, 3, 14}, 10, 26, 53.5});
};

TEST_F(StartedTextTest, ATextIsWrittenInTheUsersLocaleWithTheWholeYear)
{
    EXPECT_EQ("3/14/2026, 10:26 AM", StartedText(QLocale("en_US")).text(now, calendar));
    EXPECT_EQ("14.03.2026, 10:26", StartedText(QLocale("de_DE")).text(now, calendar));
    EXPECT_EQ("2026-03-14, 10:26", StartedText(QLocale("sv_SE")).text(now, calendar));
}

TEST_F(StartedTextTest, WhatIsWrittenIsReadAgainInEveryLocale)
{
    const Date evening = *calendar.date({{2007, 11, 2}, 21, 5, 0.0});
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    ASSERT_GT(locales.size(), 300);
    for (const QLocale& locale : locales) {
        const StartedText form(locale);
        const QString text = form.text(evening, calendar);
        ASSERT_EQ(evening, form.read(text, now, calendar))
            << locale.name().toStdString() << ": " << text.toStdString();
    }
}

TEST_F(StartedTextTest, ADateHasTheOrderOfTheLocaleAndAnySeparator)
{
    EXPECT_EQ("2026-03-07 14:30", read("3/7/2026, 2:30 PM"));
    EXPECT_EQ("2026-03-07 14:30", read("03-07-2026 14:30"));
    EXPECT_EQ("2026-07-03 14:30", read("2026-07-03 14:30"));
    EXPECT_EQ("2025-07-03 14:30", read("3.7.2025 14:30", "de_DE"));
    EXPECT_EQ("2025-07-03 14:30", read("3/7/2025, 14:30", "en_GB"));
}

TEST_F(StartedTextTest, AShortYearOrNoneMeansTheLatestThatHasPassed)
{
    EXPECT_EQ("2026-03-07 09:05", read("7.3.26 9:05", "de_DE"));
    EXPECT_EQ("2026-03-07 09:05", read("7.3. 9:05", "de_DE"));
    EXPECT_EQ("2025-12-24 09:05", read("12/24 9:05"));
    EXPECT_EQ("1999-12-24 09:05", read("12/24/99 9:05"));
}

TEST_F(StartedTextTest, WordsAndLengthsBeforeNowAreUnderstood)
{
    EXPECT_EQ("2026-03-13 14:30", read("yesterday 14:30"));
    EXPECT_EQ("2026-03-13 14:30", read("Yesterday, 2:30pm"));
    EXPECT_EQ("2026-03-14 09:00", read("today 9 am"));
    EXPECT_EQ("2026-03-14 08:26", read("-2h"));
    EXPECT_EQ("2026-03-14 09:05", read("9:05"));
    EXPECT_EQ("2026-03-14 09:26", read("2026-03-14T08:26:00Z"));
}

TEST_F(StartedTextTest, NoonAndMidnightAreTold)
{
    EXPECT_EQ("2026-03-13 12:00", read("yesterday 12 pm"));
    EXPECT_EQ("2026-03-13 00:15", read("yesterday 12:15 am"));
}

TEST_F(StartedTextTest, WhatIsNoMomentIsRefusedWithAnExample)
{
    for (const char* text : {"", "soon", "13/45/2026 10:00", "3/7/2026", "25:00", "9:5", "13 pm",
             "yesterday", "2/29/2025 10:00", "3/7/2026 10:00 10:00", "7"}) {
        EXPECT_EQ("Enter a date and time, as in 3/14/2026, 10:26 AM, yesterday 14:30 or -2h.",
            refusal(text))
            << text;
    }
}

TEST_F(StartedTextTest, ATimeThatTheClocksSkipIsRefused)
{
    EXPECT_EQ("The clocks skip that time on that day. Enter a time before or after it.",
        refusal("3/30/2025 2:30 AM"));
}

TEST_F(StartedTextTest, ATimeThatComesTwiceIsTheSecondOnlyBesideTheSecond)
{
    const Date later = now + 365.0 * 86400;
    const StartedText form{QLocale("en_US")};
    for (const auto& [zone, time, apart] :
        {std::tuple("Europe/Berlin", KestryCore::WallTime{{2026, 10, 25}, 2, 15, 40.25}, 3600.0),
            std::tuple(
                "Australia/Lord_Howe", KestryCore::WallTime{{2026, 4, 5}, 1, 45, 0.0}, 1800.0)}) {
        const ZoneCalendar there(zone, "en_US");
        const Date first = *there.date(time);
        const Date second = first + apart;
        const QString text = form.text(first, there);
        const Date minute = form.read(text, later, there);
        EXPECT_EQ(minute, form.read(text, later, there, first)) << zone;
        EXPECT_EQ(minute + apart, form.read(text, later, there, second)) << zone;
        EXPECT_EQ(minute, form.read(text, later, there, second + 86400.0)) << zone;
    }
}

TEST_F(StartedTextTest, ATimeWithItsZoneIsOneMomentAndNoOther)
{
    const StartedText form{QLocale("en_US")};
    const Date second = *calendar.date({{2025, 10, 26}, 2, 15, 0.0}) + 3600.0;
    for (const char* text :
        {"2025-10-26T00:31Z", "2025-10-26T02:31+02:00", "2025-10-26 02:31+02"}) {
        EXPECT_EQ(second + -44.0 * 60, form.read(text, now, calendar, second)) << text;
    }
    EXPECT_EQ(second + -3600.0, form.read("-1h", second, calendar, second));
}

TEST_F(StartedTextTest, TheLastOfFebruaryIsThatOfTheLatestLeapYear)
{
    EXPECT_EQ("2024-02-29 09:26", read("2/29 9:26"));
    EXPECT_EQ("2024-02-29 09:26", read("29.2. 9:26", "de_DE"));
    EXPECT_NE("", refusal("2/30 9:26"));
}

} // namespace
} // namespace Kestry
