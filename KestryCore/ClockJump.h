#pragma once

#include <optional>

#include "Date.h"

namespace KestryCore {

/// The time of day advanced more than the time that passed, while a session was running.
struct ClockJump {
    double seconds = 0.0;    ///< How much more.
    Date agreed;             ///< The last moment on which both clocks agree.
    bool hasEndedIt = false; ///< The session was saved up to that moment; otherwise paused.

    friend bool operator==(const ClockJump&, const ClockJump&) = default;
};

/// Detects when the time of day advances more than the time that passes. The clock of a machine may
/// be wrong after the start until the network corrects it, and people set it; time that has not
/// passed must not be counted. A clock that was set back is detected elsewhere.
class ClockJumpWatch {
public:
    /// Without a steady clock it never detects a jump.
    ClockJumpWatch(Clock now, SteadyClock steady);

    /// Both clocks at one moment.
    struct Reading {
        Date date;
        double seconds = 0.0;
    };
    [[nodiscard]] Reading read() const;

    /// Measures from this reading on, whose time of day is taken to be right.
    void begin(const Reading& reading) { begun_ = reading; }
    void end() { begun_.reset(); }
    /// The jump since `begin`: nullopt when it is not larger than ordinary corrections of a clock,
    /// and after `end`.
    [[nodiscard]] std::optional<ClockJump> jump(const Reading& reading) const;

private:
    Clock now_;
    SteadyClock steady_;
    std::optional<Reading> begun_;
};

} // namespace KestryCore
