// What a record store in a file costs: a first upload beside the same bytes appended to a plain
// file that is synced after each batch, a first download beside the same bytes read from a plain
// file, and an exchange in which nothing has changed.
//
// Usage: kestry_store_benchmark [RECORDS]...

#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "Measurement.h"
#include "SqliteCloudDatabase.h"
#include "TaskOwner.h"
#include "VirtualScheduler.h"

namespace KestryCore {
namespace {

const CloudZoneID zone{"KestryWorkspace"};
constexpr std::size_t recordsInBatch = 100;
constexpr std::size_t payloadBytes = 400; // of a session with a title
constexpr int idleCalls = 200;
constexpr double idleLimitSeconds = 0.005;
constexpr double largestTurnSeconds = 1.0;

double processorSeconds()
{
    timespec time{};
    require(clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) == 0, "clock_gettime");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

CloudRecord recordOf(std::size_t number)
{
    CloudRecord record{{fmt::format("session:{:036}", number), zone}, "KestryRecord", {}, {}};
    record.fields["schema"] = 1.0;
    record.fields["deleted"] = 0.0;
    record.fields["revision"] = fmt::format("{:036}", number * 7);
    record.fields["writer"] = fmt::format("{:036}", 1);
    record.fields["payload"] = CloudBytes{std::string(payloadBytes, 'x')};
    return record;
}

class Device {
public:
    explicit Device(const std::string& path)
        : database_(scheduler_, {path, "ada", MissingStore::make})
    {
    }

    /// Runs a task; returns the seconds of its longest turn.
    double run(Task<void> task)
    {
        TaskOwner owner(
            scheduler_, [](const std::exception_ptr& failure) { std::rethrow_exception(failure); });
        double longest = secondsOf([&] { owner.start(std::move(task)); });
        while (owner.size() > 0) {
            longest = std::max(longest, secondsOf([&] { scheduler_.advance(0.01); }));
        }
        return longest;
    }
    void makeZone() { run(database_.createZone(zone)); }
    double upload(std::size_t first) { return run(uploadBatch(first)); }
    /// Reads one page from where it is; returns whether more is coming.
    bool readPage()
    {
        longestRead = std::max(longestRead, run(readOne()));
        return moreComing_;
    }

    std::size_t recordsRead = 0;
    std::size_t pages = 0;
    double longestRead = 0.0;

private:
    [[nodiscard]] Task<void> uploadBatch(std::size_t first)
    {
        std::vector<CloudRecord> batch;
        for (std::size_t number = first; number < first + recordsInBatch; ++number) {
            batch.push_back(recordOf(number));
        }
        Task<std::vector<CloudRecordResult>> saving = database_.save(std::move(batch));
        const std::vector<CloudRecordResult> results = co_await saving;
        const auto isSaved = [](const CloudRecordResult& result) {
            return std::holds_alternative<CloudRecord>(result.result);
        };
        require(std::ranges::all_of(results, isSaved), "save");
    }
    [[nodiscard]] Task<void> readOne()
    {
        Task<CloudChanges> reading = database_.changes(zone, cursor_);
        const CloudChanges page = co_await reading;
        recordsRead += page.modifications.size();
        cursor_ = page.cursor;
        moreComing_ = page.moreComing;
        ++pages;
    }

    VirtualScheduler scheduler_;
    SqliteCloudDatabase database_;
    std::optional<CloudCursor> cursor_;
    bool moreComing_ = false;
};

/// Bytes as they are in the store, appended and synced batch by batch.
double plainUpload(const std::string& path, std::size_t count)
{
    const std::string bytes(recordsInBatch * (payloadBytes + 250), 'x');
    return secondsOf([&] {
        for (std::size_t number = 0; number < count; number += recordsInBatch) {
            const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
            require(file >= 0, "open");
            require(write(file, bytes.data(), bytes.size()) > 0, "write");
            require(fdatasync(file) == 0, "fdatasync");
            close(file);
        }
    });
}

double plainDownload(const std::string& path)
{
    return secondsOf([&] {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        require(!content.str().empty(), "read");
    });
}

void measure(std::size_t count, Limits& limits)
{
    const ScratchDirectory directory;
    Device sender(directory.file("records"));
    sender.makeZone();
    double longest = 0.0;
    const double processorBefore = processorSeconds();
    const double upload = secondsOf([&] {
        for (std::size_t number = 0; number < count; number += recordsInBatch) {
            longest = std::max(longest, sender.upload(number));
        }
    });
    const double uploadProcessor = processorSeconds() - processorBefore;
    const double plain = plainUpload(directory.file("plain"), count);
    fmt::print("upload of {}: {:.2f} s ({:.2f} s processor), plain {:.2f} s, ratio {:.2f}; "
               "longest turn {:.0f} ms: {}\n",
        count, upload, uploadProcessor, plain, upload / plain, longest * 1e3,
        limits.judge(longest, largestTurnSeconds));

    Device reader(directory.file("records"));
    const double download = secondsOf([&] {
        while (reader.readPage()) { }
    });
    require(reader.recordsRead == count, "read all");
    const double plainRead = plainDownload(directory.file("plain"));
    fmt::print("download: {:.3f} s in {} pages, plain {:.3f} s; longest turn {:.0f} ms: {}\n",
        download, reader.pages, plainRead, reader.longestRead * 1e3,
        limits.judge(reader.longestRead, largestTurnSeconds));

    const double idleBefore = processorSeconds();
    const double idle = secondsOf([&] {
        for (int call = 0; call < idleCalls; ++call) {
            (void)reader.readPage();
        }
    });
    const double idleProcessor = (processorSeconds() - idleBefore) / idleCalls;
    fmt::print("idle: {:.3f} ms a call, {:.3f} ms processor: {}\n", idle / idleCalls * 1e3,
        idleProcessor * 1e3, limits.judge(idleProcessor, idleLimitSeconds));
}

} // namespace
} // namespace KestryCore

int main(int argumentCount, char** arguments)
{
    using namespace KestryCore;
    std::vector<std::size_t> counts;
    for (int index = 1; index < argumentCount; ++index) {
        counts.push_back(std::stoul(arguments[index]));
    }
    if (counts.empty()) {
        counts.push_back(100'000);
    }
    Limits limits;
    for (const std::size_t count : counts) {
        measure(count, limits);
    }
    return limits.exitStatus();
}
