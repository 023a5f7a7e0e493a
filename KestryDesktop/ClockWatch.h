#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

#include "Descriptor.h"

namespace Kestry {

/// Notices when the system's clock is set, and when the machine wakes up from sleep: then timers,
/// which count the time that the program was awake, are no longer due when they should be. Where
/// the system does not tell, it never calls.
class ClockWatch {
public:
    /// Calls `changed` from the event loop.
    explicit ClockWatch(std::function<void()> changed);

    /// Whether the system tells.
    [[nodiscard]] bool isWatching() const { return static_cast<bool>(timer_); }

private:
    Descriptor timer_;
    std::function<void()> changed_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace Kestry
