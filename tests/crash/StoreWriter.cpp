// Saves records in a record store in a file, as one of several programs, and tells on standard
// output what the store has acknowledged: a line is written when it has, and not before.
//
// Usage: kestry_store_writer PATH NAME OPERATIONS SEED
//
// Each operation saves a few of ten records over the versions that this program read last:
//
//     saved RECORD VERSION OLD-VERSION TEXT    the save was taken
//     lost RECORD VERSION                      another program was first, with this version
//     failed WORDS                             the operation failed as a whole
//     done                                     the operation is over, however it went
//
// With OPERATIONS 0 it prints what the store holds, a line "holds RECORD VERSION TEXT" for each
// record. Ends with status 1 when the store says something that it must not.

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CloudError.h"
#include "SqliteCloudContainer.h"
#include "TaskOwner.h"
#include "VirtualScheduler.h"

namespace {

using namespace KestryCore;

const CloudZoneID zone{"KestryWorkspace"};
constexpr int recordCount = 10;

class Writer {
public:
    Writer(const std::string& path, std::string name, unsigned seed)
        : name_(std::move(name)), chance_(seed),
          container_(scheduler_, {path, "ada", MissingStore::make})
    {
    }

    void write(int operations)
    {
        attempt(prepare());
        for (operation_ = 1; operation_ <= operations; ++operation_) {
            attempt(operate());
            print("done");
        }
    }

    void tell()
    {
        attempt(read());
        for (const auto& [record, known] : known_) {
            print("holds " + record + ' ' + known.serverVersion + ' ' + textOf(known));
        }
    }

    [[nodiscard]] bool isSound() const { return isSound_; }

private:
    using Results = std::vector<CloudRecordResult>;

    static void print(const std::string& line) { std::cout << line << std::endl; }
    static std::string textOf(const CloudRecord& record)
    {
        return std::get<std::string>(record.fields.at("text"));
    }
    void refuse(const std::string& words)
    {
        print("unsound " + words);
        isSound_ = false;
    }

    /// Runs a task to its end. What it waits for is another program, so the waits are real.
    void attempt(Task<void> task)
    {
        TaskOwner owner(scheduler_, [](const std::exception_ptr& failure) {
            try {
                std::rethrow_exception(failure);
            } catch (const std::exception& known) {
                print(std::string("failed ") + known.what());
            }
        });
        owner.start(std::move(task));
        scheduler_.turn();
        while (owner.size() > 0) {
            constexpr int waitMilliseconds = 10;
            std::this_thread::sleep_for(std::chrono::milliseconds(waitMilliseconds));
            scheduler_.advance(waitMilliseconds / 1e3);
        }
    }

    [[nodiscard]] Task<void> prepare()
    {
        Task<std::string> naming = container_.userRecordName();
        co_await naming;
        Task<void> creating = container_.privateDatabase().createZone(zone);
        co_await creating;
        Task<void> reading = read();
        co_await reading;
    }

    [[nodiscard]] Task<void> read()
    {
        bool moreComing = true;
        while (moreComing) {
            Task<CloudChanges> asking = container_.privateDatabase().changes(zone, cursor_);
            const CloudChanges changes = co_await asking;
            for (const CloudRecordResult& modification : changes.modifications) {
                note(modification);
            }
            cursor_ = changes.cursor;
            moreComing = changes.moreComing;
        }
    }

    void note(const CloudRecordResult& modification)
    {
        if (const auto* const failure = std::get_if<CloudError>(&modification.result)) {
            refuse(failure->what());
            return;
        }
        known_[modification.id.name] = std::get<CloudRecord>(modification.result);
    }

    [[nodiscard]] Task<void> operate()
    {
        if (chance_() % 3 == 0) {
            Task<void> reading = read();
            co_await reading;
            co_return;
        }
        std::map<std::string, std::string> before;
        std::vector<CloudRecord> batch;
        for (int record = 0; record < recordCount; ++record) {
            if (chance_() % 4 == 0) {
                batch.push_back(next("r" + std::to_string(record)));
                before[batch.back().id.name] = batch.back().serverVersion;
            }
        }
        Task<Results> saving = container_.privateDatabase().save(std::move(batch));
        const Results results = co_await saving;
        for (const CloudRecordResult& result : results) {
            take(result, before.at(result.id.name));
        }
    }

    CloudRecord next(const std::string& record)
    {
        CloudRecord made{{record, zone}, "KestryRecord", {}, {}};
        if (const auto found = known_.find(record); found != known_.end()) {
            made = found->second;
        }
        made.fields["text"] = name_ + '.' + std::to_string(operation_);
        made.fields["filling"] = CloudBytes{std::string(chance_() % 9'000, 'x')};
        return made;
    }

    void take(const CloudRecordResult& result, const std::string& before)
    {
        if (const auto* const saved = std::get_if<CloudRecord>(&result.result)) {
            known_[result.id.name] = *saved;
            print("saved " + result.id.name + ' ' + saved->serverVersion + ' '
                + (before.empty() ? "none" : before) + ' ' + textOf(*saved));
            return;
        }
        const auto& failure = std::get<CloudError>(result.result);
        if (failure.serverRecord() == nullptr) {
            refuse(failure.what());
            return;
        }
        known_[result.id.name] = *failure.serverRecord();
        print("lost " + result.id.name + ' ' + failure.serverRecord()->serverVersion);
    }

    std::string name_;
    std::mt19937 chance_;
    VirtualScheduler scheduler_;
    SqliteCloudContainer container_;
    std::map<std::string, CloudRecord> known_;
    std::optional<CloudCursor> cursor_;
    int operation_ = 0;
    bool isSound_ = true;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 5) {
        std::cerr << "Usage: kestry_store_writer PATH NAME OPERATIONS SEED\n";
        return 2;
    }
    const int operations = std::atoi(arguments[3]);
    Writer writer(arguments[1], arguments[2], static_cast<unsigned>(std::atoi(arguments[4])));
    operations > 0 ? writer.write(operations) : writer.tell();
    return writer.isSound() ? 0 : 1;
}
