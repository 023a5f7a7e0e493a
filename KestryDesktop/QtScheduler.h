#pragma once

#include <QObject>

#include "Scheduler.h"

namespace Kestry {

/// The scheduler on the event loop of the thread that creates it. Actions that still wait when it
/// is destroyed never run.
class QtScheduler final : public KestryCore::Scheduler {
public:
    [[nodiscard]] double now() const override;
    void post(Action action) override;
    [[nodiscard]] KestryCore::Timer after(double seconds, Action action) override;

private:
    QObject context_;
};

} // namespace Kestry
