#pragma once

#include <optional>

#include "Date.h"

namespace KestryCore {

/// The time of day ran ahead of the time that has passed while a session was running.
struct ClockJump {
    double seconds = 0.0;    ///< By so much.
    Date agreed;             ///< The last moment on which both clocks agree.
    bool hasEndedIt = false; ///< The session was saved up to that moment; else it was paused.

    friend bool operator==(const ClockJump&, const ClockJump&) = default;
};

/// Watches whether the time of day passes as time does. A clock at the start of the machine may be
/// wrong until the network corrects it, and people set it; time that has not passed must not be
/// counted. A clock that was set back shows by itself.
class ClockJumpWatch {
public:
    /// Without a steady clock nothing is ever found.
    ClockJumpWatch(Clock now, SteadyClock steady);

    /// Both clocks at one moment.
    struct Reading {
        Date date;
        double seconds = 0.0;
    };
    [[nodiscard]] Reading read() const;

    /// Takes the time of day of a reading for right: what follows is measured from there.
    void begin(const Reading& reading) { begun_ = reading; }
    void end() { begun_.reset(); }
    /// By how much the time of day has run ahead, if that is more than a clock may be off that is
    /// put right from time to time, and what it should have been.
    [[nodiscard]] std::optional<ClockJump> jump(const Reading& reading) const;

private:
    Clock now_;
    SteadyClock steady_;
    std::optional<Reading> begun_;
};

} // namespace KestryCore
