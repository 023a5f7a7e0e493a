#include "CommandFixture.h"

namespace Kestry {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CsvFile : public CommandFixture {
protected:
    CsvFile()
    {
        done({"client", "add", "Aster", "--rate", "150", "--projects"});
        done({"add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Say \"hi\""});
    }

    /// A file beside the data directory.
    [[nodiscard]] std::string file(const std::string& name) const
    {
        return (root_ / name).string();
    }

    /// The names of what stands beside the data directory, and in it.
    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const auto& found : std::filesystem::recursive_directory_iterator(root_)) {
            result.push_back(found.path().filename().string());
        }
        std::ranges::sort(result);
        return result;
    }

    const std::string csv_ =
        "Client,Project,Description,Start,End,Hours,Hourly rate,Earned,Billable,Rate known,"
        "Duration seconds,Recorded duration seconds,Source ID\r\n"
        "\"Aster\",\"Unassigned\",\"Say \"\"hi\"\"\",\"2026-03-14T07:00:00.000Z\","
        "\"2026-03-14T08:00:00.000Z\",\"1.000000\",\"\",\"\",\"true\",\"false\",\"3600.0\",\"\","
        "\"\"\r\n";
};

TEST_F(CsvFile, GoesToTheStandardOutputByteForByte)
{
    EXPECT_EQ(done({"export"}), csv_);
    EXPECT_EQ(done({"export", "-"}), csv_);
    EXPECT_EQ(console_.errors, "");
}

TEST_F(CsvFile, GoesToAFileWithAWordOfIt)
{
    EXPECT_EQ(done({"export", file("out.csv")}), "Exported 1 saved sessions to out.csv.\n");
    EXPECT_EQ(fileContent(file("out.csv")), csv_);
}

TEST_F(CsvFile, IsToldOfAsJson)
{
    EXPECT_THAT(done({"export", "--json", file("out.csv")}),
        testing::MatchesRegex(
            "\\{\"ok\":true,\"sessions\":1,\"file\":\".*out.csv\",\"csv\":null\\}\n"));
    EXPECT_THAT(done({"export", "--json"}),
        StartsWith("{\"ok\":true,\"sessions\":1,\"file\":null,\"csv\":\"Client,Project,"));
}

TEST_F(CsvFile, TakesThePlaceOfAnOlderOneAndOfNothingElse)
{
    std::ofstream(file("out.csv")) << std::string(5000, 'x');
    std::ofstream(file("out.csv.new")) << "mine";
    const auto before = names();
    done({"export", file("out.csv")});
    EXPECT_EQ(fileContent(file("out.csv")), csv_);
    EXPECT_EQ(fileContent(file("out.csv.new")), "mine");
    EXPECT_EQ(names(), before);
}

TEST_F(CsvFile, FollowsALinkAndLeavesIt)
{
    std::ofstream(file("out.csv")) << "old";
    std::filesystem::create_symlink(file("out.csv"), file("link"));
    EXPECT_EQ(done({"export", file("link")}), "Exported 1 saved sessions to link.\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file("link")));
    EXPECT_EQ(fileContent(file("out.csv")), csv_);
}

TEST_F(CsvFile, ThatCannotBeWrittenIsToldInWords)
{
    const auto before = names();
    EXPECT_EQ(refused({"export", file("none/out.csv")}),
        "out.csv could not be written: No such file or directory.");
    EXPECT_EQ(refused({"export", root_.string()}), root_.string() + " is a directory.");
    EXPECT_EQ(names(), before);
}

TEST_F(CsvFile, OnATerminalHasNothingThatActsOnIt)
{
    done({"add", "aster", "--start", "-2h", "--duration", "1h", "--title", "a\x1B]0;b\x07\u0085"});
    console_.isTerminal = true;
    const std::string shown = done({"export"});
    EXPECT_THAT(shown, HasSubstr("\"a\\x1B]0;b\\x07\\x85\""));
    EXPECT_EQ(shown.find('\r'), std::string::npos);
    EXPECT_EQ(std::ranges::count(shown, '\n'), 3);
}

TEST_F(CsvFile, NeverReplacesALinkToNothing)
{
    std::filesystem::create_symlink(file("nothing"), file("link"));
    EXPECT_EQ(refused({"export", file("link")}), file("link") + " is a link that leads nowhere.");
    EXPECT_TRUE(std::filesystem::is_symlink(file("link")));
}

TEST_F(CsvFile, NeverReplacesTheLedgerOrItsBackup)
{
    std::filesystem::create_symlink(ledgerPath(), file("link.csv"));
    std::filesystem::create_directory_symlink(directory_, file("folder"));
    const std::string before = fileContent(ledgerPath());
    for (const std::string& name : {ledgerPath().string(), file("data/ledger.backup.json"),
             file("link.csv"), file("folder/ledger.json"), file("data/ledger.json.new")}) {
        EXPECT_THAT(refused({"export", name}), HasSubstr("may be one of the ledger's own files"));
    }
    EXPECT_EQ(fileContent(ledgerPath()), before);
    done({"export", file("data/out.csv")});
}

TEST_F(CsvFile, ExportsTheBackupOfADamagedLedgerAndSaysSo)
{
    done({"client", "add", "Birch"});
    damageLedger();
    EXPECT_EQ(done({"export"}), csv_);
    EXPECT_THAT(console_.errors, StartsWith("The ledger could not be read. Your backup"));
}

TEST_F(CsvFile, OfAnEmptyLedgerHasAHeaderAlone)
{
    directory_ = root_ / "empty";
    EXPECT_EQ(done({"export", file("out.csv")}), "Exported 0 saved sessions to out.csv.\n");
    EXPECT_EQ(fileContent(file("out.csv")), csv_.substr(0, csv_.find('\n') + 1));
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

} // namespace
} // namespace Kestry
