#pragma once

#include <QObject>

#include "Scheduler.h"

namespace Kestry {

/// The scheduler on the event loop of the thread that makes it. Actions that are still waiting
/// when it goes never run.
class QtScheduler final : public KestryCore::Scheduler {
public:
    [[nodiscard]] double now() const override;
    void post(Action action) override;
    [[nodiscard]] KestryCore::Timer after(double seconds, Action action) override;

private:
    QObject context_;
};

} // namespace Kestry
