#pragma once

#include <functional>

namespace Kestry {

/// Whether the program starts with the desktop.
class Autostart {
public:
    Autostart() = default;
    Autostart(const Autostart&) = delete;
    Autostart& operator=(const Autostart&) = delete;
    virtual ~Autostart() = default;

    /// As far as the desktop tells, now.
    [[nodiscard]] virtual bool isOn() const = 0;
    /// Switches it on or off. Throws LedgerError, and changes nothing, when that cannot be stored.
    /// Where the desktop asks the user first, it is switched later, or not at all.
    virtual void set(bool isOn) = 0;
    /// Calls `changed` from now on when it was switched, by whomever.
    virtual void follow(std::function<void()> changed) = 0;
};

} // namespace Kestry
