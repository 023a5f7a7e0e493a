#include "CsvExport.h"

#include <gmock/gmock.h>

#include <locale>
#include <string>
#include <vector>

#include "SampleLedger.h"

namespace KestryCore {
namespace {

using testing::ElementsAre;

const std::string header =
    "Client,Project,Description,Start,End,Hours,Hourly rate,Earned,Billable,Rate known,"
    "Duration seconds,Recorded duration seconds,Source ID\r\n";

/// The columns, in their order.
enum Column {
    clientName,
    projectName,
    description,
    start,
    end,
    hours,
    hourlyRate,
    earned,
    billable,
    rateKnown,
    durationSeconds,
    recordedSeconds,
    sourceID,
};

/// The cells of the only line below the header, still in their quotes. For texts without a quote
/// followed by a comma.
std::vector<std::string> cellsOf(const std::string& csv)
{
    const std::string line = csv.substr(header.size(), csv.size() - header.size() - 2);
    std::vector<std::string> cells;
    std::size_t from = 0;
    for (auto next = line.find("\",\""); next != std::string::npos;
         next = line.find("\",\"", from)) {
        cells.push_back(line.substr(from, next + 1 - from));
        from = next + 2;
    }
    cells.push_back(line.substr(from));
    return cells;
}

std::vector<std::string> cells(const TimeEntry& entry)
{
    LedgerData ledger = Sample::ledger();
    ledger.entries = {entry};
    return cellsOf(exportCSV(ledger));
}

std::string cellOfTitle(const std::string& title)
{
    TimeEntry entry = Sample::entry();
    entry.title = title;
    return cells(entry).at(description);
}

TimeEntry lasting(double seconds)
{
    TimeEntry entry = Sample::entry();
    entry.spans = {{Date{0.0}, Date{seconds}}};
    return entry;
}

TimeEntry startingAt(double seconds)
{
    TimeEntry entry = Sample::entry();
    entry.spans = {{Date{seconds}, Date{seconds} + Sample::hour}};
    return entry;
}

/// How much of Europe writes numbers.
struct CommaAndGroups : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(CsvExport, IsTheHeaderAloneWithoutSessions)
{
    EXPECT_EQ(exportCSV(LedgerData{}), header);
}

TEST(CsvExport, WritesThirteenQuotedCellsForASession)
{
    EXPECT_EQ(exportCSV(Sample::ledger()),
        header
            + "\"Harbour Books\",\"Catalogue\",\"Proofs\",\"2025-11-16T15:33:20.000Z\","
              "\"2025-11-16T16:33:20.000Z\",\"1.000000\",\"150.00\",\"150.00\",\"true\",\"true\","
              "\"3600.0\",\"\",\"\"\r\n");
}

TEST(CsvExport, LeavesOutTheSessionInProgress)
{
    EXPECT_EQ(exportCSV(Sample::runningLedger()), exportCSV(Sample::ledger()));
}

TEST(CsvExport, SortsByStartAndKeepsTheStoredOrderOfEqualStarts)
{
    LedgerData ledger = Sample::ledger();
    ledger.entries = {};
    const std::pair<const char*, double> sessions[] = {
        {"late", 300.0}, {"first of two", 200.0}, {"early", -100.0}, {"second of two", 200.0}};
    for (const auto& [title, seconds] : sessions) {
        TimeEntry entry = startingAt(seconds);
        entry.title = title;
        ledger.entries.append(entry);
    }
    EXPECT_THAT(exportCSV(ledger),
        testing::ContainsRegex("\"early\"(.|\n)*\"first of two\"(.|\n)*\"second of two\"(.|\n)*"
                               "\"late\""));
}

TEST(CsvExport, PutsSessionsWithoutSpansFirstAtTheStartOfYearOne)
{
    LedgerData ledger = Sample::ledger();
    TimeEntry entry = Sample::entry(2);
    entry.spans = {};
    entry.title = "imported";
    ledger.entries.append(entry);
    EXPECT_THAT(exportCSV(ledger),
        testing::StartsWith(header
            + "\"Harbour Books\",\"Catalogue\",\"imported\",\"0001-01-01T00:00:00.000Z\","
              "\"0001-01-01T00:00:00.000Z\",\"0.000000\","));
}

TEST(CsvExport, DoublesQuotesAndKeepsLineEndsAndCommas)
{
    EXPECT_EQ(cellOfTitle("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(cellOfTitle("\""), "\"\"\"\"");
    EXPECT_EQ(cellOfTitle("one, two\r\nthree\nfour"), "\"one, two\r\nthree\nfour\"");
}

TEST(CsvExport, PutsAnApostropheBeforeWhatLooksLikeAFormula)
{
    EXPECT_EQ(cellOfTitle("=SUM(A1)"), "\"'=SUM(A1)\"");
    EXPECT_EQ(cellOfTitle("+1"), "\"'+1\"");
    EXPECT_EQ(cellOfTitle("-1"), "\"'-1\"");
    EXPECT_EQ(cellOfTitle("@A1"), "\"'@A1\"");
    EXPECT_EQ(cellOfTitle("=\"a\""), "\"'=\"\"a\"\"\"");
    EXPECT_EQ(cellOfTitle("a=1"), "\"a=1\"");
}

TEST(CsvExport, LooksForAFormulaBehindBlanksAndKeepsThem)
{
    EXPECT_EQ(cellOfTitle(" =1+1"), "\"' =1+1\"");
    EXPECT_EQ(cellOfTitle("\u00A0\u3000-x "), "\"'\u00A0\u3000-x \"");
    EXPECT_EQ(cellOfTitle("\r\n@x"), "\"'\r\n@x\"");
    EXPECT_EQ(cellOfTitle("\u200B=1"), "\"\u200B=1\"");
}

TEST(CsvExport, LooksAtCodePointsSoThatAMarkHidesNoFormula)
{
    EXPECT_EQ(cellOfTitle("=\u0338 1"), "\"'=\u0338 1\"");
}

TEST(CsvExport, GuardsATextThatBeginsWithATabOrOneLineEnd)
{
    EXPECT_EQ(cellOfTitle("\tx"), "\"'\tx\"");
    EXPECT_EQ(cellOfTitle("\rx"), "\"'\rx\"");
    EXPECT_EQ(cellOfTitle("\nx"), "\"'\nx\"");
    EXPECT_EQ(cellOfTitle("\t"), "\"'\t\"");
    EXPECT_EQ(cellOfTitle("\n\r"), "\"'\n\r\"");
}

TEST(CsvExport, DoesNotGuardOtherBlanksNorCarriageReturnAndLineFeedTogether)
{
    EXPECT_EQ(cellOfTitle("\r\nx"), "\"\r\nx\"");
    EXPECT_EQ(cellOfTitle("\r\n"), "\"\r\n\"");
    EXPECT_EQ(cellOfTitle(" \tx"), "\" \tx\"");
    EXPECT_EQ(cellOfTitle("\vx"), "\"\vx\"");
}

TEST(CsvExport, GuardsNamesAndSourcesLikeTitles)
{
    LedgerData ledger = Sample::ledger();
    ledger.clients.modify(Sample::clientID(), [](Client& client) { client.name = "@Home"; });
    ledger.projects.modify(
        Sample::projectID(), [](Project& project) { project.name = "-Internal"; });
    ledger.entries.modify(Sample::sessionID(), [](TimeEntry& entry) { entry.sourceID = "=7"; });
    const auto found = cellsOf(exportCSV(ledger));
    EXPECT_EQ(found.at(clientName), "\"'@Home\"");
    EXPECT_EQ(found.at(projectName), "\"'-Internal\"");
    EXPECT_EQ(found.at(sourceID), "\"'=7\"");
}

TEST(CsvExport, NamesTheProjectOfAClientWithoutProjects)
{
    LedgerData ledger = Sample::ledger();
    ledger.clients.modify(
        Sample::clientID(), [](Client& client) { client.projectsEnabled = false; });
    ledger.projects.modify(
        Sample::projectID(), [](Project& project) { project.isClientDefault = true; });
    EXPECT_EQ(cellsOf(exportCSV(ledger)).at(projectName), "\"Catalogue\"");
}

TEST(CsvExport, LeavesBothNamesEmptyWhenTheProjectIsGone)
{
    LedgerData ledger = Sample::ledger();
    ledger.projects = {};
    const auto found = cellsOf(exportCSV(ledger));
    EXPECT_EQ(found.at(clientName), "\"\"");
    EXPECT_EQ(found.at(projectName), "\"\"");
    EXPECT_EQ(found.at(description), "\"Proofs\"");
}

TEST(CsvExport, LeavesTheClientEmptyWhenItAloneIsGone)
{
    LedgerData ledger = Sample::ledger();
    ledger.clients = {};
    const auto found = cellsOf(exportCSV(ledger));
    EXPECT_EQ(found.at(clientName), "\"\"");
    EXPECT_EQ(found.at(projectName), "\"Catalogue\"");
}

TEST(CsvExport, LeavesMoneyEmptyForABillableSessionWithoutAKnownRate)
{
    TimeEntry entry = Sample::entry();
    entry.rateIsKnown = false;
    const auto found = cells(entry);
    EXPECT_EQ(found.at(hourlyRate), "\"\"");
    EXPECT_EQ(found.at(earned), "\"\"");
    EXPECT_EQ(found.at(billable), "\"true\"");
    EXPECT_EQ(found.at(rateKnown), "\"false\"");
}

TEST(CsvExport, ShowsTheRateOfANonbillableSessionAndNothingEarned)
{
    TimeEntry entry = Sample::entry();
    entry.isBillable = false;
    const auto found = cells(entry);
    EXPECT_EQ(found.at(hourlyRate), "\"150.00\"");
    EXPECT_EQ(found.at(earned), "\"0.00\"");
    EXPECT_EQ(found.at(billable), "\"false\"");
    EXPECT_EQ(found.at(rateKnown), "\"true\"");
}

TEST(CsvExport, ShowsNothingEarnedByANonbillableSessionWithoutAKnownRate)
{
    TimeEntry entry = Sample::entry();
    entry.isBillable = false;
    entry.rateIsKnown = false;
    EXPECT_EQ(cells(entry).at(hourlyRate), "\"\"");
    EXPECT_EQ(cells(entry).at(earned), "\"0.00\"");
}

TEST(CsvExport, ShowsAKnownRateOfZero)
{
    TimeEntry entry = Sample::entry();
    entry.hourlyRateCents = 0;
    EXPECT_EQ(cells(entry).at(hourlyRate), "\"0.00\"");
    EXPECT_EQ(cells(entry).at(earned), "\"0.00\"");
}

TEST(CsvExport, CountsTheRecordedDurationOfAnImportedSession)
{
    TimeEntry entry = lasting(7200.0);
    entry.recordedDuration = 5400.0;
    entry.sourceID = "legacy/42";
    const auto found = cells(entry);
    EXPECT_EQ(found.at(hours), "\"1.500000\"");
    EXPECT_EQ(found.at(earned), "\"225.00\"");
    EXPECT_EQ(found.at(durationSeconds), "\"5400.0\"");
    EXPECT_EQ(found.at(recordedSeconds), "\"5400.0\"");
    EXPECT_EQ(found.at(sourceID), "\"legacy/42\"");
}

TEST(CsvExport, WritesSecondsAsTheShortestDigitsThatReadBack)
{
    EXPECT_EQ(cells(lasting(1234.5)).at(durationSeconds), "\"1234.5\"");
    EXPECT_EQ(cells(lasting(300000.0)).at(durationSeconds), "\"300000.0\"");
    EXPECT_EQ(cells(lasting(0.1)).at(durationSeconds), "\"0.1\"");
    EXPECT_EQ(cells(lasting(0.0001)).at(durationSeconds), "\"0.0001\"");
    EXPECT_EQ(cells(lasting(1.0 / 8388608.0)).at(durationSeconds), "\"1.1920928955078125e-07\"");
    EXPECT_EQ(cells(lasting(0.0)).at(durationSeconds), "\"0.0\"");
}

TEST(CsvExport, RoundsDecimalsByTheExactValueAndTiesToEven)
{
    // 28.125 seconds are 0.0078125 hours, exactly.
    EXPECT_EQ(cells(lasting(28.125)).at(hours), "\"0.007812\"");
    EXPECT_EQ(cells(lasting(3 * 28.125)).at(hours), "\"0.023438\"");
    TimeEntry entry = lasting(450.0);
    entry.hourlyRateCents = 100;
    EXPECT_EQ(cells(entry).at(earned), "\"0.12\"");
    entry.hourlyRateCents = 300;
    EXPECT_EQ(cells(entry).at(earned), "\"0.38\"");
    entry = lasting(36.18);
    entry.hourlyRateCents = 10'000;
    EXPECT_EQ(cells(entry).at(earned), "\"1.00\""); // 1.00499999…
}

TEST(CsvExport, WritesNumbersAlikeWhateverLocaleTheProcessRunsIn)
{
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaAndGroups));
    TimeEntry entry = lasting(1'800'001.5);
    entry.hourlyRateCents = 123'456;
    const auto found = cells(entry);
    std::locale::global(before);
    EXPECT_EQ(found.at(hours), "\"500.000417\"");
    EXPECT_EQ(found.at(hourlyRate), "\"1234.56\"");
    EXPECT_EQ(found.at(earned), "\"617280.51\"");
    EXPECT_EQ(found.at(durationSeconds), "\"1800001.5\"");
}

TEST(CsvExport, WritesTimesInUtcWithMilliseconds)
{
    TimeEntry entry = Sample::entry();
    entry.spans = {
        Sample::span(795'173'213.589, 795'173'214.0), Sample::span(795'180'000.0, 795'180'060.25)};
    EXPECT_EQ(cells(entry).at(start), "\"2026-03-14T09:26:53.589Z\"");
    EXPECT_EQ(cells(entry).at(end), "\"2026-03-14T11:21:00.250Z\"");
}

TEST(CsvExport, ProposesAFileNameWithTheDayInUtc)
{
    EXPECT_EQ(csvFileName(Date{795'139'200.0}), "Kestry-sessions-2026-03-14.csv");
    EXPECT_EQ(csvFileName(Date{795'139'199.9999}), "Kestry-sessions-2026-03-13.csv");
    EXPECT_EQ(csvFileName(Date{-0.5}), "Kestry-sessions-2000-12-31.csv");
}

TEST(CsvExport, SaysHowManySessionsWentIntoWhichFile)
{
    EXPECT_EQ(exportMessage(0, "a.csv"), "Exported 0 saved sessions to a.csv.");
    EXPECT_EQ(exportMessage(1, "a.csv"), "Exported 1 saved sessions to a.csv.");
    EXPECT_EQ(exportMessage(1200, "b c"), "Exported 1200 saved sessions to b c.");
}

} // namespace
} // namespace KestryCore
