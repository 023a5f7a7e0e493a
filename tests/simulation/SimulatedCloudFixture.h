#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "CloudLine.h"
#include "SampleLedger.h"
#include "SyncCloudRecord.h"
#include "TaskOwner.h"

namespace KestryCore {

/// Weather as a test wants it.
class ChosenWeather final : public CloudWeather {
public:
    using CloudWeather::CloudWeather;

    CloudPassage passage(CloudLine&, CloudQuestion) override { return next; }
    std::optional<std::string> trouble() override { return words; }
    CloudRecordFate fateOf(const CloudRecord&) override { return fate; }
    bool letsRivalWin(const std::string&, bool isAnswered) override
    {
        return isAnswered ? letsOverrule : letsWin;
    }

    CloudPassage next;
    CloudRecordFate fate;
    std::optional<std::string> words;
    bool letsWin = false;
    bool letsOverrule = false;
};

/// Two devices, their lines, and a store with a zone.
class SimulatedCloudFixture : public testing::Test {
protected:
    SimulatedCloudFixture() { store.createZone(); }

    /// Asks, and leaves the answer here when it has come.
    template <class Value>
    void ask(Task<Value> task, std::optional<Value>& answer)
    {
        failure.clear();
        tasks.start(keep(std::move(task), answer));
    }
    /// Lets time pass.
    void pass(double duration)
    {
        const double until = seconds + duration;
        while (true) {
            MachineLoop& next = due(network) <= due(program) ? network : program;
            if (due(next) > until) {
                break;
            }
            seconds = due(next);
            next.runNext();
        }
        seconds = until;
    }
    /// Each revision is of a device of its own.
    static CloudRecord record(unsigned revision, const std::string& over = "")
    {
        SyncRecord version = Sample::record(Sample::client());
        version.revision = Sample::id(revision).text();
        version.deviceID = Sample::id(0xD0 + revision).text();
        return CloudStore::asSent(version, over.empty() ? std::nullopt : std::optional(over));
    }
    CloudDatabase& first() { return firstContainer->privateDatabase(); }
    CloudDatabase& second() { return secondContainer->privateDatabase(); }

    double seconds = 0.0;
    MachineLoop network{seconds};
    MachineLoop program{seconds};
    CloudStore store;
    ChosenWeather weather{store};
    SimulatedCloud cloud{store, network, weather};
    CloudLine line{cloud, program};
    CloudLine otherLine{cloud, program};
    std::unique_ptr<CloudContainer> firstContainer = line.open();
    std::unique_ptr<CloudContainer> secondContainer = otherLine.open();
    std::string failure;
    CloudErrorCode code = CloudErrorCode::other;
    std::optional<SimulatedCloud::Results> saved;
    std::optional<CloudChanges> changes;
    TaskOwner tasks{program, [this](const std::exception_ptr& thrown) {
                        try {
                            std::rethrow_exception(thrown);
                        } catch (const CloudError& error) {
                            failure = error.what();
                            code = error.code();
                        }
                    }};

private:
    static double due(MachineLoop& loop) { return loop.nextDue().value_or(1e9); }
    template <class Value>
    static Task<void> keep(Task<Value> task, std::optional<Value>& answer)
    {
        Value value = co_await task;
        answer = std::move(value);
    }
};

} // namespace KestryCore
