#include "Today.h"

#include <utility>

namespace Kestry {

Today::Today(KestryCore::Scheduler& scheduler, KestryCore::Clock now,
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar)
    : scheduler_(scheduler), now_(std::move(now)), calendar_(calendar),
      start_(calendar_->startOfDay(now_())),
      zone_(calendar_.observe([this](const auto&) { look(); }))
{
    look();
}

void Today::look()
{
    const KestryCore::Date now = now_();
    midnight_.cancel();
    if (const auto next = calendar_->startOfNextDay(now)) {
        // Where the clock was set back a little meanwhile, it is not yet midnight: then this waits
        // for the rest.
        midnight_ = scheduler_.after(*next - now, [this] { look(); });
    }
    const KestryCore::Date start = calendar_->startOfDay(now);
    if (start != *start_) {
        start_.assign(start);
    }
}

} // namespace Kestry
