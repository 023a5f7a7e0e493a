#include "ClockJudge.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"
#include "VersionBook.h"
#include "World.h"

namespace KestryCore {
namespace {

/// A device with a session in progress that the judge has seen.
class ClockJudgeTest : public testing::Test {
protected:
    ClockJudgeTest()
    {
        ledger.active = Sample::runningSession();
        judge.saw(ledger);
    }

    void pass(double seconds) { world.now = world.now + seconds; }
    void count(double seconds)
    {
        ledger.active->checkpointAt = ledger.active->checkpointAt + seconds;
    }

    World world{1, false};
    Member member{"Device", world, 0.0};
    LedgerData ledger;
    ClockJudge judge{member.device};
};

TEST_F(ClockJudgeTest, IsContentWithTimeThatHasPassed)
{
    pass(100);
    count(100);
    EXPECT_NO_THROW(judge.saw(ledger));
}

TEST_F(ClockJudgeTest, NoticesTimeThatHasNot)
{
    pass(100);
    member.device.setClockForward(3600);
    count(200);
    EXPECT_THROW(judge.saw(ledger), Violation);
}

TEST_F(ClockJudgeTest, ForgivesWhatAClockIsPutRightBy)
{
    member.device.setClockForward(59);
    count(59);
    EXPECT_NO_THROW(judge.saw(ledger));
    count(1);
    EXPECT_THROW(judge.saw(ledger), Violation);
}

TEST_F(ClockJudgeTest, NoticesItInTheSessionThatWasStopped)
{
    TimeEntry entry;
    entry.id = ledger.active->id;
    entry.spans = {{ledger.active->checkpointAt, ledger.active->checkpointAt + 1e6}};
    ledger.entries.append(entry);
    ledger.active.reset();
    EXPECT_THROW(judge.sawStopped(ledger, entry.id), Violation);
}

} // namespace
} // namespace KestryCore
