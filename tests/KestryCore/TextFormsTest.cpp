#include "TextForms.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "LedgerError.h"

namespace KestryCore {
namespace {

using testing::ThrowsMessage;

constexpr const char* emDash = "\xE2\x80\x94";
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

MoneyText american()
{
    return MoneyText("en_US");
}

TEST(Money, HasTwoDecimalsAndGroups)
{
    EXPECT_EQ(american().money(123450.0), "$1,234.50");
    EXPECT_EQ(american().money(0.0), "$0.00");
    EXPECT_EQ(american().money(100'000'000.0), "$1,000,000.00");
}

TEST(Money, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(american().money(0.5), "$0.01");
    EXPECT_EQ(american().money(1.5), "$0.02");
    EXPECT_EQ(american().money(2.5), "$0.03");
    EXPECT_EQ(american().money(100.5), "$1.01");
    EXPECT_EQ(american().money(4.1666), "$0.04");
}

TEST(Money, FollowsTheLocaleAndStaysInDollars)
{
    EXPECT_EQ(MoneyText("de_DE").money(123450.0), "1.234,50\u00A0$");
    EXPECT_EQ(MoneyText("en_CA").money(2500.0), "US$25.00");
}

TEST(WholeMoney, HasNoDecimalsAndRoundsHalvesAwayFromZero)
{
    EXPECT_EQ(american().wholeMoney(123450.0), "$1,235");
    EXPECT_EQ(american().wholeMoney(123449.0), "$1,234");
    EXPECT_EQ(american().wholeMoney(50.0), "$1");
    EXPECT_EQ(american().wholeMoney(250.0), "$3");
}

TEST(Rate, IsWrittenLongShortAndCompact)
{
    EXPECT_EQ(american().rateLong(15000), "$150.00 / hour");
    EXPECT_EQ(american().rateShort(15000), "$150.00 / hr");
    EXPECT_EQ(american().rateCompact(15000), "$150/hr");
    EXPECT_EQ(american().rateCompact(15050), "$150.50/hr");
    EXPECT_EQ(american().rateCompact(0), "$0/hr");
}

TEST(Rate, FollowsTheLocaleWithinTheSameFrame)
{
    const MoneyText german("de_DE");
    EXPECT_EQ(german.rateLong(123450), "1.234,50\u00A0$ / hour");
    EXPECT_EQ(german.rateShort(123450), "1.234,50\u00A0$ / hr");
    EXPECT_EQ(german.rateCompact(123400), "1.234\u00A0$/hr");
    EXPECT_EQ(german.rateCompact(123450), "1.234,50\u00A0$/hr");
}

TEST(ClockText, PadsToTwoDigitsAndHasNoLimitOfHours)
{
    EXPECT_EQ(clockText(25449.0), "07:04:09");
    EXPECT_EQ(clockText(442805.0), "123:00:05");
    EXPECT_EQ(clockText(0.0), "00:00:00");
}

TEST(ClockText, CutsSecondsOff)
{
    EXPECT_EQ(clockText(59.9), "00:00:59");
    EXPECT_EQ(clockText(3599.999), "00:59:59");
}

TEST(ClockText, CountsANegativeLengthAsNothing)
{
    EXPECT_EQ(clockText(-0.5), "00:00:00");
    EXPECT_EQ(clockText(-1.0), "00:00:00");
    EXPECT_EQ(clockText(-1e18), "00:00:00");
}

TEST(ClockText, IsADashWhereNothingCanBeCounted)
{
    for (const double seconds :
        {infinity, -infinity, notANumber, 9223372036854775808.0, -9223372036854775808.0, 1e300}) {
        EXPECT_EQ(clockText(seconds), emDash) << seconds;
    }
    EXPECT_EQ(clockText(std::nextafter(9223372036854775808.0, 0.0)), "2562047788015215:13:04");
}

TEST(DurationText, IsWrittenInHoursAndMinutesWithoutPadding)
{
    EXPECT_EQ(durationText(0.0), "0h 0m");
    EXPECT_EQ(durationText(43500.0), "12h 5m");
    EXPECT_EQ(durationText(2'678'400.0), "744h 0m");
}

TEST(DurationText, CutsMinutesOff)
{
    EXPECT_EQ(durationText(59.9), "0h 0m");
    EXPECT_EQ(durationText(3599.0), "0h 59m");
    EXPECT_EQ(durationText(3600.0), "1h 0m");
}

TEST(DurationText, CountsANegativeLengthAsNothing)
{
    EXPECT_EQ(durationText(-0.5), "0h 0m");
    EXPECT_EQ(durationText(-1e18), "0h 0m");
    EXPECT_EQ(durationText(-90.0), "0h 0m");
}

TEST(DurationText, IsADashWhereNothingCanBeCounted)
{
    for (const double seconds :
        {infinity, -infinity, notANumber, 9223372036854775808.0 * 60.0, 1e300}) {
        EXPECT_EQ(durationText(seconds), emDash) << seconds;
    }
    EXPECT_EQ(durationText(9223372036854775808.0), "2562047788015215h 28m");
}

TEST(EditRateText, HasAPointAndTwoDecimals)
{
    EXPECT_EQ(editRateText(15000), "150.00");
    EXPECT_EQ(editRateText(5), "0.05");
    EXPECT_EQ(editRateText(0), "0.00");
    EXPECT_EQ(editRateText(100'000'000), "1000000.00");
}

TEST(EditRateText, HasAPointWhereMoneyHasAComma)
{
    EXPECT_EQ(MoneyText("de_DE").money(15000.0), "150,00\u00A0$");
    EXPECT_EQ(editRateText(15000), "150.00");
    EXPECT_EQ(editRateText(123456789), "1234567.89");
}

TEST(EditRateText, TakesTheLargestRateThatALedgerCanHold)
{
    EXPECT_EQ(editRateText(std::numeric_limits<Cents>::max()), "92233720368547760.00");
    EXPECT_EQ(editRateText(std::numeric_limits<Cents>::min()), "-92233720368547760.00");
}

TEST(EditHoursText, IsTheWholeHours)
{
    EXPECT_EQ(editHoursText(7 * 3600.0 + 3599.9), "7");
    EXPECT_EQ(editHoursText(0.0), "0");
}

TEST(EditMinutesText, RoundsHundredthsDownAndNeverReachesAnHour)
{
    EXPECT_EQ(editMinutesText(3600.0 + 249.0), "4.15");
    EXPECT_EQ(editMinutesText(1800.0), "30.00");
    EXPECT_EQ(editMinutesText(3599.9999), "59.99");
    EXPECT_EQ(editMinutesText(7200.0), "0.00");
    EXPECT_EQ(editMinutesText(0.599), "0.00");
    EXPECT_EQ(editMinutesText(0.6), "0.01");
    EXPECT_EQ(editMinutesText(2'678'399.999), "59.99");
}

TEST(ReadRate, ReadsDollarsAsCents)
{
    EXPECT_EQ(readRate("0"), 0);
    EXPECT_EQ(readRate("0.00"), 0);
    EXPECT_EQ(readRate("-0"), 0);
    EXPECT_EQ(readRate("1000000"), 100'000'000);
    EXPECT_EQ(readRate("1e2"), 10'000);
    EXPECT_EQ(readRate("12.34"), 1'234);
    EXPECT_EQ(readRate("1.10"), 110);
    EXPECT_EQ(readRate("+5"), 500);
    EXPECT_EQ(readRate(".5"), 50);
    EXPECT_EQ(readRate("5."), 500);
    EXPECT_EQ(readRate("1E+2"), 10'000);
    EXPECT_EQ(readRate("0.29"), 29);
    EXPECT_EQ(readRate("999999.99"), 99'999'999);
}

TEST(ReadRate, TakesWhatIsTooSmallForANumberForNothing)
{
    for (const char* text : {"1e-320", "1e-400", "123.5e-999", "-1e-400", "1E-99999999999999999999",
             "0.5e-400", "100e-402"}) {
        EXPECT_EQ(readRate(text), 0) << text;
    }
    EXPECT_EQ(readRate("0." + std::string(400, '0') + "1"), 0);
    for (const char* text : {"1e400", "1e99999999999999999999", "0.0001e999", "1e-400x"}) {
        EXPECT_THROW((void)readRate(text), LedgerError) << text;
    }
    EXPECT_THROW((void)readRate(std::string(400, '1') + "e-10"), LedgerError);
}

TEST(ReadRate, TakesBlanksForNoRate)
{
    EXPECT_EQ(readRate(""), std::nullopt);
    EXPECT_EQ(readRate(" \t\n\u00A0"), std::nullopt);
}

TEST(ReadRate, IgnoresBlanksAround)
{
    EXPECT_EQ(readRate("  150.5\n"), 15'050);
}

TEST(ReadRate, RefusesEverythingElse)
{
    for (const char* text : {"1000000.01", "-1", "-0.01", "1,000", "abc", "1.005", "12.345", "$5",
             "5,50", "5 0", "inf", "nan", "infinity", "1e400", "1000000.000001", "0.00001", "0x10",
             "+-5", ".", "1e", "5USD", "++5", "+", "12abc", "\u0665", "5\u00A0000"}) {
        EXPECT_THAT([&] { (void)readRate(text); },
            ThrowsMessage<LedgerError>("Enter a USD hourly rate from 0 to 1,000,000 with up to two "
                                       "decimal places."))
            << text;
    }
}

TEST(ReadRate, EndsAtTheEndOfTheTextAndNotAtANullByte)
{
    EXPECT_THROW((void)readRate(std::string_view("5\0", 2)), LedgerError);
}

TEST(ReadRate, ReadsBackWhatWasPutIntoTheField)
{
    for (const Cents cents : {0L, 1L, 29L, 99L, 101L, 15'050L, 99'999'999L, 100'000'000L}) {
        EXPECT_EQ(readRate(editRateText(cents)), cents);
    }
}

TEST(ReadHoursAndMinutes, ReadsSeconds)
{
    EXPECT_EQ(readHoursAndMinutes("744", "0"), 2'678'400.0);
    EXPECT_EQ(readHoursAndMinutes("0", "59.99"), 59.99 * 60.0);
    EXPECT_EQ(readHoursAndMinutes("1", "30"), 5400.0);
    EXPECT_EQ(readHoursAndMinutes("1e1", "0.5"), 36'030.0);
    EXPECT_EQ(readHoursAndMinutes("+1", "-0"), 3600.0);
}

TEST(ReadHoursAndMinutes, KeepsTheExactLengthOfUntouchedFields)
{
    const double stored = 3600.0 + 249.0 + 0.123456;
    EXPECT_EQ(readHoursAndMinutes("1", "4.15", stored), stored);
    EXPECT_EQ(readHoursAndMinutes("1", "4.1500", stored), 3600.0 + 4.15 * 60.0);
    EXPECT_EQ(readHoursAndMinutes("2", "4.15", stored), 7200.0 + 4.15 * 60.0);
    EXPECT_EQ(readHoursAndMinutes("0", "0.00", 0.25), 0.25);
    EXPECT_THROW((void)readHoursAndMinutes("0", "0", 0.25), LedgerError);
}

TEST(ReadHoursAndMinutes, RefusesEverythingElse)
{
    const std::pair<const char*, const char*> fields[] = {{"744", "1"}, {"0", "0"}, {"1.5", "0"},
        {"1", "60"}, {"", "5"}, {"5", ""}, {" 1", "0"}, {"1", " 0"}, {"-1", "0"}, {"1", "-1"},
        {"745", "0"}, {"nan", "0"}, {"1", "inf"}, {"x", "0"}, {"1 ", "0"}, {"1", "0 "},
        {"0x1", "0"}, {"1,0", "0"}, {"1", "0,5"}, {"1e400", "0"}, {"743", "60.0"}};
    for (const auto& field : fields) {
        EXPECT_THAT([&] { (void)readHoursAndMinutes(field.first, field.second); },
            ThrowsMessage<LedgerError>(
                "Enter whole hours and minutes from 0 to 59. The duration must be greater than "
                "zero and no more than 744 hours (31 days)."))
            << field.first << ":" << field.second;
    }
}

} // namespace
} // namespace KestryCore
