#pragma once

#include "SocketPrinter.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// A CUPS scheduler of the tests' own, in a temporary folder on a free loopback port, with
// CUPS_SERVER (and the program's spooler) pointed at it, so no test touches the machine's printers.
// Its queues: "Raw", the default, whose device is a SocketPrinter that keeps every byte a network
// printer would receive; "PDF" ("PDF printer"), of cups-pdf, whose backend writes into the job
// owner's ~/PDF, so tests read prints from "Raw" and only hold or cancel jobs on "PDF".
// Started by the first test that asks, stopped when the program ends. Every wait has a time
// limit: a scheduler that can't run fails the tests with Failure() instead of hanging them.
class PrivateCups {
public:
    static PrivateCups& Instance();
    static void Shutdown();
    ~PrivateCups();

    bool Running() const { return m_failure.isEmpty(); }
    QString Failure() const { return m_failure; }
    QString Server() const { return m_server; } // "127.0.0.1:PORT"
    SocketPrinter& RawPrinter() { return *m_printer; }

    // Runs a CUPS tool (lpadmin, lpstat, ...) against this scheduler; false when it fails, the
    // tool's output in *output.
    bool Run(const QString& program, const QStringList& arguments, QString* output = nullptr);
    // Puts the program's spooler on this scheduler again (after a test pointed it elsewhere).
    void UseAgain() const;
    QString ErrorLog() const;

private:
    PrivateCups() = default;
    bool Start();

    QTemporaryDir m_dir;
    QProcess m_cupsd;
    std::unique_ptr<SocketPrinter> m_printer;
    QString m_server;
    QString m_failure;
};
