#include "PrintSupport.h"

#include "printing/CJobWait.h"

namespace {

TEST(JobWait, EndsOnTheJobsFinalStatesAndFailsOnTroubleOrAStoppedQueue)
{
    using S = Spooler;
    for (const S::JobState state : {S::Pending, S::Held, S::Processing}) {
        EXPECT_EQ(CJobWait::Judge(true, state, false), CJobWait::KeepWaiting) << state;
        EXPECT_EQ(CJobWait::Judge(true, state, true), CJobWait::Failed) << state;
    }
    for (const S::JobState state : {S::Completed, S::Gone})
        EXPECT_EQ(CJobWait::Judge(true, state, false), CJobWait::Done) << state;
    for (const S::JobState state : {S::Stopped, S::Canceled, S::Aborted})
        EXPECT_EQ(CJobWait::Judge(true, state, false), CJobWait::Failed) << state;
    EXPECT_EQ(CJobWait::Judge(false, S::Gone, false), CJobWait::Failed) << "the spooler gone mid-wait";
}

class JobWaitTest : public PrintingTest {};

TEST_F(JobWaitTest, APrinterTheSpoolerDoesntKnowLeavesNothingToWaitFor)
{
    EXPECT_TRUE(CJobWait::Wait(QStringLiteral("No Such Printer"), 1, 1));
    // A job that has left the queue ends the wait at once.
    EXPECT_TRUE(CJobWait::Wait(QStringLiteral("Raw"), 999999, 1));
}

} // namespace
