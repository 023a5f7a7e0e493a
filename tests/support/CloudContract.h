#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "CloudDatabase.h"
#include "Scheduler.h"
#include "TaskOwner.h"

namespace KestryCore {

/// A healthy cloud store, which is empty and has no zone, as the contract tries it: a way to it for
/// each device, an administrator's hand on it, and the loop that its answers need.
class CloudUnderTest {
public:
    CloudUnderTest() = default;
    CloudUnderTest(const CloudUnderTest&) = delete;
    CloudUnderTest& operator=(const CloudUnderTest&) = delete;
    virtual ~CloudUnderTest() = default;

    /// Opens the store as one more device of the one account, or as the same one after a new start.
    /// This must outlive the container.
    [[nodiscard]] virtual std::unique_ptr<CloudContainer> open() = 0;
    /// On which the tasks of its containers run.
    [[nodiscard]] virtual Scheduler& scheduler() = 0;
    /// Runs the loop until the condition holds. Returns when that takes unreasonably long, too.
    virtual void runUntil(const std::function<bool()>& holds) = 0;

    // As an administrator, behind the back of the devices. The zone or record is there.

    /// Removes the zone with all that is in it.
    virtual void removeZone(const CloudZoneID& zone) = 0;
    /// Removes a record for good.
    virtual void removeRecord(const CloudRecordID& record) = 0;
    /// Whether the devices can reach the store, which they can at first. It loses nothing.
    virtual void setReachable(bool isReachable) = 0;

    /// Accepts a second save on a version: `rival` on `base`, which another record was saved on
    /// already and now stands behind it. False for a store that accepts no such thing.
    [[nodiscard]] virtual bool overrule(const CloudRecord& /*base*/, const CloudRecord& /*rival*/)
    {
        return false;
    }

    /// What the store says to a cursor of a zone that was made anew since.
    [[nodiscard]] virtual CloudErrorCode codeOfZoneMadeAnew() const
    {
        return CloudErrorCode::changeTokenExpired;
    }

    /// Bytes of fields after which a page of changes ends. It may exceed them by one record.
    [[nodiscard]] virtual std::size_t pageBytes() const = 0;
};

/// A kind of store, by the name under which its tests run.
struct CloudStoreKind {
    std::string name;
    std::function<std::unique_ptr<CloudUnderTest>()> make;

    friend void PrintTo(const CloudStoreKind& kind, std::ostream* out) { *out << kind.name; }
    /// What the tests of a kind are called.
    [[nodiscard]] static std::string nameOf(const testing::TestParamInfo<CloudStoreKind>& info)
    {
        return info.param.name;
    }
};

/// What every cloud store promises. The names of the tests, in `CloudContract….cpp`, are the
/// promises. A program of tests links `kestry_cloud_contract` and gives it its stores:
///
///     INSTANTIATE_TEST_SUITE_P(Plain, CloudContract, testing::Values(plainCloud()),
///         CloudStoreKind::nameOf);
///
/// Not promised are a record name that is in a batch twice, a text that is not UTF-8, a number that
/// is not finite and the sign of zero.
class CloudContract : public testing::TestWithParam<CloudStoreKind> {
protected:
    template <class Value>
    struct Outcome {
        std::optional<Value> value;
        std::exception_ptr failure;
        [[nodiscard]] bool isOver() const { return value.has_value() || failure; }
    };
    struct Nothing { };
    template <class Value>
    using Answer = std::shared_ptr<Outcome<Value>>;
    using Results = std::map<std::string, CloudRecordResult>; ///< By name of the record.
    using Database = CloudDatabase&;

    /// What reading to the end has told.
    struct Reading {
        std::map<std::string, CloudRecord> records; ///< In the version that came last.
        std::set<std::string> deletions;
        std::vector<CloudRecord> overruled;
        CloudCursor cursor;
        int pages = 0;
    };

    static inline const CloudZoneID zone{"KestryWorkspace"};

    CloudContract();

    // Two devices, and tasks.

    [[nodiscard]] Database one() { return one_->privateDatabase(); }
    [[nodiscard]] Database two() { return two_->privateDatabase(); }
    [[nodiscard]] CloudContainer& container() { return *one_; }
    [[nodiscard]] CloudContainer& otherContainer() { return *two_; }
    [[nodiscard]] CloudUnderTest& store() { return *store_; }
    /// The first device starts anew.
    void restart();

    /// Begins a task. What it has come to is in the answer, once `finish` returns.
    template <class Value>
    [[nodiscard]] Answer<Value> begin(Task<Value> task)
    {
        auto answer = std::make_shared<Outcome<Value>>();
        tasks_->start(keepOutcome(std::move(task), answer));
        return answer;
    }
    [[nodiscard]] Answer<Nothing> begin(Task<void> task);
    template <class Value>
    Value finish(const Answer<Value>& answer)
    {
        store_->runUntil([answer] { return answer->isOver(); });
        if (!answer->isOver()) {
            throw std::runtime_error("The store gave no answer.");
        }
        if (answer->failure) {
            std::rethrow_exception(answer->failure);
        }
        return *std::move(answer->value);
    }
    template <class Value>
    Value run(Task<Value> task)
    {
        return finish(begin(std::move(task)));
    }
    void run(Task<void> task);
    /// Lets all tasks go that have not ended.
    void letGo();

    /// The failure with which a task ends; fails the test when it ends with none.
    template <class Value>
    [[nodiscard]] CloudError failureOf(Task<Value> task)
    {
        try {
            (void)run(std::move(task));
        } catch (const CloudError& failure) {
            return failure;
        }
        ADD_FAILURE() << "It does not fail.";
        return CloudError("");
    }
    [[nodiscard]] CloudError failureOf(Task<void> task);
    template <class Value>
    void expectFailure(Task<Value> task, CloudErrorCode code)
    {
        const CloudError failure = failureOf(std::move(task));
        EXPECT_EQ(failure.code(), code) << failure.what();
        expectSentence(failure);
    }

    // Verbs.

    void makeZone() { run(one().createZone(zone)); }
    [[nodiscard]] static CloudRecordID recordID(const std::string& name) { return {name, zone}; }
    /// A record that was never in the store.
    [[nodiscard]] static CloudRecord record(
        const std::string& name, const std::string& text = "text");
    /// The record with another text, to be saved over the same version.
    [[nodiscard]] static CloudRecord changed(CloudRecord record, const std::string& text);
    [[nodiscard]] Results save(Database device, std::vector<CloudRecord> records);
    /// The record as it was saved. Throws when it was not.
    [[nodiscard]] CloudRecord saved(Database device, const CloudRecord& record);
    /// The failure of saving the record.
    [[nodiscard]] CloudError refused(Database device, const CloudRecord& record);
    /// Reads page by page, to the end.
    [[nodiscard]] Reading read(Database device, std::optional<CloudCursor> since = {});
    /// A record as the second device reads it; nullopt when there is none.
    [[nodiscard]] std::optional<CloudRecord> stored(const std::string& name);

    static void expectSentence(const CloudError& failure);
    /// The save was refused, with the server's record.
    static void expectChanged(const CloudError& failure, const CloudRecord& server);
    [[nodiscard]] static bool isSaved(const CloudRecordResult& result);
    [[nodiscard]] static std::size_t bytesOf(const CloudRecord& record);

private:
    template <class Value>
    [[nodiscard]] static Task<void> keepOutcome(Task<Value> task, Answer<Value> answer)
    {
        try {
            Value value = co_await task;
            answer->value.emplace(std::move(value));
        } catch (const std::exception&) {
            answer->failure = std::current_exception();
        }
    }
    [[nodiscard]] static Task<Nothing> withValue(Task<void> task);

    std::unique_ptr<CloudUnderTest> store_;
    std::unique_ptr<CloudContainer> one_;
    std::unique_ptr<CloudContainer> two_;
    std::optional<TaskOwner> tasks_; // the last member: its frames use all others
};

} // namespace KestryCore
