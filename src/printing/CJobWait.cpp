#include "printing/CJobWait.h"

#include <QEventLoop>
#include <QTimer>

CJobWait::Outcome CJobWait::Judge(bool answered, Spooler::JobState state, bool queueStopped)
{
    if (!answered)
        return Failed;
    switch (state) {
    case Spooler::Pending:
    case Spooler::Held:
    case Spooler::Processing:
        return queueStopped ? Failed : KeepWaiting;
    case Spooler::Completed:
    case Spooler::Gone:
        return Done;
    case Spooler::Stopped:
    case Spooler::Canceled:
    case Spooler::Aborted:
        return Failed;
    }
    return Failed;
}

bool CJobWait::Wait(const QString& printerName, int job, int pollMs)
{
    QString queue;
    if (!Spooler::FindPrinter(printerName, &queue))
        return true;

    Outcome outcome = KeepWaiting;
    QEventLoop loop;
    const auto look = [&] {
        Spooler::JobState state = Spooler::Gone;
        const bool answered = Spooler::GetJobState(queue, job, &state);
        // The queue's state matters only while the job waits in it; CUPS stops a queue whose
        // device failed and puts the job back to pending.
        bool stopped = false;
        if (answered && (state == Spooler::Pending || state == Spooler::Held || state == Spooler::Processing)) {
            SpoolerPrinter printer;
            stopped = Spooler::GetPrinter(queue, &printer) && printer.state == 5;
        }
        outcome = Judge(answered, state, stopped);
        if (outcome != KeepWaiting)
            loop.quit();
    };
    look();
    if (outcome == KeepWaiting) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &loop, look);
        timer.start(pollMs);
        loop.exec();
    }
    return outcome != Failed;
}
