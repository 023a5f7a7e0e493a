#pragma once

#include <functional>
#include <optional>

#include "Date.h"
#include "Scheduler.h"

namespace Kestry {

/// When the program checks by itself: once a day at a random moment, while that is switched on. A
/// moment that passes while no program runs is made up for some minutes after the next start. So
/// no server learns when anybody works, and not all ask at once.
class UpdateSchedule {
public:
    /// Where the next moment is kept from run to run.
    struct Memory {
        std::function<std::optional<KestryCore::Date>()> read{};
        std::function<void(KestryCore::Date)> write{};
    };
    /// What it goes by. All of it must outlive the schedule.
    struct Platform {
        KestryCore::Scheduler& scheduler;
        KestryCore::Clock now{};
        std::function<double()> random{}; ///< From 0 to below 1.
        Memory memory{};
    };

    /// `check` is called at each moment. It returns whether a check has begun; without one it is
    /// called again an hour later.
    UpdateSchedule(Platform platform, std::function<bool()> check);

    /// Begins, or stops for good until it is switched on again.
    void setOn(bool isOn);
    /// A check has begun, for whatever reason: the next one comes on another day.
    void plan();

private:
    [[nodiscard]] KestryCore::Date momentOfNextDay() const;
    void look();
    void wait(double seconds);

    Platform platform_;
    std::function<bool()> check_;
    bool isOn_ = false;
    bool isMakingUp_ = false; // the moment has passed, and the minutes after the start run
    KestryCore::Timer timer_;
};

} // namespace Kestry
