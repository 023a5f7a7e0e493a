#include "ClockWatch.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace Kestry {
namespace {

TEST(ClockWatch, IsQuietWhileTheClockGoesOn)
{
    int calls = 0;
    const ClockWatch watch([&] { ++calls; });
    EXPECT_TRUE(watch.isWatching());
    const QDeadlineTimer end(50);
    while (!end.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace Kestry
