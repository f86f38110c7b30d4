#pragma once

#include "SocketPrinter.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// A CUPS scheduler of the tests' own: its configuration, spool, cache, state and logs in a
// temporary folder, listening on a free loopback port, with CUPS_SERVER (and the program's
// spooler) pointed at it, so no test sees or touches the machine's printers. Its queues:
//   "Raw"  a raw queue whose device is socket://127.0.0.1:PORT, a SocketPrinter of the tests
//          that keeps every byte a network printer would receive; the default printer;
//   "PDF"  a queue of printer-driver-cups-pdf, described as "PDF printer". Its backend reads
//          the machine's /etc/cups/cups-pdf.conf and writes into the job owner's ~/PDF (by the
//          password file, not $HOME), so tests read what was printed from the raw queue and
//          hold or cancel jobs on this one.
// Started by the first test that asks for it, stopped when the test program ends. Every wait
// has a time limit: a scheduler that can't run makes the tests fail with Failure(), not hang.
class PrivateCups {
public:
    static PrivateCups& Instance();
    // Stops the scheduler if it was started; the test program's end calls it.
    static void Shutdown();

    ~PrivateCups();

    bool Running() const { return m_failure.isEmpty(); }
    QString Failure() const { return m_failure; }
    // "127.0.0.1:PORT"
    QString Server() const { return m_server; }
    SocketPrinter& RawPrinter() { return *m_printer; }

    // Runs a CUPS command-line tool (lpadmin, lpstat, cupsenable, ...) against this
    // scheduler. False, with the tool's output in the failure text, when it fails.
    bool Run(const QString& program, const QStringList& arguments, QString* output = nullptr);
    // Puts the program's spooler on this scheduler again (after a test pointed it elsewhere).
    void UseAgain() const;

    // The scheduler's error log, for failure messages.
    QString ErrorLog() const;

private:
    PrivateCups();
    bool Start();
    void Stop();

    QTemporaryDir m_dir;
    QProcess m_cupsd;
    std::unique_ptr<SocketPrinter> m_printer;
    QString m_server;
    QString m_failure;
};
