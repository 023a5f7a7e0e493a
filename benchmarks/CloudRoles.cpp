#include "CloudRoles.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "BareClient.h"
#include "CouchDocument.h"
#include "LongWire.h"
#include "Measurement.h"
#include "SyncCloudRecord.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr std::size_t recordsInBatch = 100;
constexpr int idlePolls = 20;
constexpr int edits = 11;
constexpr int presses = 11;
constexpr int wireMilliseconds = 10;

double processorSeconds()
{
    timespec time{};
    require(clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) == 0, "clock_gettime");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// A line of a file below /proc that begins with a name, as the number in it.
double numberIn(const char* file, const std::string& name)
{
    std::ifstream lines(file);
    std::string word;
    while (lines >> word) {
        if (word == name) {
            double number = 0.0;
            lines >> number;
            return number;
        }
    }
    throw std::runtime_error("There is no " + name + " in " + file + ".");
}

void noteMemory(Figures& figures)
{
    figures["memory"] = numberIn("/proc/self/smaps_rollup", "Pss:") * 1024.0;
    figures["most memory"] = numberIn("/proc/self/status", "VmHWM:") * 1024.0;
}

/// The median of some saves of a small change.
void noteSave(Figures& figures, TimeStore& store)
{
    std::vector<double> seconds;
    for (int turn = 0; turn < edits; ++turn) {
        const TimeEntry entry = store.data()->entries.front();
        EntryChange change;
        change.title = "Save " + std::to_string(turn);
        change.start = entry.startedAt();
        change.duration = entry.duration();
        seconds.push_back(secondsOf([&] { store.updateEntry(entry.id, change); }));
    }
    figures["save"] = median(seconds);
}

void noteIdle(Figures& figures, CloudDesk& desk)
{
    desk.exchange(); // saves what the first one has left
    const double written = numberIn("/proc/self/io", "write_bytes:");
    const double processor = processorSeconds();
    const double seconds = secondsOf([&] {
        for (int poll = 0; poll < idlePolls; ++poll) {
            desk.exchange();
        }
    });
    figures["poll"] = seconds / idlePolls;
    figures["poll's processor"] = (processorSeconds() - processor) / idlePolls;
    figures["poll's bytes"] = numberIn("/proc/self/io", "write_bytes:") - written;
}

Figures connectMachine(
    const std::string& directory, const std::string& address, WatchedApplication& loop)
{
    Figures figures;
    CloudDesk desk(directory, address);
    (void)loop.takeLongestTurn();
    const double processor = processorSeconds();
    figures["seconds"] = secondsOf([&] { desk.connect(); });
    figures["processor"] = processorSeconds() - processor;
    figures["longest turn"] = loop.takeLongestTurn();
    figures["sessions"] = static_cast<double>(desk.store().data()->entries.size());
    noteMemory(figures);
    noteIdle(figures, desk);
    noteSave(figures, desk.store());
    desk.exchange();
    return figures;
}

Figures idleMachine(const std::string& directory, const std::string& address)
{
    Figures figures;
    CloudDesk desk(directory, address);
    noteIdle(figures, desk);
    noteSave(figures, desk.store());
    desk.exchange();
    desk.exchange();
    noteMemory(figures);
    return figures;
}

Figures aloneMachine(const std::string& directory)
{
    Figures figures;
    PosixFileSystem files;
    const auto store = openStore(files, directory);
    noteSave(figures, *store);
    noteMemory(figures);
    return figures;
}

/// What a machine that connects sends, batch by batch.
std::vector<std::string> batchesOf(const std::string& directory)
{
    PosixFileSystem files;
    const auto store = openStore(files, directory);
    store->beginSync("account", "Desk", CloudSyncEnvironment::development);
    std::vector<std::string> batches;
    std::size_t inBatch = recordsInBatch;
    for (const SyncRecord& record : store->pendingSyncRecords()) {
        if (inBatch == recordsInBatch) {
            batches.emplace_back("{\"docs\":[");
            inBatch = 0;
        }
        batches.back() += inBatch > 0 ? "," : "";
        batches.back() += couchJson(documentOf(cloudRecordFor(record, {})));
        ++inBatch;
    }
    for (std::string& batch : batches) {
        batch += "]}";
    }
    return batches;
}

Figures sendBare(
    const std::string& directory, const std::string& server, const std::string& database)
{
    const std::vector<std::string> batches = batchesOf(directory);
    BareClient client(server, cloudUser, cloudPassword);
    (void)client.ask("PUT", "/" + database);
    Figures figures;
    figures["seconds"] = secondsOf([&] {
        for (const std::string& batch : batches) {
            (void)client.ask("POST", "/" + database + "/_bulk_docs", batch);
        }
    });
    return figures;
}

Figures readBare(const std::string& server, const std::string& database)
{
    constexpr std::string_view name = "\"last_seq\":\"";
    BareClient client(server, cloudUser, cloudPassword);
    Figures figures;
    std::string since;
    std::size_t bytes = 0;
    figures["seconds"] = secondsOf([&] {
        bool isAtEnd = false;
        while (!isAtEnd) {
            const std::string page = client.ask("GET",
                "/" + database + "/_changes?include_docs=true&limit=10000"
                    + (since.empty() ? "" : "&since=" + since));
            bytes += page.size();
            const std::size_t found = page.rfind(name);
            require(found != std::string::npos, "last_seq");
            const std::size_t begin = found + name.size();
            since = page.substr(begin, page.find('"', begin) - begin);
            isAtEnd = page.find("\"pending\":0") != std::string::npos;
        }
    });
    figures["bytes"] = static_cast<double>(bytes);
    return figures;
}

Figures pressOnce(const std::vector<std::string>& words)
{
    LongWire wire(words[3], wireMilliseconds);
    CloudDesk desk(words[1], wire.address() + "/" + words[4]);
    CloudDesk laptop(words[2], wire.address() + "/" + words[4]);
    desk.exchange();
    laptop.exchange();
    desk.exchange();
    std::vector<double> seconds;
    std::size_t requests = 0;
    for (int turn = 0; turn < presses; ++turn) {
        const std::string title = "Press " + std::to_string(turn);
        wire.whenAnswered("/_bulk_docs", [&] { laptop.beginExchange(); });
        const std::size_t before = wire.requests();
        bool isThere = false;
        // A look at all sessions at each event would be a good part of what is measured.
        const Subscription arrival = laptop.store().data().observe([&](const LedgerData& ledger) {
            isThere = isThere || ledger.entries.back().title == title;
        });
        seconds.push_back(secondsOf([&] {
            desk.edit(title);
            desk.beginExchange();
            runUntil([&] { return isThere; });
        }));
        requests = wire.requests() - before;
        wire.whenAnswered("", {});
        desk.finishExchange();
        laptop.finishExchange();
        desk.exchange();
    }
    Figures figures;
    figures["seconds"] = median(seconds);
    figures["requests"] = static_cast<double>(requests);
    figures["wire"] = wireMilliseconds * 2e-3;
    noteSave(figures, laptop.store());
    return figures;
}

Figures appendPlain(const std::string& directory, const std::string& path)
{
    const std::vector<std::string> batches = batchesOf(directory);
    Figures figures;
    figures["seconds"] = secondsOf([&] {
        for (const std::string& batch : batches) {
            const Descriptor file(
                open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
            require(write(file.number(), batch.data(), batch.size()) > 0, "write");
            require(fdatasync(file.number()) == 0, "fdatasync");
        }
    });
    figures["read"] = secondsOf([&] {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        require(!content.str().empty(), "read");
    });
    return figures;
}

} // namespace

Figures playRole(const std::vector<std::string>& words, WatchedApplication& loop)
{
    const std::string& role = words.at(0);
    if (role == "connect") {
        return connectMachine(words.at(1), words.at(2), loop);
    }
    if (role == "idle") {
        return idleMachine(words.at(1), words.at(2));
    }
    if (role == "alone") {
        return aloneMachine(words.at(1));
    }
    if (role == "send") {
        return sendBare(words.at(1), words.at(2), words.at(3));
    }
    if (role == "read") {
        return readBare(words.at(1), words.at(2));
    }
    if (role == "append") {
        return appendPlain(words.at(1), words.at(2));
    }
    if (role == "press" && words.size() == 5) {
        return pressOnce(words);
    }
    throw std::invalid_argument("There is no role \"" + role + "\".");
}

} // namespace Kestry
