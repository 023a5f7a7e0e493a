#include "Measurement.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <system_error>

namespace KestryCore {

ScratchDirectory::ScratchDirectory()
{
    std::string path = std::filesystem::temp_directory_path() / "kestry-bench-XXXXXX";
    require(mkdtemp(path.data()) != nullptr, "mkdtemp");
    path_ = path;
}

ScratchDirectory::~ScratchDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void require(bool success, const char* call)
{
    if (!success) {
        throw std::system_error(errno, std::generic_category(), call);
    }
}

double userSeconds()
{
    rusage usage{};
    require(getrusage(RUSAGE_SELF, &usage) == 0, "getrusage");
    return static_cast<double>(usage.ru_utime.tv_sec)
        + static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
}

std::vector<std::size_t> sessionCounts(const std::vector<std::string>& words)
{
    if (words.empty()) {
        return {1'000, 10'000, 100'000, 1'000'000};
    }
    std::vector<std::size_t> counts;
    for (const std::string& word : words) {
        counts.push_back(std::stoul(word));
    }
    return counts;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

double Turns::ratio() const
{
    return median(ours) / median(theirs);
}

std::string Limits::judge(const Turns& turns, double limit)
{
    std::vector<double> ratios;
    for (std::size_t turn = 0; turn < turns.ours.size(); ++turn) {
        ratios.push_back(turns.ours[turn] / turns.theirs[turn]);
    }
    std::ranges::sort(ratios);
    // The lower end of the interval that holds the true median in 99 of 100 runs, whatever the
    // distribution: as many turns below the middle as a fair coin might deal.
    constexpr double deviations = 2.576;
    const auto count = static_cast<double>(ratios.size());
    const double rank = std::floor(count / 2.0 - deviations * std::sqrt(count) / 2.0);
    const double lowest = ratios[static_cast<std::size_t>(std::max(rank, 0.0))];
    return note(turns.ratio() <= limit, lowest > limit);
}

std::string Limits::judge(double value, double limit)
{
    constexpr double tolerance = 1.1;
    return note(value <= limit, value > limit * tolerance);
}

std::string Limits::note(bool holds, bool isBeyondDoubt)
{
    if (holds) {
        return "pass";
    }
    missed_ = missed_ || isBeyondDoubt;
    return isBeyondDoubt ? "MISSED" : "unclear";
}

} // namespace KestryCore
