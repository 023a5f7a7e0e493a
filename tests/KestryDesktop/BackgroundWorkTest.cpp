#include "BackgroundWork.h"

#include <QCoreApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace Kestry {
namespace {

class BackgroundWorkTest : public ::testing::Test {
protected:
    static void waitFor(const bool& done)
    {
        while (!done) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    std::optional<BackgroundWork> work{std::in_place};
};

TEST_F(BackgroundWorkTest, WorkIsDoneOnAnotherThreadAndItsEndIsToldOnThisOne)
{
    const QThread* worker = nullptr;
    const QThread* told = nullptr;
    bool isDone = false;
    work->run([&] { worker = QThread::currentThread(); },
        [&] {
            told = QThread::currentThread();
            isDone = true;
        });
    waitFor(isDone);
    EXPECT_NE(QThread::currentThread(), worker);
    EXPECT_EQ(QThread::currentThread(), told);
}

TEST_F(BackgroundWorkTest, PiecesAreDoneOneAfterTheOther)
{
    std::vector<int> order;
    bool isDone = false;
    for (int piece = 0; piece < 10; ++piece) {
        work->run(
            [&order, piece] { order.push_back(piece); }, [&isDone, piece] { isDone = piece == 9; });
    }
    waitFor(isDone);
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), order);
}

TEST_F(BackgroundWorkTest, NothingIsToldOnceItHasGone)
{
    bool isTold = false;
    work->run([] {}, [&] { isTold = true; });
    work.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(isTold);
}

} // namespace
} // namespace Kestry
