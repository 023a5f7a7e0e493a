#include "QtScheduler.h"

#include <QTimer>

#include <chrono>
#include <cmath>

namespace Kestry {

double QtScheduler::now() const
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceStart).count();
}

void QtScheduler::post(Action action)
{
    QMetaObject::invokeMethod(&context_, std::move(action), Qt::QueuedConnection);
}

KestryCore::Timer QtScheduler::after(double seconds, Action action)
{
    // The timer may be let go by its own action, while it is still delivering its signal: hence
    // the stop, and a deletion that waits for the loop.
    const std::shared_ptr<QTimer> timer(new QTimer, [](QTimer* finished) {
        finished->stop();
        finished->deleteLater();
    });
    timer->setTimerType(Qt::PreciseTimer); // a coarse one may come early
    timer->setSingleShot(true);
    QObject::connect(timer.get(), &QTimer::timeout, &context_, std::move(action));
    timer->start(static_cast<int>(std::ceil(seconds * 1000.0)));
    return KestryCore::Timer(timer);
}

} // namespace Kestry
