#pragma once

#include <QString>
#include <functional>

class CDrawDoc;

// A series of discs in one print job, one page each, for scripts and tools. Unlike the
// interactive job, which lays its texts out once for all its copies, every disc is laid out
// anew, so that each shows its own counter, serial number and record. The counters move on in
// the document as each disc is drawn; saving them is the caller's business.
class CSeriesJob {
public:
    enum Outcome {
        Printed,    // every disc went into the job, and the job was sent or written
        Stopped,    // asked to stop between discs: the job was cancelled
        NotStarted, // no printer, or the job could not start; nothing was drawn
        Failed      // a page or the job's end failed: the job was cancelled or is lost
    };

    explicit CSeriesJob(CDrawDoc& doc);

    // Takes the named printer (a queue's name or description) as the document's: the set-up
    // saved for it where there is one, else the queue's defaults. False, with the spooler's
    // message shown, when there is no such printer.
    bool SelectPrinter(const QString& name);

    // Prints discs on the document's printer, to outputFile when one is given (a PDF, and
    // nothing goes to the spooler). A job that can't start shows the framework's message.
    Outcome Print(int discs, const QString& outputFile = QString());

    // Told after each disc is on its page: the disc's number from 1 and the series' length.
    std::function<void(int disc, int total)> m_onDisc;
    // Asked before each disc; true stops the series there.
    std::function<bool()> m_stopRequested;

    // The spooler's number of the job, 0 for none or for a print to file.
    int Job() const { return m_nJob; }
    // The discs drawn into the job, whose counters have moved on.
    int Pages() const { return m_nPages; }
    // Why the series failed, for Failed; empty otherwise.
    const QString& Error() const { return m_strError; }

private:
    void LayOutTexts();

    CDrawDoc& m_doc;
    int m_nJob = 0;
    int m_nPages = 0;
    QString m_strError;
};
