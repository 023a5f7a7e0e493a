#include "QtScheduler.h"

#include <gtest/gtest.h>

#include <QTest>

namespace Kestry {
namespace {

class QtSchedulerTest : public ::testing::Test {
protected:
    QtScheduler scheduler;
    std::string order;
};

TEST_F(QtSchedulerTest, PostedActionsRunInOrderAndNotAtOnce)
{
    scheduler.post([&] { order += "a"; });
    scheduler.post([&] { order += "b"; });
    EXPECT_EQ(order, "");
    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 2; }));
    EXPECT_EQ(order, "ab");
}

TEST_F(QtSchedulerTest, AnActionNeverRunsEarly)
{
    const double start = scheduler.now();
    double ran = 0;
    const auto timer = scheduler.after(0.02, [&] { ran = scheduler.now(); });
    ASSERT_TRUE(QTest::qWaitFor([&] { return ran > 0; }));
    EXPECT_GE(ran - start, 0.02);
}

TEST_F(QtSchedulerTest, ATimerThatIsLetGoNeverRuns)
{
    {
        const auto timer = scheduler.after(0, [&] { order += "x"; });
    }
    auto cancelled = scheduler.after(0, [&] { order += "y"; });
    cancelled.cancel();
    QTest::qWait(20);
    EXPECT_EQ(order, "");
}

TEST_F(QtSchedulerTest, AnActionMayReplaceItsOwnTimer)
{
    KestryCore::Timer timer;
    timer = scheduler.after(0, [&] {
        order += "a";
        timer = scheduler.after(0, [&] { order += "b"; });
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 2; }));
    EXPECT_EQ(order, "ab");
}

TEST_F(QtSchedulerTest, ATimerMayOutliveItsScheduler)
{
    auto other = std::make_unique<QtScheduler>();
    const auto timer = other->after(0, [&] { order += "x"; });
    other.reset();
    QTest::qWait(20);
    EXPECT_EQ(order, "");
}

} // namespace
} // namespace Kestry
