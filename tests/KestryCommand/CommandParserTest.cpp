#include "CommandParser.h"

#include <gmock/gmock.h>

#include "UsageError.h"

namespace Kestry {
namespace {

using KestryCore::SessionSort;
using KestryCore::SessionSortField;
using testing::HasSubstr;
using testing::StartsWith;
using testing::ThrowsMessage;

using Words = std::vector<std::string>;

CommandRequest requestOf(const Words& words)
{
    return std::get<CommandRequest>(parseCommandLine(words));
}

template <class Chosen>
Chosen parsed(const Words& words)
{
    const Command command = requestOf(words).command;
    if constexpr (std::is_constructible_v<StoreCommand, Chosen>) {
        return std::get<Chosen>(std::get<StoreCommand>(command));
    } else {
        return std::get<Chosen>(command);
    }
}

std::string informationOf(const Words& words)
{
    return std::get<InformationText>(parseCommandLine(words)).text;
}

/// Expects that the words are refused with a message that begins so.
void expectRefusal(const Words& words, const std::string& beginning)
{
    EXPECT_THAT(
        [&] { (void)parseCommandLine(words); }, ThrowsMessage<UsageError>(StartsWith(beginning)))
        << testing::PrintToString(words);
}

TEST(CommandLine, ReadsASessionToStart)
{
    const auto start = parsed<StartCommand>({"start", "Aster", "Website", "--title", "Sketches"});
    EXPECT_EQ(start.client, "Aster");
    EXPECT_EQ(start.project, "Website");
    EXPECT_EQ(start.title, "Sketches");
    EXPECT_EQ(parsed<StartCommand>({"start", "Aster"}).project, std::nullopt);
}

TEST(CommandLine, TakesCommonOptionsBeforeAndAfterTheCommand)
{
    for (const Words& words : {Words{"--json", "--at", "-15m", "client", "list"},
             Words{"client", "list", "--json", "--at", "-15m"},
             Words{"client", "--json", "list", "--at=-15m"}}) {
        const CommandRequest request = requestOf(words);
        EXPECT_TRUE(request.options.json);
        EXPECT_EQ(request.options.at, "-15m");
        EXPECT_TRUE(
            std::holds_alternative<ClientListCommand>(std::get<StoreCommand>(request.command)));
    }
}

TEST(CommandLine, HandsTextOnExactlyAsTyped)
{
    for (const char* title :
        {"", " ", "[a,b]", "{}", "%%", "a=b", "\"quoted\"", "--json", "-5m", "status", "--"}) {
        EXPECT_EQ(parsed<StartCommand>({"start", "Aster", "--title", title}).title, title);
    }
    for (const char* title : {"", "[a,b]", "{}", "%%", "stop", "list", "'"}) {
        EXPECT_EQ(parsed<RenameCommand>({"rename", title}).title, title);
    }
}

TEST(CommandLine, TakesAnEmptyValueAfterAnEqualsSign)
{
    EXPECT_EQ(parsed<EditCommand>({"edit", "--title=", "Sketches"}).title, "");
    EXPECT_EQ(requestOf({"--data-directory=", "status"}).options.dataDirectory, "");
    EXPECT_EQ(parsed<RenameCommand>({"rename", "--", "--title="}).title, "--title=");
    EXPECT_EQ(parsed<StartCommand>({"start", "Aster", "--title=a=b"}).title, "a=b");
}

TEST(CommandLine, TakesNamesThatAreAlsoCommands)
{
    EXPECT_EQ(parsed<StartCommand>({"start", "stop", "status"}).client, "stop");
    EXPECT_EQ(parsed<ClientAddCommand>({"client", "add", "list"}).name, "list");
}

TEST(CommandLine, TakesWordsWithHyphensAfterTwoHyphens)
{
    EXPECT_EQ(parsed<RenameCommand>({"rename", "--", "--json"}).title, "--json");
    EXPECT_FALSE(requestOf({"rename", "--", "--json"}).options.json);
}

TEST(CommandLine, ReadsANewClient)
{
    const auto add = parsed<ClientAddCommand>({"client", "add", "Aster", "--rate", "150.5",
        "--color", "#b7a5ff", "--logo", "logo.png", "--no-projects"});
    EXPECT_EQ(add.name, "Aster");
    EXPECT_EQ(add.rate.hourlyRateCents, 15050);
    EXPECT_TRUE(add.rate.isKnown);
    EXPECT_EQ(add.colorHex, "B7A5FF");
    EXPECT_EQ(add.logoFile, "logo.png");
    EXPECT_FALSE(add.projectsEnabled);
}

TEST(CommandLine, LeavesTheRateOfANewClientUnknown)
{
    const auto add = parsed<ClientAddCommand>({"client", "add", "Aster"});
    EXPECT_EQ(add.rate.hourlyRateCents, 0);
    EXPECT_FALSE(add.rate.isKnown);
    EXPECT_EQ(add.colorHex, "A2A5AA");
    EXPECT_TRUE(add.projectsEnabled);
}

TEST(CommandLine, TellsWhatAnEditLeavesAlone)
{
    const auto edit = parsed<ClientEditCommand>({"client", "edit", "Aster", "--projects"});
    EXPECT_EQ(edit.projectsEnabled, true);
    EXPECT_FALSE(edit.name || edit.rate || edit.colorHex || edit.logoFile || edit.removesLogo);
}

TEST(CommandLine, MakesARateUnknownWithNoCentsBehind)
{
    const auto edit = parsed<ProjectEditCommand>({"project", "edit", "Website", "--no-rate"});
    ASSERT_TRUE(edit.rate);
    EXPECT_EQ(edit.rate->hourlyRateCents, 0);
    EXPECT_FALSE(edit.rate->isKnown);
}

TEST(CommandLine, ReadsTheChangesOfASession)
{
    const auto edit = parsed<EditCommand>({"edit", "Sketches", "--duration", "1h30m",
        "--no-billable", "--start", "-2h", "--project", "Website", "--title", ""});
    EXPECT_EQ(edit.duration, 5400.0);
    EXPECT_EQ(edit.isBillable, false);
    EXPECT_EQ(edit.start, "-2h");
    EXPECT_EQ(edit.project, "Website");
    EXPECT_EQ(edit.title, "");
}

TEST(CommandLine, ReadsTheFiltersOfAList)
{
    const auto list = parsed<SessionsCommand>({"sessions", "--client", "Aster", "--month",
        "2026-03", "--search", " ice ", "--sort", "title", "--descending"});
    EXPECT_EQ(list.client, "Aster");
    EXPECT_EQ(list.month, (KestryCore::CalendarDay{2026, 3, 1}));
    EXPECT_EQ(list.search, " ice ");
    EXPECT_EQ(list.sort, (SessionSort{SessionSortField::title, false}));
}

TEST(CommandLine, SortsNewestFirstUnlessToldOtherwise)
{
    const auto sortOf = [](Words words) {
        words.insert(words.begin(), "sessions");
        return parsed<SessionsCommand>(words).sort;
    };
    EXPECT_EQ(sortOf({}), (SessionSort{SessionSortField::date, false}));
    EXPECT_EQ(sortOf({"--ascending"}), (SessionSort{SessionSortField::date, true}));
    EXPECT_EQ(
        sortOf({"--sort", "value", "--ascending"}), (SessionSort{SessionSortField::value, true}));
}

TEST(CommandLine, SortsByAFieldAloneAsAFirstClickOnItsColumn)
{
    for (const auto field : KestryCore::allSessionSortFields) {
        const std::string name(sessionSortFieldName(field));
        const bool isTitle = field == SessionSortField::title;
        EXPECT_EQ(parsed<SessionsCommand>({"sessions", "--sort", name}).sort,
            (SessionSort{field, isTitle}))
            << name;
    }
}

TEST(CommandLine, ReadsWhatToReportOn)
{
    const auto report = parsed<ReportCommand>({"report", "--month", "2026-03", "--client", "A"});
    EXPECT_EQ(report.month, (KestryCore::CalendarDay{2026, 3, 1}));
    EXPECT_EQ(report.client, "A");
    EXPECT_EQ(parsed<ReportCommand>({"report"}).month, std::nullopt);
    EXPECT_EQ(parsed<ClientReportCommand>({"report", "--all-time", "--client", "A"}).client, "A");
}

TEST(CommandLine, ReadsWhereToExport)
{
    EXPECT_EQ(parsed<ExportCommand>({"export", "a.csv"}).file, "a.csv");
    EXPECT_EQ(parsed<ExportCommand>({"export"}).file, std::nullopt);
    EXPECT_EQ(parsed<ExportCommand>({"export", "-"}).file, std::nullopt);
    EXPECT_EQ(parsed<ExportCommand>({"export", "./-"}).file, "./-");
    expectRefusal({"export", ""}, "FILE needs a name.");
    expectRefusal({"export", "a", "b"}, "\"b\" is one word too many.");
}

TEST(CommandLine, ReadsWhatToSuggestAndToComplete)
{
    EXPECT_EQ(parsed<SuggestCommand>({"suggest", " des"}).prefix, " des");
    EXPECT_EQ(parsed<CompletionCommand>({"completion", "zsh"}).shell, Shell::zsh);
    expectRefusal({"suggest"}, "PREFIX is missing.");
    expectRefusal({"completion"}, "SHELL is missing.");
}

TEST(CommandLine, HintsAtTheNearestChoice)
{
    expectRefusal({"sessions", "--sort", "tite"},
        "--sort can't be \"tite\". Did you mean \"title\"? \"kestryctl sessions --help\"");
    expectRefusal({"sessions", "--sort", "size"},
        "--sort can't be \"size\". It is title, date, duration or value.");
    expectRefusal({"completion", "fih"}, "SHELL can't be \"fih\". Did you mean \"fish\"?");
    expectRefusal({"completion", "tcsh"}, "SHELL can't be \"tcsh\". It is bash, zsh or fish.");
}

TEST(CommandLine, HintsAtTheNearestMonth)
{
    for (const char* command : {"sessions", "report"}) {
        expectRefusal({command, "--month", "2026-3"},
            "\"2026-3\" is no month. Did you mean \"2026-03\"? \"kestryctl ");
    }
}

TEST(CommandLine, RefusesAllTimeWithoutAClientOrWithAMonth)
{
    expectRefusal({"report", "--all-time"}, "--all-time needs --client.");
    expectRefusal({"report", "--all-time", "--client", "A", "--month", "2026-03"},
        "--month and --all-time contradict each other.");
    expectRefusal({"sessions", "--ascending", "--descending"},
        "--ascending and --descending contradict each other.");
}

TEST(CommandLine, TellsWhichCommandsChangeTheLedger)
{
    for (const Words& words : {Words{"status"}, Words{"client", "list"}, Words{"project", "list"},
             Words{"sessions"}, Words{"report"}, Words{"report", "--all-time", "--client", "A"},
             Words{"export", "a.csv"}, Words{"suggest", "a"}}) {
        EXPECT_FALSE(changesLedger(std::get<StoreCommand>(requestOf(words).command)))
            << words.back();
    }
    for (const Words& words : {Words{"stop"}, Words{"restore"}, Words{"client", "add", "Aster"}}) {
        EXPECT_TRUE(changesLedger(std::get<StoreCommand>(requestOf(words).command)))
            << words.front();
    }
}

TEST(CommandLine, CheckingAndCompletingNeedNoStore)
{
    for (const Words& words : {Words{"check"}, Words{"completion", "bash"}}) {
        EXPECT_FALSE(std::holds_alternative<StoreCommand>(requestOf(words).command))
            << words.front();
    }
}

TEST(CommandLine, HintsAtTheNearestCommand)
{
    expectRefusal({"statsu"}, "There is no command \"statsu\". Did you mean \"status\"?");
    expectRefusal({"client", "lst"}, "There is no command \"lst\". Did you mean \"list\"?");
    expectRefusal(
        {"frobnicate"}, "There is no command \"frobnicate\". \"kestryctl --help\" tells more.");
}

TEST(CommandLine, HintsAtTheNearestOption)
{
    expectRefusal({"start", "Aster", "--titel", "x"},
        "There is no option \"--titel\" here. Did you mean \"--title\"?");
    expectRefusal(
        {"status", "--jsno"}, "There is no option \"--jsno\" here. Did you mean \"--json\"?");
    expectRefusal({"pause", "--frobnicate=1"},
        "There is no option \"--frobnicate\" here. Put -- before words that begin with a hyphen.");
}

TEST(CommandLine, SaysWhatToDoWhenNoCommandIsGiven)
{
    expectRefusal({}, "Say what to do: status, start,");
    expectRefusal({"client"}, "Say what to do: list, add or edit.");
}

TEST(CommandLine, RefusesMissingAndExtraWords)
{
    expectRefusal({"start"}, "CLIENT is missing. \"kestryctl start --help\" tells more.");
    expectRefusal({"add", "Aster", "--duration", "1h"}, "--start is missing.");
    expectRefusal({"stop", "now"}, "\"now\" is one word too many.");
    expectRefusal({"start", "Aster", "--title"}, "--title needs a value.");
}

TEST(CommandLine, RefusesAnOptionGivenTwice)
{
    expectRefusal(
        {"start", "Aster", "--title", "a", "--title", "b"}, "--title can be given only once.");
    expectRefusal({"status", "--at", "-1h", "--at", "-2h"}, "--at can be given only once.");
}

TEST(CommandLine, RefusesOptionsThatContradictEachOther)
{
    expectRefusal({"client", "edit", "A", "--rate", "1", "--no-rate"},
        "--rate and --no-rate contradict each other.");
    expectRefusal({"client", "edit", "A", "--logo", "f", "--no-logo"},
        "--logo and --no-logo contradict each other.");
    expectRefusal({"edit", "S", "--billable", "--no-billable"},
        "--billable and --no-billable contradict each other.");
}

TEST(CommandLine, RefusesAnEditThatChangesNothing)
{
    expectRefusal({"edit", "Sketches"}, "Say what to change.");
    expectRefusal({"client", "edit", "Aster"}, "Say what to change.");
    expectRefusal({"project", "edit", "Website"}, "Say what to change.");
}

TEST(CommandLine, RefusesAValueForAnOptionThatTakesNone)
{
    expectRefusal({"delete", "Sketches", "--yes=no"}, "--yes takes no value.");
    expectRefusal({"status", "--json=false"}, "--json takes no value.");
    expectRefusal({"status", "--json="}, "\"\" is one word too many.");
}

TEST(CommandLine, RefusesUnreadableValues)
{
    expectRefusal({"client", "add", "A", "--rate", "12.345"},
        "Enter a USD hourly rate from 0 to 1,000,000 with up to two decimal places.");
    expectRefusal({"client", "add", "A", "--color", "blue"},
        "--color needs six hexadecimal digits, as in A2A5AA.");
    expectRefusal({"client", "add", "A", "--color", "##ABCDE"}, "--color needs six");
    expectRefusal({"edit", "S", "--duration", "90"}, "\"90\" is no length of time.");
}

TEST(CommandLine, RefusesBytesThatAreNoText)
{
    expectRefusal({"start", "Aster\xFF"}, "\"Aster\xFF\" is not text in UTF-8.");
}

TEST(CommandLine, ExplainsTheInnermostCommandThatIsNamed)
{
    EXPECT_THAT(informationOf({"--help"}), HasSubstr("Usage: kestryctl COMMAND [OPTIONS]\n"));
    EXPECT_THAT(informationOf({"client", "add", "-h"}),
        HasSubstr("Usage: kestryctl client add NAME [OPTIONS]\n"));
    EXPECT_THAT(informationOf({"start", "--help", "and", "more", "words"}),
        HasSubstr("Usage: kestryctl start CLIENT [PROJECT] [OPTIONS]\n"));
}

TEST(CommandLine, TellsItsVersion)
{
    EXPECT_THAT(informationOf({"--version"}), testing::MatchesRegex("kestryctl [0-9.]+\n"));
}

TEST(CommandLine, FindsTheWishForJsonInWordsThatCannotBeRead)
{
    EXPECT_TRUE(asksForJson({"frobnicate", "--json"}));
    EXPECT_FALSE(asksForJson({"rename", "--", "--json"}));
}

} // namespace
} // namespace Kestry
