#pragma once

#include "platform/Spooler.h"

#include <QString>

// Waits for a print job to leave the spooler while the program's own events go on: the job's
// state is looked at on a timer in a local event loop, so windows keep repainting and taking
// input, and the caller goes on only when the job has ended.
class CJobWait {
public:
    // What one look at a job means.
    enum Outcome { KeepWaiting, Done, Failed };

    static constexpr int DefaultPollMs = 150;

    // answered: the spooler told the job's state; queueStopped: the job's queue is stopped, so a
    // job that waits in it goes nowhere until someone starts the queue again.
    static Outcome Judge(bool answered, Spooler::JobState state, bool queueStopped);

    // Waits for the job on the printer (a queue's name or the description of one). False when
    // the job failed: stopped, cancelled, aborted, stuck in a stopped queue, or the spooler gone
    // mid-wait. A printer the spooler doesn't know at the start leaves nothing to wait for.
    static bool Wait(const QString& printerName, int job, int pollMs = DefaultPollMs);
};
