#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "LedgerError.h"
#include "LiveSync.h"

namespace Kestry {

/// Replication that remembers what it is told to do, and ends it when a test says so.
class FakeLiveSync final : public LiveSync {
public:
    [[nodiscard]] SyncCondition condition() const override { return known; }

    [[nodiscard]] bool canTry(const SyncSignInCommand& command) const override
    {
        return command.address != wrongAddress;
    }
    void signIn(const SyncSignInCommand& command, Done done) override
    {
        credentials = command;
        wait("sign-in", std::move(done));
    }
    void signOut(Done done) override { wait("sign-out", std::move(done)); }
    void turnOn(Done done) override { wait("on", std::move(done)); }
    void turnOff() override { doAtOnce("off"); }
    void exchange(Done done) override { wait("now", std::move(done)); }
    void uploadAgain(Done done) override { wait("upload-again", std::move(done)); }

    /// What was begun first is over.
    void finish(const std::optional<std::string>& failure = std::nullopt)
    {
        const Done done = std::move(waiting.front());
        waiting.erase(waiting.begin());
        done(failure);
    }

    SyncCondition known{.status = "iCloud sync is off"};
    std::string wrongAddress; ///< None mostly.
    SyncSignInCommand credentials;
    std::vector<std::string> begun; ///< In the words of the commands.
    std::vector<Done> waiting;
    std::optional<std::string> refusal; ///< Of whatever comes next.

private:
    void doAtOnce(const std::string& what)
    {
        if (refusal) {
            throw KestryCore::LedgerError(*refusal);
        }
        begun.push_back(what);
    }
    void wait(const std::string& what, Done end)
    {
        doAtOnce(what);
        waiting.push_back(std::move(end));
    }
};

} // namespace Kestry
