#pragma once

#include <optional>

#include "CloudFixture.h"

namespace KestryCore {

/// What a controller is driven by: builds, time, and the user's switch.
class ControllerFixture : public CloudFixture {
protected:
    void configure(bool isConfigured, std::optional<CloudSyncEnvironment> environment)
    {
        configuration.isConfigured = isConfigured;
        configuration.environment = environment;
        control();
    }
    /// Started, and the first cycle is over.
    void startWhole()
    {
        bring({}, "c1");
        controller->start();
        scheduler.turn();
        answerAll();
    }
    /// Lets time pass while the cloud answers at once.
    void pass(double seconds)
    {
        const double step = 0.5;
        for (double passed = 0.0; passed < seconds; passed += step) {
            scheduler.advance(step);
            answerAll();
        }
    }
    [[nodiscard]] int cycles() const { return cloud.times("zone"); }
    void enable()
    {
        controller->enable();
        scheduler.turn();
    }
    void enableWhole()
    {
        enable();
        answerAll();
    }
    void disconnect() { control(sampleLedger()); }
};

} // namespace KestryCore
