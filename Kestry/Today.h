#pragma once

#include "Date.h"
#include "Observable.h"
#include "Scheduler.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// What day it is. It follows the clock over midnight with one timer, and the time zone. What else
/// may move the clock, such as a person who sets it or the machine's sleep, is told by `look`.
class Today {
public:
    /// Scheduler and calendar must outlive this.
    Today(KestryCore::Scheduler& scheduler, KestryCore::Clock now,
        const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar);

    /// The first moment of the day. Assigned when another day has begun, or the same day begins at
    /// another moment in another zone.
    [[nodiscard]] const KestryCore::Observable<KestryCore::Date>& start() const { return start_; }

    /// Looks at the clock again.
    void look();

private:
    KestryCore::Scheduler& scheduler_;
    KestryCore::Clock now_;
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar_;
    KestryCore::Observable<KestryCore::Date> start_;
    KestryCore::Timer midnight_;
    KestryCore::Subscription zone_;
};

} // namespace Kestry
