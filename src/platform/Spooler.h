#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

// One option of a queue or a job, as CUPS names it: "copies", "1".
using SpoolerOption = QPair<QString, QString>;

// What the program needs to know of one print queue.
struct SpoolerPrinter {
    QString name;          // the queue's name, as CUPS addresses it
    QString info;          // printer-info, the description a person gave the queue; may be empty
    QString makeAndModel;  // printer-make-and-model
    QString deviceUri;     // device-uri
    int state = 0;         // printer-state: 3 idle, 4 processing, 5 stopped
    bool acceptingJobs = false;
    bool isDefault = false; // filled by Destinations
    // The queue's default job options (copies, media, resolution, driver options), sorted by
    // name; "copies" is always among them. Filled by GetPrinter.
    QList<SpoolerOption> jobOptions;
};

// One option that a queue lets a user set, with the choices it takes, in the driver's order.
struct SpoolerChoice {
    struct Value {
        QString keyword; // what a job option carries: "A4", "300dpi", "two-sided-long-edge"
        QString label;   // what a person reads: "A4", "300 DPI"
    };
    QString keyword; // the job option's name: "PageSize", "InputSlot", "media-source", ...
    QString label;   // "Page Size"
    QString group;   // the label of the group the driver puts it in: "General"
    QList<Value> choices; // never empty
    QString defaultChoice; // the keyword of the queue's default; always one of the choices
};

// The print spooler: CUPS, reached through libcups. Nothing else in the program talks to CUPS.
// Every call opens its own connection with a time limit, so a spooler that is gone or hangs
// gives an error instead of a wait. Errors are IPP status codes (1030 not found, 1283 the
// server can't be reached, ...); ErrorText describes the last one.
class Spooler {
public:
    // IPP job states, and Gone for a job the spooler no longer knows.
    enum JobState {
        Gone = 0,
        Pending = 3,
        Held = 4,
        Processing = 5,
        Stopped = 6,
        Canceled = 7,
        Aborted = 8,
        Completed = 9
    };

    static constexpr int ErrorNotFound = 0x0406;
    static constexpr int ErrorUnavailable = 0x0503;

    // The server the calling thread talks to, "host:port" or a socket path; empty goes back to
    // what CUPS itself would choose (CUPS_SERVER, client.conf, the local scheduler).
    static void UseServer(const QString& server);
    // Seconds that one request may take before it counts as failed.
    static void SetTimeout(int seconds);

    // Every queue, without instances. False when the spooler can't be asked.
    static bool Destinations(QList<SpoolerPrinter>* printers, int* error = nullptr);
    // The spooler's default queue; false when there is none or the spooler can't be asked.
    static bool DefaultDestination(QString* name, int* error = nullptr);
    // Finds a queue by its name or, failing that, by its printer-info, so that a printer's
    // device name ("Qn217 CD/DVD Printer") finds the queue that stands for it.
    static bool FindPrinter(const QString& name, QString* queue, int* error = nullptr);
    // The queue's attributes and default job options.
    static bool GetPrinter(const QString& queue, SpoolerPrinter* printer, int* error = nullptr);
    // Every option the queue offers a user: those of its PPD or, for a queue without one (a
    // driverless or raw queue), the IPP job attributes it supports (media, media-source,
    // media-type, print-quality, print-color-mode, sides). False when the spooler can't be
    // asked or doesn't know the queue.
    static bool GetOptionChoices(const QString& queue, QList<SpoolerChoice>* options, int* error = nullptr);
    // The user's options of a PPD: the PickOne and Boolean options, in the file's order, with
    // their groups, choices and defaults. PickMany options, installable options (the
    // administrator's business), PageRegion (which follows PageSize) and custom sizes (which
    // need numbers no list can offer) are left out, as are options without choices.
    static QList<SpoolerChoice> ParsePpd(const QByteArray& ppd);

    // A job without documents yet: its number, or 0 on failure.
    static int CreateJob(const QString& queue, const QString& title, const QList<SpoolerOption>& options,
                         int* error = nullptr);
    // Sends the job's one document and closes the job.
    static bool SendDocument(const QString& queue, int job, const QString& documentName, const QByteArray& data,
                             const QString& format = QStringLiteral("application/pdf"), int* error = nullptr);
    static bool CancelJob(const QString& queue, int job, int* error = nullptr);
    // The job's state; Gone when the spooler no longer knows it. Unknown (false) when it can't
    // be asked.
    static bool GetJobState(const QString& queue, int job, JobState* state, int* error = nullptr);

    // The attributes the spooler keeps for a job, among them the options it was given
    // ("InputSlot", "media", ...), each as CUPS spells its value. False when it can't be asked
    // or doesn't know the job.
    static bool GetJobOptions(const QString& queue, int job, QList<SpoolerOption>* options, int* error = nullptr);

    static QString ErrorText();
};
