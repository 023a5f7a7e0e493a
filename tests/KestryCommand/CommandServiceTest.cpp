#include "CommandService.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "CommandFixture.h"
#include "FakeLiveSync.h"
#include "HandedCommand.h"
#include "LedgerDocument.h"

namespace Kestry {
namespace {

/// A store that is open in this process, and two ways to a command: through the service, and on
/// the files of a folder with the same content.
class CommandServiceTest : public CommandFixture {
protected:
    CommandServiceTest()
    {
        addClientAndStart();
        pass(3600);
        done({"stop"});
        std::filesystem::copy(directory_, liveDirectory_, std::filesystem::copy_options::recursive);
        openStore();
    }

    void openStore()
    {
        KestryCore::StoreOptions options;
        options.directory = liveDirectory_.string();
        store_.emplace(KestryCore::StorePlatform{
                           files_, [this] { return now_; }, [this] { return nextUuid(); }},
            std::move(options));
        service_.emplace(*store_, sync_,
            KestryCore::StorePlatform{
                files_, [this] { return now_; }, [this] { return nextUuid(); }});
    }

    KestryCore::Uuid nextUuid()
    {
        KestryCore::Uuid uuid{};
        uuid.bytes[15] = ++lastUuid_;
        return uuid;
    }

    [[nodiscard]] LocalCommand command(std::vector<std::string> words) const
    {
        LocalCommand command = commandToHandOver(
            words, directory_.string(), [](const std::string& name) -> std::optional<std::string> {
                return name == "LANG" ? std::optional<std::string>("de_DE") : std::nullopt;
            });
        command.timeZone = zone_;
        command.isPrepared = true;
        command.writesToTerminal = console_.isTerminal;
        return command;
    }
    /// The answer that is given in the call; nullopt for what is left to the caller.
    std::optional<LocalAnswer> ask(const LocalCommand& asked)
    {
        std::optional<LocalAnswer> answer;
        const auto take = [this] {
            ++taken_;
            return isWaitedFor_;
        };
        const bool isForService =
            service_->run(asked, take, [&](LocalAnswer given) { answer = std::move(given); });
        EXPECT_EQ(isForService, answer.has_value());
        return answer;
    }
    /// Begins what is answered later, into `answer`.
    bool begin(const LocalCommand& asked, std::optional<LocalAnswer>& answer)
    {
        answer.reset();
        return service_->run(
            asked, [] { return true; }, [&](LocalAnswer given) { answer = std::move(given); });
    }
    bool begin(const std::vector<std::string>& words, std::optional<LocalAnswer>& answer)
    {
        return begin(command(words), answer);
    }
    LocalAnswer handed(const std::vector<std::string>& words)
    {
        return ask(command(words)).value_or(LocalAnswer{-1, false, {}, "declined"});
    }
    /// The same words on files, in the same place and with the same identifiers to come.
    LocalAnswer onFiles(std::vector<std::string> words)
    {
        console_.output.clear();
        console_.errors.clear();
        const ProgramPlatform platform{files_, console_,
            [](const std::string& name) {
                return name == "LANG" ? std::optional<std::string>("de_DE") : std::nullopt;
            },
            [this] { return now_; }, [](double) {}, pictureAsItIs, [this] { return nextUuid(); }};
        words.insert(words.begin(), {"--data-directory", directory_.string()});
        if (std::ranges::find(words, "--time-zone") == words.end()) {
            words.insert(words.begin(), {"--time-zone", zone_});
        }
        const auto status = static_cast<int>(runProgram(words, platform));
        return {status, false, console_.output, console_.errors};
    }
    /// Opens the store on a ledger of so many sessions.
    void holdSessions(std::size_t count)
    {
        KestryCore::LedgerData data = KestryCore::decodeLedger(fileContent(ledgerPath()));
        while (data.entries.size() < count) {
            KestryCore::TimeEntry entry = data.entries.front();
            entry.id = KestryCore::Uuid::random();
            data.entries.append(std::move(entry));
        }
        for (const char* name : {"ledger.json", "ledger.backup.json"}) {
            std::ofstream(liveDirectory_ / name, std::ios::binary)
                << KestryCore::encodeLedger(data);
        }
        openStore();
    }
    void expectSame(const std::vector<std::string>& words)
    {
        const std::uint8_t before = lastUuid_;
        const LocalAnswer expected = onFiles(words);
        lastUuid_ = before;
        const LocalAnswer answer = handed(words);
        const std::string asked = testing::PrintToString(words);
        EXPECT_EQ(answer.output, expected.output) << asked;
        EXPECT_EQ(answer.errors, expected.errors) << asked;
        EXPECT_EQ(answer.status, expected.status) << asked;
    }

    std::filesystem::path liveDirectory_ = root_ / "live";
    std::optional<KestryCore::TimeStore> store_;
    FakeLiveSync sync_;
    std::optional<CommandService> service_;
    std::string zone_ = "Asia/Kolkata";
    std::uint8_t lastUuid_ = 0;
    int taken_ = 0;
    bool isWaitedFor_ = true;
};

TEST_F(CommandServiceTest, AnswersAreThoseOfTheFilesToTheByte)
{
    for (const auto& words : std::vector<std::vector<std::string>>{{"status"}, {"status", "--json"},
             {"start", "aster", "web", "--title", "Ink"}, {"status"}, {"status", "--json"},
             {"pause", "--at", "14:45"}, {"resume", "--json"}, {"rename", "Paper"},
             {"move", "Website"}, {"checkpoint"}, {"status", "--json"}, {"stop"}, {"sessions"},
             {"sessions", "--json"}, {"report"}, {"report", "--json"}, {"client", "list", "--json"},
             {"project", "list"}, {"suggest", "Sk", "--json"}, {"client", "add", "Birch"},
             {"client", "edit", "Birch", "--rate", "10"},
             {"add", "Birch", "--start", "-2h", "--duration", "1h"}, {"export"}, {"sync", "status"},
             {"delete", "Sketches", "--yes"}, {"restore", "--yes"}}) {
        expectSame(words);
    }
    EXPECT_EQ(fileContent(liveDirectory_ / "ledger.json"), fileContent(ledgerPath()));
}

TEST_F(CommandServiceTest, RefusalsAreThoseOfTheFilesToTheByte)
{
    for (const auto& words : std::vector<std::vector<std::string>>{{"pause"}, {"pause", "--json"},
             {"start", "nobody"}, {"start", "nobody", "--json"}, {"status", "--locale", "xx_XX"},
             {"status", "--time-zone", "Nowhere"}, {"stop", "--at", "yesterday"},
             {"client", "add", " "}, {"resume"}}) {
        expectSame(words);
    }
}

TEST_F(CommandServiceTest, AnsweringOnATerminalIsColoredAsThere)
{
    console_.isTerminal = true;
    expectSame({"status"});
    EXPECT_NE(handed({"status"}).output.find('\x1B'), std::string::npos);
}

TEST_F(CommandServiceTest, AChangeIsPublishedToWhoeverObservesTheStore)
{
    int published = 0;
    const auto subscription = store_->data().observe([&](const auto&) { ++published; });
    EXPECT_TRUE(handed({"start", "aster"}).hasChanged);
    EXPECT_EQ(published, 1);
    EXPECT_TRUE(store_->data()->active);
    EXPECT_FALSE(handed({"status"}).hasChanged);
}

TEST_F(CommandServiceTest, ARefusalIsNoneOfTheApplicationsMessages)
{
    EXPECT_EQ(handed({"pause"}).errors, "No running session to pause.\n");
    EXPECT_FALSE(handed({"pause"}).hasChanged);
    EXPECT_EQ(*store_->errorMessage(), std::nullopt);
}

TEST_F(CommandServiceTest, ADamagedLedgerIsToldToTheTerminalAndShownInTheApplication)
{
    std::filesystem::resize_file(liveDirectory_ / "ledger.json", 20);
    const std::string message = "The ledger on disk could not be read. It has been preserved. "
                                "Restore the last backup in Settings if available.";
    EXPECT_EQ(handed({"start", "aster"}).errors, message + "\n");
    EXPECT_EQ(*store_->errorMessage(), message);
    EXPECT_EQ(handed({"client", "list"}).errors, message + "\n");
    EXPECT_EQ(handed({"restore", "--yes"}).status, 0);
    EXPECT_EQ(*store_->errorMessage(), std::nullopt);
}

TEST_F(CommandServiceTest, AnOldMessageOfTheApplicationIsNoneOfTheCommands)
{
    store_->reportFailure("Earlier.");
    EXPECT_EQ(handed({"client", "list"}).errors, "");
    EXPECT_EQ(handed({"start", "nobody"}).errors.find("Earlier"), std::string::npos);
    EXPECT_NE(handed({"status"}).output.find("Earlier."), std::string::npos);
}

TEST_F(CommandServiceTest, WhatIsNotForTheStoreIsLeftToTheCaller)
{
    for (const auto& words : std::vector<std::vector<std::string>>{{}, {"--help"}, {"--version"},
             {"status", "--help"}, {"check"}, {"completion", "bash"}, {"sttaus"}, {"start"},
             {"delete", "Sketches"}, {"restore"}}) {
        EXPECT_EQ(ask(command(words)), std::nullopt) << testing::PrintToString(words);
    }
    EXPECT_EQ(taken_, 0);
}

TEST_F(CommandServiceTest, NothingOfACommandLineIsLeftInTheNext)
{
    handed({"add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Ink", "--json"});
    handed({"status", "--help"});
    handed({"start", "aster", "--titel", "Ink"});
    expectSame({"start", "aster"});
    EXPECT_EQ(store_->data()->active->title, "");
    expectSame({"stop"});
    EXPECT_EQ(handed({"add", "aster", "--duration", "1h"}).errors, "declined");
}

TEST_F(CommandServiceTest, ACallerWhoReadsItsWordsInAnotherWayIsLeftToItself)
{
    EXPECT_EQ(ask(command({"status", "--data-directory", "elsewhere"})), std::nullopt);
    LocalCommand other = command({"rename", "--", "--data-directory", "x"});
    other.namedDirectory = "x";
    EXPECT_EQ(ask(other), std::nullopt);
}

TEST_F(CommandServiceTest, NothingIsDoneForACallerWhoHasGivenUp)
{
    isWaitedFor_ = false;
    EXPECT_EQ(ask(command({"start", "aster"})), std::nullopt);
    EXPECT_EQ(taken_, 1);
    EXPECT_FALSE(store_->data()->active);
}

TEST_F(CommandServiceTest, WhatAPersonHasAgreedToIsDeletedWhateverTheWordsMeanByNow)
{
    handed({"add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Sketches"});
    LocalCommand deletion = command({"delete", "Sketches"});
    const KestryCore::Uuid agreed = store_->data()->entries.back().id;
    deletion.isConfirmed = true;
    deletion.session = agreed.text();
    EXPECT_EQ(ask(deletion)->status, 0);
    EXPECT_EQ(store_->data()->entries.size(), 1U);
    EXPECT_EQ(store_->data()->entries.find(agreed), nullptr);
}

TEST_F(CommandServiceTest, FilesAreTheCallersToWrite)
{
    const LocalAnswer answer = handed({"export", (root_ / "out.csv").string()});
    EXPECT_EQ(answer.output, "Exported 1 saved sessions to out.csv.\n");
    EXPECT_EQ(answer.file, (FileToWrite{(root_ / "out.csv").string(), handed({"export"}).output}));
    EXPECT_FALSE(std::filesystem::exists(root_ / "out.csv"));
}

TEST_F(CommandServiceTest, FilesAreTheCallersToRead)
{
    std::ofstream(root_ / "logo.png") << "no picture";
    const std::string file = (root_ / "logo.png").string();
    EXPECT_EQ(handed({"client", "edit", "aster", "--logo", file}).errors, "declined");
    LocalCommand edit = command({"client", "edit", "aster", "--logo", "elsewhere"});
    edit.logo = "no picture";
    EXPECT_EQ(
        ask(edit)->errors, "Client logos must be valid PNG images up to 256 pixels and 256 KB.\n");
}

TEST_F(CommandServiceTest, ACallerThatIsNotPreparedIsLeftWhatNamesAFile)
{
    LocalCommand unread = command({"export", "out.csv"});
    unread.isPrepared = false;
    EXPECT_EQ(ask(unread), std::nullopt);
    unread.words = {"export"};
    EXPECT_TRUE(ask(unread));
}

TEST_F(CommandServiceTest, WhatGrowsWithALongLedgerIsLeftToTheCaller)
{
    holdSessions(3'000);
    for (const auto& words : std::vector<std::vector<std::string>>{{"sessions"}, {"export"},
             {"export", "out.csv"}, {"edit", "Sketches", "--title", "x"},
             {"gap", "Sketches", "--start", "-2h", "--end", "-1h"},
             {"delete", "Sketches", "--yes"}}) {
        EXPECT_EQ(ask(command(words)), std::nullopt) << testing::PrintToString(words);
    }
    for (const char* word : {"status", "report"}) {
        EXPECT_TRUE(ask(command({word}))) << word;
    }
    EXPECT_TRUE(ask(command({"client", "list"})));
}

TEST_F(CommandServiceTest, LongTitlesMakeALedgerLong)
{
    store_->addEntry({.clientID = store_->data()->clients.front().id,
        .title = std::string(200'000, 'x'),
        .start = now_ + -7200.0,
        .duration = 60.0});
    EXPECT_EQ(ask(command({"sessions"})), std::nullopt);
    EXPECT_TRUE(ask(command({"report"})));
}

TEST_F(CommandServiceTest, InALongLedgerASessionIsMeantByWhatTheCallerFound)
{
    holdSessions(3'000);
    const KestryCore::Uuid id = store_->data()->entries.front().id;
    LocalCommand edit = command({"edit", "Sketches", "--title", "Ink"});
    edit.session = id.text();
    EXPECT_EQ(ask(edit)->status, 0);
    EXPECT_EQ(store_->data()->entries.find(id)->title, "Ink");
}

TEST_F(CommandServiceTest, ADamagedLedgerIsReadWhereItIsStillWhole)
{
    holdSessions(3'000);
    std::filesystem::resize_file(liveDirectory_ / "ledger.json", 20);
    EXPECT_EQ(handed({"checkpoint"}).status, 0);
    EXPECT_EQ(handed({"client", "add", "Birch"}).status, 1);
    EXPECT_EQ(std::ranges::count(handed({"export"}).output, '\n'), 3'001);
}

TEST_F(CommandServiceTest, LocalTimesAreThoseOfTheTerminalEvenWhereItsZoneHasNoName)
{
    LocalCommand start = command({"start", "aster", "--at", "2026-03-14 10:00"});
    start.timeZone = "XYZ-3";
    EXPECT_EQ(ask(start)->status, 0);
    const auto expected =
        dateInUtc(KestryCore::WallTime{KestryCore::CalendarDay{2026, 3, 14}, 7, 0, 0.0});
    EXPECT_EQ(store_->data()->active->runningSince, expected);
}

TEST_F(CommandServiceTest, ATimeZoneThatIsNoneIsRefused)
{
    LocalCommand status = command({"status"});
    for (const char* zone : {"", "XYZ", "Europe/Berln", "/etc/localtime", "TZif"}) {
        status.timeZone = zone;
        EXPECT_EQ(ask(status)->status, 2) << zone;
    }
}

TEST_F(CommandServiceTest, WhatTakesItsTimeIsAnsweredWhenItIsOver)
{
    std::optional<LocalAnswer> answer;
    EXPECT_TRUE(begin({"sync", "now"}, answer));
    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(handed({"client", "list"}).status, 0);
    sync_.known.status = "Up to date";
    sync_.finish();
    EXPECT_EQ(answer, (LocalAnswer{0, true, "Exchanged records. Up to date.\n", ""}));
    EXPECT_TRUE(begin({"sync", "on", "--json"}, answer));
    sync_.finish();
    EXPECT_EQ(answer->output, "{\"ok\":true,\"id\":null}\n");
    EXPECT_EQ(sync_.begun, (std::vector<std::string>{"now", "on"}));
}

TEST_F(CommandServiceTest, AFailureThatComesLaterHasItsWordsAndItsStatus)
{
    std::optional<LocalAnswer> answer;
    EXPECT_TRUE(begin({"sync", "on"}, answer));
    sync_.finish("The record store is full.");
    EXPECT_EQ(answer, (LocalAnswer{1, false, "", "The record store is full.\n"}));
    EXPECT_TRUE(begin({"sync", "now", "--json"}, answer));
    sync_.finish("The record store is full.");
    EXPECT_EQ(answer->output, "{\"error\":\"The record store is full.\"}\n");
}

TEST_F(CommandServiceTest, WhatIsRefusedAtOnceIsNotWaitedFor)
{
    sync_.refusal = "Sync is off.";
    EXPECT_EQ(handed({"sync", "now"}).errors, "Sync is off.\n");
    EXPECT_EQ(handed({"sync", "sign-out"}).status, 1);
    sync_.refusal.reset();
    EXPECT_EQ(handed({"sync", "now", "--locale", "xx_XX"}).status, 2);
    EXPECT_EQ(handed({"sync", "off"}).output, "Sync is off.\n");
    EXPECT_EQ(sync_.begun, (std::vector<std::string>{"off"}));
}

TEST_F(CommandServiceTest, SigningOutIsToldOnceThePasswordIsForgotten)
{
    std::optional<LocalAnswer> answer;
    EXPECT_TRUE(begin({"sync", "sign-out"}, answer));
    EXPECT_EQ(answer, std::nullopt);
    sync_.finish();
    EXPECT_EQ(answer->output, "Signed out. Sync is off.\n");
    EXPECT_EQ(sync_.begun, (std::vector<std::string>{"sign-out"}));
}

TEST_F(CommandServiceTest, NobodyIsAskedForThePasswordToAWrongAddress)
{
    sync_.wrongAddress = "example.org";
    std::optional<LocalAnswer> answer;
    LocalCommand signIn = command({"sync", "sign-in", "example.org", "--user", "mia"});
    signIn.isPrepared = false;
    EXPECT_TRUE(begin(signIn, answer));
    sync_.finish("This is not the address of a record store.");
    EXPECT_EQ(answer->errors, "This is not the address of a record store.\n");
}

TEST_F(CommandServiceTest, ASignInIsLeftToTheCallerUntilItBringsThePassword)
{
    LocalCommand signIn =
        command({"sync", "sign-in", "https://example.org/hours", "--user", "mia"});
    EXPECT_EQ(ask(signIn), std::nullopt);
    EXPECT_EQ(taken_, 0);
    signIn.secret = "open sesame";
    std::optional<LocalAnswer> answer;
    EXPECT_TRUE(begin(signIn, answer));
    EXPECT_EQ(sync_.credentials.password, "open sesame");
    sync_.known.forgetsPassword = true;
    sync_.finish();
    EXPECT_EQ(answer->output,
        "Signed in to https://example.org/hours as mia. This desktop keeps no passwords: sign in "
        "again after the next start.\n");
}

TEST_F(CommandServiceTest, UploadingAgainIsConfirmedBeforeItBegins)
{
    LocalCommand upload = command({"sync", "upload-again"});
    EXPECT_EQ(ask(upload), std::nullopt);
    upload.isConfirmed = true;
    std::optional<LocalAnswer> answer;
    EXPECT_TRUE(begin(upload, answer));
    sync_.known.status = "Review sync conflicts";
    sync_.finish();
    EXPECT_EQ(answer->output, "Uploaded all records again. Review sync conflicts.\n");
    EXPECT_EQ(sync_.begun, std::vector<std::string>{"upload-again"});
}

TEST_F(CommandServiceTest, AFileNeedsNoPassword)
{
    std::optional<LocalAnswer> answer;
    EXPECT_TRUE(begin({"sync", "sign-in", "sqlite:/shared/store"}, answer));
    sync_.finish();
    EXPECT_EQ(answer->output, "Signed in to sqlite:/shared/store.\n");
    EXPECT_EQ(sync_.credentials.password, std::nullopt);
}

TEST_F(CommandServiceTest, TheStatusOfReplicationIsThatOfTheApplication)
{
    sync_.known = {true, true, true, "Sync needs attention", KestryCore::Date{0.5},
        "The record store is full.", SyncCondition::Account{"https://example.org/hours", "mia"}};
    EXPECT_EQ(handed({"sync", "status", "--json"}).output,
        R"({"configured":true,"enabled":true,"isSyncing":true,"status":"Sync needs attention",)"
        R"("lastSync":0.5,"errorMessage":"The record store is full.","pending":0,"staged":0,)"
        R"("conflicts":0,"remoteSessions":[],)"
        R"("account":{"address":"https:\/\/example.org\/hours","user":"mia"}})"
        "\n");
    EXPECT_EQ(handed({"sync", "status", "--locale", "en_GB", "--time-zone", "UTC"}).output,
        "Sync         Sync needs attention\n"
        "Problem      The record store is full.\n"
        "Account      mia · https://example.org/hours\n"
        "Last synced  1 Jan 2001, 00:00\n");
}

} // namespace
} // namespace Kestry
