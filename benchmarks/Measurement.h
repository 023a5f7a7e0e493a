#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace KestryCore {

/// A new directory below the temporary directory, removed with all that is in it at the end.
class ScratchDirectory {
public:
    ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ~ScratchDirectory();

    [[nodiscard]] std::string file(const std::string& name) const { return path_ / name; }
    [[nodiscard]] std::string path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Fails with the words of `errno` unless a system call succeeded.
void require(bool success, const char* call);

/// Seconds of processor time that this process has spent outside system calls.
[[nodiscard]] double userSeconds();

/// Seconds that an action takes by the clock on the wall.
template <class Action>
[[nodiscard]] double secondsOf(Action action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The numbers of sessions that a benchmark's words ask for; the usual ones without any words.
[[nodiscard]] std::vector<std::size_t> sessionCounts(const std::vector<std::string>& words);

[[nodiscard]] double median(std::vector<double> values);

/// What was measured of two things that took turns.
struct Turns {
    std::vector<double> ours;   ///< Seconds.
    std::vector<double> theirs; ///< Seconds of the other thing, in the same turns.

    /// The median of ours as a multiple of the median of theirs.
    [[nodiscard]] double ratio() const;
};

/// Lets two actions take turns, so that whatever else the machine is doing meets both alike. Stops
/// after `most` turns, or after `seconds` once there are enough to judge.
template <class Ours, class Theirs>
[[nodiscard]] Turns takeTurns(Ours ours, Theirs theirs, std::size_t most, double seconds)
{
    constexpr std::size_t enough = 11;
    Turns turns;
    const auto start = std::chrono::steady_clock::now();
    const auto isOver = [&] {
        return std::chrono::steady_clock::now() - start > std::chrono::duration<double>(seconds);
    };
    while (turns.ours.size() < enough || (turns.ours.size() < most && !isOver())) {
        turns.ours.push_back(ours());
        turns.theirs.push_back(theirs());
    }
    return turns;
}

/// Compares what was measured with what was promised.
class Limits {
public:
    /// "pass", "unclear" or "MISSED", as the ratio of turns stands to its limit. Missed is only
    /// what is beyond doubt: where 99 in 100 such runs would tell the same.
    [[nodiscard]] std::string judge(const Turns& turns, double limit);

    /// The same for a value that hardly differs between runs: missed is what exceeds its limit by
    /// more than a tenth.
    [[nodiscard]] std::string judge(double value, double limit);

    /// What a benchmark ends with: 1 when any limit was missed, else 0.
    [[nodiscard]] int exitStatus() const { return missed_ ? 1 : 0; }

private:
    [[nodiscard]] std::string note(bool holds, bool isBeyondDoubt);

    bool missed_ = false;
};

} // namespace KestryCore
