#pragma once

#include <gmock/gmock.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "CommandProgram.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerError.h"
#include "PosixFileSystem.h"
#include "ZoneCalendar.h"

namespace Kestry {

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

    [[nodiscard]] std::optional<std::string> readSecret(std::string_view prompt) override
    {
        errors += isTerminal ? prompt : "";
        ++secretsRead;
        return readLine();
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
    int secretsRead = 0;
    std::deque<std::string> answers;
    std::string output;
    std::string errors;
};

[[nodiscard]] inline std::string fileContent(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

/// Stands in for the program that makes logos of pictures.
[[nodiscard]] inline std::string pictureAsItIs(std::string_view picture)
{
    return std::string(picture);
}

/// Runs command lines on a data directory of its own, at a moment of its own.
class CommandFixture : public testing::Test {
protected:
    CommandFixture()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kestryctl-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        directory_ = root_ / "data";
        now_ = dateInUtc(KestryCore::WallTime{KestryCore::CalendarDay{2026, 3, 14}, 9, 0, 0.0});
    }

    ~CommandFixture() override { std::filesystem::remove_all(root_); }

    ExitStatus run(std::vector<std::string> words)
    {
        console_.output.clear();
        console_.errors.clear();
        const ProgramPlatform platform{files_, console_,
            [this](const std::string& name) {
                const auto found = environment_.find(name);
                return found != environment_.end() ? std::optional(found->second) : std::nullopt;
            },
            [this] { return now_; }, [this](double seconds) { sleep(seconds); }, pictureAsItIs};
        words.insert(words.begin(),
            {"--data-directory", directory_.string(), "--time-zone", timeZone_, "--locale",
                locale_});
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
    [[nodiscard]] KestryCore::LedgerData ledger() const
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
        done({"client", "add", "Aster Studio", "--rate", "150", "--projects"});
        done({"project", "add", "aster", "Website", "--rate", "150"});
        done({"start", "aster", "website", "--title", "Sketches"});
    }

    KestryCore::PosixFileSystem files_;
    ScriptedConsole console_;
    std::map<std::string, std::string> environment_;
    std::string timeZone_ = "UTC";
    std::string locale_ = "en_US";
    std::filesystem::path root_;
    std::filesystem::path directory_;
    std::function<void()> onSleep_;
    KestryCore::Date now_;
};

} // namespace Kestry
