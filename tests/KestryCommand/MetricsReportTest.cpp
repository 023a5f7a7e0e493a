#include "CommandFixture.h"

namespace Kestry {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// It is nine o'clock on 14 March 2026.
class MetricsReport : public CommandFixture {
protected:
    MetricsReport()
    {
        done({"client", "add", "Aster"});
        done({"project", "add", "aster", "Website", "--rate", "150"});
        done({"client", "add", "Birch"});
    }

    void work(const std::string& client, const std::string& start, const std::string& duration)
    {
        std::vector<std::string> words{"add", client, "--start", start, "--duration", duration};
        if (client == "aster") {
            words.insert(words.begin() + 2, "website");
        }
        done(words);
    }
};

TEST_F(MetricsReport, ShowsWhereTheCurrentMonthIsHeading)
{
    work("aster", "2026-03-02 10:00", "2h");
    work("aster", "2026-03-13 23:00", "1h30m");
    EXPECT_THAT(done({"report"}),
        StartsWith("Month               2026-03  UTC\n"
                   "Billable earnings   $525.00  Recorded billable value\n"
                   "Tracked time        3h 30m   Across 2 sessions\n"
                   "Projected earnings  $1,163   At your daily pace\n"
                   "Projected time      7h 45m   At your daily pace\n"
                   "\n"
                   "DAY           TIME   EARNED\n"
                   "2026-03-01\n"
                   "2026-03-02   2h 0m  $300.00\n"
                   "2026-03-03\n"));
    EXPECT_THAT(console_.output,
        HasSubstr("2026-03-13   1h 0m  $150.00\n2026-03-14  0h 30m   $75.00\n2026-03-15\n"));
    EXPECT_THAT(console_.output, EndsWith("2026-03-31\n"));
}

TEST_F(MetricsReport, ShowsAnotherMonthAsAFinishedOne)
{
    work("aster", "2026-02-28 23:00", "2h");
    EXPECT_THAT(done({"report", "--month", "2026-02"}),
        StartsWith("Month               2026-02  UTC\n"
                   "Billable earnings   $150.00  Recorded billable value\n"
                   "Tracked time        1h 0m    Across 1 session\n"
                   "Month-end earnings  $150.00  Final billable value\n"
                   "Month-end time      1h 0m    Final tracked time\n"));
}

TEST_F(MetricsReport, NamesTimeWithoutAPrice)
{
    work("birch", "2026-03-02 10:00", "2h");
    EXPECT_THAT(
        done({"report"}), HasSubstr("Billable earnings   Rate not set  2h 0m still unpriced\n"));
    EXPECT_THAT(
        console_.output, HasSubstr("Projected earnings  Rate not set  Rate needed to estimate\n"));
    EXPECT_THAT(console_.output, HasSubstr("\n2026-03-02  2h 0m\n"));
    work("aster", "2026-03-03 10:00", "1h");
    EXPECT_THAT(done({"report"}), HasSubstr("Billable earnings   $150.00       2h 0m still"));
    EXPECT_THAT(
        console_.output, HasSubstr("Projected earnings  Rate not set  Rate needed to estimate\n"));
}

TEST_F(MetricsReport, TellsAMonthAsJson)
{
    work("aster", "2026-03-02 10:00", "2h");
    work("birch", "2026-03-03 10:00", "1h");
    done({"edit", "unassigned", "--no-billable"});
    EXPECT_THAT(done({"report", "--json"}),
        StartsWith(
            "{\"month\":\"2026-03\",\"timeZone\":\"UTC\",\"sessionCount\":2,"
            "\"seconds\":10800,\"earnedCents\":30000,\"projectedSeconds\":23914.285714285714,"
            "\"projectedCents\":66428.57142857142,\"billableSeconds\":7200,"
            "\"unpricedSeconds\":0,\"daily\":[{\"day\":\"2026-03-01\",\"date\":794016000,"
            "\"seconds\":0,\"earnedCents\":0},{\"day\":\"2026-03-02\",\"date\":794102400,"
            "\"seconds\":7200,\"earnedCents\":30000},"));
    EXPECT_THAT(console_.output,
        EndsWith("{\"day\":\"2026-03-31\",\"date\":796608000,\"seconds\":0,\"earnedCents\":0}],"
                 "\"text\":{\"earned\":\"$300.00\",\"projected\":\"$664\",\"duration\":\"3h 0m\","
                 "\"projectedDuration\":\"6h 38m\"}}\n"));
}

TEST_F(MetricsReport, TellsWordsOfAFinishedMonthAsJson)
{
    work("aster", "2026-02-02 10:00", "7h");
    EXPECT_THAT(done({"report", "--month", "2026-02", "--json"}),
        EndsWith(
            "\"text\":{\"earned\":\"$1,050.00\",\"projected\":\"$1,050.00\",\"duration\":\"7h 0m\","
            "\"projectedDuration\":\"7h 0m\"}}\n"));
    EXPECT_THAT(
        console_.output, HasSubstr("\"projectedSeconds\":25200,\"projectedCents\":105000,"));
}

TEST_F(MetricsReport, KeepsToOneClient)
{
    work("aster", "2026-03-02 10:00", "2h");
    work("birch", "2026-03-03 10:00", "1h");
    EXPECT_THAT(done({"report", "--client", "birch"}),
        StartsWith("Month               2026-03       UTC\n"
                   "Client              Birch\n"
                   "Billable earnings   Rate not set  1h 0m still unpriced\n"
                   "Tracked time        1h 0m         Across 1 session\n"));
    EXPECT_EQ(refused({"report", "--client", "x"}), "There is no client \"x\".");
}

TEST_F(MetricsReport, CountsTheSessionInProgressUpToItsMoment)
{
    done({"start", "aster", "website"});
    EXPECT_THAT(done({"report", "--at", "2026-03-14 11:00"}),
        HasSubstr("Tracked time        2h 0m    Across 1 session\n"));
    EXPECT_THAT(done({"report"}), HasSubstr("Across 0 sessions\n"));
    EXPECT_THAT(done({"report", "--month", "2026-03", "--at", "2026-04-02 11:00"}),
        HasSubstr("Tracked time        423h 0m     Across 1 session\n"));
}

TEST_F(MetricsReport, TakesTheMonthAndItsDaysFromTheTimeZone)
{
    work("aster", "2026-02-28 23:00", "2h");
    timeZone_ = "Asia/Tokyo";
    EXPECT_THAT(done({"report", "--json", "--month", "2026-02"}),
        HasSubstr("\"timeZone\":\"Asia\\/Tokyo\",\"sessionCount\":0"));
}

TEST_F(MetricsReport, SpeaksTheLanguageOfTheLocaleOnlyInText)
{
    work("aster", "2026-03-02 10:00", "10h");
    locale_ = "de_DE";
    const std::string json = done({"report", "--json"});
    EXPECT_THAT(json, HasSubstr("\"earned\":\"1.500,00\u00a0$\",\"projected\":\"3.321\u00a0$\""));
    EXPECT_THAT(json, HasSubstr("\"earnedCents\":150000,"));
}

TEST_F(MetricsReport, ShowsAClientsFiguresOfAllTime)
{
    work("aster", "2026-01-31 23:00", "2h");
    work("aster", "2026-03-02 10:00", "1h");
    EXPECT_EQ(done({"report", "--client", "aster", "--all-time"}),
        "Client              Aster\n"
        "Total earnings      $450.00     All-time billable value\n"
        "Total hours         3h 0m       All time\n"
        "Hours this month    1h 0m       2026-03\n"
        "Avg. hours / month  1h 0m       Across 3 calendar months\n"
        "First session       2026-01-31\n");
}

TEST_F(MetricsReport, NamesAClientsTimeWithoutAPrice)
{
    EXPECT_THAT(done({"report", "--client", "birch", "--all-time"}),
        EndsWith("Avg. hours / month  0h 0m  No tracked time yet\n"));
    work("birch", "2026-03-02 10:00", "2h");
    EXPECT_THAT(done({"report", "--client", "birch", "--all-time"}),
        EndsWith("Avg. hours / month  2h 0m         Across 1 calendar month\n"
                 "First session       2026-03-02\n"
                 "2h 0m of billable time has no rate and is excluded from earnings.\n"));
    EXPECT_THAT(console_.output, HasSubstr("Total earnings      Rate not set  All-time"));
}

TEST_F(MetricsReport, TellsAClientsFiguresAsJson)
{
    work("birch", "2026-03-02 10:00", "2h");
    EXPECT_EQ(done({"report", "--client", "birch", "--all-time", "--json"}),
        "{\"client\":\"Birch\",\"seconds\":7200,\"earnedCents\":0,\"monthSeconds\":7200,"
        "\"averageMonthlySeconds\":7200,\"monthCount\":1,\"firstSessionDate\":794138400,"
        "\"unpricedSeconds\":7200}\n");
    EXPECT_THAT(done({"report", "--client", "aster", "--all-time", "--json"}),
        HasSubstr("\"monthCount\":0,\"firstSessionDate\":null,"));
}

TEST_F(MetricsReport, ColorsOnlyATerminalAndNeverWithNoColor)
{
    console_.isTerminal = true;
    EXPECT_THAT(done({"report"}), HasSubstr("\x1B[32m2026-03-14\x1B[0m"));
    environment_["NO_COLOR"] = "1";
    EXPECT_THAT(done({"report"}), Not(HasSubstr("\x1B[")));
}

TEST_F(MetricsReport, ShowsTheBackupOfADamagedLedgerAndSaysSo)
{
    work("aster", "2026-03-02 10:00", "2h");
    work("aster", "2026-03-03 10:00", "2h");
    damageLedger();
    EXPECT_THAT(done({"report"}), HasSubstr("Across 1 session\n"));
    EXPECT_THAT(console_.errors, StartsWith("The ledger could not be read. Your backup"));
}

} // namespace
} // namespace Kestry
