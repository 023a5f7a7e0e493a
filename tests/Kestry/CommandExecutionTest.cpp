#include <gmock/gmock.h>
#include <sys/prctl.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "Calendar.h"
#include "CommandProgram.h"
#include "LedgerCoding.h"
#include "LedgerError.h"
#include "PosixFileSystem.h"

namespace Kestry {
namespace {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::LedgerData;
using KestryCore::WallTime;
using testing::HasSubstr;
using testing::StartsWith;

/// A console that remembers what is written and answers what it was told to.
class ScriptedConsole final : public Console {
public:
    [[nodiscard]] bool readsFromTerminal() const override { return isTerminal; }
    [[nodiscard]] bool writesToTerminal() const override { return isTerminal; }

    [[nodiscard]] std::optional<std::string> readLine() override
    {
        if (answers.empty()) {
            return std::nullopt;
        }
        std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }

    void write(std::string_view text) override
    {
        if (isBroken) {
            throw KestryCore::LedgerError("The output could not be written: Broken pipe.");
        }
        output += text;
    }

    void writeError(std::string_view text) override { errors += text; }

    bool isTerminal = false;
    bool isBroken = false;
    std::deque<std::string> answers;
    std::string output;
    std::string errors;
};

std::string fileContent(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

/// Runs command lines on a data directory of its own, at a moment of its own.
class CommandExecution : public testing::Test {
protected:
    CommandExecution()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kestryctl-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        directory_ = root_ / "data";
        now_ = dateInUtc(WallTime{CalendarDay{2026, 3, 14}, 9, 0, 0.0});
    }

    ~CommandExecution() override { std::filesystem::remove_all(root_); }

    ExitStatus run(std::vector<std::string> words)
    {
        console_.output.clear();
        console_.errors.clear();
        const ProgramPlatform platform{files_, console_,
            [this](const std::string& name) {
                const auto found = environment_.find(name);
                return found != environment_.end() ? std::optional(found->second) : std::nullopt;
            },
            [this] { return now_; }, [this](double seconds) { sleep(seconds); }};
        words.insert(words.begin(),
            {"--data-directory", directory_.string(), "--time-zone", "UTC", "--locale", "en_US"});
        return runProgram(words, platform);
    }

    /// Runs what must succeed, and returns what it wrote.
    std::string done(const std::vector<std::string>& words)
    {
        EXPECT_EQ(run(words), ExitStatus::done) << console_.errors;
        return console_.output;
    }

    /// Runs what must be refused, and returns the reason without its line end.
    std::string refused(const std::vector<std::string>& words)
    {
        EXPECT_EQ(run(words), ExitStatus::refused) << console_.output;
        return console_.errors.substr(0, console_.errors.size() - 1);
    }

    void pass(double seconds) { now_ = now_ + seconds; }

    void sleep(double seconds)
    {
        pass(seconds);
        if (onSleep_) {
            onSleep_();
        }
    }

    [[nodiscard]] std::filesystem::path ledgerPath() const { return directory_ / "ledger.json"; }
    [[nodiscard]] LedgerData ledger() const
    {
        return KestryCore::decodeLedger(fileContent(ledgerPath()));
    }

    /// Damages the ledger as a failing disk would; returns what is in the file then.
    std::string damageLedger() const
    {
        std::filesystem::resize_file(ledgerPath(), 20);
        return fileContent(ledgerPath());
    }

    void addClientAndStart()
    {
        done({"client", "add", "Aster Studio", "--rate", "150"});
        done({"project", "add", "aster", "Website", "--rate", "150"});
        done({"start", "aster", "website", "--title", "Sketches"});
    }

    KestryCore::PosixFileSystem files_;
    ScriptedConsole console_;
    std::map<std::string, std::string> environment_;
    std::filesystem::path root_;
    std::filesystem::path directory_;
    std::function<void()> onSleep_;
    Date now_;
};

TEST_F(CommandExecution, GoesTheWholeRoadOfASession)
{
    addClientAndStart();
    pass(600);
    EXPECT_EQ(done({"pause"}), "Paused at 00:10:00.\n");
    pass(300);
    EXPECT_EQ(done({"resume"}), "Resumed at 00:10:00.\n");
    pass(1200);
    EXPECT_EQ(done({"stop"}), "Saved 00:30:00: Aster Studio, Website.\n");
    ASSERT_EQ(ledger().entries.size(), 1U);
    EXPECT_EQ(ledger().entries.front().duration(), 1800.0);
    EXPECT_EQ(ledger().entries.front().title, "Sketches");
}

TEST_F(CommandExecution, ShowsTheSessionAsItStands)
{
    addClientAndStart();
    pass(600);
    EXPECT_EQ(done({"status"}),
        "State    running, last checkpoint 09:00\n"
        "Elapsed  00:10:00\n"
        "Title    Sketches\n"
        "Client   Aster Studio\n"
        "Project  Website\n"
        "Value    $25.00\n");
}

TEST_F(CommandExecution, TellsTheStatusAsJson)
{
    addClientAndStart();
    pass(600);
    const std::string status = done({"status", "--json"});
    EXPECT_THAT(status, StartsWith("{\"state\":\"running\",\"active\":{\"id\":\""));
    EXPECT_THAT(status,
        HasSubstr("\"elapsedSeconds\":600,\"clock\":\"00:10:00\",\"client\":\"Aster Studio\","
                  "\"project\":\"Website\",\"earnedCents\":2500,\"valueText\":\"$25.00\","
                  "\"recoveredSession\":false,\"recoveryAvailable\":false,\"blocked\":false,"
                  "\"errorMessage\":null,\"dataDirectory\":\""));
}

TEST_F(CommandExecution, TellsAbsentValuesAsNull)
{
    const std::string status = done({"status", "--json"});
    EXPECT_THAT(status,
        StartsWith(
            "{\"state\":\"idle\",\"active\":null,\"elapsedSeconds\":0,\"clock\":\"00:00:00\","
            "\"client\":null,\"project\":null,\"earnedCents\":null,\"valueText\":null,"));
}

TEST_F(CommandExecution, SaysWhyASessionHasNoValue)
{
    done({"client", "add", "Aster"});
    done({"start", "aster"});
    EXPECT_THAT(done({"status", "--json"}), HasSubstr("\"valueText\":\"Rate not set\""));
}

TEST_F(CommandExecution, HidesTheDefaultProjectOfAClientWithoutProjects)
{
    done({"client", "add", "Aster", "--no-projects", "--rate", "100"});
    EXPECT_EQ(done({"start", "aster"}), "Started: Aster.\n");
    EXPECT_THAT(done({"status", "--json"}), HasSubstr("\"client\":\"Aster\",\"project\":null"));
    EXPECT_EQ(done({"project", "list"}), "There are no projects yet.\n");
}

TEST_F(CommandExecution, LeavesARunningSessionRunning)
{
    addClientAndStart();
    const std::string before = fileContent(ledgerPath());
    pass(3600);
    done({"status"});
    done({"check"});
    EXPECT_EQ(fileContent(ledgerPath()), before);
    EXPECT_TRUE(ledger().active->runningSince);
}

TEST_F(CommandExecution, MovesTheCheckpointOfARunningSession)
{
    addClientAndStart();
    pass(90);
    done({"checkpoint"});
    EXPECT_EQ(ledger().active->checkpointAt, now_);
    done({"pause"});
    EXPECT_EQ(done({"checkpoint", "--json"}), "{\"ok\":true,\"id\":null}\n");
}

TEST_F(CommandExecution, WorksAtAnotherMomentThanNow)
{
    addClientAndStart();
    pass(7200);
    done({"stop", "--at", "09:30"});
    EXPECT_EQ(ledger().entries.front().duration(), 1800.0);
}

TEST_F(CommandExecution, CountsBackFromTheMomentThatIsGiven)
{
    done({"client", "add", "Aster"});
    done({"add", "aster", "--start", "-1h", "--duration", "30m", "--at", "2026-03-13T12:00Z"});
    EXPECT_EQ(ledger().entries.front().startedAt(),
        dateInUtc(WallTime{CalendarDay{2026, 3, 13}, 11, 0, 0.0}));
}

TEST_F(CommandExecution, TellsTheIdentifierOfWhatWasMade)
{
    const std::string answer = done({"client", "add", "Aster", "--json"});
    EXPECT_EQ(answer, "{\"ok\":true,\"id\":\"" + ledger().clients.front().id.text() + "\"}\n");
}

TEST_F(CommandExecution, RefusesInTheLedgersOwnWordsAndChangesNothing)
{
    addClientAndStart();
    const std::string before = fileContent(ledgerPath());
    EXPECT_EQ(refused({"start", "aster"}), "Stop the current session first.");
    EXPECT_EQ(refused({"stop", "--at", "08:59"}), "The stop time is before the last checkpoint.");
    EXPECT_EQ(refused({"client", "add", " "}), "Enter a name.");
    EXPECT_EQ(refused({"start", "00000000-0000-0000-0000-000000000001"}),
        "Stop the current session first.");
    EXPECT_EQ(fileContent(ledgerPath()), before);
}

TEST_F(CommandExecution, RefusesOnBothOutputsWhereJsonIsAskedFor)
{
    EXPECT_EQ(run({"pause", "--json"}), ExitStatus::refused);
    EXPECT_EQ(console_.errors, "No running session to pause.\n");
    EXPECT_EQ(console_.output, "{\"error\":\"No running session to pause.\"}\n");
}

TEST_F(CommandExecution, RefusesUnusableWordsWithAStatusOfTheirOwn)
{
    EXPECT_EQ(run({"statsu", "--json"}), ExitStatus::unusable);
    EXPECT_EQ(console_.output,
        "{\"error\":\"There is no command \\\"statsu\\\". Did you mean \\\"status\\\"?\"}\n");
    EXPECT_EQ(run({"status", "--time-zone", "Mars"}), ExitStatus::unusable);
    EXPECT_EQ(run({"status", "--locale", "xx"}), ExitStatus::unusable);
    EXPECT_EQ(run({"status", "--at", "soon"}), ExitStatus::unusable);
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(CommandExecution, MakesNoDirectoryForARefusedFirstCommand)
{
    EXPECT_EQ(refused({"start", "aster"}), "There is no client \"aster\".");
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(CommandExecution, SaysWithoutASessionThatThereIsNone)
{
    EXPECT_EQ(refused({"rename", "x"}), "This session is no longer active.");
    EXPECT_EQ(refused({"move", "x"}), "This session is no longer active.");
    EXPECT_EQ(refused({"resume"}), "No session to resume.");
}

TEST_F(CommandExecution, RenamesAndMovesTheSessionInProgress)
{
    addClientAndStart();
    done({"project", "add", "aster", "Strategy"});
    done({"rename", "  Second sketches "});
    EXPECT_EQ(ledger().active->title, "Second sketches");
    done({"move", "strat"});
    EXPECT_EQ(ledger().active->projectID, ledger().projects.back().id);
    EXPECT_EQ(ledger().active->title, "Second sketches");
    EXPECT_EQ(ledger().active->hourlyRateCents, 15000);
}

TEST_F(CommandExecution, RefusesAMoveToAnotherClient)
{
    addClientAndStart();
    done({"client", "add", "Northstar"});
    done({"project", "add", "north", "Strategy"});
    EXPECT_EQ(refused({"move", "strategy"}),
        "Choose a project from the same client with projects enabled.");
}

TEST_F(CommandExecution, ChangesOfAClientOnlyWhatIsGiven)
{
    done({"client", "add", "Aster", "--rate", "150", "--color", "B7A5FF"});
    done({"client", "edit", "aster", "--name", "Aster Studio"});
    done({"client", "edit", "aster", "--no-projects"});
    const auto& client = ledger().clients.front();
    EXPECT_EQ(client.name, "Aster Studio");
    EXPECT_EQ(client.hourlyRateCents, 15000);
    EXPECT_EQ(client.colorHex, "B7A5FF");
    EXPECT_FALSE(client.projectsEnabled);
    done({"client", "edit", "aster", "--no-rate"});
    EXPECT_FALSE(ledger().clients.front().rateIsKnown);
    EXPECT_EQ(ledger().clients.front().hourlyRateCents, 0);
}

TEST_F(CommandExecution, RefusesALogoThatIsNone)
{
    done({"client", "add", "Aster"});
    std::ofstream(root_ / "logo.png") << "no image";
    EXPECT_EQ(refused({"client", "edit", "aster", "--logo", (root_ / "logo.png").string()}),
        "Client logos must be valid PNG images up to 256 pixels and 256 KB.");
    EXPECT_EQ(refused({"client", "edit", "aster", "--logo", (root_ / "none.png").string()}),
        "none.png could not be read: No such file or directory.");
}

TEST_F(CommandExecution, EditsATitleWithoutTouchingThePausesOfASession)
{
    addClientAndStart();
    pass(100.7);
    done({"pause"});
    pass(33.3);
    done({"resume"});
    pass(200.1);
    done({"stop"});
    const auto before = ledger().entries.front();
    ASSERT_EQ(before.spans.size(), 2U);
    done({"edit", "sketches", "--title", "Second sketches"});
    EXPECT_EQ(ledger().entries.front().spans, before.spans);
    EXPECT_EQ(ledger().entries.front().title, "Second sketches");
}

TEST_F(CommandExecution, MovesASessionWithItsPausesToAnotherStart)
{
    addClientAndStart();
    pass(600);
    done({"pause"});
    pass(600);
    done({"resume"});
    pass(600);
    done({"stop"});
    done({"edit", "sketches", "--start", "08:00"});
    const auto entry = ledger().entries.front();
    ASSERT_EQ(entry.spans.size(), 2U);
    EXPECT_EQ(entry.startedAt(), dateInUtc(WallTime{CalendarDay{2026, 3, 14}, 8, 0, 0.0}));
    EXPECT_EQ(entry.duration(), 1200.0);
}

TEST_F(CommandExecution, MakesOneIntervalOfASessionOfAnotherLength)
{
    addClientAndStart();
    pass(600);
    done({"pause"});
    pass(600);
    done({"resume"});
    pass(600);
    done({"stop"});
    done({"edit", "sketches", "--duration", "10m", "--no-billable"});
    EXPECT_EQ(ledger().entries.front().spans.size(), 1U);
    EXPECT_EQ(ledger().entries.front().duration(), 600.0);
    EXPECT_FALSE(ledger().entries.front().isBillable);
}

TEST_F(CommandExecution, RefusesSavedTimeInTheFuture)
{
    done({"client", "add", "Aster"});
    EXPECT_EQ(refused({"add", "aster", "--start", "-10m", "--duration", "11m"}),
        "Saved time cannot extend into the future.");
    EXPECT_EQ(refused({"add", "aster", "--start", "-10m", "--duration", "745h"}),
        "A session must contain between 0 and 744 hours (31 days) of work.");
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(CommandExecution, PutsAMissingIntervalBack)
{
    addClientAndStart();
    pass(600);
    done({"stop"});
    done({"gap", "sketches", "--start", "08:00", "--end", "08:30"});
    EXPECT_EQ(ledger().entries.front().duration(), 2400.0);
    EXPECT_EQ(refused({"gap", "sketches", "--start", "08:15", "--end", "08:45"}),
        "The missing interval overlaps time already tracked.");
    EXPECT_EQ(refused({"gap", "sketches", "--start", "08:45", "--end", "08:45"}),
        "The missing interval must be a valid past time range.");
}

TEST_F(CommandExecution, DeletesASessionWhenToldNotToAsk)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    done({"delete", "sketches", "--yes"});
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(CommandExecution, RefusesToDeleteWhereNobodyCanBeAsked)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    EXPECT_EQ(refused({"delete", "sketches"}),
        "Nothing was deleted. Nobody can be asked here; add --yes to do it all the same.");
    EXPECT_EQ(ledger().entries.size(), 1U);
}

TEST_F(CommandExecution, AsksBeforeItDeletes)
{
    addClientAndStart();
    pass(5400);
    done({"stop"});
    console_.isTerminal = true;
    console_.answers = {"n", "y"};
    EXPECT_EQ(
        refused({"delete", "sketches"}), "Delete \"Sketches\", 1h 30m? [y/N] Nothing was deleted.");
    EXPECT_EQ(ledger().entries.size(), 1U);
    done({"delete", "sketches"});
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(CommandExecution, TakesTheEndOfTheInputForANo)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    console_.isTerminal = true;
    refused({"delete", "sketches"});
    EXPECT_EQ(ledger().entries.size(), 1U);
}

TEST_F(CommandExecution, ShowsADamagedLedgerAndLeavesItAlone)
{
    addClientAndStart();
    const std::string damaged = damageLedger();
    EXPECT_THAT(
        done({"status"}), HasSubstr("Attention  The ledger could not be read. Your backup"));
    EXPECT_EQ(refused({"client", "add", "Northstar"}),
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
    EXPECT_EQ(fileContent(ledgerPath()), damaged);
}

TEST_F(CommandExecution, TellsAnUnreadableLedgerFromAnEmptyOne)
{
    done({"client", "add", "Aster"});
    damageLedger();
    EXPECT_THAT(
        refused({"client", "list"}), StartsWith("Your ledger and backup could not be read."));
    EXPECT_THAT(refused({"start", "aster"}),
        StartsWith("There is no client \"aster\". Your ledger and backup could not be read."));
}

TEST_F(CommandExecution, ListsFromTheBackupWithAWarning)
{
    addClientAndStart();
    damageLedger();
    EXPECT_THAT(done({"client", "list", "--json"}), HasSubstr("\"name\":\"Aster Studio\""));
    EXPECT_THAT(console_.errors, StartsWith("The ledger could not be read. Your backup"));
}

TEST_F(CommandExecution, RestoresTheBackupAndKeepsTheDamagedLedger)
{
    addClientAndStart();
    pass(60);
    done({"checkpoint"});
    const std::string damaged = damageLedger();
    EXPECT_EQ(done({"restore", "--yes"}),
        "Restored the backup. Its running session is paused at its last checkpoint.\n");
    EXPECT_TRUE(ledger().active->isPaused());
    const std::string check = done({"check", "--json"});
    const std::size_t name = check.find("ledger.corrupt-");
    ASSERT_NE(name, std::string::npos);
    EXPECT_EQ(fileContent(directory_ / check.substr(name, check.find('"', name) - name)), damaged);
}

TEST_F(CommandExecution, ShowsAFailedRestoreAsTheApplicationDoes)
{
    done({"client", "add", "Aster"});
    EXPECT_EQ(refused({"restore", "--yes"}),
        "Backup restoration failed. Your existing files were preserved. No valid backup is "
        "available to restore.");
}

TEST_F(CommandExecution, ChecksBothFiles)
{
    EXPECT_EQ(done({"check", "--json"}),
        "{\"ledger\":{\"exists\":false,\"valid\":false,\"message\":null,\"clients\":null,"
        "\"projects\":null,\"entries\":null,\"active\":false},\"backup\":{\"exists\":false,"
        "\"valid\":false,\"message\":null,\"clients\":null,\"projects\":null,\"entries\":null,"
        "\"active\":false},\"preserved\":[]}\n");
    addClientAndStart();
    EXPECT_THAT(done({"check", "--json"}),
        StartsWith("{\"ledger\":{\"exists\":true,\"valid\":true,\"message\":null,\"clients\":1,"
                   "\"projects\":1,\"entries\":0,\"active\":true},\"backup\":{\"exists\":true,"
                   "\"valid\":true,\"message\":null,\"clients\":1,\"projects\":1,\"entries\":0,"
                   "\"active\":false}"));
}

TEST_F(CommandExecution, FailsACheckOfAFileThatIsNotValid)
{
    addClientAndStart();
    damageLedger();
    EXPECT_EQ(run({"check"}), ExitStatus::refused);
    EXPECT_EQ(console_.output,
        "Ledger  NOT VALID: The file isn't valid JSON: it holds a malformed string.\n"
        "Backup  valid: 1 client, 1 project, 0 saved sessions\n");
}

TEST_F(CommandExecution, SaysThatAChangeStandsWhoseResultCannotBeShown)
{
    done({"client", "add", "Aster"});
    console_.isBroken = true;
    EXPECT_EQ(refused({"start", "aster"}),
        "The change has been made and saved; only its result can't be shown. The output could not "
        "be written: Broken pipe.");
    EXPECT_TRUE(ledger().active);
    EXPECT_EQ(refused({"status"}), "The output could not be written: Broken pipe.");
}

TEST_F(CommandExecution, RefusesAtOnceWhileAnotherProgramHoldsTheDirectory)
{
    done({"client", "add", "Aster"});
    const auto held = files_.lockDirectory(directory_.string());
    const Date before = now_;
    EXPECT_THAT(refused({"start", "aster"}),
        testing::EndsWith(
            " is using this data directory, and only one program can write to it at a time."));
    EXPECT_EQ(now_, before);
    done({"status"});
}

TEST_F(CommandExecution, WaitsForAnotherOfItsKind)
{
    done({"client", "add", "Aster"});
    auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestryctl");
    int sleeps = 0;
    onSleep_ = [&] {
        if (++sleeps == 5) {
            held.lock.reset();
        }
    };
    done({"start", "aster"});
    EXPECT_TRUE(ledger().active);
}

TEST_F(CommandExecution, WaitsForFiveSecondsAndNoLonger)
{
    done({"client", "add", "Aster"});
    const auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestryctl");
    const Date before = now_;
    EXPECT_THAT(refused({"start", "aster"}), StartsWith("kestryctl (process "));
    EXPECT_GE(now_ - before, 5.0);
    EXPECT_LT(now_ - before, 5.2);
}

TEST_F(CommandExecution, ColorsOnlyATerminal)
{
    console_.isTerminal = true;
    EXPECT_THAT(done({"status"}), HasSubstr("\x1B["));
    environment_["NO_COLOR"] = "";
    EXPECT_THAT(done({"status"}), Not(HasSubstr("\x1B[")));
    environment_ = {{"TERM", "dumb"}};
    EXPECT_THAT(done({"status"}), Not(HasSubstr("\x1B[")));
}

TEST_F(CommandExecution, LetsNoNameActOnTheTerminal)
{
    done({"client", "add", "A\x1B[2J\nB"});
    EXPECT_THAT(done({"client", "list"}), HasSubstr("A\\x1B[2J\\nB"));
    EXPECT_EQ(ledger().clients.front().name, "A\x1B[2J\nB");
}

} // namespace
} // namespace Kestry
