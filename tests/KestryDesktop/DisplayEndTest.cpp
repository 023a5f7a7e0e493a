#include "DisplayEnd.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace Kestry {
namespace {

bool displayIsGone()
{
    return true;
}

bool displayStands()
{
    return false;
}

int sayGoodbye()
{
    const bool isMain = QThread::currentThread() == QCoreApplication::instance()->thread();
    std::fputs(isMain ? "left on the main thread" : "left elsewhere", stderr);
    return 3;
}

class DisplayEndTest : public ::testing::Test {
protected:
    // Each test ends a process, which has to be one of its own.
    DisplayEndTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(DisplayEndTest, AWarningWithTheDisplayGoneLeavesWithTheStatusToldForIt)
{
    EXPECT_EXIT(
        {
            const DisplayEnd end(sayGoodbye, displayIsGone);
            qWarning("The connection broke.");
            std::_Exit(1);
        },
        ::testing::ExitedWithCode(3), "left on the main thread");
}

TEST_F(DisplayEndTest, TheWarningIsStillPrinted)
{
    EXPECT_EXIT(
        {
            const DisplayEnd end(sayGoodbye, displayIsGone);
            qWarning("The connection broke.");
        },
        ::testing::ExitedWithCode(3), "The connection broke.");
}

TEST_F(DisplayEndTest, AThreadThatNoticesWaitsForTheMainThreadToLeave)
{
    EXPECT_EXIT(
        {
            const DisplayEnd end(sayGoodbye, displayIsGone);
            std::thread other([] {
                qWarning("The connection broke.");
                std::_Exit(1);
            });
            QCoreApplication::exec();
            other.join();
        },
        ::testing::ExitedWithCode(3), "left on the main thread");
}

TEST_F(DisplayEndTest, AnExitWithoutAWarningLeavesToo)
{
    EXPECT_EXIT(
        {
            const DisplayEnd end(sayGoodbye, displayIsGone);
            std::exit(1);
        },
        ::testing::ExitedWithCode(3), "left on the main thread");
}

TEST_F(DisplayEndTest, AWarningThatLeavingPrintsDoesNotLeaveAgain)
{
    const auto leave = [] {
        qWarning("It could not be saved.");
        return 4;
    };
    EXPECT_EXIT(
        {
            const DisplayEnd end(leave, displayIsGone);
            qWarning("The connection broke.");
        },
        ::testing::ExitedWithCode(4), "could not be saved");
}

TEST_F(DisplayEndTest, WhileTheDisplayStandsWarningsAndExitsAreWhatTheyAre)
{
    EXPECT_EXIT(
        {
            const DisplayEnd end(sayGoodbye, displayStands);
            qWarning("A font is missing.");
            std::exit(5);
        },
        ::testing::ExitedWithCode(5), "A font is missing.");
}

TEST_F(DisplayEndTest, WhoNoLongerWaitsForItIsNotAsked)
{
    EXPECT_EXIT(
        {
            {
                const DisplayEnd end(sayGoodbye, displayIsGone);
            }
            qWarning("The connection broke.");
            std::exit(6);
        },
        ::testing::ExitedWithCode(6), "broke");
}

} // namespace
} // namespace Kestry
