#include "CommandFixture.h"

namespace Kestry {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

/// Three sessions: on the last evening of February into March, without a rate, and for nothing.
class SessionListing : public CommandFixture {
protected:
    SessionListing()
    {
        done({"client", "add", "Aster Studio"});
        done({"project", "add", "aster", "Website", "--rate", "150"});
        done({"client", "add", "Birch", "--no-projects"});
        done({"add", "aster", "website", "--start", "2026-02-28 23:00", "--duration", "2h"});
        done({"add", "birch", "--start", "2026-03-02 10:00", "--duration", "45m", "--title",
            "Call"});
        done({"add", "aster", "website", "--start", "2026-03-03 10:00", "--duration", "30m",
            "--title", "Ärger"});
        done({"edit", "Ärger", "--no-billable"});
    }

    /// The labels of the sessions that a list shows, in its order.
    std::vector<std::string> labels(std::vector<std::string> words)
    {
        words.insert(words.begin(), {"sessions", "--json"});
        const std::string json = done(words);
        std::vector<std::string> result;
        const std::string key = "\"label\":\"";
        for (std::size_t at = json.find(key); at != std::string::npos; at = json.find(key, at)) {
            at += key.size();
            result.push_back(json.substr(at, json.find('"', at) - at));
        }
        return result;
    }
};

TEST_F(SessionListing, ShowsAlignedColumnsNewestFirst)
{
    const std::string id = "[-0-9A-F]{36}\n";
    EXPECT_THAT(done({"sessions"}),
        MatchesRegex("STARTED +DURATION +VALUE  SESSION  CLIENT +PROJECT  ID\n"
                     "2026-03-03 10:00    0h 30m   Nonbillable  Ärger    Aster Studio  Website  "
            + id + "2026-03-02 10:00    0h 45m  Rate not set  Call     Birch                  " + id
            + "2026-02-28 23:00     2h 0m       .300.00  Website  Aster Studio  Website  " + id));
}

TEST_F(SessionListing, TellsAllFieldsAsJson)
{
    EXPECT_THAT(done({"sessions", "--json", "--month", "2026-02"}),
        MatchesRegex("\\[\\{\"id\":\"[-0-9A-F]{36}\",\"label\":\"Website\",\"title\":\"\","
                     "\"client\":\"Aster Studio\",\"project\":\"Website\",\"startedAt\":794012400,"
                     "\"endedAt\":794019600,\"durationSeconds\":7200,\"durationText\":\"2h 0m\","
                     "\"earnedCents\":30000,\"valueText\":\".300.00\",\"isBillable\":true,"
                     "\"rateIsKnown\":true,\"hourlyRateCents\":15000,\"sourceID\":null\\}\\]\n"));
}

TEST_F(SessionListing, TellsAbsentValuesAsNullAndUnearnedOnesAsZero)
{
    EXPECT_THAT(done({"sessions", "--json", "--client", "birch"}),
        HasSubstr("\"client\":\"Birch\",\"project\":null,"));
    EXPECT_THAT(done({"sessions", "--json", "--client", "birch"}),
        HasSubstr("\"earnedCents\":0,\"valueText\":\"Rate not set\","));
    EXPECT_THAT(done({"sessions", "--json", "--search", "Ärger"}),
        HasSubstr("\"earnedCents\":0,\"valueText\":\"Nonbillable\",\"isBillable\":false"));
}

TEST_F(SessionListing, KeepsToAClientAMonthAndASearch)
{
    EXPECT_THAT(labels({"--client", "aster"}), ElementsAre("Ärger", "Website"));
    EXPECT_THAT(labels({"--month", "2026-02"}), ElementsAre("Website"));
    EXPECT_THAT(labels({"--month", "2026-03"}), ElementsAre("Ärger", "Call", "Website"));
    EXPECT_THAT(labels({"--search", "ärger website aster"}), ElementsAre("Ärger"));
    EXPECT_THAT(labels({"--search", "arger"}), ElementsAre());
    EXPECT_THAT(
        labels({"--search", "a", "--client", "birch", "--month", "2026-03"}), ElementsAre("Call"));
}

TEST_F(SessionListing, BeginsMonthsWhereTheTimeZoneDoes)
{
    timeZone_ = "Asia/Tokyo";
    EXPECT_THAT(labels({"--month", "2026-02"}), ElementsAre());
    EXPECT_THAT(done({"sessions"}), HasSubstr("\n2026-03-01 08:00 "));
}

TEST_F(SessionListing, SortsByEachFieldBothWays)
{
    EXPECT_THAT(labels({"--sort", "date", "--ascending"}), ElementsAre("Website", "Call", "Ärger"));
    EXPECT_THAT(labels({"--sort", "title"}), ElementsAre("Ärger", "Call", "Website"));
    EXPECT_THAT(
        labels({"--sort", "title", "--descending"}), ElementsAre("Website", "Call", "Ärger"));
    EXPECT_THAT(labels({"--sort", "duration"}), ElementsAre("Website", "Call", "Ärger"));
    EXPECT_THAT(labels({"--sort", "value"}), ElementsAre("Website", "Ärger", "Call"));
    EXPECT_THAT(
        labels({"--sort", "value", "--ascending"}), ElementsAre("Website", "Ärger", "Call"));
}

TEST_F(SessionListing, SaysWhyItIsEmpty)
{
    EXPECT_EQ(done({"sessions", "--month", "2026-01"}), "No sessions this month\n");
    EXPECT_EQ(done({"sessions", "--search", "nowhere"}), "No matching sessions\n");
    EXPECT_EQ(done({"sessions", "--search", "nowhere", "--json"}), "[]\n");
    directory_ = root_ / "empty";
    EXPECT_EQ(done({"sessions"}), "No sessions yet\n");
}

TEST_F(SessionListing, LeavesTheSessionInProgressOut)
{
    done({"start", "aster", "website", "--title", "Live"});
    EXPECT_THAT(labels({}), ElementsAre("Ärger", "Call", "Website"));
}

TEST_F(SessionListing, RefusesAClientThatThereIsNot)
{
    EXPECT_EQ(refused({"sessions", "--client", "astr"}), "There is no client \"astr\".");
    EXPECT_EQ(refused({"sessions", "--client", "00000000-0000-4000-8000-000000000000"}),
        "Client not found.");
}

TEST_F(SessionListing, ShowsTheBackupOfADamagedLedgerAndSaysSo)
{
    damageLedger();
    EXPECT_THAT(labels({}), ElementsAre("Ärger", "Call", "Website"));
    EXPECT_THAT(console_.errors, StartsWith("The ledger could not be read. Your backup"));
}

TEST_F(SessionListing, SuggestsTitlesAndTheRestOfTheFirst)
{
    EXPECT_EQ(done({"suggest", "ar"}), "Ärger\n");
    EXPECT_EQ(
        done({"suggest", "ar", "--json"}), "{\"matches\":[\"Ärger\"],\"inlineSuffix\":\"ger\"}\n");
    EXPECT_EQ(done({"suggest", "x", "--json"}), "{\"matches\":[],\"inlineSuffix\":null}\n");
    EXPECT_EQ(done({"suggest", "x"}), "");
}

TEST_F(SessionListing, SuggestsFourTitlesAtMost)
{
    for (const char* title : {"Caller", "Calls", "Calling", "Called"}) {
        done({"add", "birch", "--start", "-2h", "--duration", "1h", "--title", title});
        pass(60);
    }
    EXPECT_EQ(done({"suggest", "cal"}), "Called\nCalling\nCalls\nCaller\n");
}

TEST_F(SessionListing, FindsASuffixForTheFirstSuggestionThatHasOne)
{
    EXPECT_EQ(
        done({"suggest", " ca", "--json"}), "{\"matches\":[\"Call\"],\"inlineSuffix\":null}\n");
}

} // namespace
} // namespace Kestry
