#include "QuitSignals.h"

#include <gtest/gtest.h>

#include <QTest>

#include <csignal>

namespace Kestry {
namespace {

TEST(QuitSignals, EverySignalThatAsksForAQuitArrivesOnTheEventLoop)
{
    holdQuitSignals();
    int requests = 0;
    const QuitSignals quitSignals([&] { ++requests; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const int before = requests;
        raise(signal);
        EXPECT_EQ(requests, before);
        EXPECT_TRUE(QTest::qWaitFor([&] { return requests == before + 1; })) << signal;
    }
}

} // namespace
} // namespace Kestry
