// What replication costs beside a bare client, in the same run: a first upload and a first download
// of a whole ledger, one change on its way to another machine, memory, the longest turn of the
// event loop, and an exchange in which nothing has changed. The server is that of the tests, in
// memory; how much processor time it takes itself is told beside.
//
// Usage: kestry_cloud_benchmark [SESSIONS [TURNS]]

#include <QProcess>

#include <fmt/core.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "BareClient.h"
#include "CloudRoles.h"
#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "Measurement.h"

namespace Kestry {
namespace {

using namespace KestryCore;

constexpr double uploadLimit = 1.5;
constexpr double downloadLimit = 2.0;
constexpr double memoryLimit = 1.5;
constexpr double pressRoundTrips = 3.0;
constexpr double pressSaves = 2.0;
constexpr double idleLimitSeconds = 0.005;

/// Starts a program of the same folder.
void begin(QProcess& process, const QString& program, const QStringList& words)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationDirPath() + "/" + program, words);
    require(process.waitForStarted(), "start a process");
}

/// The server, which ends with this object.
class Server {
public:
    Server()
    {
        begin(process_, "kestry_cloud_server", {});
        require(process_.waitForReadyRead(), "hear of the server");
        address_ = process_.readLine().trimmed().toStdString();
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server()
    {
        process_.closeWriteChannel();
        process_.waitForFinished();
    }

    [[nodiscard]] const std::string& address() const { return address_; }
    /// Seconds of processor time that it has spent.
    [[nodiscard]] double processorSeconds() const
    {
        std::ifstream file("/proc/" + std::to_string(process_.processId()) + "/stat");
        std::string word;
        double ticks = 0.0;
        for (int field = 1; file >> word; ++field) {
            ticks += field == 14 || field == 15 ? std::stod(word) : 0.0;
        }
        return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
    }

private:
    QProcess process_;
    std::string address_;
};

/// Lets a process of its own play a role.
Figures play(const std::vector<std::string>& words)
{
    QStringList arguments{"--role"};
    for (const std::string& word : words) {
        arguments.append(QString::fromStdString(word));
    }
    QProcess process;
    begin(process, "kestry_cloud_benchmark", arguments);
    require(process.waitForFinished(-1), "wait for a process");
    if (process.exitCode() != 0) {
        throw std::runtime_error("The role " + words.front() + " failed.");
    }
    Figures figures;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
        const auto colon = line.indexOf(':');
        if (colon > 0) {
            figures[line.left(colon).toStdString()] = line.mid(colon + 1).toDouble();
        }
    }
    return figures;
}

/// The program's part: prints what it has measured.
int playAndTell(const std::vector<std::string>& words, WatchedApplication& loop)
{
    try {
        for (const auto& [name, value] : playRole(words, loop)) {
            fmt::print("{}:{}\n", name, value);
        }
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}

void print(const std::string& what, double ours, double theirs, double limit, Limits& limits)
{
    const double ratio = ours / theirs;
    fmt::print("{:<50}{:>11.3f}{:>11.3f}{:>8.2f}{:>8.2f} {}\n", what, ours, theirs, ratio, limit,
        limits.judge(ratio, limit));
    std::fflush(stdout);
}

/// Machines and what was measured of them. The ledger is the same in all.
class Measurements {
public:
    Measurements(std::size_t sessions, int turns) : sessions_(sessions), turns_(turns)
    {
        std::ofstream(directory_.file("ledger.json"))
            << encodeLedger(generateLedger({.sessions = sessions}));
    }

    void uploadAndDownload();
    void press();
    void storeInFile();
    [[nodiscard]] int exitStatus() const { return limits_.exitStatus(); }

private:
    /// A machine with the ledger, which knows nothing of the cloud.
    [[nodiscard]] std::string machine(const std::string& name) const
    {
        const std::string path = emptyMachine(name);
        std::filesystem::copy_file(directory_.file("ledger.json"), path + "/ledger.json");
        return path;
    }
    [[nodiscard]] std::string emptyMachine(const std::string& name) const
    {
        const std::string path = directory_.file(name);
        std::filesystem::remove_all(path);
        std::filesystem::create_directory(path);
        return path;
    }
    void printTurn(const std::string& what, const Figures& figures);
    void printIdle(const Figures& idle);

    std::size_t sessions_;
    int turns_;
    ScratchDirectory directory_;
    Server server_;
    Limits limits_;
};

void Measurements::printTurn(const std::string& what, const Figures& figures)
{
    require(figures.at("sessions") == static_cast<double>(sessions_), "exchange all sessions");
    print("longest turn of the " + what + " beside a save, s", figures.at("longest turn"),
        figures.at("save"), 1.0, limits_);
}

void Measurements::printIdle(const Figures& idle)
{
    const double processor = idle.at("poll's processor");
    fmt::print("idle poll: {:.2f} ms, processor {:.2f} ms, limit {:.0f} ms: {}\n",
        idle.at("poll") * 1e3, processor * 1e3, idleLimitSeconds * 1e3,
        limits_.judge(processor, idleLimitSeconds));
    const double bytes = idle.at("poll's bytes");
    fmt::print("bytes that idle polls write to the disk: {:.0f}, limit 0: {}\n", bytes,
        limits_.judge(bytes, 0.0));
}

void Measurements::uploadAndDownload()
{
    std::vector<double> sent;
    std::vector<double> bareSent;
    std::vector<double> received;
    std::vector<double> bareReceived;
    Figures upload;
    Figures download;
    for (int turn = 0; turn < turns_; ++turn) {
        const std::string number = std::to_string(turn);
        const std::string address = server_.address() + "/hours" + number;
        // A first exchange waits for a database that may appear late.
        (void)BareClient(server_.address(), cloudUser, cloudPassword).ask("PUT", "/hours" + number);
        double served = server_.processorSeconds();
        bareSent.push_back(
            play({"send", machine("bare"), server_.address(), "bare" + number}).at("seconds"));
        const double bareServed = server_.processorSeconds() - served;
        served = server_.processorSeconds();
        upload = play({"connect", machine("desk"), address});
        sent.push_back(upload.at("seconds"));
        fmt::print("The server's own processor time: {:.2f} s of the bare upload, {:.2f} s of ours "
                   "with {:.2f} s on this side.\n",
            bareServed, server_.processorSeconds() - served, upload.at("processor"));
        bareReceived.push_back(play({"read", server_.address(), "hours" + number}).at("seconds"));
        download = play({"connect", emptyMachine("laptop"), address});
        received.push_back(download.at("seconds"));
    }
    print("first upload beside a bare client, s", median(sent), median(bareSent), uploadLimit,
        limits_);
    print("first download beside a bare read of the feed, s", median(received),
        median(bareReceived), downloadLimit, limits_);
    printTurn("upload", upload);
    printTurn("download", download);
    const Figures alone = play({"alone", machine("alone")});
    const Figures idle = play({"idle", directory_.file("desk"),
        server_.address() + "/hours" + std::to_string(turns_ - 1)});
    print("memory beside the same ledger without sync, MB", idle.at("memory") / 1e6,
        alone.at("memory") / 1e6, memoryLimit, limits_);
    fmt::print("memory after the first upload {:.0f} MB (at most {:.0f}), after the first download "
               "{:.0f} MB (at most {:.0f})\n",
        upload.at("memory") / 1e6, upload.at("most memory") / 1e6, download.at("memory") / 1e6,
        download.at("most memory") / 1e6);
    printIdle(idle);
}

void Measurements::press()
{
    const Figures press = play({"press", directory_.file("desk"), directory_.file("laptop"),
        server_.address(), "hours" + std::to_string(turns_ - 1)});
    const double wire = press.at("wire");
    const double save = press.at("save");
    fmt::print("A wire of {:.0f} ms there and back, a save of {:.1f} ms; {:.0f} requests by both "
               "machines.\n",
        wire * 1e3, save * 1e3, press.at("requests"));
    print("one change from press to the other's disk, s", press.at("seconds"),
        pressRoundTrips * wire + pressSaves * save, 1.0, limits_);
}

void Measurements::storeInFile()
{
    const std::string path = directory_.file("records.sqlite");
    const Figures bare = play({"append", machine("bare"), directory_.file("plain")});
    const Figures upload = play({"connect", machine("desk"), "sqlite:" + path});
    const Figures download = play({"connect", emptyMachine("laptop"), "sqlite:" + path});
    fmt::print("A store in a file: first upload {:.2f} s, {:.2f} times a plain append of {:.2f} s; "
               "first download {:.2f} s\n(a plain read takes {:.2f} s).\n",
        upload.at("seconds"), upload.at("seconds") / bare.at("seconds"), bare.at("seconds"),
        download.at("seconds"), bare.at("read"));
    printTurn("upload to a file", upload);
    printTurn("download from a file", download);
    printIdle(play({"idle", directory_.file("desk"), "sqlite:" + path}));
}

} // namespace
} // namespace Kestry

int main(int argc, char** argv)
{
    Kestry::WatchedApplication application(argc, argv);
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words.front() == "--role") {
        return Kestry::playAndTell({words.begin() + 1, words.end()}, application);
    }
    const std::size_t sessions = !words.empty() ? std::stoul(words[0]) : 100'000;
    const int turns = words.size() > 1 ? std::stoi(words[1]) : 3;
    fmt::print("{} sessions, medians of {} turns.\n{:<50}{:>11}{:>11}{:>8}{:>8}\n", sessions, turns,
        "", "ours", "beside", "ratio", "limit");
    Kestry::Measurements measurements(sessions, turns);
    measurements.uploadAndDownload();
    measurements.press();
    measurements.storeInFile();
    return measurements.exitStatus();
}
