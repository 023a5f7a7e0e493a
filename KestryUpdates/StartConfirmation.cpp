#include "StartConfirmation.h"

#include <utility>

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr double pauseSeconds = 2.0;

} // namespace

StartConfirmation::StartConfirmation(
    Scheduler& scheduler, Work work, UpdatePrefix prefix, UpdateVersion running)
    : scheduler_(scheduler), work_(std::move(work)),
      attempt_(std::make_shared<Attempt>(Attempt{std::move(prefix), std::move(running)}))
{
}

void StartConfirmation::confirm(Attempt& attempt)
{
    try {
        const auto lock = attempt.prefix.lock();
        attempt.prefix.confirm(attempt.running);
        attempt.hasSucceeded = true;
    } catch (const LedgerError&) {
        return; // Tried again.
    }
}

void StartConfirmation::begin()
{
    --triesLeft_;
    work_([attempt = attempt_] { confirm(*attempt); },
        [this, isHere = std::weak_ptr<bool>(isHere_)] {
            if (isHere.expired() || attempt_->hasSucceeded || triesLeft_ == 0) {
                return;
            }
            pause_ = scheduler_.after(pauseSeconds, [this] { begin(); });
        });
}

} // namespace Kestry
