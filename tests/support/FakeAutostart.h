#pragma once

#include <functional>
#include <utility>

#include "Autostart.h"
#include "LedgerError.h"

namespace Kestry {

/// A switch that is only remembered, and that a test may throw or break.
class FakeAutostart final : public Autostart {
public:
    [[nodiscard]] bool isOn() const override { return on; }
    void set(bool isOn) override
    {
        if (isBroken) {
            throw KestryCore::LedgerError("The disk is full.");
        }
        on = isOn;
    }
    void follow(std::function<void()> changed) override { followed = std::move(changed); }

    bool on = false;
    bool isBroken = false;
    std::function<void()> followed;
};

} // namespace Kestry
