// What kestryctl makes of files of 1 GB, sound ones and ones made to break it: every one of them
// opens or is refused in words, within a multiple of the file in memory. Needs 2 GB of disk and,
// for the dearest file, 14 GB of memory.

#include <fcntl.h>
#include <fmt/core.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "FileSystem.h"
#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "Measurement.h"

namespace KestryCore {
namespace {

constexpr std::size_t gigabyte = 1'000'000'000;

/// The text and the records read from it, with room for the tables of the rules.
constexpr double writtenFormLimit = 3.0;
/// For each byte of text, a parser of any JSON fills at most four of positions and eight of
/// values, and the text stands beside them.
constexpr double anyFormLimit = 14.0;

/// A file that is never in this program's memory: a child's peak begins with that of its parent.
class BigFile {
public:
    explicit BigFile(const std::string& path) : stream_(path, std::ios::binary) { }

    void append(std::string_view bytes)
    {
        stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        require(stream_.good(), "write");
        size_ += bytes.size();
    }
    /// Appends the element again and again, until the file has its size.
    void fill(std::string_view element, std::string_view separator = "")
    {
        std::string chunk;
        for (int count = 0; count < 10'000; ++count) {
            chunk.append(separator).append(element);
        }
        append(element);
        while (!isFull()) {
            append(chunk);
        }
    }
    [[nodiscard]] bool isFull() const { return size_ >= gigabyte; }

private:
    std::ofstream stream_;
    std::size_t size_ = 0;
};

/// Ordinary sessions, each with an identifier of its own.
void writeSessions(BigFile& file, std::string_view separator)
{
    const LedgerData ledger = generateLedger({.sessions = 2'000});
    const std::string document = encodeLedger(ledger);
    constexpr std::string_view key = "\"entries\":[";
    file.append(std::string_view(document).substr(0, document.find(key) + key.size()));
    bool isFirst = true;
    for (std::uint64_t round = 0; !file.isFull(); ++round) {
        for (TimeEntry entry : ledger.entries) {
            std::memcpy(entry.id.bytes.data(), &round, sizeof round);
            if (entry.sourceID) {
                entry.sourceID = "imported-" + entry.id.text();
            }
            JsonWriter writer;
            encode(writer, entry);
            file.append(isFirst ? "" : separator);
            file.append(writer.take());
            isFirst = false;
        }
    }
    file.append("]}");
}

/// The text of a ledger with one client and one session, around its title or its only interval.
class SmallLedger {
public:
    SmallLedger()
    {
        LedgerData ledger = generateLedger({.sessions = 1, .clients = 1, .projects = 1});
        ledger.entries.modify(ledger.entries.front().id, [](TimeEntry& entry) {
            entry.title = "TITLE";
            entry.spans = {{Date{0}, Date{1}}};
            entry.recordedDuration.reset();
            entry.sourceID.reset();
        });
        document_ = encodeLedger(ledger);
    }
    /// With something in the place of a part of the document.
    void write(BigFile& file, std::string_view part, const std::function<void()>& writePart) const
    {
        const std::size_t begin = document_.find(part);
        file.append(std::string_view(document_).substr(0, begin));
        writePart();
        file.append(std::string_view(document_).substr(begin + part.size()));
    }

private:
    std::string document_;
};

void writeTitleOf(BigFile& file, std::string_view text)
{
    SmallLedger().write(file, "TITLE", [&] { file.fill(text); });
}

void writeStart(BigFile& file, std::string_view head, std::string_view digits)
{
    SmallLedger().write(file, "\"start\":0", [&] {
        file.append("\"start\":");
        file.append(head);
        file.fill(digits);
    });
}

void writeSpansOfNoLength(BigFile& file)
{
    SmallLedger().write(
        file, R"({"start":0,"end":1})", [&] { file.fill(R"({"start":0,"end":0})", ","); });
}

void writeUnknownMember(BigFile& file, std::string_view head, std::string_view element,
    std::string_view separator, std::string_view tail)
{
    file.append(R"({"clients":[],"projects":[],"entries":[],)");
    file.append(head);
    file.fill(element, separator);
    file.append(tail);
    file.append("}");
}

struct HugeFile {
    std::string name;
    std::string words; ///< With which it is refused; none when it opens.
    double memoryLimit;
    std::function<void(BigFile&)> write;
};

const std::string badString = "The file isn't valid JSON: it holds a malformed string.";

std::vector<HugeFile> soundFiles()
{
    return {
        {"as written: sessions", "", writtenFormLimit,
            [](BigFile& file) { writeSessions(file, ","); }},
        {"as written: one title", "", writtenFormLimit,
            [](BigFile& file) { writeTitleOf(file, "abcdefgh"); }},
        {"as written: spans of no length", "", writtenFormLimit, writeSpansOfNoLength},
        {"sessions, each on a line", "", anyFormLimit,
            [](BigFile& file) { writeSessions(file, ",\n"); }},
        {"as written, but for a last blank", "", anyFormLimit,
            [](BigFile& file) {
                writeSessions(file, ",");
                file.append(" ");
            }},
        {"one fraction of 1 billion digits", "", anyFormLimit,
            [](BigFile& file) { writeStart(file, "0.", "3"); }},
    };
}

std::vector<HugeFile> hostileFiles()
{
    return {
        {"one number of 1 billion digits",
            "The file isn't valid JSON: it holds a malformed or excessive number.", anyFormLimit,
            [](BigFile& file) { writeStart(file, "", "9"); }},
        {"opening brackets", "The file isn't valid JSON.", anyFormLimit,
            [](BigFile& file) { file.fill("["); }},
        {"bytes that are not UTF-8", "The file isn't valid UTF-8 text.", anyFormLimit,
            [](BigFile& file) { writeTitleOf(file, "\xFF"); }},
        {"lone surrogates", badString, anyFormLimit,
            [](BigFile& file) { writeTitleOf(file, "\\ud800"); }},
        {"a string without an end", badString, anyFormLimit,
            [](BigFile& file) {
                file.append("\"");
                file.fill("a");
            }},
        {"one key all over", "gives the key \"k\" twice.", anyFormLimit,
            [](BigFile& file) { writeUnknownMember(file, "", "\"k\":0", ",", ""); }},
        {"empty arrays, under an unknown key", "", anyFormLimit,
            [](BigFile& file) { writeUnknownMember(file, "\"x\":[", "[]", ",", "]"); }},
        {"numbers, under an unknown key", "", anyFormLimit,
            [](BigFile& file) { writeUnknownMember(file, "\"x\":[", "1", ",", "]"); }},
    };
}

struct Outcome {
    int status;
    std::string words;
    double seconds;
    double peakBytes;
};

/// Runs a program to its end, with all that it says going into a file.
Outcome run(std::vector<std::string> words, const std::string& saidPath)
{
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(
        &actions, STDOUT_FILENO, saidPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    int status = -1;
    rusage usage{};
    const double seconds = secondsOf([&] {
        pid_t child = 0;
        errno = posix_spawn(&child, words[0].c_str(), &actions, nullptr, arguments.data(), environ);
        require(errno == 0, words[0].c_str());
        require(wait4(child, &status, 0, &usage) == child, "wait4");
    });
    posix_spawn_file_actions_destroy(&actions);
    std::ifstream said(saidPath);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
        std::string(std::istreambuf_iterator<char>(said), {}), seconds,
        static_cast<double>(usage.ru_maxrss) * 1024.0};
}

/// Whether a command said what is known of the file. With no backup to show, the status of a ledger
/// that cannot be read tells that of both files, and why not of the last.
bool isAsExpected(const HugeFile& file, const std::string& command, const Outcome& outcome)
{
    const auto says = [&](const char* words) {
        return outcome.words.find(words) != std::string::npos;
    };
    if (command == "status") {
        return outcome.status == 0
            && says("Your ledger and backup could not be read.") == !file.words.empty();
    }
    return outcome.status == (file.words.empty() ? 0 : 1)
        && says(file.words.empty() ? "valid: " : file.words.c_str());
}

class Trial {
public:
    Trial()
        : program_(std::filesystem::canonical("/proc/self/exe").parent_path() / "kestryctl"),
          ledger_(directory_.file("ledger.json"))
    {
    }

    void measure(const HugeFile& huge)
    {
        {
            BigFile file(ledger_);
            huge.write(file);
        }
        report(huge, "status");
        report(huge, "check");
    }

    /// The same sound file under both names, as both are after many a change.
    void measureWithBackup(HugeFile huge)
    {
        huge.name += ", twice";
        {
            BigFile file(ledger_);
            huge.write(file);
        }
        const std::string backup = directory_.file("ledger.backup.json");
        std::filesystem::create_hard_link(ledger_, backup);
        report(huge, "check");
        std::filesystem::remove(backup);
    }

    void measureOneByteTooMany()
    {
        BigFile(ledger_).append("{");
        std::filesystem::resize_file(ledger_, maximumFileBytes + 1);
        const HugeFile huge{
            "more than 2^30 bytes", "The file is larger than 1 GB and was not read.", 0.1, nullptr};
        report(huge, "status");
        report(huge, "check");
    }

    [[nodiscard]] int exitStatus() const { return failed_ ? 1 : limits_.exitStatus(); }

private:
    void report(const HugeFile& huge, const std::string& command)
    {
        const Outcome outcome = run(
            {program_, "--data-directory", directory_.path(), command}, directory_.file("said"));
        const bool isExpected = isAsExpected(huge, command, outcome);
        failed_ = failed_ || !isExpected;
        const double size = static_cast<double>(std::filesystem::file_size(ledger_));
        const double multiple = outcome.peakBytes / size;
        fmt::print("{:<36}{:<8}{:>7.1f} s{:>8.2f}{:>6.1f}  {:<8}{}\n", huge.name, command,
            outcome.seconds, multiple, huge.memoryLimit, limits_.judge(multiple, huge.memoryLimit),
            isExpected ? (huge.words.empty() ? "opens" : huge.words)
                       : fmt::format("STATUS {}: {}", outcome.status, outcome.words));
        std::fflush(stdout);
    }

    ScratchDirectory directory_;
    std::string program_;
    std::string ledger_;
    Limits limits_;
    bool failed_ = false;
};

} // namespace
} // namespace KestryCore

int main()
{
    using namespace KestryCore;
    fmt::print("Files of 1 GB. Peak memory and its limit are multiples of the file.\n"
               "{:<36}{:<8}{:>9}{:>8}{:>6}\n",
        "file", "command", "time", "peak", "limit");
    Trial trial;
    const std::vector<HugeFile> sound = soundFiles();
    for (const HugeFile& file : sound) {
        trial.measure(file);
    }
    trial.measureWithBackup(sound.front());
    for (const HugeFile& file : hostileFiles()) {
        trial.measure(file);
    }
    trial.measureOneByteTooMany();
    return trial.exitStatus();
}
