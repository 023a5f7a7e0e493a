#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "Scheduler.h"
#include "SimulatedCloud.h"

namespace KestryCore {

/// The way of one machine to a simulated cloud: who is signed in there, and what is under way.
///
/// Questions take time to arrive, and answers to come back; the program gets them on its own loop,
/// so that one which comes while the machine sleeps waits. A stranger's account has a store of its
/// own with a zone in it, which takes everything and in which nothing is ever found.
class CloudLine {
public:
    /// Both must outlive the line.
    CloudLine(SimulatedCloud& cloud, Scheduler& program) : cloud_(cloud), program_(program) { }

    /// What a program opens; the line must outlive it.
    [[nodiscard]] std::unique_ptr<CloudContainer> open();

    std::string account = ownAccount;
    bool isSignedIn = true;
    bool isOnline = true;
    static constexpr const char* ownAccount = "account";

    /// What the program is waiting for.
    [[nodiscard]] std::optional<CloudQuestion> waitingFor() const;

    /// A failure that the program was told, of a request or of one record.
    struct Failure {
        CloudErrorCode code = CloudErrorCode::other;
        std::string words;
    };
    /// All since the last call of `forget`.
    [[nodiscard]] const std::vector<Failure>& failures() const { return failures_; }
    void forgetFailures()
    {
        failures_.clear();
        isReadingAnew_ = false;
    }
    /// Whether a cursor of the program was refused as expired in this exchange.
    [[nodiscard]] bool isReadingAnew() const { return isReadingAnew_; }
    /// Whether the program has ever asked something while it was waiting for another answer, which
    /// would be two exchanges at once.
    [[nodiscard]] bool hasAskedAtOnce() const { return hasAskedAtOnce_; }
    /// How often the program has asked whether there is an account, with which all exchanges begin.
    [[nodiscard]] int accountQuestions() const { return accountQuestions_; }

private:
    class Container;
    class Database;
    template <class Value>
    class Errand;

    template <class Value>
    using Answer = std::function<Value()>;

    /// `handle` is called when the question arrives; what it gives tells the answer when it leaves.
    template <class Value>
    [[nodiscard]] Task<Value> ask(CloudQuestion question, std::function<Answer<Value>()> handle);
    [[nodiscard]] Task<void> askForNothing(CloudQuestion question, std::function<void()> handle);
    [[nodiscard]] bool isOurs() const;
    [[nodiscard]] CloudChanges changes(const std::optional<CloudCursor>& since);
    [[nodiscard]] Answer<SimulatedCloud::Results> save(const std::vector<CloudRecord>& records);
    void note(const CloudError& failure);
    void see(const CloudChanges& changes);
    void see(const SimulatedCloud::Results& results);
    void note(const SimulatedCloud::Results& results);
    template <class Value>
    void see(const Value&)
    {
    }

    SimulatedCloud& cloud_;
    Scheduler& program_;
    std::optional<CloudQuestion> asked_;
    std::function<bool()> isAwaited_;
    std::size_t sent_ = 0; // records, in the last delivery
    std::vector<Failure> failures_;
    int accountQuestions_ = 0;
    bool hasAskedAtOnce_ = false;
    bool isReadingAnew_ = false;
};

} // namespace KestryCore
